#include "exporter/metrics_server.h"

#include <arpa/inet.h>

#include <charconv>

namespace {

bool fail(std::string* error, std::string message)
{
    if (error)
        *error = std::move(message);
    return false;
}

}  // namespace

// "127.0.0.1:10180", "0.0.0.0:10180", "[::1]:10180", ":10180" (the default address); a host name is refused,
// since the server binds one address and a name may stand for several.
bool parseMetricsAddress(const std::string& text, MetricsServerOptions& options, std::string* error)
{
    if (text.empty())
        return true;
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return fail(error, "'" + text + "' is not ADDRESS:PORT");

    std::string address = text.substr(0, colon);
    const std::string portText = text.substr(colon + 1);
    unsigned port = 0;
    const auto [end, code] = std::from_chars(portText.data(), portText.data() + portText.size(), port);
    if (portText.empty() || code != std::errc() || end != portText.data() + portText.size() || port > 65535)
        return fail(error, "'" + portText + "' is not a port number (0 to 65535)");

    bool bracketed = address.size() >= 2 && address.front() == '[' && address.back() == ']';
    if (bracketed)
        address = address.substr(1, address.size() - 2);
    if (address.empty() && !bracketed)
        address = MetricsServerOptions{}.address;

    unsigned char bytes[16];
    const bool v4 = !bracketed && inet_pton(AF_INET, address.c_str(), bytes) == 1;
    const bool v6 = bracketed && inet_pton(AF_INET6, address.c_str(), bytes) == 1;
    if (!v4 && !v6)
        return fail(error, "'" + address + "' is not an IPv4 address or a bracketed IPv6 address");

    options.address = address;
    options.port = static_cast<uint16_t>(port);
    return true;
}
