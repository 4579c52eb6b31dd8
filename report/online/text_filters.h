#pragma once

#include <string>
#include <string_view>

// The filters every text passes before it goes into a submission. Each looks at the first 127 characters of
// its source, keeps a to z, A to Z, 0 to 9 and ( ) @ / . : | _ - and drops every other character. The
// result holds at most 254 characters; an escape that would not fit whole is left out.
namespace online {

inline constexpr size_t kFilterSourceLimit = 127;
inline constexpr size_t kFilterResultLimit = 254;

// A blank before the first kept character is dropped, later ones become "%20". An empty source gives "NULL".
std::string sanitizeForUrl(std::string_view source);

// As sanitizeForUrl, but later blanks become "_".
std::string sanitizeForName(std::string_view source);

// Blanks are dropped like any other character. An empty source gives an empty text.
std::string sanitizeKeepOnly(std::string_view source);

}  // namespace online
