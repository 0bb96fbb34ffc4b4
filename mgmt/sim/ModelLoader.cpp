// Reading a cluster model from JSON. Plain values are copied into the
// record-shaped model; cross references (nodes named by file systems, disks
// named by access records, quota entities) are checked once everything is
// read.

#include "ModelLoader.h"

#include "JsonReader.h"
#include "SizeText.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace qzsim {

using nlohmann::json;

namespace {

std::string indexPath(const std::string& arrayPath, std::size_t index) {
    return arrayPath + "/" + std::to_string(index);
}

void readCounters(JsonObject& owner, const char* key, FsPerfCounters* c) {
    const json* value = owner.find(key);
    if (value == nullptr) {
        return;
    }
    JsonObject o(*value, owner.memberPath(key));
    c->bytesRead = o.u64("bytesRead", c->bytesRead);
    c->bytesCache = o.u64("bytesCache", c->bytesCache);
    c->bytesWritten = o.u64("bytesWritten", c->bytesWritten);
    c->reads = o.u32("reads", c->reads);
    c->caches = o.u32("caches", c->caches);
    c->writes = o.u32("writes", c->writes);
    c->openCalls = o.u32("openCalls", c->openCalls);
    c->closeCalls = o.u32("closeCalls", c->closeCalls);
    c->readCalls = o.u32("readCalls", c->readCalls);
    c->writeCalls = o.u32("writeCalls", c->writeCalls);
    c->readdirCalls = o.u32("readdirCalls", c->readdirCalls);
    c->inodesWritten = o.u32("inodesWritten", c->inodesWritten);
    c->inodesRead = o.u32("inodesRead", c->inodesRead);
    c->inodesDeleted = o.u32("inodesDeleted", c->inodesDeleted);
    c->inodesCreated = o.u32("inodesCreated", c->inodesCreated);
    c->statCacheHit = o.u32("statCacheHit", c->statCacheHit);
    c->statCacheMiss = o.u32("statCacheMiss", c->statCacheMiss);
    o.finish();
}

FsPerfCounters defaultFsRates() {
    FsPerfCounters r;
    r.bytesRead = 8ULL << 20;
    r.bytesCache = 2ULL << 20;
    r.bytesWritten = 4ULL << 20;
    r.reads = 120;
    r.caches = 40;
    r.writes = 60;
    r.openCalls = 30;
    r.closeCalls = 30;
    r.readCalls = 150;
    r.writeCalls = 80;
    r.readdirCalls = 5;
    r.inodesWritten = 10;
    r.inodesRead = 25;
    r.inodesDeleted = 2;
    r.inodesCreated = 4;
    r.statCacheHit = 90;
    r.statCacheMiss = 9;
    return r;
}

std::vector<std::string> nameList(JsonObject& owner, const char* key) {
    std::vector<std::string> names;
    const json& list = owner.array(key);
    std::string path = owner.memberPath(key);
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (!list[i].is_string()) {
            throw ModelError(indexPath(path, i), wrongType("a node name", list[i]));
        }
        names.push_back(list[i].get<std::string>());
    }
    return names;
}

class Loader {
public:
    explicit Loader(ClusterModel* model) : m_(*model) {}

    void load(const json& root) {
        JsonObject top(root, "");
        readCluster(top);
        readDaemonState(top);
        readNodes(top);
        readUsersAndGroups(top);
        readFilesystems(top);
        readFreeDisks(top);
        readFaults(top);
        top.finish();
        checkReferences();
    }

private:
    void readCluster(JsonObject& top) {
        JsonObject c(top.require("cluster"), "/cluster");
        ClusterInfoData& h = m_.header;
        c.requiredText("clusterName", h.clusterName);
        c.text("clusterId", h.clusterId);
        c.text("minReleaseLevel", h.minReleaseLevel);
        c.text("uidDomain", h.uidDomain);
        c.text("remoteShellCommand", h.remoteShellCommand, "/usr/bin/ssh");
        c.text("remoteFileCopyCommand", h.remoteFileCopyCommand, "/usr/bin/scp");
        c.text("primaryServer", h.primaryServer);
        c.text("secondaryServer", h.secondaryServer);
        h.maxBlockSize = c.u32("maxBlockSize", 4u << 20);
        h.distributeTokenServer = c.u32("distributeTokenServer", 0);
        h.failureDetectionTime = c.u32("failureDetectionTime", 35);
        h.tcpPort = c.u32("tcpPort", 1191);
        c.finish();
    }

