#pragma once

// The batch reports: the program's run when the command line asks for a report file. It needs no window
// toolkit, demo or engine, so the program runs it without loading them.

// True when the command line asks for at least one report file.
bool isBatchRun(const char* commandLine);

// Start-up, the report files, shutdown; the log as every run writes it. Returns main's status.
int runBatchReports(int argc, const char* const* argv);
