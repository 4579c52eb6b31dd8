#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "demos/media_directory.h"

namespace {

namespace fs = std::filesystem;

class MediaDirectory : public ::testing::Test {
protected:
    fs::path prefix = fs::temp_directory_path() / ("media_prefix_" + std::to_string(getpid()));
    void TearDown() override { fs::remove_all(prefix); }

    // The binary's folder as AppState holds it: absolute, ending with '/'.
    std::string binaryFolder() const { return (prefix / INSTALL_BINDIR).string() + "/"; }
    std::string sourceMedia() const { return fs::path(SOURCE_MEDIA_DIR).lexically_normal().string() + "/"; }
};

TEST_F(MediaDirectory, InstalledMediaBesideTheBinaryWinOverTheSourceTree) {
    fs::create_directories(prefix / INSTALL_BINDIR);
    fs::create_directories(prefix / MEDIA_INSTALL_DIR);
    EXPECT_EQ(findMediaDirectory(binaryFolder()), (prefix / MEDIA_INSTALL_DIR).lexically_normal().string() + "/");
}

TEST_F(MediaDirectory, FallsBackToTheSourceTreeWhenNothingIsInstalledOrTheFolderIsUnknown) {
    fs::create_directories(prefix / INSTALL_BINDIR);
    EXPECT_EQ(findMediaDirectory(binaryFolder()), sourceMedia());
    EXPECT_EQ(findMediaDirectory(""), sourceMedia());
    EXPECT_EQ(findMediaDirectory("/no/such/folder/"), sourceMedia());
    // A file where the media folder should be is not the media folder.
    fs::create_directories((prefix / MEDIA_INSTALL_DIR).parent_path());
    std::ofstream(prefix / MEDIA_INSTALL_DIR) << "not a folder";
    EXPECT_EQ(findMediaDirectory(binaryFolder()), sourceMedia());
}

}  // namespace
