#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "report/report_file.h"
#include "tests/report/unwritable_directory.h"

namespace {

namespace fs = std::filesystem;

std::string readWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void writeWhole(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

class ReportFile : public ::testing::Test {
protected:
    fs::path dir = fs::temp_directory_path() /
                   ("report_file_" + std::to_string(getpid()) + "_" +
                    ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }

    size_t entriesInDir() const { return size_t(std::distance(fs::directory_iterator(dir), {})); }
};

// Limits the size of files this process writes, the way a nearly full disk stops a write part way.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        m_previousHandler = std::signal(SIGXFSZ, SIG_IGN);  // a refused write then fails with EFBIG
        rlimit limit = m_previous;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previousHandler);
    }

private:
    rlimit m_previous{};
    void (*m_previousHandler)(int) = nullptr;
};

TEST_F(ReportFile, WritesTheWholeTextAndReplacesAnOlderReport) {
    const fs::path target = dir / "report.txt";
    writeWhole(target, "an older and longer report\n");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    int error = -1;
    ASSERT_TRUE(report::writeReportFile(target.c_str(), "new\n", &error));
    EXPECT_EQ(readWhole(target), "new\n");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(entriesInDir(), 1u);  // no temporary file left beside it

    // A bare name lands in the working directory, as the batch files do.
    const fs::path previous = fs::current_path();
    fs::current_path(dir);
    EXPECT_TRUE(report::writeReportFile("report.xml", "<x/>"));
    fs::current_path(previous);
    EXPECT_EQ(readWhole(dir / "report.xml"), "<x/>");
}

// A link named report.txt used to be followed, so a run overwrote whatever file it pointed at.
TEST_F(ReportFile, ALinkNamedLikeTheReportIsReplacedAndItsTargetKept) {
    const fs::path victim = dir / "precious.txt";
    writeWhole(victim, "keep me\n");
    const fs::path link = dir / "report.txt";
    fs::create_symlink(victim, link);
    const fs::path dangling = dir / "report.json";
    fs::create_symlink(dir / "created-through-the-link.json", dangling);

    ASSERT_TRUE(report::writeReportFile(link.c_str(), "report\n"));
    ASSERT_TRUE(report::writeReportFile(dangling.c_str(), "{}\n"));
    EXPECT_EQ(readWhole(victim), "keep me\n");
    EXPECT_FALSE(fs::is_symlink(link));
    EXPECT_EQ(readWhole(link), "report\n");
    EXPECT_FALSE(fs::is_symlink(dangling));
    EXPECT_FALSE(fs::exists(dir / "created-through-the-link.json"));
}

// On a full disk the text report used to be cut mid-line and the JSON one left at 0 bytes.
TEST_F(ReportFile, AWriteRefusedPartWayLeavesTheOldReportUntouched) {
    const fs::path target = dir / "report.txt";
    writeWhole(target, "the previous run's report\n");
    const std::string big(64 * 1024, 'r');
    int error = 0;
    bool written = true;
    {
        FileSizeLimit limit(4096);
        written = report::writeReportFile(target.c_str(), big, &error);
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(error, EFBIG);
    EXPECT_EQ(readWhole(target), "the previous run's report\n");
    EXPECT_EQ(entriesInDir(), 1u);
}

TEST_F(ReportFile, AFullDeviceIsReportedAsNoSpace) {
    const int fd = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(fd, 0);
    int error = 0;
    EXPECT_FALSE(report::writeWholeText(fd, "any report", &error));
    EXPECT_EQ(error, ENOSPC);
    close(fd);
}

TEST_F(ReportFile, AnUnwritableDirectoryOrNoPathGivesTheReason) {
    const UnwritableDirectory readOnly("report_file_read_only");
    const fs::path target = readOnly.path() / "report.txt";
    int error = 0;
    EXPECT_FALSE(report::writeReportFile(target.c_str(), "text", &error));
    EXPECT_TRUE(error == EACCES || error == EROFS || error == EPERM) << error;
    EXPECT_FALSE(fs::exists(target));

    EXPECT_FALSE(report::writeReportFile((dir / "missing" / "report.txt").c_str(), "text", &error));
    EXPECT_EQ(error, ENOENT);
    EXPECT_FALSE(report::writeReportFile(nullptr, "text", &error));
    EXPECT_EQ(error, EINVAL);
    EXPECT_FALSE(report::writeReportFile("", "text", &error));
    EXPECT_EQ(error, EINVAL);
    // A directory where the file should be: the rename fails and the temporary file goes again.
    fs::create_directories(dir / "report.txt");
    EXPECT_FALSE(report::writeReportFile((dir / "report.txt").c_str(), "text", &error));
    EXPECT_EQ(error, EISDIR);
    EXPECT_EQ(entriesInDir(), 1u);
}

}  // namespace
