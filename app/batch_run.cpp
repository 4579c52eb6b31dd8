#include "app/batch_run.h"

#include <memory>

#include "app/app_state.h"
#include "app/batch_reports.h"
#include "app/command_line.h"
#include "app/message_boxes.h"
#include "app/run_steps.h"
#include "kalidor/kalidor.h"

bool isBatchRun(const char* commandLine) {
    // The same parse the run makes; it prints nothing and touches nothing but the state it is given.
    const auto state = std::make_unique<AppState>();
    parseCommandLine(*state, commandLine);
    return state->exportXmlReport || state->exportTxtReport || state->exportJsonReport;
}

int runBatchReports(int argc, const char* const* argv) {
    AppState& state = gApp;
    openRun(state, argc, argv);
    state.updateThread.reset();
    Kalidornm::Kalidor* library = startMachineProbes(state);
    if (!library) {
        showErrorBox("%s", kLibraryStartFailed);
        return 0;
    }
    writeBatchReports(state, *library);
    closeRun(state, library, nullptr);
    freeRunRecords(state);
    return 0;
}
