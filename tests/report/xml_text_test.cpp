#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "report/xml_text.h"

namespace {

using report::validUtf8;
using report::xmlEscaped;

// The bytes the JSON writer puts between the quotes for `text` (which holds nothing it would escape).
std::string asTheJsonWriterRepairsIt(const std::string& text) {
    const std::string dumped =
        nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return dumped.substr(1, dumped.size() - 2);
}

// Both formats of one report must carry the same characters, whatever bytes a driver gave.
TEST(XmlText, RepairsBadBytesExactlyAsTheJsonReportDoes) {
    const std::vector<std::string> texts = {
        "plain ASCII",
        "Caf\xC3\xA9 \xE2\x80\x94 \xF0\x9F\x8E\xAE",  // valid two-, three- and four-byte characters
        "Caf\xE9 Latin-1",                            // a Latin-1 byte where UTF-8 is expected
        "stray \x80\xBF continuation",
        "overlong \xC0\xAF and \xE0\x80\xAF",
        "surrogate \xED\xA0\x80 half",
        "beyond \xF4\x90\x80\x80 U+10FFFF",
        "lead bytes \xF5\xFF\xFE",
        "cut three-byte \xE2\x82 then text",
        "cut four-byte \xF0\x9F\x8E",  // at the very end
        "cut at the end \xC3",
    };
    for (const std::string& text : texts) {
        const std::string repaired = validUtf8(text);
        EXPECT_EQ(repaired, asTheJsonWriterRepairsIt(text)) << text;
        EXPECT_EQ(validUtf8(repaired), repaired) << text;
    }
    EXPECT_EQ(validUtf8(texts[1]), texts[1]);
}

TEST(XmlText, ForbiddenCharactersBecomeTheReplacementCharacter) {
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(xmlEscaped(std::string("a\x01\x1F") + '\0' + "b"), "a" + replacement + replacement + replacement + "b");
    EXPECT_EQ(xmlEscaped("\xEF\xBF\xBF\xEF\xBF\xBE"), replacement + replacement);  // U+FFFF, U+FFFE
    EXPECT_EQ(xmlEscaped("\xF0\x9F\x8E\xAE \x7F"), "\xF0\x9F\x8E\xAE \x7F");      // allowed as they are
}

}  // namespace
