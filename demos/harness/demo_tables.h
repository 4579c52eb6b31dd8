#pragma once

#include <cstddef>

// The two tables behind the demo combos of the main window: what each entry is called, what the options
// dialog says about it, and where a full benchmark of it lives.
struct DemoDescriptor {
    const char* title;
    const char* description;
    const char* benchmarkUrl;  // empty: no benchmark page exists
};

enum class DemoTable { OpenGl, OpenCl };

constexpr int kOpenGlDemoRows = 11;  // rows in use; the table has room for a twelfth
constexpr int kOpenClDemoRows = 8;   // four demos, each in a GPU row and the CPU row below it

// Null past the rows in use.
const DemoDescriptor* demoDescriptor(DemoTable table, int row);
int demoTableRows(DemoTable table);

// What the options dialog shows under a demo without description, and for a demo without benchmark page.
constexpr const char* kNoDemoDescriptionText = "No description available for this demo.";
constexpr const char* kBenchmarkAvailableText = "A full-featured benchmark of this demo is available here:";
constexpr const char* kNoBenchmarkText = "No benchmark is available for this demo.";
