#include "ModelGenerator.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <vector>

namespace {

struct SizePreset {
    const char* name;
    unsigned nodes, filesystems, pools, disksPerPool, filesets, access;
    unsigned users, groups, quotas;
};

// access 0 means every node reaches every disk.
const SizePreset SIZE_PRESETS[] = {
    {"small", 64, 2, 4, 16, 256, 0, 16, 4, 32},
    {"medium", 1024, 4, 4, 32, 4096, 64, 256, 16, 256},
    {"large", 4096, 8, 4, 64, 16384, 64, 1024, 64, 1024},
};

// The last `wanted` elements of a kind are the duplicates of the first ones;
// at most half of them, so every duplicate has an original.
unsigned duplicatesOf(unsigned count, unsigned wanted) { return std::min(wanted, count / 2); }

std::string upperCase(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return text;
}

// Every text the generator writes is built from fixed ASCII words and
// numbers, so nothing needs JSON escaping.
class Writer {
public:
    Writer(const GeneratorOptions& options, const std::function<void(const char*)>& progress)
        : o_(options), progress_(progress), random_(options.seed) {
        const GeneratedCounts counts = countsOf(options);
        poolDisks_ = static_cast<unsigned>(counts.disks);
        allDisks_ = poolDisks_ + options.freeDisks;
        // Roughly what each element takes, so the text grows once.
        out_.reserve(counts.accessRecords * 80 + counts.filesets * 200 + allDisks_ * 300 +
                     counts.nodes * (300 + 10 * options.filesystems) + 4096);
    }

    std::string write() {
        chooseDiskServers();
        out_ += "{\n";
        writeCluster();
        section("nodes");
        writeNodes();
        section("users and groups");
        writeUsersAndGroups();
        out_ += "\"filesystems\": [\n";
        for (unsigned f = 0; f < o_.filesystems; ++f) {
            section("file system fs" + std::to_string(f + 1));
            writeFilesystem(f);
            out_ += f + 1 < o_.filesystems ? ",\n" : "\n";
        }
        out_ += "],\n";
        section("free disks");
        out_ += "\"freeDisks\": [\n";
        for (unsigned d = 0; d < o_.freeDisks; ++d) {
            writeDisk(poolDisks_ + d, true);
            out_ += d + 1 < o_.freeDisks ? ",\n" : "\n";
        }
        out_ += "]\n}\n";
        return std::move(out_);
    }

private:
    unsigned pick(unsigned n) { return n == 0 ? 0 : static_cast<unsigned>(random_() % n); }

    void section(const std::string& name) {
        if (progress_) {
            progress_(name.c_str());
        }
    }

    std::string nodeName(unsigned i) const {
        const unsigned dups = duplicatesOf(o_.nodes, o_.duplicateNames);
        if (i >= o_.nodes - dups) {
            return upperCase(nodeName(i - (o_.nodes - dups)));
        }
        return "node" + std::to_string(i + 1);
    }

    std::string nodeAddress(unsigned i) const {
        const unsigned dups = duplicatesOf(o_.nodes, o_.duplicateNames);
        if (i >= o_.nodes - dups) {
            return nodeAddress(i - (o_.nodes - dups));
        }
        const unsigned n = i + 1;
        return "10." + std::to_string(n >> 16) + "." + std::to_string((n >> 8) & 255) + "." +
               std::to_string(n & 255);
    }

    // Disks are numbered across the file systems' pools, then the free ones.
    std::string diskName(unsigned g) const {
        const unsigned dups = duplicatesOf(poolDisks_, o_.duplicateNames);
        if (g < poolDisks_ && g >= poolDisks_ - dups) {
            return upperCase(diskName(g - (poolDisks_ - dups)));
        }
        return "nsd" + std::to_string(g + 1);
    }

    std::string filesetName(unsigned j) const {
        const unsigned dups = duplicatesOf(o_.filesetsPerFilesystem, o_.duplicateNames);
        if (j >= o_.filesetsPerFilesystem - dups) {
            return upperCase(filesetName(j - (o_.filesetsPerFilesystem - dups)));
        }
        return "fset" + std::to_string(j + 1);
    }

    // Users and groups may repeat a name exactly; look-ups by name find the
    // first.
    std::string userName(unsigned u) const {
        const unsigned dups = duplicatesOf(o_.users, o_.duplicateNames);
        return "user" + std::to_string((u >= o_.users - dups ? u - (o_.users - dups) : u) + 1);
    }