    void readDaemonState(JsonObject& top) {
        const json* v = top.find("daemonState");
        if (v == nullptr) {
            return;
        }
        static const std::map<std::string, int> names = {{"active", MGMT_DAEMON_ACTIVE},
                                                         {"down", MGMT_DAEMON_DOWN},
                                                         {"arbitrating", MGMT_DAEMON_ARBITRATING},
                                                         {"unknown", MGMT_DAEMON_UNKNOWN}};
        if (v->is_string()) {
            auto it = names.find(v->get<std::string>());
            if (it == names.end()) {
                throw ModelError("/daemonState", "unknown daemon state \"" + v->get<std::string>() +
                                                     "\" (active, down, arbitrating, unknown)");
            }
            m_.daemonState = it->second;
            return;
        }
        m_.daemonState = static_cast<int>(toU64(*v, "/daemonState"));
    }

    void readNodes(JsonObject& top) {
        const json& list = top.array("nodes");
        for (std::size_t i = 0; i < list.size(); ++i) {
            std::string path = indexPath("/nodes", i);
            JsonObject o(list[i], path);
            SimNode node;
            NodeInfoData& n = node.info;
            o.requiredText("name", n.name);
            if (!nodeIndex_.emplace(n.name, m_.nodes.size()).second) {
                throw ModelError(o.memberPath("name"),
                                 std::string("duplicate node name \"") + n.name + "\"");
            }
            o.requiredText("ipAddr", n.ipAddr);
            o.text("platform", n.platform, "x86_64-linux");
            o.text("status", n.status, "up");
            o.text("version", n.version);
            o.text("type", n.type, "client");
            o.text("admin", n.admin, "no");
            o.text("healthy", n.healthy, "healthy");
            o.text("diagnosis", n.diagnosis);
            o.text("unmountOnDiskFail", n.unmountOnDiskFail, "no");
            n.failureCount = o.u32("failureCount");
            n.threadWait = o.u32("threadWait");
            n.pagePool = readSize(o, "pagePool", 1ULL << 30);
            n.prefetchThreads = o.u32("prefetchThreads", 72);
            n.maxMbps = o.u32("maxMbps", 2048);
            n.maxFilesToCache = o.u32("maxFilesToCache", 4000);
            n.maxStatCache = o.u32("maxStatCache", 1000);
            n.worker1Threads = o.u32("worker1Threads", 48);
            n.dmapiEventTimeout = o.u32("dmapiEventTimeout", 86400000);
            n.dmapiMountTimeout = o.u32("dmapiMountTimeout", 60);
            n.dmapiSessFailureTimeout = o.u32("dmapiSessFailureTimeout", 0);
            n.nsdServerWaitTimeWindowOnMount = o.u32("nsdServerWaitTimeWindowOnMount", 600);
            n.nsdServerWaitTimeForMount = o.u32("nsdServerWaitTimeForMount", 300);
            const json& access = o.array("diskAccess");
            for (std::size_t k = 0; k < access.size(); ++k) {
                std::string apath = indexPath(o.memberPath("diskAccess"), k);
                JsonObject a(access[k], apath);
                DiskAccessInfo info;
                a.requiredText("diskName", info.diskName);
                info.localAccess = a.boolean("localAccess", false) ? 1u : 0u;
                a.text("localDeviceName", info.localDeviceName);
                a.text("serverName", info.serverName);
                if (info.localAccess == 0 && info.serverName[0] == '\0') {
                    throw ModelError(apath, "remote access without \"serverName\"");
                }
                a.finish();
                accessPaths_.push_back({apath, m_.nodes.size(), node.access.size()});
                node.access.push_back(info);
            }
            o.finish();
            m_.nodes.push_back(std::move(node));
        }
    }

