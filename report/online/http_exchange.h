#pragma once

#include <atomic>
#include <string>

// One HTTP request and its reply, over libcurl: IPv4 or IPv6, the proxies of the environment, TLS for
// https:// addresses. The request carries only the lines a caller names plus Host and Content-Length; the
// reply is kept as it arrived, headers and body in one run of bytes.
namespace online {

struct ExchangeLimits {
    long connectTimeoutMs = 3000;
    long totalTimeoutMs = 5000;  // the whole exchange, connection included
};

struct HttpRequest {
    std::string url;              // http:// or https:// only; anything else is not sent
    std::string userAgent;
    std::string referer;          // empty: no Referer line
    const std::string* formBody = nullptr;  // set: a POST of this url-encoded form; else a GET
    size_t replyLimit = 0;        // bytes of the reply kept, counted from the status line
    ExchangeLimits limits;
    const std::atomic<bool>* cancel = nullptr;  // when it becomes true the exchange ends at the next progress call
};

// The reply's status line, headers and body as received, cut at replyLimit; whatever arrived before a
// time-out or a broken connection counts. Empty when nothing came. The request's body never appears in
// anything this writes or logs.
std::string exchange(const HttpRequest& request);

}  // namespace online