    std::string groupName(unsigned g) const {
        const unsigned dups = duplicatesOf(o_.groups, o_.duplicateNames);
        return "group" + std::to_string((g >= o_.groups - dups ? g - (o_.groups - dups) : g) + 1);
    }

    std::string poolName(unsigned p) const {
        return p == 0 ? "system" : "data" + std::to_string(p);
    }

    void chooseDiskServers() {
        serverBase_.resize(allDisks_);
        for (unsigned& base : serverBase_) {
            base = pick(o_.nodes);
        }
    }

    bool servesDisk(unsigned node, unsigned g) const {
        const unsigned offset = (node + o_.nodes - serverBase_[g]) % o_.nodes;
        return offset < o_.serversPerDisk;
    }

    void text(const char* key, const std::string& value, bool last = false) {
        out_ += '"';
        out_ += key;
        out_ += "\": \"";
        out_ += value;
        out_ += last ? "\"" : "\", ";
    }

    void number(const char* key, unsigned long long value, bool last = false) {
        out_ += '"';
        out_ += key;
        out_ += "\": ";
        out_ += std::to_string(value);
        out_ += last ? "" : ", ";
    }

    void writeCluster() {
        out_ += "\"cluster\": {";
        text("clusterName", "gen.qzcluster");
        text("clusterId", std::to_string(1000000007ULL * (o_.seed % 1000000000ULL) + 17));
        text("minReleaseLevel", "5.1.9.0");
        if (o_.nodes > 1) {
            text("secondaryServer", nodeName(1));
        }
        text("primaryServer", nodeName(0), true);
        out_ += "},\n\"daemonState\": \"active\",\n";
    }

    void writeNodes() {
        out_ += "\"nodes\": [\n";
        for (unsigned i = 0; i < o_.nodes; ++i) {
            out_ += "{";
            text("name", nodeName(i));
            text("ipAddr", nodeAddress(i));
            // The cluster's servers stay up, so a model always has a manager.
            const bool down = i > 1 && pick(64) == 0;
            text("status", down ? "down" : "up");
            text("healthy", down ? "failed" : "healthy");
            text("version", "5.1.9.0");
            text("type", i == 0 ? "quorum-manager" : i < 3 ? "quorum" : "client");
            text("admin", i == 0 ? "yes" : "no");
            static const char* const PAGE_POOLS[] = {"1G", "2G", "4G", "8G"};
            text("pagePool", PAGE_POOLS[pick(4)]);
            out_ += "\"diskAccess\": [";
            writeDiskAccess(i);
            out_ += i + 1 < o_.nodes ? "]},\n" : "]}\n";
        }
        out_ += "],\n";
    }

    void writeDiskAccess(unsigned node) {
        const unsigned count = o_.accessAll ? allDisks_ : o_.accessPerNode;
        const unsigned start = o_.accessAll ? 0 : pick(allDisks_);
        for (unsigned k = 0; k < count; ++k) {
            const unsigned g = (start + k) % allDisks_;
            out_ += k == 0 ? "\n {" : ",\n {";
            text("diskName", diskName(g));
            if (o_.serversPerDisk == 0 || servesDisk(node, g)) {
                out_ += "\"localAccess\": true, ";
                text("localDeviceName", "/dev/dm-" + std::to_string(k), true);
            } else {
                out_ += "\"localAccess\": false, ";
                text("serverName", nodeName(serverBase_[g]), true);
            }
            out_ += "}";
        }
    }

    void writeUsersAndGroups() {
        out_ += "\"users\": [\n";
        for (unsigned u = 0; u < o_.users; ++u) {
            out_ += "{";
            text("name", userName(u));
            number("uid", 10000 + u);
            if (o_.groups > 0) {
                number("gid", 5000 + u % o_.groups);
            } else {
                number("gid", 100);
            }
            text("homePath", "/home/" + userName(u), true);
            out_ += u + 1 < o_.users ? "},\n" : "}\n";
        }
        out_ += "],\n\"groups\": [\n";
        for (unsigned g = 0; g < o_.groups; ++g) {
            out_ += "{";
            text("name", groupName(g));
            number("gid", 5000 + g, true);
            out_ += g + 1 < o_.groups ? "},\n" : "}\n";
        }
        out_ += "],\n";
    }