    unsigned long long readSize(JsonObject& o, const char* key, unsigned long long fallback) {
        const json* v = o.find(key);
        if (v == nullptr) {
            return fallback;
        }
        if (v->is_string()) {
            unsigned long long bytes = 0;
            if (!parseSize(v->get<std::string>(), &bytes)) {
                throw ModelError(o.memberPath(key), "size \"" + v->get<std::string>() +
                                                        "\" is not a number with an "
                                                        "optional K, M, G or T");
            }
            return bytes;
        }
        return toU64(*v, o.memberPath(key));
    }

    void readUsersAndGroups(JsonObject& top) {
        const json& users = top.array("users");
        for (std::size_t i = 0; i < users.size(); ++i) {
            JsonObject o(users[i], indexPath("/users", i));
            SimUser u;
            u.name = o.requiredString("name");
            checkLength(o, "name", u.name);
            const json& uid = o.require("uid");
            u.uid = static_cast<unsigned int>(toU64(uid, o.memberPath("uid")));
            const json* gid = o.find("gid");
            u.home = o.string("homePath");
            checkLength(o, "homePath", u.home);
            if (gid != nullptr) {
                u.gid = static_cast<unsigned int>(toU64(*gid, o.memberPath("gid")));
            }
            u.detailsKnown = gid != nullptr && !u.home.empty();
            o.finish();
            m_.users.push_back(u);
        }
        const json& groups = top.array("groups");
        for (std::size_t i = 0; i < groups.size(); ++i) {
            JsonObject o(groups[i], indexPath("/groups", i));
            SimGroup g;
            g.name = o.requiredString("name");
            checkLength(o, "name", g.name);
            g.gid = static_cast<unsigned int>(toU64(o.require("gid"), o.memberPath("gid")));
            o.finish();
            m_.groups.push_back(g);
        }
    }

    static void checkLength(const JsonObject& o, const char* key, const std::string& text) {
        if (text.size() >= static_cast<std::size_t>(MGMT_TEXT_LEN)) {
            throw ModelError(o.memberPath(key), "text too long (" + std::to_string(text.size()) +
                                                    " bytes, at most " +
                                                    std::to_string(MGMT_TEXT_LEN - 1) + ")");
        }
    }

    SimDisk readDisk(const json& value, const std::string& path, bool free) {
        JsonObject o(value, path);
        SimDisk disk;
        DiskInfoData& d = disk.info;
        o.requiredText("name", d.name);
        if (!diskNames_.insert(d.name).second) {
            throw ModelError(o.memberPath("name"),
                             std::string("duplicate disk name \"") + d.name + "\"");
        }
        o.text("status", d.status, "ready");
        o.text("availability", d.availability, "OK");
        o.text("metadata", d.metadata, "yes");
        o.text("data", d.data, "yes");
        o.text("failureGroup", d.failureGroup, "1");
        o.text("volumeId", d.volumeId);
        if (free) {
            o.text("poolName", d.poolName, "system");
            d.freeDisk = 1;
        }
        d.totalSpace = o.u64("totalSpace");
        d.fullBlockFreeSpace = o.u64("fullBlockFreeSpace", d.totalSpace);
        d.subBlockFreeSpace = o.u64("subBlockFreeSpace");
        if (d.fullBlockFreeSpace + d.subBlockFreeSpace > d.totalSpace) {
            throw ModelError(path, "free space above total space");
        }
        for (const std::string& s : nameList(o, "servers")) {
            serverRefs_.push_back({o.memberPath("servers"), s});
            DiskServerInfo info;
            std::snprintf(info.name, sizeof info.name, "%s", s.c_str());
            disk.servers.push_back(info);
        }
        for (const std::string& s : nameList(o, "backupServers")) {
            serverRefs_.push_back({o.memberPath("backupServers"), s});
            DiskServerInfo info;
            std::snprintf(info.name, sizeof info.name, "%s", s.c_str());
            disk.backupServers.push_back(info);
        }
        if (const json* perf = o.find("perf")) {
            JsonObject p(*perf, o.memberPath("perf"));
            d.nodePerfCount = p.u32("nodePerfCount");
            d.readOps = p.u32("readOps");
            d.writeOps = p.u32("writeOps");
            d.bytesRead = p.u64("bytesRead");
            d.bytesWritten = p.u64("bytesWritten");
            d.readTime = p.real("readTime");
            d.writeTime = p.real("writeTime");
            d.longestReadTime = p.real("longestReadTime");
            d.longestWriteTime = p.real("longestWriteTime");
            d.shortestReadTime = p.real("shortestReadTime");
            d.shortestWriteTime = p.real("shortestWriteTime");
            p.finish();
        }
        if (const json* rates = o.find("rates")) {
            JsonObject r(*rates, o.memberPath("rates"));
            DiskPerfRates& dr = disk.rates;
            dr.readOps = r.u32("readOps", dr.readOps);
            dr.writeOps = r.u32("writeOps", dr.writeOps);
            dr.bytesRead = r.u64("bytesRead", dr.bytesRead);
            dr.bytesWritten = r.u64("bytesWritten", dr.bytesWritten);
            dr.readTime = r.real("readTime", dr.readTime);
            dr.writeTime = r.real("writeTime", dr.writeTime);
            r.finish();
        }
        o.finish();
        return disk;
    }

