#pragma once

struct AppState;
namespace Kalidornm {
class Kalidor;
}

// The batch branch of start-up: writes "report.xml", "report.txt" and "report.json" in the working directory
// for the export options that are set. One snapshot and one generation serve every file; a file that cannot
// be written is skipped without a message.
void writeBatchReports(AppState& state, Kalidornm::Kalidor& library);
