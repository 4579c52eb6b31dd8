#include "exporter/basic_auth_check.h"

#include "exporter/basic_auth_header.h"

#include <crypt.h>
#include <gnutls/crypto.h>

#include <memory>

namespace exporter {

namespace {

// Compares every byte whatever differs first, so the time taken tells nothing about the hash.
bool sameBytes(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    unsigned char difference = 0;
    for (size_t i = 0; i < a.size(); ++i)
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    return difference == 0;
}

}  // namespace

bool bcryptMatches(const std::string& password, const std::string& hash)
{
    auto data = std::make_unique<crypt_data>();  // about 32 KiB: not for the stack of a pool thread
    const char* result = crypt_r(password.c_str(), hash.c_str(), data.get());
    return result != nullptr && result[0] != '*' && sameBytes(result, hash);
}

BasicAuthCheck::BasicAuthCheck(std::vector<AuthUser> users) : users_(std::move(users)) {}

bool BasicAuthCheck::verify(std::string_view authorizationHeader) const
{
    const std::optional<BasicCredential> credential = parseBasicAuthorization(authorizationHeader);
    if (!credential)
        return false;
    for (const AuthUser& user : users_) {
        if (user.user == credential->user)
            return bcryptMatches(credential->password, user.bcryptHash);
    }
    return false;
}

bool BasicAuthCheck::allows(std::string_view authorizationHeader)
{
    if (authorizationHeader.empty())
        return false;
    Digest digest{};
    if (gnutls_hash_fast(GNUTLS_DIG_SHA256, authorizationHeader.data(), authorizationHeader.size(),
                         digest.data()) != 0)
        return verify(authorizationHeader);
    {
        std::lock_guard lock(mutex_);
        if (verified_.count(digest))
            return true;
    }
    if (!verify(authorizationHeader))
        return false;
    std::lock_guard lock(mutex_);
    if (verified_.size() >= kRememberedLimit)
        verified_.clear();
    verified_.insert(digest);
    return true;
}

}  // namespace exporter
