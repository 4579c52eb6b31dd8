#pragma once

#include <string>

namespace exporter {

// Writes `text` to `path` whole or not at all: into a temporary file in the same folder, flushed to disk, then
// renamed over `path`, so a reader (node_exporter's textfile collector) never sees half a file. The file is
// readable by all (0644). False with a message naming the fault.
bool writeTextFileAtomically(const std::string& path, const std::string& text, std::string* error);

}  // namespace exporter
