#pragma once

#include <string>

struct AppState;

// Applies every option found in `text` to `state`. Options are found by plain, case-sensitive substring
// search over the whole line, in table order, so later rows win where two rows set one field. A null line
// parses nothing. Nothing here can fail or print.
void parseCommandLine(AppState& state, const char* text);

// The raw command line: the program's arguments joined by single blanks, without the program name.
std::string joinArguments(int argc, const char* const* argv);

// Number of options the parser knows.
size_t commandLineOptionCount();
// The text of option `index` in test order, or null past the end.
const char* commandLineOptionText(size_t index);
