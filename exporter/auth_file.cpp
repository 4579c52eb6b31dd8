#include "exporter/auth_file.h"

namespace exporter {

namespace {

// "$2a$", "$2b$" or "$2y$", two digits of cost, '$', then 53 characters of salt and digest.
bool isBcryptHash(std::string_view hash)
{
    if (hash.size() != 60 || hash.substr(0, 2) != "$2" || hash[3] != '$' || hash[6] != '$')
        return false;
    if (hash[2] != 'a' && hash[2] != 'b' && hash[2] != 'y')
        return false;
    if (hash[4] < '0' || hash[4] > '3' || hash[5] < '0' || hash[5] > '9')
        return false;
    for (char c : hash.substr(7)) {
        const bool inAlphabet = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                                c == '.' || c == '/';
        if (!inAlphabet)
            return false;
    }
    return true;
}

}  // namespace

bool parseAuthFile(std::string_view text, std::vector<AuthUser>& users, std::string* error)
{
    users.clear();
    size_t lineNumber = 0;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++lineNumber;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;

        const size_t colon = line.find(':');
        if (colon == 0 || colon == std::string_view::npos || !isBcryptHash(line.substr(colon + 1))) {
            if (error)
                *error = "line " + std::to_string(lineNumber) + " is not user:bcrypt-hash";
            return false;
        }
        users.push_back({std::string(line.substr(0, colon)), std::string(line.substr(colon + 1))});
    }
    if (users.empty()) {
        if (error)
            *error = "it names no user";
        return false;
    }
    return true;
}

}  // namespace exporter