    void readFilesystems(JsonObject& top) {
        const json& list = top.array("filesystems");
        for (std::size_t i = 0; i < list.size(); ++i) {
            std::string path = indexPath("/filesystems", i);
            JsonObject o(list[i], path);
            SimFilesystem fs;
            FilesystemData& f = fs.info;
            o.requiredText("name", f.name);
            for (const SimFilesystem& other : m_.filesystems) {
                if (std::strcmp(other.info.name, f.name) == 0) {
                    throw ModelError(o.memberPath("name"),
                                     std::string("duplicate file system name \"") + f.name + "\"");
                }
            }
            o.text("status", f.status, "recovered");
            o.text("xstatus", f.xstatus);
            o.text("blockAllocationType", f.blockAllocationType, "cluster");
            o.text("fileLockingSemantics", f.fileLockingSemantics, "nfs4");
            o.text("aclSemantics", f.aclSemantics, "all");
            o.text("quotaEnforced", f.quotaEnforced, "user;group;fileset");
            o.text("defaultQuotasEnabled", f.defaultQuotasEnabled, "none");
            o.text("fsVersion", f.fsVersion, "27.00");
            o.text("largeLunSupport", f.largeLunSupport, "yes");
            o.text("dmapiEnabled", f.dmapiEnabled, "no");
            o.text("exactMtime", f.exactMtime, "yes");
            o.text("suppressAtime", f.suppressAtime, "relatime");
            o.text("automaticMountOption", f.automaticMountOption, "yes");
            o.text("additionalMountOptions", f.additionalMountOptions, "none");
            o.text("defaultMountPoint", f.defaultMountPoint);
            fs.mountPoint = o.string("mountPoint");
            checkLength(o, "mountPoint", fs.mountPoint);
            fs.manager = o.string("managerNode");
            if (!fs.manager.empty()) {
                nodeRefs_.push_back({o.memberPath("managerNode"), fs.manager});
            }
            fs.mountedOn = nameList(o, "mountedNodes");
            for (const std::string& n : fs.mountedOn) {
                nodeRefs_.push_back({o.memberPath("mountedNodes"), n});
            }

            const json& pools = o.array("pools");
            for (std::size_t p = 0; p < pools.size(); ++p) {
                fs.pools.push_back(readPool(pools[p], indexPath(o.memberPath("pools"), p)));
            }
            unsigned long long total = 0, free = 0;
            for (const SimPool& pool : fs.pools) {
                total += pool.info.totalSpace;
                free += pool.info.freeSpace;
            }
            f.totalSpace = o.u64("totalSpace", total);
            f.freeSpace = o.u64("freeSpace", free);
            f.totalInodes = o.u64("totalInodes", 1000000);
            f.freeInodes = o.u64("freeInodes", f.totalInodes / 2);
            f.minFragmentSize = o.u64("minFragmentSize", 8192);
            f.inodeSize = o.u64("inodeSize", 4096);
            f.indirectBlockSize = o.u64("indirectBlockSize", 32768);
            f.avgFileSize = o.u64("avgFileSize", 1048576);
            f.numNodes = o.u64("numNodes", 32);
            f.blockSize = o.u64("blockSize", 4194304);
            f.maxNumInodes = o.u64("maxNumInodes", f.totalInodes * 4);
            f.defaultMetadataReplicas = o.u32("defaultMetadataReplicas", 1);
            f.maxMetadataReplicas = o.u32("maxMetadataReplicas", 2);
            f.defaultDataReplicas = o.u32("defaultDataReplicas", 1);
            f.maxDataReplicas = o.u32("maxDataReplicas", 2);

            const json& policies = o.array("policies");
            for (std::size_t p = 0; p < policies.size(); ++p) {
                fs.policies.push_back(
                    readPolicy(policies[p], indexPath(o.memberPath("policies"), p), f.name));
            }
            readFilesets(o, &fs);
            readQuotas(o, &fs);
            readPerf(o, &fs);
            o.finish();
            m_.filesystems.push_back(std::move(fs));
        }
    }

