#pragma once

#include <cstdint>

// The OpenCL device types a demo runs on (CL_DEVICE_TYPE_CPU and CL_DEVICE_TYPE_GPU).
inline constexpr uint32_t kClDeviceTypeCpu = 2;
inline constexpr uint32_t kClDeviceTypeGpu = 4;

// What a demo reads of the program's options, copied at its start so that the demo thread never reads the
// application's state. The application keeps one, which the command line fills (and the options dialog its
// MSAA); the defaults here are the command line's.
struct DemoSettings {
    // Window and benchmark
    int32_t winWidth = 600;
    int32_t winHeight = 600;
    int32_t msaaSamples = 0;
    bool benchLogResults = false;
    int32_t benchDurationMs = 0;  // 0: runs until closed
    bool closeAppEndOfDemo = false;
    bool captureLastFrame = false;  // writes "demo_<result name>.png" at the end
    int32_t selectedGpu = 0;        // the GPU whose driver text goes into result rows
    uint32_t processorCount = 1;
    bool startedFromCommandLine = false;  // a /start_demo_... option started the demo, not a Start button

    // OpenGL 3 and 4 demos
    bool gl3TorusRadeonFix = true;
    float gl4TessLevelOuter = 16.0f;
    float gl4TessLevelInner = 8.0f;
    bool gl4TessLevelAnim = true;

    // OpenCL demos
    uint32_t clDeviceType = kClDeviceTypeGpu;  // or kClDeviceTypeCpu
    uint32_t clPlatformIndex = 0;   // the platform chosen on the OpenCL panel
    int32_t clGpuDeviceIndex = 0;   // the device chosen in the panel's GPU list, counted among GPUs
    int32_t clCpuDeviceIndex = 0;   // the same among CPUs
    int32_t clDeviceIndex = 0;
    bool clDeviceIndexForced = false;
    bool glRenderInClDemos = true;
    bool clGlInterop = false;
    bool clNativeSin = true;
    bool clExplicitWorkgroupSize = true;
    bool clUseLocalMem = false;
    int32_t clSurfaceSegsX = 511;
    int32_t clSurfaceSegsZ = 511;
    int32_t clKernelWorkload = 0;
    int32_t clKernelWorkloadMad = 0;
    bool clKernelWorkloadDoCheck = false;
    int32_t clParticlesGpu = 1000000;
    int32_t clParticlesCpu = 1000000;
    bool clParticlesSin = false;
    bool clJuliaAnimated = true;
    int32_t clJuliaRttSize = 512;
};
