// The credentials file behind HTTP Basic authentication: one "user:hash"
// line per user, the hash made by crypt(3) with a random salt, so the file
// never holds a password. Lines starting with '#' and blank lines are
// ignored.
#ifndef VEXA_HOST_AUTHFILE_H
#define VEXA_HOST_AUTHFILE_H

#include <map>
#include <stdexcept>
#include <string>

namespace vexa::host {

class AuthFile {
public:
    // Throws std::runtime_error naming the file and line at fault.
    static AuthFile load(const std::string& path);

    // True when the user is listed and the password matches its hash.
    bool check(const std::string& user, const std::string& password) const;
    size_t userCount() const { return hashes_.size(); }

    // A salted hash of the password with the system's preferred method
    // (yescrypt on current systems). Throws std::runtime_error.
    static std::string hashPassword(const std::string& password);

    // Adds or replaces the user's line in the file, creating the file (mode
    // 0600) when needed; other lines are kept as they are. The file is
    // replaced in one step, so a running server never reads half of it.
    // Throws std::runtime_error.
    static void storeUser(const std::string& path, const std::string& user,
                          const std::string& hash);

    // Throws std::invalid_argument when the name cannot stand in the file or
    // in a Basic credential (empty, ':' or white space or control characters).
    static void checkUserName(const std::string& user);

private:
    std::map<std::string, std::string> hashes_;
};

} // namespace vexa::host

#endif
