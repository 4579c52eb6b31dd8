#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "kalidor/cpu_os_info.h"
#include "kalidor/platform/proc_system.h"

namespace {

using namespace Kalidornm;
namespace fs = std::filesystem;

// Values are shell-quoted; they used to keep their backslashes, and single quotes inside were cut.
TEST(OsRelease, ShellQuotingAndEscapesAreUndone) {
    const std::string text =
        "# written by hand\n"
        "NAME=Fedora\n"
        "ID = spaced\n"
        "PRETTY_NAME=\"Acme \\\"Rocket\\\" \\\\ \\$HOME \\`uname\\` \\n kept\"\n"
        "VERSION='it''s 1 \\\"raw\\\"'\n"
        "VARIANT=Server\\ Edition\n"
        "BUILD_ID=\"unterminated quote\n"
        "CODENAME=\"first\"\n"
        "CODENAME=\"second\"\r\n";
    EXPECT_EQ(osReleaseValue(text, "PRETTY_NAME"), "Acme \"Rocket\" \\ $HOME `uname` \\n kept");
    EXPECT_EQ(osReleaseValue(text, "NAME"), "Fedora");
    EXPECT_EQ(osReleaseValue(text, "ID"), "spaced");
    EXPECT_EQ(osReleaseValue(text, "VERSION"), "its 1 \\\"raw\\\"");  // single quotes escape nothing
    EXPECT_EQ(osReleaseValue(text, "VARIANT"), "Server Edition");
    EXPECT_EQ(osReleaseValue(text, "BUILD_ID"), "unterminated quote");
    EXPECT_EQ(osReleaseValue(text, "CODENAME"), "second");  // the last assignment wins, as in a shell
    EXPECT_EQ(osReleaseValue(text, "VERSION_ID"), std::nullopt);
    EXPECT_EQ(osReleaseValue("PRETTY_NAME=\"\"\n", "PRETTY_NAME"), "");
    EXPECT_EQ(osReleaseValue("PRETTY_NAME=\"ends in a backslash \\", "PRETTY_NAME"), "ends in a backslash \\");
}

class OsReleaseFile : public ::testing::Test {
protected:
    fs::path root = fs::temp_directory_path() / ("os_release_" + std::to_string(getpid()));
    void SetUp() override { fs::create_directories(root); }
    void TearDown() override { fs::remove_all(root); }
    void put(const char* path, const std::string& text) {
        fs::create_directories((root / path).parent_path());
        std::ofstream(root / path) << text;
    }
};

TEST_F(OsReleaseFile, PrettyNameFromEtcOrElseFromUsrLib) {
    put("usr/lib/os-release", "PRETTY_NAME=\"Vendor \\\"Base\\\"\"\n");
    EXPECT_EQ(readLinuxSystemFacts(root.string()).prettyName, "Vendor \"Base\"");
    put("etc/os-release", "PRETTY_NAME='Local & <Spin>'\n");
    EXPECT_EQ(readLinuxSystemFacts(root.string()).prettyName, "Local & <Spin>");
}

// The description field holds 127 bytes; a cut inside a UTF-8 character left a broken byte at its end.
TEST(OsTexts, ALongNameIsCutBetweenCharacters) {
    std::string name(124, 'x');
    name += "\xC3\xA9\xC3\xA9 Edition";  // the 127-byte cut falls inside the second "é"
    CpuOsInfo info;
    setLinuxOsTexts(info, name, "6.1.0", "x86_64");
    const std::string description = info.osDescription;
    EXPECT_EQ(description, std::string(124, 'x') + "\xC3\xA9");
    EXPECT_LT(description.size(), sizeof info.osDescription);

    std::string cut(125, 'x');
    cut += "\xE2\x82\xAC";  // a euro sign over bytes 125 to 127
    setLinuxOsTexts(info, cut, "6.1.0", "x86_64");
    EXPECT_EQ(std::string(info.osDescription), std::string(125, 'x'));
}

}  // namespace
