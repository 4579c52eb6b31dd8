#include <cstdio>

#include "app/live_runs.h"
#include "app/long_options.h"
#include "app/metrics_module.h"

// The program has read the line already and handed over before starting anything; the module's own copy of
// the hardware library is set up here from the same line.
extern "C" __attribute__((visibility("default"))) int lumenscope_metrics_main(int argc, char** argv) {
    const SplitCommandLine split = splitCommandLine(argc, argv);
    if (!split.error.empty()) {
        std::fprintf(stderr, "lumenscope: %s\n", split.error.c_str());
        return 2;
    }
    useMachineRoot(split.options);
    return runMetricsEndpoint(split.options);
}
