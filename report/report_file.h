#pragma once

#include <string_view>

// Writing one finished report to disk, for the batch files and the report dialog's exports alike.
namespace report {

// Writes `content` to `path` so that afterwards the file holds all of it or is exactly as it was: the bytes
// go to a new file in the same directory, reach the disk, and only then replace `path` by a rename. A link
// at `path` is replaced by the report, never followed; an existing regular file keeps its permission bits.
// On failure nothing is left behind and `*error` (if given) holds the errno value of the step that failed.
bool writeReportFile(const char* path, std::string_view content, int* error = nullptr);

// Writes every byte to an open file descriptor, going on after short writes and interruptions; false, with
// the errno value in `*error`, when the descriptor refuses bytes (a full disk, a size limit).
bool writeWholeText(int fd, std::string_view content, int* error = nullptr);

}  // namespace report
