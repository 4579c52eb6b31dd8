#pragma once

#include <string>
#include <string_view>

// Texts from drivers, sysfs and the PCI id list made safe for the XML report, which declares UTF-8.
namespace report {

// `text` as well-formed UTF-8: every maximal ill-formed subsequence (a stray continuation byte, a cut or
// overlong sequence, an encoded surrogate) becomes one U+FFFD. The JSON writer replaces bad bytes the same
// way, so both formats of one report carry the same characters.
std::string validUtf8(std::string_view text);

// `text` fit for XML character data and for an attribute value in either kind of quotes: valid UTF-8 as
// above, the five markup characters as entities, tab, line feed and carriage return as character
// references (attribute normalisation would turn them into blanks), and the characters XML 1.0 forbids even
// as references (other C0 controls, U+FFFE, U+FFFF) as U+FFFD.
std::string xmlEscaped(std::string_view text);

}  // namespace report
