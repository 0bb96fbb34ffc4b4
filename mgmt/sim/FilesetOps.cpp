// Fileset queries and changes.

#include "OpScope.h"
#include "TextCopy.h"

#include <qzantras/PollingHandler.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <sys/time.h>

using namespace qzsim;

namespace {

// A new fileset name: 1 to 255 characters from [A-Za-z0-9_.-], not
// starting with '-' or '.'.
int checkNewName(OpScope& op, const std::string& name) {
    if (name.empty()) {
        return op.fail(MGMT_E_INVALID_ARG, "A fileset name is required.");
    }
    if (name.size() >= static_cast<std::size_t>(MGMT_TEXT_LEN)) {
        return op.fail(MGMT_E_NAME_TOO_LONG, "Fileset name is longer than %d characters.",
                       MGMT_TEXT_LEN - 1);
    }
    if (name[0] == '-' || name[0] == '.') {
        return op.fail(MGMT_E_INVALID_ARG, "Fileset name %s may not start with '%c'.", name.c_str(),
                       name[0]);
    }
    for (char c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '-' && c != '.') {
            return op.fail(MGMT_E_INVALID_ARG, "Fileset name %s contains the character '%c'.",
                           name.c_str(), c);
        }
    }
    return 0;
}

// The text of a record field filled by the caller; an unterminated field
// is a name that did not fit.
template <std::size_t N>
int readField(OpScope& op, const char (&field)[N], const char* what, std::string* out) {
    if (fieldOverflows(field)) {
        return op.fail(MGMT_E_NAME_TOO_LONG, "The %s is longer than %d characters.", what,
                       static_cast<int>(N) - 1);
    }
    *out = fieldText(field);
    return 0;
}

int findFilesystem(OpScope& op, const std::string& name, SimFilesystem** fs) {
    *fs = op.model().findFilesystem(name);
    if (*fs == nullptr) {
        return op.fail(MGMT_E_NO_FILESYSTEM, "File system %s not found.", name.c_str());
    }
    return 0;
}

std::string stripQuotes(const std::string& text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        return text.substr(1, text.size() - 2);
    }
    return text;
}

std::string cimNow() {
    struct timeval now;
    gettimeofday(&now, nullptr);
    struct tm utc;
    time_t seconds = now.tv_sec;
    gmtime_r(&seconds, &utc);
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d.%06ld+000", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                  static_cast<long>(now.tv_usec));
    return text;
}

void renameQuotas(SimFilesystem& fs, const std::string& from, const std::string& to) {
    for (Quota& quota : fs.quotas) {
        if (quota.type == MGMT_QUOTA_FILESET && quota.entityName == from) {
            quota.entityName = to;
        }
    }
}

void setLinked(SimFileset& set, const std::string& path) {
    copyText(set.record.path, path);
    set.record.linked = path.empty() ? 0 : 1;
    copyText(set.record.status, path.empty() ? "Unlinked" : "Linked");
}

} // namespace

