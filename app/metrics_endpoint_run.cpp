#include <cstdio>
#include <string>

#include "app/live_library.h"
#include "app/live_runs.h"
#include "app/platform/stop_signals.h"
#include "exporter/metrics_server.h"
#include "exporter/shared_live_sample.h"

int runMetricsEndpoint(const LongOptions& options) {
    MetricsServerOptions server;
    std::string error;
    if (!parseMetricsAddress(options.metricsAddress, server, &error)) {
        std::fprintf(stderr, "lumenscope: --serve-metrics: %s\n", error.c_str());
        return 2;
    }
    server.tlsCertFile = options.metricsTlsCert;
    server.tlsKeyFile = options.metricsTlsKey;
    server.authFile = options.metricsAuthFile;

    const lumenscope::platform::StopSignals signals;
    LiveLibrary library;
    if (!library.started()) return 1;
    // Every scrape, from any of the server's threads, shares one sample read at most once a second.
    exporter::SharedLiveSample sample([&library] { return library.readLive(); });
    // The server waits on the flag rather than in a call the signal could end: let the signals through.
    signals.unblock();
    return serveMetrics(server, [&sample] { return sample.metricsText(); }, signals.stopRequested());
}
