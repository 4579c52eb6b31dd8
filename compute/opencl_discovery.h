#pragma once

// OpenCL platforms and devices, found once at start-up.
namespace compute {

// Loads the OpenCL library and lists every platform and device; logs what it found.
void discoverOpenCl();

// Releases the OpenCL records and the library, then clears the entry-point table.
void releaseOpenCl();

// Frees the platform array if it is still there.
void freeOpenClPlatforms();

}  // namespace compute
