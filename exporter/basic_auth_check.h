#pragma once
// Checks an Authorization header against the users file. bcrypt costs tens of milliseconds by design, so a
// header once verified is remembered by its SHA-256 (never the password itself) and later scrapes cost a hash.

#include "exporter/auth_file.h"

#include <array>
#include <mutex>
#include <set>
#include <string_view>
#include <vector>

namespace exporter {

class BasicAuthCheck {
public:
    explicit BasicAuthCheck(std::vector<AuthUser> users);

    // True when the header names a user of the file with that user's password. Safe from several threads.
    bool allows(std::string_view authorizationHeader);

private:
    using Digest = std::array<unsigned char, 32>;
    static constexpr size_t kRememberedLimit = 1024;

    bool verify(std::string_view authorizationHeader) const;

    std::vector<AuthUser> users_;
    std::mutex mutex_;
    std::set<Digest> verified_;
};

// Whether `password` matches the bcrypt `hash` (crypt_r).
bool bcryptMatches(const std::string& password, const std::string& hash);

}  // namespace exporter
