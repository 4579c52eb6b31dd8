#pragma once

#include <string>

// What --help prints: a usage line, how options are found, and one line per option with its description.
std::string helpText();

// What --version prints: the display name and the four version numbers, one line.
std::string versionText();

// The text the line asks for, --help before --version, or an empty text when it asks for neither. A null line
// asks for nothing.
std::string requestedInformation(const char* line);
