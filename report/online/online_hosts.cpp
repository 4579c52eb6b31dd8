#include "report/online/online_hosts.h"

#include <cctype>
#include <cstdint>

namespace online {

namespace {

constexpr std::string_view kWebHost = "https://lumenscope.example.org";
constexpr std::string_view kDatabaseHost = "https://gpudb.lumenscope.example.org";
constexpr std::string_view kWebHostName = "lumenscope.example.org";
constexpr size_t kMaxHostNameLength = 253;  // the longest name DNS can carry
constexpr size_t kMaxLoggedOptionLength = 255;

bool isHostNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '.';
}

bool isIpv6Character(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) || c == ':' || c == '.';
}

// Splits "host[:port]" (the part behind the scheme, trailing slash removed) and checks both halves.
bool validAuthority(std::string_view authority, std::string_view& host) {
    std::string_view portText;
    if (!authority.empty() && authority.front() == '[') {
        const size_t close = authority.find(']');
        if (close == std::string_view::npos || close < 3) return false;
        for (char c : authority.substr(1, close - 1))
            if (!isIpv6Character(c)) return false;
        host = authority.substr(0, close + 1);
        const std::string_view rest = authority.substr(close + 1);
        if (!rest.empty()) {
            if (rest.front() != ':') return false;
            portText = rest.substr(1);
            if (portText.empty()) return false;
        }
    } else {
        const size_t colon = authority.find(':');
        host = authority.substr(0, colon);
        if (colon != std::string_view::npos) {
            portText = authority.substr(colon + 1);
            if (portText.empty()) return false;
        }
        if (host.empty() || host.size() > kMaxHostNameLength) return false;
        if (host.front() == '.' || host.front() == '-' || host.back() == '-') return false;
        for (char c : host)
            if (!isHostNameCharacter(c)) return false;
    }
    if (portText.empty()) return true;
    if (portText.size() > 5) return false;
    uint32_t port = 0;
    for (char c : portText) {
        if (c < '0' || c > '9') return false;
        port = port * 10 + uint32_t(c - '0');
    }
    return port >= 1 && port <= 65535;
}

}  // namespace

OnlineHosts defaultOnlineHosts() {
    return {std::string(kWebHost), std::string(kDatabaseHost), std::string(kWebHostName)};
}

std::optional<OnlineHosts> onlineHostsFromUrl(std::string_view url) {
    std::string_view rest;
    if (url.starts_with("http://"))
        rest = url.substr(7);
    else if (url.starts_with("https://"))
        rest = url.substr(8);
    else
        return std::nullopt;
    if (rest.ends_with('/')) rest.remove_suffix(1);
    std::string_view host;
    if (!validAuthority(rest, host)) return std::nullopt;
    const std::string base(url.substr(0, url.size() - (url.ends_with('/') ? 1 : 0)));
    return OnlineHosts{base, base, std::string(host)};
}

OnlineHosts onlineHostsForOption(std::string_view optionText) {
    if (optionText.empty()) return defaultOnlineHosts();
    if (std::optional<OnlineHosts> hosts = onlineHostsFromUrl(optionText)) return *hosts;
    return {"", "", std::string(optionText.substr(0, kMaxLoggedOptionLength))};
}

std::string pageUrl(const std::string& base, std::string_view path) {
    if (base.empty()) return {};
    return base + std::string(path);
}

}  // namespace online
