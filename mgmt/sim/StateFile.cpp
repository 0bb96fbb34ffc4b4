#include "StateFile.h"

#include "QuotaKind.h"

#include <qzantras/ts_log.h>

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace qzsim {

namespace {

// Ordered, so that the state file keeps the members in the order of the
// document it came from and stays readable beside it.
using Document = nlohmann::ordered_json;

Document filesetMembers(const SimFileset& set) {
    const FileSet& r = set.record;
    Document f = Document::object();
    f["name"] = r.name;
    f["id"] = std::strtoull(r.id, nullptr, 10);
    f["rootInode"] = r.rootInode;
    f["parentId"] = r.parentId;
    f["path"] = r.path;
    f["comment"] = r.comment;
    f["created"] = r.created;
    f["inodes"] = r.inodes;
    f["dataKB"] = r.dataKB;
    f["version"] = r.version;
    f["owner"] = set.owner;
    f["group"] = set.group;
    f["acl"] = set.acl;
    return f;
}

Document quotaMembers(const Quota& q) {
    Document o = Document::object();
    o["type"] = qzsim::quotaKindName(q.type);
    o["entityName"] = q.entityName;
    o["header"] = q.header;
    o["version"] = q.version;
    o["blockUsage"] = q.blockUsage;
    o["blockQuota"] = q.blockQuota;
    o["blockLimit"] = q.blockLimit;
    o["blockInDoubt"] = q.blockInDoubt;
    o["filesUsage"] = q.filesUsage;
    o["filesQuota"] = q.filesQuota;
    o["filesLimit"] = q.filesLimit;
    o["filesInDoubt"] = q.filesInDoubt;
    o["blockGrace"] = q.blockGrace;
    o["filesGrace"] = q.filesGrace;
    o["remarks"] = q.remarks;
    return o;
}

// The settings qzchconfig changes, under their model-file names.
void writeNodeSettings(const NodeInfoData& n, Document& o) {
    o["pagePool"] = n.pagePool;
    o["prefetchThreads"] = n.prefetchThreads;
    o["maxMbps"] = n.maxMbps;
    o["maxFilesToCache"] = n.maxFilesToCache;
    o["maxStatCache"] = n.maxStatCache;
    o["worker1Threads"] = n.worker1Threads;
    o["dmapiEventTimeout"] = n.dmapiEventTimeout;
    o["dmapiMountTimeout"] = n.dmapiMountTimeout;
    o["dmapiSessFailureTimeout"] = n.dmapiSessFailureTimeout;
    o["nsdServerWaitTimeWindowOnMount"] = n.nsdServerWaitTimeWindowOnMount;
    o["nsdServerWaitTimeForMount"] = n.nsdServerWaitTimeForMount;
    o["unmountOnDiskFail"] = n.unmountOnDiskFail;
}

std::string systemError(const std::string& what, const std::string& path) {
    return path + ": " + what + ": " + std::strerror(errno);
}

bool writeAll(int fd, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

std::string directoryOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

std::string stateFilePath() {
    const char* path = std::getenv("QZSIM_STATE_FILE");
    return path != nullptr ? path : "";
}

std::string stateText(const std::string& base, const ClusterModel& model) {
    Document doc = Document::parse(base);
    doc["cluster"]["failureDetectionTime"] = model.header.failureDetectionTime;
    if (doc.contains("nodes")) {
        for (Document& node : doc["nodes"]) {
            for (const SimNode& n : model.nodes) {
                if (node["name"] == std::string(n.info.name)) {
                    writeNodeSettings(n.info, node);
                }
            }
        }
    }
    if (doc.contains("filesystems")) {
        for (Document& fs : doc["filesystems"]) {
            for (const SimFilesystem& f : model.filesystems) {
                if (fs["name"] != std::string(f.info.name)) {
                    continue;
                }
                Document filesets = Document::array();
                for (const SimFileset& set : f.filesets) {
                    filesets.push_back(filesetMembers(set));
                }
                fs["filesets"] = filesets;
                Document quotas = Document::array();
                for (const Quota& q : f.quotas) {
                    quotas.push_back(quotaMembers(q));
                }
                fs["quotas"] = quotas;
            }
        }
    }
    return doc.dump(2) + "\n";
}

bool writeFileAtomically(const std::string& path, const std::string& text, std::string* error) {
    // One writer per state file: the temporary name is fixed, so a crash
    // leaves at most one stale temporary, overwritten by the next write.
    const std::string temporary = path + ".tmp";
    int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        *error = systemError("cannot create", temporary);
        return false;
    }
    if (!writeAll(fd, text) || ::fsync(fd) != 0) {
        *error = systemError("cannot write", temporary);
        ::close(fd);
        ::unlink(temporary.c_str());
        return false;
    }
    if (::close(fd) != 0) {
        *error = systemError("cannot write", temporary);
        ::unlink(temporary.c_str());
        return false;
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        *error = systemError("cannot replace", path);
        ::unlink(temporary.c_str());
        return false;
    }
    // The rename itself is only durable once the directory is on disk.
    const std::string directory = directoryOf(path);
    // The new content is in place whatever happens now, so a failure here
    // is reported but does not fail the write.
    int dir = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir < 0 || ::fsync(dir) != 0) {
        ts_log(1, "qzsim::writeFileAtomically", "%s\n",
               systemError("cannot flush", directory).c_str());
    }
    if (dir >= 0) {
        ::close(dir);
    }
    return true;
}

} // namespace qzsim
