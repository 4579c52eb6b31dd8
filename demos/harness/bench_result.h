#pragma once

#include <cstdint>
#include <string>

// One row of "./bench_result.csv": what ran, where, and its frame rates.
struct BenchResultValues {
    std::string renderer;  // the GPU name
    std::string driver;    // the driver text as the GPU panel shows it
    // The OpenCL columns, filled when the machine has an OpenCL device of the demo's type.
    bool hasClDevice = false;
    std::string clName;
    bool clTypeCpu = false;
    uint32_t clComputeUnits = 0;
    uint32_t clClockMhz = 0;
    std::string clDriver;

    std::string testName;
    int32_t msaa = 0;
    int32_t width = 0, height = 0;
    bool clGlInterop = false;
    bool clNativeSin = false;
    bool clExplicitWorkgroupSize = false;
    bool clLocalMem = false;
    uint32_t avgFps = 0, minFps = 10000, maxFps = 0;
};

constexpr const char* kBenchResultFile = "./bench_result.csv";
constexpr const char* kBenchResultHeader =
    "Renderer,Driver,CL name,CL type,CL CU,CL CU Clock(MHz),CL Driver,Test name,MSAA,width,height,CL GL interop,"
    "CL native sin,CL explicit wkgrp size,CL local mem,AVG FPS,MIN FPS,MAX FPS,Misc";

// The row without its line end. A comma or line break inside a text would break the row's columns, so
// such characters become blanks.
std::string formatBenchResultRow(const BenchResultValues& values);

// Appends `row` and a line end to the file at `path` in one write, so rows of demos that end together
// never interleave; a file that does not exist yet gets the header first, exactly once even when several
// writers create it at the same moment. A failure (read-only directory, full disk) loses this row only and
// is logged. True when the row was written whole.
bool appendBenchResultRow(const char* path, const std::string& row);