int PollingHandler::getFileSets(const char* fsName, std::vector<FileSet*>* filesets) {
    OpScope op("getFileSets", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (fsName == nullptr || filesets == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No file system name or list.");
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    for (const SimFileset& set : fs->filesets) {
        filesets->push_back(new FileSet(set.record));
    }
    return MGMT_OK;
}

int PollingHandler::getFileSet(const char* fsName, const char* filesetName, FileSet* fileset) {
    OpScope op("getFileSet", nullptr);
    if (op.status() != 0) {
        return op.status();
    }
    if (fsName == nullptr || filesetName == nullptr || fileset == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "No file system name, fileset name or record.");
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    SimFileset* set = findFileset(*fs, filesetName);
    if (set == nullptr) {
        return op.fail(MGMT_E_NO_FILESET, "Fileset %s not found in file system %s.", filesetName,
                       fsName);
    }
    *fileset = set->record;
    return MGMT_OK;
}

int PollingHandler::createFileSet(FileSet fileset, std::string* message, bool noComment) {
    OpScope op("createFileSet", message);
    if (op.status() != 0) {
        return op.status();
    }
    std::string fsName, name, comment;
    if (int rc = readField(op, fileset.fsName, "file system name", &fsName)) {
        return rc;
    }
    if (int rc = readField(op, fileset.name, "fileset name", &name)) {
        return rc;
    }
    if (int rc = readField(op, fileset.comment, "comment", &comment)) {
        return rc;
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    if (int rc = checkNewName(op, name)) {
        return rc;
    }
    if (findFileset(*fs, name) != nullptr) {
        return op.fail(MGMT_E_FILESET_EXISTS, "Fileset %s already exists in file system %s.",
                       name.c_str(), fsName.c_str());
    }
    unsigned long nextId = 0;
    for (const SimFileset& other : fs->filesets) {
        nextId = std::max(nextId, std::strtoul(other.record.id, nullptr, 10) + 1);
    }
    SimFileset set;
    FileSet& r = set.record;
    copyText(r.name, name);
    copyText(r.fsName, fs->info.name);
    std::snprintf(r.id, sizeof r.id, "%lu", nextId);
    std::snprintf(r.rootInode, sizeof r.rootInode, "%lu", nextId * 65536 + 3);
    copyText(r.parentId, "0");
    copyText(r.comment, noComment ? std::string() : stripQuotes(comment));
    copyText(r.created, cimNow());
    r.version = 1;
    r.inodes = 1;
    setLinked(set, "");
    set.owner = "root";
    set.group = "root";
    op.beginChange();
    fs->filesets.push_back(set);
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Fileset %s created with id %lu root inode %s.", name.c_str(), nextId, r.rootInode);
    return MGMT_OK;
}

int PollingHandler::deleteFileSet(FileSet fileset, bool force, std::string* message) {
    OpScope op("deleteFileSet", message);
    if (op.status() != 0) {
        return op.status();
    }
    std::string fsName, name;
    if (int rc = readField(op, fileset.fsName, "file system name", &fsName)) {
        return rc;
    }
    if (int rc = readField(op, fileset.name, "fileset name", &name)) {
        return rc;
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    SimFileset* set = findFileset(*fs, name);
    if (set == nullptr) {
        return op.fail(MGMT_E_NO_FILESET, "Fileset %s not found in file system %s.", name.c_str(),
                       fsName.c_str());
    }
    if (std::strcmp(set->record.id, "0") == 0) {
        return op.fail(MGMT_E_ROOT_FILESET, "The root fileset cannot be deleted.");
    }
    if (set->record.linked && !force) {
        return op.fail(MGMT_E_FILESET_LINKED,
                       "Fileset %s is linked at %s; unlink it first or force the deletion.",
                       name.c_str(), set->record.path);
    }
    op.beginChange();
    for (auto it = fs->quotas.begin(); it != fs->quotas.end();) {
        if (it->type == MGMT_QUOTA_FILESET && it->entityName == name) {
            it = fs->quotas.erase(it);
        } else {
            ++it;
        }
    }
    fs->filesets.erase(fs->filesets.begin() + (set - fs->filesets.data()));
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Fileset %s deleted.", name.c_str());
    return MGMT_OK;
}

int PollingHandler::editFileset(const char* fsName, const char* targetType, const char* nameOrPath,
                                const char* newName, const char* newComment, std::string* message) {
    OpScope op("editFileset", message);
    if (op.status() != 0) {
        return op.status();
    }
    if (fsName == nullptr || nameOrPath == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "A file system and a fileset or junction are required.");
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    std::string type = targetType != nullptr ? targetType : "fileset";
    SimFileset* set = nullptr;
    if (type == "fileset") {
        set = findFileset(*fs, nameOrPath);
    } else if (type == "junction") {
        set = findFilesetByJunction(*fs, nameOrPath);
    } else {
        return op.fail(MGMT_E_INVALID_ARG, "Target type %s is neither fileset nor junction.",
                       type.c_str());
    }
    if (set == nullptr) {
        return op.fail(MGMT_E_NO_FILESET, "No fileset %s %s in file system %s.",
                       type == "fileset" ? "named" : "linked at", nameOrPath, fsName);
    }
    if (newName == nullptr && newComment == nullptr) {
        return op.fail(MGMT_E_INVALID_ARG, "Nothing to change for fileset %s.", set->record.name);
    }
    std::string comment;
    if (newComment != nullptr) {
        comment = stripQuotes(newComment);
        if (comment.size() >= static_cast<std::size_t>(MGMT_TEXT_LEN)) {
            return op.fail(MGMT_E_NAME_TOO_LONG, "Comment is longer than %d characters.",
                           MGMT_TEXT_LEN - 1);
        }
    }
    std::string oldName = set->record.name;
    op.beginChange();
    if (newName != nullptr && oldName != newName) {
        if (int rc = checkNewName(op, newName)) {
            return rc;
        }
        if (std::strcmp(set->record.id, "0") == 0) {
            return op.fail(MGMT_E_ROOT_FILESET, "The root fileset cannot be renamed.");
        }
        if (findFileset(*fs, newName) != nullptr) {
            return op.fail(MGMT_E_FILESET_EXISTS, "Fileset %s already exists in file system %s.",
                           newName, fsName);
        }
        copyText(set->record.name, newName);
        renameQuotas(*fs, oldName, newName);
    }
    if (newComment != nullptr) {
        copyText(set->record.comment, comment);
    }
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Fileset %s changed.", oldName.c_str());
    return MGMT_OK;
}

int PollingHandler::linkFileSet(FileSet fileset, std::string* message) {
    OpScope op("linkFileSet", message);
    if (op.status() != 0) {
        return op.status();
    }
    std::string fsName, name, path;
    if (int rc = readField(op, fileset.fsName, "file system name", &fsName)) {
        return rc;
    }
    if (int rc = readField(op, fileset.name, "fileset name", &name)) {
        return rc;
    }
    if (int rc = readField(op, fileset.path, "junction path", &path)) {
        return rc;
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    SimFileset* set = findFileset(*fs, name);
    if (set == nullptr) {
        return op.fail(MGMT_E_NO_FILESET, "Fileset %s not found in file system %s.", name.c_str(),
                       fsName.c_str());
    }
    if (set->record.linked) {
        return op.fail(MGMT_E_FILESET_LINKED, "Fileset %s is already linked at %s.", name.c_str(),
                       set->record.path);
    }
    if (fs->mountPoint.empty()) {
        return op.fail(MGMT_E_NOT_MOUNTED, "The mount point of file system %s is not known.",
                       fsName.c_str());
    }
    if (path.empty()) {
        path = fs->mountPoint + "/" + name;
    }
    if (path.compare(0, fs->mountPoint.size() + 1, fs->mountPoint + "/") != 0 ||
        path.size() == fs->mountPoint.size() + 1) {
        return op.fail(MGMT_E_INVALID_ARG, "Junction path %s is not inside %s.", path.c_str(),
                       fs->mountPoint.c_str());
    }
    if (SimFileset* other = findFilesetByJunction(*fs, path)) {
        return op.fail(MGMT_E_JUNCTION_IN_USE, "Fileset %s is already linked at %s.",
                       other->record.name, path.c_str());
    }
    op.beginChange();
    setLinked(*set, path);
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Fileset %s linked at %s.", name.c_str(), path.c_str());
    return MGMT_OK;
}

int PollingHandler::unlinkFileSet(const char* fsName, const char* nameOrPath, bool isFileset,
                                  bool force, std::string* message) {
    OpScope op("unlinkFileSet", message);
    if (op.status() != 0) {
        return op.status();
    }
    if (fsName == nullptr || nameOrPath == nullptr || *nameOrPath == '\0') {
        return op.fail(MGMT_E_INVALID_ARG, "A file system and a fileset or junction are required.");
    }
    SimFilesystem* fs = nullptr;
    if (int rc = findFilesystem(op, fsName, &fs)) {
        return rc;
    }
    SimFileset* set =
        isFileset ? findFileset(*fs, nameOrPath) : findFilesetByJunction(*fs, nameOrPath);
    if (set == nullptr) {
        return op.fail(MGMT_E_NO_FILESET, "No fileset %s %s in file system %s.",
                       isFileset ? "named" : "linked at", nameOrPath, fsName);
    }
    if (std::strcmp(set->record.id, "0") == 0) {
        return op.fail(MGMT_E_ROOT_FILESET, "The root fileset cannot be unlinked.");
    }
    if (!set->record.linked) {
        return op.fail(MGMT_E_FILESET_UNLINKED, "Fileset %s is not linked.", set->record.name);
    }
    op.beginChange();
    setLinked(*set, "");
    if (int rc = op.commitChange()) {
        return rc;
    }
    op.say("Fileset %s unlinked%s.", set->record.name, force ? " (forced)" : "");
    return MGMT_OK;
}
