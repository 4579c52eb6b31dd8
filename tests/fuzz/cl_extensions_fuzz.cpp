// The OpenCL extension tokeniser on any platform or device extension string.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "compute/opencl_records.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Drivers hand over NUL-terminated text; whatever follows a NUL is not part of it.
    const std::string text(reinterpret_cast<const char*>(data), size);
    const compute::ClExtensionList names = compute::tokeniseClExtensions(text.c_str());

    const size_t blanks = size_t(std::count(text.c_str(), text.c_str() + std::strlen(text.c_str()), ' '));
    if (names.size() > blanks) std::abort();
    for (const std::string& name : names)
        if (name.size() < 3 || name.size() > compute::kClMaxTextLength || name.find(' ') != std::string::npos)
            std::abort();
    return 0;
}
