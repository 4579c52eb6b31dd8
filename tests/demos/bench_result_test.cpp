#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "demos/harness/bench_result.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> lines(const fs::path& path) {
    std::ifstream in(path);
    std::vector<std::string> out;
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

std::vector<std::string> columns(const std::string& row) {
    std::vector<std::string> out(1);
    for (char c : row) {
        if (c == ',')
            out.emplace_back();
        else
            out.back() += c;
    }
    return out;
}

class BenchResultFile : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("bench_result_" + std::to_string(getpid()) + "_" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
        file = dir / "bench_result.csv";
    }
    void TearDown() override { fs::remove_all(dir); }
    fs::path dir, file;
};

BenchResultValues openGlRun() {
    BenchResultValues v;
    v.renderer = "Mesa software rasterizer";
    v.driver = "23.1";
    v.testName = "GL3_TriangleOfDeath";
    v.width = 600;
    v.height = 400;
    v.clNativeSin = true;
    v.clExplicitWorkgroupSize = true;
    return v;
}

TEST(BenchResultRow, WithoutAnOpenClDeviceTheClColumnsStayEmptyAndEveryRowHasNineteenColumns) {
    const std::string row = formatBenchResultRow(openGlRun());
    EXPECT_EQ(row, "Mesa software rasterizer,23.1,,,,,,GL3_TriangleOfDeath,0,600,400,NO,YES,YES,global mem,0,10000,0,NULL");
    EXPECT_EQ(columns(kBenchResultHeader).size(), 19u);
    EXPECT_EQ(columns(row).size(), 19u);
}

TEST(BenchResultRow, WithADeviceTheClColumnsCarryItsNameTypeUnitsClockAndDriver) {
    BenchResultValues v = openGlRun();
    v.hasClDevice = true;
    v.clName = "cpu-haswell-AMD EPYC";
    v.clTypeCpu = true;
    v.clComputeUnits = 2;
    v.clClockMhz = 2596;
    v.clDriver = "5.0+debian";
    v.clGlInterop = true;
    v.clLocalMem = true;
    v.msaa = 4;
    v.avgFps = 60, v.minFps = 55, v.maxFps = 65;
    const std::vector<std::string> c = columns(formatBenchResultRow(v));
    ASSERT_EQ(c.size(), 19u);
    EXPECT_EQ(c[2], "cpu-haswell-AMD EPYC");
    EXPECT_EQ(c[3], "CPU");
    EXPECT_EQ(c[4], "2");
    EXPECT_EQ(c[5], "2596");
    EXPECT_EQ(c[6], "5.0+debian");
    EXPECT_EQ(c[8], "4");
    EXPECT_EQ(c[11], "YES");
    EXPECT_EQ(c[14], "local mem");
    EXPECT_EQ(c[15], "60");
    EXPECT_EQ(c[16], "55");
    EXPECT_EQ(c[17], "65");
    EXPECT_EQ(c[18], "NULL");
}

TEST(BenchResultRow, ACommaOrLineBreakInsideANameDoesNotShiftTheColumns) {
    BenchResultValues v = openGlRun();
    v.renderer = "GPU, rev. 2\nsecond line";
    v.driver = "r1,2";
    const std::string row = formatBenchResultRow(v);
    EXPECT_EQ(columns(row).size(), 19u);
    EXPECT_EQ(row.find('\n'), std::string::npos);
    EXPECT_EQ(columns(row)[7], "GL3_TriangleOfDeath");
}

TEST_F(BenchResultFile, TheFirstRowBringsTheHeaderLaterRowsOnlyThemselves) {
    ASSERT_TRUE(appendBenchResultRow(file.c_str(), "first"));
    ASSERT_TRUE(appendBenchResultRow(file.c_str(), "second"));
    EXPECT_EQ(lines(file), (std::vector<std::string>{kBenchResultHeader, "first", "second"}));
    // Nothing is left behind next to the file.
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
}

TEST_F(BenchResultFile, RowsOfDemosEndingTogetherNeverInterleaveAndTheHeaderComesOnce) {
    constexpr int kWriters = 8, kRowsEach = 50;
    std::vector<std::thread> writers;
    for (int w = 0; w < kWriters; ++w) {
        writers.emplace_back([&, w] {
            BenchResultValues v = openGlRun();
            v.testName = "writer" + std::to_string(w) + std::string(200, 'x');
            for (int r = 0; r < kRowsEach; ++r) appendBenchResultRow(file.c_str(), formatBenchResultRow(v));
        });
    }
    for (std::thread& writer : writers) writer.join();
    const std::vector<std::string> all = lines(file);
    ASSERT_EQ(all.size(), size_t(kWriters * kRowsEach + 1));
    EXPECT_EQ(all[0], kBenchResultHeader);
    for (size_t i = 1; i < all.size(); ++i) {
        ASSERT_EQ(columns(all[i]).size(), 19u) << all[i];
        EXPECT_EQ(all[i].rfind("Mesa software rasterizer,23.1,", 0), 0u) << all[i];
    }
}

TEST_F(BenchResultFile, AFullDiskLosesThatRowOnlyAndTheNextRowIsWritten) {
    // The null device that is always full: opening works, writing fails with "no space left".
    ASSERT_TRUE(fs::exists("/dev/full"));
    EXPECT_FALSE(appendBenchResultRow("/dev/full", "lost"));
    EXPECT_TRUE(appendBenchResultRow(file.c_str(), "kept"));
    EXPECT_EQ(lines(file), (std::vector<std::string>{kBenchResultHeader, "kept"}));
}

TEST_F(BenchResultFile, APathInAMissingDirectoryFailsWithoutCreatingAnything) {
    const fs::path missing = dir / "no_such_dir" / "bench_result.csv";
    EXPECT_FALSE(appendBenchResultRow(missing.c_str(), "lost"));
    EXPECT_FALSE(fs::exists(dir / "no_such_dir"));
}

}  // namespace
