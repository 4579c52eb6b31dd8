#pragma once

#include <cstdint>

// What the demos need from the application around them, installed once by the application. Every call may
// come from a demo thread. Without a host, boxes go to standard error and the log, and nothing is closed.
struct DemoHost {
    void (*showError)(const char* text) = nullptr;    // a modal error box
    void (*showWarning)(const char* text) = nullptr;  // a modal warning box
    void (*closeMainWindow)() = nullptr;              // the end of a benchmark run closes the program's window
    uint32_t (*throttleMs)() = nullptr;               // extra sleep per frame, read each frame
};

void setDemoHost(const DemoHost& host);

// printf-style; each formats into its own buffer, so two demo threads never garble one text.
void demoShowError(const char* format, ...) __attribute__((format(printf, 1, 2)));
void demoShowWarning(const char* format, ...) __attribute__((format(printf, 1, 2)));
void demoCloseMainWindow();
uint32_t demoThrottleMs();
