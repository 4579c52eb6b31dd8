#pragma once

#include <cstdarg>
#include <string>

// The three texts of one report, built by formatted appends. They grow as needed: a report of a thousand
// OpenCL devices is as complete as one of a single GPU.
namespace report {

struct ReportBuffers {
    std::string displayText;  // lines end in CR LF, for the dialog's edit box
    std::string fileText;     // lines end in LF, for the text file
    std::string xmlBody;      // XML pieces between the root tags, as given
    bool generated = false;   // the buffers hold a finished report
};

// One formatted line to both text forms, each with its own line end. The empty format adds a blank line.
void addReportLine(ReportBuffers& buffers, const char* format, ...) __attribute__((format(printf, 2, 3)));

// One formatted piece to the XML body, with nothing added. Texts in it must already be escaped.
void addReportXml(ReportBuffers& buffers, const char* format, ...) __attribute__((format(printf, 2, 3)));

// printf onto the end of `out`, however long the result.
void appendFormatted(std::string& out, const char* format, va_list args) __attribute__((format(printf, 2, 0)));

}  // namespace report
