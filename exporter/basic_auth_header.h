#pragma once
// The Authorization header of basic authentication: "Basic " and base64 of "user:password".

#include <optional>
#include <string>
#include <string_view>

namespace exporter {

struct BasicCredential {
    std::string user;
    std::string password;
};

// The user and password the header carries; nothing when it is not well-formed basic authentication.
std::optional<BasicCredential> parseBasicAuthorization(std::string_view header);

// Standard base64 with its padding; nothing on any other character or a wrong length.
std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace exporter