    SimPool readPool(const json& value, const std::string& path) {
        JsonObject o(value, path);
        SimPool pool;
        o.requiredText("name", pool.info.name);
        const json& disks = o.array("disks");
        unsigned long long total = 0, free = 0;
        for (std::size_t k = 0; k < disks.size(); ++k) {
            SimDisk disk = readDisk(disks[k], indexPath(o.memberPath("disks"), k), false);
            std::snprintf(disk.info.poolName, sizeof disk.info.poolName, "%s", pool.info.name);
            total += disk.info.totalSpace;
            free += disk.info.fullBlockFreeSpace;
            pool.disks.push_back(disk);
        }
        pool.spaceGiven = o.find("totalSpace") != nullptr;
        pool.info.totalSpace = o.u64("totalSpace", total);
        pool.info.freeSpace = o.u64("freeSpace", pool.spaceGiven ? pool.info.totalSpace : free);
        if (pool.info.freeSpace > pool.info.totalSpace) {
            throw ModelError(path, "free space above total space");
        }
        o.finish();
        return pool;
    }

    SimPolicy readPolicy(const json& value, const std::string& path, const char* fsName) {
        JsonObject o(value, path);
        SimPolicy policy;
        o.requiredText("name", policy.info.name);
        o.text("installedBy", policy.info.installedBy, "root");
        o.text("installTime", policy.info.installTime);
        std::snprintf(policy.info.fsName, sizeof policy.info.fsName, "%s", fsName);
        const json& rules = o.array("rules");
        for (std::size_t r = 0; r < rules.size(); ++r) {
            std::string rpath = indexPath(o.memberPath("rules"), r);
            PolicyRule rule;
            if (rules[r].is_string()) {
                std::string text = rules[r].get<std::string>();
                if (text.size() >= sizeof rule.description) {
                    throw ModelError(rpath, "rule text too long");
                }
                std::snprintf(rule.description, sizeof rule.description, "%s", text.c_str());
                std::snprintf(rule.name, sizeof rule.name, "rule%zu", r + 1);
            } else {
                JsonObject ro(rules[r], rpath);
                ro.text("name", rule.name);
                ro.requiredText("description", rule.description);
                ro.finish();
            }
            policy.rules.push_back(rule);
        }
        o.finish();
        return policy;
    }

