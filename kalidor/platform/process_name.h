#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Kalidornm {

// The command name of a process (<rootDir>/proc/<pid>/comm without its newline), cut to size - 1 characters;
// false and an empty text when it cannot be read.
bool readProcessName(const std::string& rootDir, uint32_t pid, char* name, size_t size);

}  // namespace Kalidornm
