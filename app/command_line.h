#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct AppState;

// Applies every option found in `text` to `state`. Options are found by plain, case-sensitive substring
// search over the whole line, in table order, so later rows win where two rows set one field; only of the
// /start_demo_... options, which take their rows from the demo table, the first found in table order wins,
// since one demo starts. A null line parses nothing. Nothing here can fail or print.
void parseCommandLine(AppState& state, const char* text);

// The raw command line: the program's arguments joined by single blanks, without the program name.
std::string joinArguments(int argc, const char* const* argv);

// Number of options the parser knows.
size_t commandLineOptionCount();
// The text of option `index` in test order, or null past the end.
const char* commandLineOptionText(size_t index);

// The two requests answered before start-up; found on the line the same way as every other option.
inline constexpr const char* kHelpOption = "--help";
inline constexpr const char* kVersionOption = "--version";
bool helpRequested(const char* text);
bool versionRequested(const char* text);

// One line of the option list that --help prints and the manual page holds.
struct OptionDescription {
    const char* text;
    const char* value;  // placeholder of the number behind '=', null for a flag
    const char* description;
};

// Every option the parser knows in test order, the two-dash options (app/long_options.h), then --help and
// --version.
std::vector<OptionDescription> describedOptions();
