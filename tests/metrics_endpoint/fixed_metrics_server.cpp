// Serves the fixed exposition through serveMetrics, with the program's endpoint options, until SIGTERM or
// SIGINT: the endpoint's tests drive it as a real client would.

#include "exporter/metrics_server.h"
#include "metrics_endpoint/fixed_exposition.h"

#include <csignal>
#include <iostream>
#include <string_view>

namespace {

std::atomic<bool> stopRequested{false};

void requestStop(int) { stopRequested = true; }

}  // namespace

int main(int argc, char** argv)
{
    MetricsServerOptions options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        const auto valueOf = [&](std::string_view name) { return std::string(arg.substr(name.size())); };
        std::string error;
        if (arg.rfind("--serve-metrics=", 0) == 0) {
            if (!parseMetricsAddress(valueOf("--serve-metrics="), options, &error)) {
                std::cerr << error << '\n';
                return 2;
            }
        } else if (arg.rfind("--metrics-tls-cert=", 0) == 0) {
            options.tlsCertFile = valueOf("--metrics-tls-cert=");
        } else if (arg.rfind("--metrics-tls-key=", 0) == 0) {
            options.tlsKeyFile = valueOf("--metrics-tls-key=");
        } else if (arg.rfind("--metrics-auth-file=", 0) == 0) {
            options.authFile = valueOf("--metrics-auth-file=");
        } else {
            std::cerr << "unknown option " << arg << '\n';
            return 2;
        }
    }
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    return serveMetrics(options, [] { return std::string(kFixedExposition); }, stopRequested);
}
