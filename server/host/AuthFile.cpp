#include "vexa/host/AuthFile.h"

#include <crypt.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

namespace vexa::host {

namespace {

// Compares without stopping at the first difference, so that the time taken
// says nothing about how much of a guess was right.
bool sameText(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) {
        return false;
    }
    unsigned char difference = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    }
    return difference == 0;
}

// crypt(3) of password with the method and salt of setting; empty when the
// setting is not a hash that the library understands.
std::string cryptText(const std::string& password, const std::string& setting) {
    auto data = std::make_unique<crypt_data>();
    std::memset(data.get(), 0, sizeof(crypt_data));
    const char* result = crypt_rn(password.c_str(), setting.c_str(), data.get(),
                                  static_cast<int>(sizeof(crypt_data)));
    if (result == nullptr || result[0] == '*') {
        return std::string();
    }
    return result;
}

std::string errnoText() { return std::strerror(errno); }

} // namespace

void AuthFile::checkUserName(const std::string& user) {
    if (user.empty()) {
        throw std::invalid_argument("the user name is empty");
    }
    for (char c : user) {
        if (c == ':' || static_cast<unsigned char>(c) <= ' ' || c == 0x7F) {
            throw std::invalid_argument("the user name '" + user +
                                        "' holds ':', white space or a control character");
        }
    }
}

AuthFile AuthFile::load(const std::string& path) {
    std::ifstream in(path);
    if (!in) {
        throw std::runtime_error(path + ": cannot read the credentials file: " + errnoText());
    }
    AuthFile file;
    std::string line;
    unsigned number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::string where = path + ":" + std::to_string(number) + ": ";
        size_t colon = line.find(':');
        if (colon == std::string::npos) {
            throw std::runtime_error(where +
                                     "expected user:hash (make lines with vexa-tool passwd)");
        }
        std::string user = line.substr(0, colon);
        std::string hash = line.substr(colon + 1);
        try {
            checkUserName(user);
        } catch (const std::invalid_argument& error) {
            throw std::runtime_error(where + error.what());
        }
        if (hash.empty() || hash[0] != '$') {
            throw std::runtime_error(where + "the hash of '" + user +
                                     "' is not a salted crypt hash starting with '$' "
                                     "(make it with vexa-tool passwd)");
        }
        if (file.hashes_.count(user) != 0) {
            throw std::runtime_error(where + "user '" + user + "' is listed twice");
        }
        file.hashes_[user] = hash;
    }
    return file;
}

bool AuthFile::check(const std::string& user, const std::string& password) const {
    auto found = hashes_.find(user);
    if (found == hashes_.end()) {
        // Hash anyway, so that an unknown user takes as long as a wrong password.
        static const std::string decoy = hashPassword("decoy");
        sameText(cryptText(password, decoy), decoy);
        return false;
    }
    std::string computed = cryptText(password, found->second);
    return !computed.empty() && sameText(computed, found->second);
}

std::string AuthFile::hashPassword(const std::string& password) {
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    if (crypt_gensalt_rn(nullptr, 0, nullptr, 0, setting, sizeof(setting)) == nullptr) {
        throw std::runtime_error("cannot make a salt: " + errnoText());
    }
    std::string hash = cryptText(password, setting);
    if (hash.empty()) {
        throw std::runtime_error("cannot hash the password: " + errnoText());
    }
    return hash;
}

void AuthFile::storeUser(const std::string& path, const std::string& user,
                         const std::string& hash) {
    checkUserName(user);
    std::vector<std::string> lines;
    bool replaced = false;
    {
        std::ifstream in(path);
        std::string line;
        while (in && std::getline(in, line)) {
            if (line.compare(0, user.size() + 1, user + ":") == 0) {
                if (!replaced) {
                    lines.push_back(user + ":" + hash);
                    replaced = true;
                }
                continue;
            }
            lines.push_back(line);
        }
    }
    if (!replaced) {
        lines.push_back(user + ":" + hash);
    }

    std::string temporary = path + ".tmp." + std::to_string(getpid());
    int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (fd < 0) {
        throw std::runtime_error(temporary + ": cannot create: " + errnoText());
    }
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    bool written = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    bool synced = written && ::fsync(fd) == 0;
    ::close(fd);
    if (!synced || ::rename(temporary.c_str(), path.c_str()) != 0) {
        std::string reason = errnoText();
        ::unlink(temporary.c_str());
        throw std::runtime_error(path + ": cannot write: " + reason);
    }
}

} // namespace vexa::host
