#pragma once
// The users file of basic authentication: one "user:hash" a line, the hash a bcrypt one ("$2b$..."); empty lines
// and lines starting with '#' are skipped.

#include <string>
#include <string_view>
#include <vector>

namespace exporter {

struct AuthUser {
    std::string user;
    std::string bcryptHash;
};

// The users; false with a message naming the line when a line is not "user:bcrypt-hash" or no user is given.
bool parseAuthFile(std::string_view text, std::vector<AuthUser>& users, std::string* error);

}  // namespace exporter