    void writeDisk(unsigned g, bool free) {
        static const unsigned long long TIB = 1ULL << 40;
        const unsigned long long total = TIB << pick(4);
        const unsigned long long fullBlockFree = total / 100 * (5 + pick(90));
        out_ += "{";
        text("name", diskName(g));
        text("status", pick(100) == 0 ? "suspended" : "ready");
        text("availability", "OK");
        const bool metadata = !free && (g / o_.disksPerPool) % o_.poolsPerFilesystem == 0;
        text("metadata", metadata ? "yes" : "no");
        text("data", "yes");
        text("failureGroup", std::to_string(g % 4 + 1));
        if (free) {
            text("poolName", "data1");
        }
        number("totalSpace", total);
        number("fullBlockFreeSpace", fullBlockFree);
        number("subBlockFreeSpace", total / 1000);
        out_ += "\"servers\": [";
        if (o_.serversPerDisk > 0) {
            out_ += "\"" + nodeName(serverBase_[g]) + "\"";
        }
        out_ += "], \"backupServers\": [";
        for (unsigned s = 1; s < o_.serversPerDisk; ++s) {
            out_ += (s > 1 ? ", \"" : "\"") + nodeName((serverBase_[g] + s) % o_.nodes) + "\"";
        }
        out_ += "]}";
    }

    void writeFilesystem(unsigned f) {
        const std::string name = "fs" + std::to_string(f + 1);
        const std::string mountPoint = "/gen/" + name;
        out_ += "{";
        text("name", name);
        text("mountPoint", mountPoint);
        text("defaultMountPoint", mountPoint);
        text("managerNode", nodeName(f % o_.nodes));
        out_ += "\"mountedNodes\": [";
        for (unsigned i = 0; i < o_.nodes; ++i) {
            out_ += (i ? ", \"" : "\"") + nodeName(i) + "\"";
        }
        out_ += "],\n\"pools\": [\n";
        for (unsigned p = 0; p < o_.poolsPerFilesystem; ++p) {
            out_ += "{";
            text("name", poolName(p));
            out_ += "\"disks\": [\n";
            for (unsigned d = 0; d < o_.disksPerPool; ++d) {
                const unsigned g = (f * o_.poolsPerFilesystem + p) * o_.disksPerPool + d;
                writeDisk(g, false);
                out_ += d + 1 < o_.disksPerPool ? ",\n" : "\n";
            }
            out_ += p + 1 < o_.poolsPerFilesystem ? "]},\n" : "]}\n";
        }
        out_ += "],\n\"filesets\": [\n";
        for (unsigned j = 0; j < o_.filesetsPerFilesystem; ++j) {
            writeFileset(mountPoint, j);
            out_ += j + 1 < o_.filesetsPerFilesystem ? ",\n" : "\n";
        }
        out_ += "],\n\"quotas\": [\n";
        writeQuotas();
        out_ += "]}";
    }

    void writeFileset(const std::string& mountPoint, unsigned j) {
        const std::string name = filesetName(j);
        out_ += "{";
        text("name", name);
        // One in sixteen is created but not linked.
        if (pick(16) != 0) {
            text("path", mountPoint + "/" + name);
        }
        text("comment", "generated fileset " + std::to_string(j + 1));
        number("inodes", 1 + pick(1000000));
        number("dataKB", pick(1u << 30));
        if (o_.users > 0) {
            text("owner", userName(j % o_.users));
        }
        if (o_.groups > 0) {
            text("group", groupName(j % o_.groups));
        }
        text("created", "20240301091500.000000+000", true);
        out_ += "}";
    }

