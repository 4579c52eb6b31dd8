#include "app/monitor_run.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

#include "app/live_library.h"
#include "app/platform/stop_signals.h"
#include "exporter/monitor_lines.h"

namespace {

enum class WriteResult { written, readerGone, failed };

// Straight to the descriptor: each tick's lines leave at once, and a reader that went away shows as EPIPE.
WriteResult writeOut(const std::string& text) {
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t n = write(STDOUT_FILENO, text.data() + written, text.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && errno == EPIPE) return WriteResult::readerGone;
        if (n <= 0) return WriteResult::failed;
        written += size_t(n);
    }
    return WriteResult::written;
}

std::string tickLines(const LongOptions& options, const exporter::MonitorColumns& columns,
                      const Kalidornm::MachineSnapshot& machine) {
    const std::string timestamp = exporter::isoTimestamp(std::chrono::system_clock::now());
    std::string lines;
    for (const Kalidornm::GpuSnapshot& gpu : machine.gpus)
        lines += options.format == MonitorFormat::csv ? exporter::csvLine(columns, gpu, timestamp)
                                                      : exporter::jsonLine(gpu, timestamp);
    return lines;
}

}  // namespace

int runMonitor(const LongOptions& options) {
    const lumenscope::platform::StopSignals signals;
    LiveLibrary library;
    if (!library.started()) return 1;

    const auto interval = std::chrono::milliseconds(options.intervalMs);
    auto tickAt = std::chrono::steady_clock::now();
    exporter::MonitorColumns columns;
    for (long tick = 0; !signals.stopRequested().load(); ++tick) {
        const Kalidornm::MachineSnapshot& machine = library.readLive();
        std::string text;
        if (tick == 0) {
            columns = exporter::monitorColumns(machine);
            if (options.format == MonitorFormat::csv) text = exporter::csvHeader(columns);
        }
        text += tickLines(options, columns, machine);
        const WriteResult result = writeOut(text);
        if (result == WriteResult::readerGone) break;
        if (result == WriteResult::failed) {
            std::fprintf(stderr, "lumenscope: could not write to standard output: %s\n", std::strerror(errno));
            return 1;
        }
        if (options.count && tick + 1 >= *options.count) break;
        tickAt += interval;
        if (signals.waitUntil(tickAt)) break;
    }
    return 0;
}