    void readFilesets(JsonObject& o, SimFilesystem* fs) {
        const json& list = o.array("filesets");
        std::set<unsigned long long> ids;
        // Names seen so far: a file system may hold tens of thousands of filesets.
        std::unordered_set<std::string> names;
        std::vector<std::pair<std::string, const json*>> entries;
        fs->filesets.reserve(list.size() + 1); // room for a root fileset made up below
        unsigned long long nextId = 1;
        for (std::size_t k = 0; k < list.size(); ++k) {
            std::string path = indexPath(o.memberPath("filesets"), k);
            JsonObject fo(list[k], path);
            SimFileset set;
            FileSet& r = set.record;
            fo.requiredText("name", r.name);
            if (!names.insert(r.name).second) {
                throw ModelError(fo.memberPath("name"),
                                 std::string("duplicate fileset name \"") + r.name + "\"");
            }
            std::snprintf(r.fsName, sizeof r.fsName, "%s", fs->info.name);
            bool isRoot = std::strcmp(r.name, "root") == 0;
            unsigned long long id = isRoot ? 0 : nextId;
            if (const json* v = fo.find("id")) {
                id = toU64(*v, fo.memberPath("id"));
            }
            if (!ids.insert(id).second) {
                throw ModelError(fo.memberPath("id"), "duplicate fileset id " + std::to_string(id));
            }
            if (id >= nextId) {
                nextId = id + 1;
            }
            std::snprintf(r.id, sizeof r.id, "%llu", id);
            fo.text("rootInode", r.rootInode, std::to_string(id * 65536 + 3).c_str());
            fo.text("parentId", r.parentId, isRoot ? "--" : "0");
            fo.text("path", r.path);
            r.linked = r.path[0] != '\0' ? 1 : 0;
            std::snprintf(r.status, sizeof r.status, "%s", r.linked ? "Linked" : "Unlinked");
            fo.text("comment", r.comment);
            fo.text("created", r.created, "20240101120000.000000+000");
            r.inodes = fo.u64("inodes", 1);
            r.dataKB = fo.u64("dataKB", 0);
            r.version = fo.u32("version", 1);
            set.owner = fo.string("owner", "root");
            set.group = fo.string("group", "root");
            set.acl = fo.string("acl");
            fo.finish();
            fs->filesets.push_back(std::move(set));
        }
        if (names.count("root") == 0 && ids.count(0) == 0) {
            SimFileset root;
            FileSet& r = root.record;
            std::snprintf(r.name, sizeof r.name, "root");
            std::snprintf(r.fsName, sizeof r.fsName, "%s", fs->info.name);
            std::snprintf(r.id, sizeof r.id, "0");
            std::snprintf(r.rootInode, sizeof r.rootInode, "3");
            std::snprintf(r.parentId, sizeof r.parentId, "--");
            std::snprintf(r.path, sizeof r.path, "%s", fs->mountPoint.c_str());
            r.linked = fs->mountPoint.empty() ? 0 : 1;
            std::snprintf(r.status, sizeof r.status, "%s", r.linked ? "Linked" : "Unlinked");
            std::snprintf(r.comment, sizeof r.comment, "root fileset");
            std::snprintf(r.created, sizeof r.created, "20240101120000.000000+000");
            r.version = 1;
            r.inodes = 3;
            root.owner = "root";
            root.group = "root";
            fs->filesets.insert(fs->filesets.begin(), root);
        }
    }

    void readQuotas(JsonObject& o, SimFilesystem* fs) {
        const json& list = o.array("quotas");
        for (std::size_t k = 0; k < list.size(); ++k) {
            std::string path = indexPath(o.memberPath("quotas"), k);
            JsonObject q(list[k], path);
            Quota quota;
            std::string type = q.requiredString("type");
            if (type == "user") {
                quota.type = MGMT_QUOTA_USER;
            } else if (type == "group") {
                quota.type = MGMT_QUOTA_GROUP;
            } else if (type == "fileset") {
                quota.type = MGMT_QUOTA_FILESET;
            } else {
                throw ModelError(q.memberPath("type"),
                                 "unknown quota type \"" + type + "\" (user, group, fileset)");
            }
            quota.entityName = q.requiredString("entityName");
            quota.fsName = fs->info.name;
            quota.header = q.u32("header", 1);
            quota.version = q.u32("version", 1);
            quota.blockUsage = q.u64("blockUsage");
            quota.blockQuota = q.u64("blockQuota");
            quota.blockLimit = q.u64("blockLimit");
            quota.blockInDoubt = q.u64("blockInDoubt");
            quota.filesUsage = q.u64("filesUsage");
            quota.filesQuota = q.u64("filesQuota");
            quota.filesLimit = q.u64("filesLimit");
            quota.filesInDoubt = q.u64("filesInDoubt");
            quota.blockGrace = q.string("blockGrace", "none");
            quota.filesGrace = q.string("filesGrace", "none");
            quota.remarks = q.string("remarks");
            q.finish();
            quotaRefs_.push_back({path, m_.filesystems.size(), fs->quotas.size()});
            fs->quotas.push_back(quota);
        }
    }

