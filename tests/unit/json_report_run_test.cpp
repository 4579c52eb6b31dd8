#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "app/app_state.h"
#include "app/live_runs.h"
#include "base/version.h"

// --json's printing on its own: a hardware library that would not start still leaves a report to print, and
// a stream that cannot take the text is told by the status.
namespace {

std::string everythingIn(std::FILE* file) {
    std::rewind(file);
    std::string text;
    char chunk[4096];
    for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, file)) > 0;) text.append(chunk, n);
    return text;
}

TEST(JsonReportRun, WithoutTheLibraryPrintsTheProgramsReportWithNoGpus) {
    const auto state = std::make_unique<AppState>();
    initAppState(*state);
    std::FILE* out = std::tmpfile();
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(printJsonReport(*state, nullptr, out), 0);
    const nlohmann::json report = nlohmann::json::parse(everythingIn(out), nullptr, false);
    std::fclose(out);
    ASSERT_FALSE(report.is_discarded());
    EXPECT_EQ(report["program"]["name"], lumenscope::kDisplayName);
    EXPECT_EQ(report["program"]["version"], lumenscope::kVersionText);
    EXPECT_TRUE(report["gpus"].is_array());
    EXPECT_TRUE(report["gpus"].empty());
}

TEST(JsonReportRun, AStreamThatCannotTakeTheTextGivesStatusOne) {
    const auto state = std::make_unique<AppState>();
    initAppState(*state);
    std::FILE* full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr) << "/dev/full is missing";
    EXPECT_EQ(printJsonReport(*state, nullptr, full), 1);
    std::fclose(full);
}

}  // namespace
