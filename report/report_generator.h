#pragma once

// The report of everything the program knows, built once from the library and the discovery records.
namespace report {

// Builds the report if it has not been built yet in this run.
void generateReport();

// Write the generated report; false if the file cannot be written or there is nothing to write.
bool writeXmlReport(const char* path);
bool writeTextReport(const char* path);

}  // namespace report