    void readPerf(JsonObject& o, SimFilesystem* fs) {
        const json* perf = o.find("perf");
        if (perf == nullptr) {
            return;
        }
        JsonObject p(*perf, o.memberPath("perf"));
        fs->writeD = p.u32("writeD");
        const json& nodes = p.array("nodes");
        for (std::size_t k = 0; k < nodes.size(); ++k) {
            std::string path = indexPath(p.memberPath("nodes"), k);
            JsonObject n(nodes[k], path);
            SimNodePerf np;
            np.node = n.requiredString("node");
            nodeRefs_.push_back({n.memberPath("node"), np.node});
            readCounters(n, "counters", &np.counters);
            np.rates = defaultFsRates();
            readCounters(n, "rates", &np.rates);
            n.finish();
            fs->nodePerf.push_back(np);
        }
        p.finish();
    }

    void readFreeDisks(JsonObject& top) {
        const json& list = top.array("freeDisks");
        for (std::size_t i = 0; i < list.size(); ++i) {
            m_.freeDisks.push_back(readDisk(list[i], indexPath("/freeDisks", i), true));
        }
    }

    void readFaults(JsonObject& top) {
        const json* faults = top.find("faults");
        if (faults == nullptr) {
            return;
        }
        expectType(*faults, "/faults", json::value_t::object, "an object");
        for (auto it = faults->begin(); it != faults->end(); ++it) {
            std::string path = "/faults/" + it.key();
            InjectedFault fault;
            fault.operation = it.key();
            if (it->is_number()) {
                fault.code = static_cast<int>(toU64(*it, path));
            } else {
                JsonObject f(*it, path);
                fault.code = static_cast<int>(toU64(f.require("code"), f.memberPath("code")));
                const json* times = f.find("times");
                if (times != nullptr && !(times->is_string() && *times == "always")) {
                    if (times->is_string()) {
                        throw ModelError(f.memberPath("times"), "expected a count or \"always\"");
                    }
                    fault.times = static_cast<int>(toU64(*times, f.memberPath("times")));
                }
                f.finish();
            }
            if (fault.code == 0) {
                throw ModelError(path, "fault code 0 would not fail anything");
            }
            m_.faults.push_back(fault);
        }
    }

    SimNode* node(const std::string& name) {
        const auto it = nodeIndex_.find(name);
        return it == nodeIndex_.end() ? nullptr : &m_.nodes[it->second];
    }

    void checkNode(const std::string& path, const std::string& name) {
        if (node(name) == nullptr) {
            throw ModelError(path, "unknown node \"" + name + "\"");
        }
    }

    void checkReferences() {
        if (m_.header.primaryServer[0] != '\0') {
            checkNode("/cluster/primaryServer", m_.header.primaryServer);
        }
        if (m_.header.secondaryServer[0] != '\0') {
            checkNode("/cluster/secondaryServer", m_.header.secondaryServer);
        }
        for (const auto& ref : nodeRefs_) {
            checkNode(ref.first, ref.second);
        }
        for (const auto& ref : serverRefs_) {
            checkNode(ref.first, ref.second);
        }
        fillServerAddresses();
        // Disks by name, built once: every node may list many access records.
        std::unordered_map<std::string, SimDisk*> disksByName;
        for (SimFilesystem& fs : m_.filesystems)
            for (SimPool& pool : fs.pools)
                for (SimDisk& d : pool.disks)
                    disksByName.emplace(d.info.name, &d);
        for (SimDisk& d : m_.freeDisks)
            disksByName.emplace(d.info.name, &d);
        for (const AccessRef& ref : accessPaths_) {
            const DiskAccessInfo& a = m_.nodes[ref.node].access[ref.entry];
            const auto named = disksByName.find(a.diskName);
            SimDisk* disk = named == disksByName.end() ? nullptr : named->second;
            if (disk == nullptr) {
                throw ModelError(ref.path + "/diskName",
                                 std::string("unknown disk \"") + a.diskName + "\"");
            }
            ++disk->accessCount;
            if (!a.localAccess) {
                checkNode(ref.path + "/serverName", a.serverName);
            }
        }
        // Filesets by name for each file system, built once for the quota entries.
        std::vector<std::unordered_map<std::string, SimFileset*>> filesetsByName(
            m_.filesystems.size());
        for (const AccessRef& ref : quotaRefs_) {
            SimFilesystem& fs = m_.filesystems[ref.node];
            Quota& q = fs.quotas[ref.entry];
            if (q.type == MGMT_QUOTA_USER) {
                const SimUser* u = m_.findUser(q.entityName);
                if (u == nullptr) {
                    throw ModelError(ref.path + "/entityName",
                                     "unknown user \"" + q.entityName + "\"");
                }
                q.id = u->uid;
            } else if (q.type == MGMT_QUOTA_GROUP) {
                const SimGroup* g = m_.findGroup(q.entityName);
                if (g == nullptr) {
                    throw ModelError(ref.path + "/entityName",
                                     "unknown group \"" + q.entityName + "\"");
                }
                q.id = g->gid;
            } else {
                auto& byName = filesetsByName[ref.node];
                if (byName.empty()) {
                    for (SimFileset& f : fs.filesets) {
                        byName.emplace(f.record.name, &f); // first of a name wins, as before
                    }
                }
                const auto named = byName.find(q.entityName);
                SimFileset* set = named == byName.end() ? nullptr : named->second;
                if (set == nullptr) {
                    throw ModelError(ref.path + "/entityName",
                                     "unknown fileset \"" + q.entityName + "\"");
                }
                q.id = static_cast<unsigned int>(std::strtoul(set->record.id, nullptr, 10));
            }
        }
    }

