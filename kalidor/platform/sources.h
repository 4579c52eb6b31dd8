#pragma once

#include <string>

namespace Kalidornm {

// Where the library reads the machine from. Tests point these at fixture trees and fake libraries; a real run
// uses the defaults.
struct KalidorSources {
    std::string rootDir = "/";  // prefix for /sys, /proc and /dev paths
    std::string nvmlLibrary = "libnvidia-ml.so.1";  // NVIDIA's management library, by soname or path
};

}  // namespace Kalidornm
