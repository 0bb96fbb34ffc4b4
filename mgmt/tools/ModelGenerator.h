// Generated cluster models of any size, for benchmarks and for tests that
// need more than the demo cluster. The same options and seed always give the
// same file, byte for byte.
#ifndef QZSIM_TOOLS_MODELGENERATOR_H
#define QZSIM_TOOLS_MODELGENERATOR_H

#include <cstdint>
#include <functional>
#include <string>

struct GeneratorOptions {
    unsigned nodes = 64;
    unsigned filesystems = 2;
    unsigned poolsPerFilesystem = 4;
    unsigned disksPerPool = 16;
    unsigned freeDisks = 4;
    // The first serves the disk, the others are its backup servers.
    unsigned serversPerDisk = 2;
    // Disk-access records per node; accessAll means one for every disk.
    unsigned accessPerNode = 0;
    bool accessAll = true;
    unsigned filesetsPerFilesystem = 256; // besides the root fileset the loader adds
    unsigned users = 16;
    unsigned groups = 4;
    unsigned quotasPerFilesystem = 32;
    // Nodes, disks, filesets, users and groups whose name repeats an earlier
    // one's exactly or differs only in case (where the loader allows it).
    unsigned duplicateNames = 0;
    std::uint64_t seed = 1;
};

// Sets the counts of "small", "medium" or "large"; false (and nothing
// changed) for another name.
bool applySizePreset(const std::string& size, GeneratorOptions* options);

// Empty when the options describe a model the loader accepts, or why not.
std::string checkGeneratorOptions(const GeneratorOptions& options);

// Element counts of the model the options describe, as the library lists it.
struct GeneratedCounts {
    unsigned long long nodes, filesystems, pools, disks, freeDisks, accessRecords, filesets, users,
        groups, quotas;
};
GeneratedCounts countsOf(const GeneratorOptions& options);

// The model as JSON text. `progress`, when set, is called with the name of
// each section as it starts. The options must pass checkGeneratorOptions.
std::string generateModel(const GeneratorOptions& options,
                          const std::function<void(const char* section)>& progress = {});

#endif
