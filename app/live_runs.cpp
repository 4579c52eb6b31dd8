#include "app/live_runs.h"

#include <chrono>
#include <cstdio>
#include <string>

#include "app/app_state.h"
#include "app/batch_reports.h"
#include "app/command_line.h"
#include "app/live_library.h"
#include "app/run_steps.h"
#include "exporter/metrics_text.h"
#include "exporter/text_file_writer.h"
#include "kalidor/kalidor.h"
#include "report/json_report.h"
#include "report/report_snapshot_from_facade.h"

int printJsonReport(const AppState& state, Kalidornm::Kalidor* library, std::FILE* out) {
    report::ReportSnapshot snapshot;
    if (library) snapshot = batchReportSnapshot(state, *library);
    else report::fillSnapshotWithoutLibrary(snapshot);
    const std::string text = report::jsonReportText(snapshot);
    if (text.empty()) {
        std::fputs("lumenscope: the report could not be built\n", stderr);
        return 1;
    }
    if (std::fwrite(text.data(), 1, text.size(), out) != text.size() || std::fflush(out) != 0) {
        std::perror("lumenscope: could not write to standard output");
        return 1;
    }
    return 0;
}

void useMachineRoot(const LongOptions& options) {
    if (!options.root) return;
    Kalidornm::KalidorSources sources;
    sources.rootDir = *options.root;
    // A machine read from a folder has files where its device nodes were: the host's libdrm_amdgpu, asked on
    // one, answers nothing and prints its own failures on stderr. An AMD card's memory type stays unknown there
    // instead.
    sources.amdgpuLibrary.clear();
    Kalidornm::Kalidor::setSources(sources);
}

int runJsonReport(int argc, const char* const* argv) {
    AppState& state = gApp;
    // As openRun, without the log file.
    initAppState(state);
    parseCommandLine(state, joinArguments(argc, argv).c_str());
    state.updateThread.reset();
    Kalidornm::Kalidor* library = startMachineProbes(state);
    if (!library) std::fprintf(stderr, "lumenscope: %s\n", kLibraryStartFailed);
    const int status = printJsonReport(state, library, stdout);
    closeRun(state, library, nullptr);
    freeRunRecords(state);
    return status;
}

int runMetricsTextFile(const LongOptions& options) {
    LiveLibrary library;
    if (!library.started()) return 1;
    const auto start = std::chrono::steady_clock::now();
    const Kalidornm::MachineSnapshot& machine = library.readLive();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::string error;
    if (!exporter::writeTextFileAtomically(*options.textfile, exporter::renderMetricsText(machine, took.count()),
                                           &error)) {
        std::fprintf(stderr, "lumenscope: %s\n", error.c_str());
        return 1;
    }
    return 0;
}
