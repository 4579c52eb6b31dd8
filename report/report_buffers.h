#pragma once

#include <cstddef>

// The three texts of one report, built by formatted appends. The arrays belong to the caller (the
// application allocates them once at start-up); each keeps a terminating zero, so at most capacity - 1
// bytes of text fit and what would pass that is dropped without a word.
namespace report {

struct ReportBuffers {
    char* displayText = nullptr;  // lines end in CR LF, for the dialog's edit box
    char* fileText = nullptr;     // lines end in LF, for the text file
    char* xmlBody = nullptr;      // XML pieces between the root tags, as given
    size_t capacity = 0;          // bytes of each array
    size_t displayLength = 0;
    size_t fileLength = 0;
    size_t xmlLength = 0;
    bool generated = false;  // the buffers hold a finished report
};

// One formatted line (at most 4,095 bytes) to both text forms, each with its own line end. The empty
// format adds a blank line.
void addReportLine(ReportBuffers& buffers, const char* format, ...) __attribute__((format(printf, 2, 3)));

// One formatted piece to the XML body, with nothing added.
void addReportXml(ReportBuffers& buffers, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace report
