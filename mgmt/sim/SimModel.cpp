#include "SimModel.h"

#include <cstdlib>

namespace qzsim {

namespace {

bool parseId(const std::string& text, unsigned int* id) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    unsigned long value = std::strtoul(text.c_str(), &end, 10);
    if (*end != '\0') {
        return false;
    }
    *id = static_cast<unsigned int>(value);
    return true;
}

} // namespace

SimNode* ClusterModel::findNode(const std::string& name) {
    for (SimNode& node : nodes) {
        if (name == node.info.name) {
            return &node;
        }
    }
    return nullptr;
}

SimFilesystem* ClusterModel::findFilesystem(const std::string& nameOrMountPoint) {
    if (nameOrMountPoint.empty()) {
        return nullptr;
    }
    for (SimFilesystem& fs : filesystems) {
        if (nameOrMountPoint == fs.info.name) {
            return &fs;
        }
    }
    for (SimFilesystem& fs : filesystems) {
        if (!fs.mountPoint.empty() && nameOrMountPoint == fs.mountPoint) {
            return &fs;
        }
    }
    return nullptr;
}

SimDisk* ClusterModel::findDisk(const std::string& name) {
    for (SimFilesystem& fs : filesystems) {
        for (SimPool& pool : fs.pools) {
            for (SimDisk& disk : pool.disks) {
                if (name == disk.info.name) {
                    return &disk;
                }
            }
        }
    }
    for (SimDisk& disk : freeDisks) {
        if (name == disk.info.name) {
            return &disk;
        }
    }
    return nullptr;
}

const SimUser* ClusterModel::findUser(const std::string& nameOrId) const {
    for (const SimUser& user : users) {
        if (user.name == nameOrId) {
            return &user;
        }
    }
    unsigned int id = 0;
    if (parseId(nameOrId, &id)) {
        for (const SimUser& user : users) {
            if (user.uid == id) {
                return &user;
            }
        }
    }
    return nullptr;
}

const SimGroup* ClusterModel::findGroup(const std::string& nameOrId) const {
    for (const SimGroup& group : groups) {
        if (group.name == nameOrId) {
            return &group;
        }
    }
    unsigned int id = 0;
    if (parseId(nameOrId, &id)) {
        for (const SimGroup& group : groups) {
            if (group.gid == id) {
                return &group;
            }
        }
    }
    return nullptr;
}

double ClusterModel::jitter() {
    randomState = randomState * 1103515245u + 12345u;
    return 0.5 + static_cast<double>((randomState >> 8) % 1000) / 1000.0;
}

SimFileset* findFileset(SimFilesystem& fs, const std::string& name) {
    for (SimFileset& fileset : fs.filesets) {
        if (name == fileset.record.name) {
            return &fileset;
        }
    }
    return nullptr;
}

SimFileset* findFilesetByJunction(SimFilesystem& fs, const std::string& path) {
    if (path.empty()) {
        return nullptr;
    }
    for (SimFileset& fileset : fs.filesets) {
        if (fileset.record.linked && path == fileset.record.path) {
            return &fileset;
        }
    }
    return nullptr;
}

} // namespace qzsim
