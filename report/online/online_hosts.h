#pragma once

#include <optional>
#include <string>
#include <string_view>

// The two servers the program talks to: the web host (update check, redirect pages) and the GPU database
// (submissions and their pages). Every address the online exchange uses is built from these.
namespace online {

struct OnlineHosts {
    std::string web;       // "scheme://host[:port]", no trailing slash; empty: no usable server
    std::string database;  // the same form
    std::string webName;   // what log lines call the web server
};

// Our own servers, on the program's home-page domain.
OnlineHosts defaultOnlineHosts();

// The server named by /online_host=: "http://" or "https://", a host name, an IPv4 address or a bracketed
// IPv6 address, an optional port from 1 to 65535 and an optional trailing slash; nothing else. Both hosts
// point at it. nullopt when the text is not such a URL.
std::optional<OnlineHosts> onlineHostsFromUrl(std::string_view url);

// The hosts for the text of /online_host= (empty: the defaults). A text that is no usable URL gives no
// server at all rather than ours: whoever names their own server must not have a typo send their data here.
OnlineHosts onlineHostsForOption(std::string_view optionText);

// A page on a host: `base` followed by `path`, which starts with '/'. Empty when the host is unusable.
std::string pageUrl(const std::string& base, std::string_view path);

}  // namespace online