    void fillServerAddresses() {
        auto fill = [this](std::vector<DiskServerInfo>& servers) {
            for (DiskServerInfo& s : servers) {
                const SimNode* server = node(s.name);
                std::snprintf(s.ipAddr, sizeof s.ipAddr, "%s", server->info.ipAddr);
            }
        };
        for (SimFilesystem& fs : m_.filesystems) {
            for (SimPool& pool : fs.pools) {
                for (SimDisk& disk : pool.disks) {
                    fill(disk.servers);
                    fill(disk.backupServers);
                }
            }
        }
        for (SimDisk& disk : m_.freeDisks) {
            fill(disk.servers);
            fill(disk.backupServers);
        }
    }

    struct AccessRef {
        std::string path;
        std::size_t node;
        std::size_t entry;
    };

    ClusterModel& m_;
    // Node positions by name: access records and disk servers name nodes by the thousand.
    std::unordered_map<std::string, std::size_t> nodeIndex_;
    std::set<std::string> diskNames_;
    std::vector<std::pair<std::string, std::string>> nodeRefs_;
    std::vector<std::pair<std::string, std::string>> serverRefs_;
    std::vector<AccessRef> accessPaths_;
    std::vector<AccessRef> quotaRefs_;
};

// nlohmann reports a byte offset; people want a line and a column.
std::string parsePlace(const std::string& text, std::size_t byte) {
    std::size_t line = 1, column = 1;
    for (std::size_t i = 0; i + 1 < byte && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    return std::to_string(line) + ":" + std::to_string(column);
}

std::string parseProblem(const std::string& what) {
    // "[json.exception.parse_error.101] parse error at line 3, column 5: syntax error ..."
    std::size_t column = what.find("column ");
    std::size_t colon = what.find(": ", column == std::string::npos ? 0 : column);
    return colon == std::string::npos ? what : what.substr(colon + 2);
}

} // namespace

bool loadModel(const std::string& text, const std::string& source, ClusterModel* model,
               std::string* error) {
    json root;
    try {
        root = json::parse(text);
    } catch (const json::parse_error& e) {
        *error = source + ":" + parsePlace(text, e.byte) + ": " + parseProblem(e.what());
        return false;
    } catch (const json::exception& e) {
        std::string problem;
        const std::size_t byte = overflowPlace(text, e, &problem);
        *error = source + (byte == 0 ? "" : ":" + parsePlace(text, byte)) + ": " + problem;
        return false;
    }
    ClusterModel fresh;
    try {
        Loader(&fresh).load(root);
    } catch (const ModelError& e) {
        *error = source + ": " + e.path() + ": " + e.problem();
        return false;
    } catch (const json::exception& e) {
        *error = source + ": " + e.what();
        return false;
    }
    *model = std::move(fresh);
    return true;
}

bool readFileText(const std::string& path, std::string* text, std::string* error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        *error = path + ": cannot open: " + std::strerror(errno);
        return false;
    }
    std::ostringstream content;
    content << in.rdbuf();
    *text = content.str();
    return true;
}

} // namespace qzsim
