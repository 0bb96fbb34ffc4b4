// Writes a generated cluster model.
//   qzsim_generate [--size small|medium|large] [options] [-o FILE]

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "ModelGenerator.h"

namespace {

const char* const USAGE =
    "usage: qzsim_generate [--size small|medium|large] [OPTION N]... [-o FILE]\n"
    "  Writes a cluster model that qzsim_check and vexa-cimserver --cluster-model accept.\n"
    "  The same options and seed always give the same file. Options after --size\n"
    "  override the preset's value; without --size the counts are those of small.\n"
    "    --size NAME             small:  64 nodes, 2 file systems x 4 pools x 16 disks,\n"
    "                                    256 filesets per file system, access all\n"
    "                            medium: 1024 nodes, 4 x 4 x 32, 4096 filesets, access 64\n"
    "                            large:  4096 nodes, 8 x 4 x 64, 16384 filesets, access 64\n"
    "    --nodes N               nodes (each mounts every file system)\n"
    "    --filesystems N         file systems\n"
    "    --pools N               storage pools per file system\n"
    "    --disks N               disks per pool\n"
    "    --free-disks N          disks in no file system [4]\n"
    "    --servers N             servers per disk: one server, N-1 backup servers [2]\n"
    "    --access N|all          disk-access records per node; all: every disk\n"
    "    --filesets N            filesets per file system, besides the root fileset\n"
    "    --users N, --groups N   accounts\n"
    "    --quotas N              quota entries per file system\n"
    "    --duplicate-names N     the last N nodes, disks and filesets of each file system\n"
    "                            are named like the first N but in capitals (a node also\n"
    "                            repeats the address); the last N users and groups repeat\n"
    "                            the first N names exactly; at most half of each kind [0]\n"
    "    --seed N                [1]\n"
    "    -o, --output FILE       where to write it [standard output]\n"
    "  Progress and a summary go to standard error. Exit status 0 on success, 1 when\n"
    "  the file cannot be written, 2 for a wrong command line.\n";

int usageError(const std::string& problem) {
    std::fprintf(stderr, "qzsim_generate: %s\n%s", problem.c_str(), USAGE);
    return 2;
}

bool parseCount(const std::string& text, unsigned long long max, unsigned long long* value) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    errno = 0;
    *value = std::strtoull(text.c_str(), nullptr, 10);
    return errno == 0 && *value <= max;
}

struct CountOption {
    const char* name;
    unsigned GeneratorOptions::*field;
};

const CountOption COUNT_OPTIONS[] = {
    {"--nodes", &GeneratorOptions::nodes},
    {"--filesystems", &GeneratorOptions::filesystems},
    {"--pools", &GeneratorOptions::poolsPerFilesystem},
    {"--disks", &GeneratorOptions::disksPerPool},
    {"--free-disks", &GeneratorOptions::freeDisks},
    {"--servers", &GeneratorOptions::serversPerDisk},
    {"--filesets", &GeneratorOptions::filesetsPerFilesystem},
    {"--users", &GeneratorOptions::users},
    {"--groups", &GeneratorOptions::groups},
    {"--quotas", &GeneratorOptions::quotasPerFilesystem},
    {"--duplicate-names", &GeneratorOptions::duplicateNames},
};

// Writes beside the target and renames, so that a run that is stopped never
// leaves a truncated model for the next run to reuse.
bool writeFile(const std::string& path, const std::string& text) {
    if (path.empty() || path == "-") {
        return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
               std::fflush(stdout) == 0;
    }
    const std::string partial = path + ".partial." + std::to_string(getpid());
    std::FILE* file = std::fopen(partial.c_str(), "wb");
    if (file == nullptr) {
        std::fprintf(stderr, "qzsim_generate: cannot write %s: %s\n", partial.c_str(),
                     std::strerror(errno));
        return false;
    }
    bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    written = std::fclose(file) == 0 && written;
    if (!written || std::rename(partial.c_str(), path.c_str()) != 0) {
        std::fprintf(stderr, "qzsim_generate: cannot write %s: %s\n", path.c_str(),
                     std::strerror(errno));
        std::remove(partial.c_str());
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    GeneratorOptions options;
    std::string output;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(USAGE, stdout);
            return 0;
        }
        std::string value;
        const std::size_t equals = arg.find('=');
        if (arg.compare(0, 2, "--") == 0 && equals != std::string::npos) {
            value = arg.substr(equals + 1);
            arg.resize(equals);
        } else if (i + 1 < argc) {
            value = argv[++i];
        } else {
            return usageError("option '" + arg + "' needs a value");
        }
        unsigned long long number = 0;
        if (arg == "--size") {
            if (!applySizePreset(value, &options)) {
                return usageError("unknown size '" + value + "' (small, medium, large)");
            }
        } else if (arg == "-o" || arg == "--output") {
            output = value;
        } else if (arg == "--seed") {
            if (!parseCount(value, ~0ULL, &number)) {
                return usageError("--seed takes a whole number, not '" + value + "'");
            }
            options.seed = number;
        } else if (arg == "--access") {
            options.accessAll = value == "all";
            if (!options.accessAll) {
                if (!parseCount(value, 0xffffffffULL, &number)) {
                    return usageError("--access takes a count or \"all\", not '" + value + "'");
                }
                options.accessPerNode = static_cast<unsigned>(number);
            }
        } else {
            const CountOption* found = nullptr;
            for (const CountOption& option : COUNT_OPTIONS) {
                if (arg == option.name) {
                    found = &option;
                }
            }
            if (found == nullptr) {
                return usageError("unknown option '" + arg + "'");
            }
            if (!parseCount(value, 0xffffffffULL, &number)) {
                return usageError(arg + " takes a whole number, not '" + value + "'");
            }
            options.*(found->field) = static_cast<unsigned>(number);
        }
    }
    const std::string problem = checkGeneratorOptions(options);
    if (!problem.empty()) {
        return usageError(problem);
    }

    const GeneratedCounts c = countsOf(options);
    // Small models come at once; a line per section shows a big one moving.
    const bool big = c.accessRecords + c.filesets > 100000;
    const auto started = std::chrono::steady_clock::now();
    std::string text = generateModel(options, [big](const char* section) {
        if (big) {
            std::fprintf(stderr, "qzsim_generate: %s\n", section);
        }
    });
    if (!writeFile(output, text)) {
        return 1;
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    std::fprintf(stderr,
                 "qzsim_generate: %s: %llu nodes, %llu file systems, %llu pools, %llu disks, "
                 "%llu free disks, %llu disk-access records, %llu filesets (root ones "
                 "included), %llu users, %llu groups, %llu quota entries; %.1f MB in %.2f s\n",
                 output.empty() ? "standard output" : output.c_str(), c.nodes, c.filesystems,
                 c.pools, c.disks, c.freeDisks, c.accessRecords, c.filesets, c.users, c.groups,
                 c.quotas, text.size() / 1e6, seconds);
    return 0;
}
