#pragma once
// The metrics endpoint: GET /metrics answers the exposition text its caller renders, over libmicrohttpd with a
// thread pool, at most 256 connections, a 10 s deadline for each request to arrive whole, optional TLS and
// optional basic authentication.

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

// Outside the 9100-9999 range, which the Prometheus project's list of exporters' default ports has handed out in
// full, and given to no exporter on that list.
inline constexpr uint16_t kDefaultMetricsPort = 10180;

struct MetricsServerOptions {
    std::string address = "127.0.0.1";
    uint16_t port = kDefaultMetricsPort;  // 0: any free port, named in the start-up message
    std::optional<std::string> tlsCertFile, tlsKeyFile, authFile;
};

// The exposition text of the newest sample; called per scrape, from the server's threads. The caller's
// renderer refreshes the live sample at most once a second however many scrapes ask.
using MetricsRenderer = std::function<std::string()>;

// Parses "ADDRESS:PORT" (or empty for the default); false with a message naming the fault.
bool parseMetricsAddress(const std::string& text, MetricsServerOptions& options, std::string* error);

// Serves until `stop` becomes true (the caller's signal handler sets it); returns main's status; messages
// to standard error.
int serveMetrics(const MetricsServerOptions& options, const MetricsRenderer& render, const std::atomic<bool>& stop);