    // Users, groups and filesets in turn, each entity at most once: a
    // second entry for the same entity would only shadow the first.
    void writeQuotas() {
        const unsigned users = o_.users - duplicatesOf(o_.users, o_.duplicateNames);
        const unsigned groups = o_.groups - duplicatesOf(o_.groups, o_.duplicateNames);
        unsigned next[3] = {0, 0, 0};
        const unsigned limit[3] = {users, groups, o_.filesetsPerFilesystem};
        static const char* const TYPES[3] = {"user", "group", "fileset"};
        unsigned type = 0;
        for (unsigned q = 0; q < o_.quotasPerFilesystem; ++q) {
            while (next[type] >= limit[type]) {
                type = (type + 1) % 3;
            }
            const unsigned entity = next[type]++;
            const unsigned long long blockLimit = (1ULL << 20) << pick(8);
            out_ += "{";
            text("type", TYPES[type]);
            text("entityName", type == 0   ? userName(entity)
                               : type == 1 ? groupName(entity)
                                           : filesetName(entity));
            number("blockUsage", pick(static_cast<unsigned>(blockLimit >> 10)) * 1024ULL);
            number("blockQuota", blockLimit / 10 * 9);
            number("blockLimit", blockLimit);
            number("filesUsage", pick(100000));
            number("filesQuota", 90000);
            number("filesLimit", 100000, true);
            out_ += q + 1 < o_.quotasPerFilesystem ? "},\n" : "}\n";
            type = (type + 1) % 3;
        }
    }

    const GeneratorOptions& o_;
    const std::function<void(const char*)>& progress_;
    // The engine's output sequence is fixed by the standard; the library's
    // distributions are not, so only the raw output is used.
    std::mt19937_64 random_;
    std::string out_;
    unsigned poolDisks_ = 0;
    unsigned allDisks_ = 0;
    std::vector<unsigned> serverBase_;
};

} // namespace

bool applySizePreset(const std::string& size, GeneratorOptions* options) {
    for (const SizePreset& p : SIZE_PRESETS) {
        if (size == p.name) {
            options->nodes = p.nodes;
            options->filesystems = p.filesystems;
            options->poolsPerFilesystem = p.pools;
            options->disksPerPool = p.disksPerPool;
            options->filesetsPerFilesystem = p.filesets;
            options->accessAll = p.access == 0;
            options->accessPerNode = p.access;
            options->users = p.users;
            options->groups = p.groups;
            options->quotasPerFilesystem = p.quotas;
            return true;
        }
    }
    return false;
}

GeneratedCounts countsOf(const GeneratorOptions& o) {
    GeneratedCounts c{};
    c.nodes = o.nodes;
    c.filesystems = o.filesystems;
    c.pools = static_cast<unsigned long long>(o.filesystems) * o.poolsPerFilesystem;
    c.disks = c.pools * o.disksPerPool;
    c.freeDisks = o.freeDisks;
    c.accessRecords = static_cast<unsigned long long>(o.nodes) *
                      (o.accessAll ? c.disks + c.freeDisks : o.accessPerNode);
    c.filesets = static_cast<unsigned long long>(o.filesystems) * (o.filesetsPerFilesystem + 1);
    c.users = o.users;
    c.groups = o.groups;
    c.quotas = static_cast<unsigned long long>(o.filesystems) * o.quotasPerFilesystem;
    return c;
}

std::string checkGeneratorOptions(const GeneratorOptions& o) {
    // Node addresses are 10.x.y.z with x.y.z the node's number.
    if (o.nodes == 0 || o.nodes >= (1u << 24)) {
        return "the number of nodes must be between 1 and 16777215";
    }
    const GeneratedCounts c = countsOf(o);
    if (c.disks + c.freeDisks > 0xffffffffULL || c.accessRecords > 0xffffffffULL ||
        c.filesets > 0xffffffffULL) {
        return "the model would have more than 4294967295 disks, access records or filesets";
    }
    if (o.serversPerDisk > o.nodes) {
        return "servers per disk (" + std::to_string(o.serversPerDisk) +
               ") cannot exceed the number of nodes (" + std::to_string(o.nodes) + ")";
    }
    if (!o.accessAll && o.accessPerNode > c.disks + c.freeDisks) {
        return "disk-access records per node (" + std::to_string(o.accessPerNode) +
               ") cannot exceed the number of disks (" + std::to_string(c.disks + c.freeDisks) +
               "); use \"all\" for every disk";
    }
    const unsigned entities = o.users - duplicatesOf(o.users, o.duplicateNames) + o.groups -
                              duplicatesOf(o.groups, o.duplicateNames) + o.filesetsPerFilesystem;
    if (o.quotasPerFilesystem > entities) {
        return "quota entries per file system (" + std::to_string(o.quotasPerFilesystem) +
               ") cannot exceed the users, groups and filesets they are for (" +
               std::to_string(entities) + ")";
    }
    return std::string();
}

std::string generateModel(const GeneratorOptions& options,
                          const std::function<void(const char* section)>& progress) {
    return Writer(options, progress).write();
}
