#pragma once

struct AppState;
namespace Kalidornm {
class Kalidor;
}

// The steps every run takes, the batch reports' and the window's alike, in the order they run. The window's
// run puts its splash, the engine and the demos between them.

// The one message of a run whose hardware library would not start.
inline constexpr const char* kLibraryStartFailed = "Could not initialize Kalidor. Lumenscope startup failed. Bye!";

// Resets the state, opens the log in the working directory with its start-up line, applies the command line
// and logs the display devices.
void openRun(AppState& state, int argc, const char* const* argv);

// OpenCL (when the command line left it on), the hardware library, the GPU lines of the log, the CPU clock and
// CUDA. Null when the library could not start; nothing after it has run then.
Kalidornm::Kalidor* startMachineProbes(AppState& state);

// Releases OpenCL and the library and writes the log's two shutdown lines; `beforeLastLine` (may be null)
// runs just before the last.
void closeRun(AppState& state, Kalidornm::Kalidor* library, void (*beforeLastLine)(AppState& state));

// Frees what the last log line may still describe: the OpenCL and CUDA records and the report.
void freeRunRecords(AppState& state);

// "<name> <version> <what>" in the log.
void logVersionLine(const char* what);
