#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "online/validation_server_process.h"
#include "report/online/submit_body.h"
#include "report/online/update_check.h"
#include "report/online/validation_submission.h"

namespace {

using namespace online;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Short enough to keep the suite quick, long enough for a loaded machine's loopback.
constexpr ExchangeLimits kQuickLimits{1000, 1500};

SubmissionFacts smallMachine() {
    SubmissionFacts facts;
    facts.cpuName = "Fixture CPU 3000";
    facts.cpuSpeedMhz = 3600;
    facts.osDescription = "Linux 6.1.0";
    SubmitGpu gpu;
    gpu.vendorId = 0x10DE, gpu.deviceId = 0x1180;
    gpu.name = "NVIDIA GeForce GTX 680";
    gpu.busId = 1;
    facts.gpus.push_back(gpu);
    return facts;
}

std::vector<std::string> headLines(const std::string& request) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = request.find("\r\n", start)) != std::string::npos; start = end + 2) {
        if (end == start) break;
        lines.push_back(request.substr(start, end - start));
    }
    return lines;
}

std::string bodyOf(const std::string& request) {
    const size_t blank = request.find("\r\n\r\n");
    return blank == std::string::npos ? std::string() : request.substr(blank + 4);
}

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

TEST(OnlineExchange, RequestsCarryExactlyTheirListedLinesAndThePasswordOnlyInTheBody) {
    ValidationServerProcess server({"--version", "1.27.0.0"});
    ASSERT_TRUE(server.started());
    const SubmissionFacts facts = smallMachine();
    const SubmitReply reply = submitValidation(server.hosts(), facts, " Jane Doe!", "s3cr3t pw", kQuickLimits);
    EXPECT_EQ(reply.result, 1);
    VersionNumber latest = {};
    EXPECT_EQ(checkForUpdate(server.hosts(), latest, kQuickLimits), kUpdateNewer);
    EXPECT_EQ(latest, (VersionNumber{1, 27, 0, 0}));

    const std::vector<std::string> requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    std::string expectedBody;
    ASSERT_TRUE(buildSubmitBody(facts, "Jane%20Doe", "s3cr3tpw", expectedBody));
    const std::string host = "Host: 127.0.0.1:" + std::to_string(server.port());
    EXPECT_EQ(headLines(requests[0]),
              (std::vector<std::string>{"POST /gpudb/s50.php HTTP/1.1", host, "User-Agent: Lumenscope",
                                        "Content-Type: application/x-www-form-urlencoded",
                                        "Content-Length: " + std::to_string(expectedBody.size())}));
    EXPECT_EQ(bodyOf(requests[0]), expectedBody);
    EXPECT_EQ(requests[0].find("s3cr3tpw"), requests[0].rfind("s3cr3tpw"));  // once, and that in the body
    EXPECT_GT(requests[0].find("s3cr3tpw"), requests[0].find("\r\n\r\n"));

    EXPECT_EQ(headLines(requests[1]),
              (std::vector<std::string>{"GET /lumenscope/version.php HTTP/1.1", host,
                                        "User-Agent: Lumenscope_v1.26.0.0", "Referer: Lumenscope_v1.26.0.0"}));
    EXPECT_EQ(bodyOf(requests[1]), "");
}

TEST(OnlineExchange, EveryReplyFormEndsInItsButtonOutcome) {
    struct Case {
        const char* reply;
        BoxKind box;
        const char* boxText;
        const char* page;  // behind the host; null: none
        bool onDatabase;
    };
    const Case cases[] = {
        {"[17]", BoxKind::None, "", "/gpudb/gpu.php?which=17&v=2", true},
        {"[abc&p=x]", BoxKind::None, "", "/gpudb/gpu.php?which=abc&p=x", true},
        {"[MSG=hello]", BoxKind::Info, "hello", nullptr, false},
        {"[-1]", BoxKind::None, "", "/redirect.php?id=416", false},
        {"[-2]", BoxKind::Info, "Submissions are disabled.", "/redirect.php?id=415", false},
        {"[-3]", BoxKind::Info, "The GPU Database requires a new version of Lumenscope.", "/redirect.php?id=401",
         false},
        {"[-4]", BoxKind::None, "", "/redirect.php?id=417", false},
        {"[-5]", BoxKind::None, "", "/redirect.php?id=418", false},
        {"[-6]", BoxKind::Error, "Could not send validation data (-6). Sorry...", nullptr, false},
        {"no brackets", BoxKind::None, "", "/redirect.php?id=416", false},
        {"[abc]", BoxKind::Error, "Could not send validation data (0). Sorry...", nullptr, false},
    };
    for (const Case& c : cases) {
        ValidationServerProcess server({"--mode", "text", "--text", c.reply});
        ASSERT_TRUE(server.started());
        const SubmitButtonOutcome outcome =
            pressSubmitButton(server.hosts(), smallMachine(), "Anonymous", "", 0ms, kQuickLimits);
        EXPECT_EQ(outcome.box, c.box) << c.reply;
        EXPECT_EQ(outcome.boxText, c.boxText) << c.reply;
        EXPECT_EQ(outcome.pageUrl, c.page ? server.url() + c.page : "") << c.reply;
    }
    // Which host a page lies on shows only with hosts that differ.
    const OnlineHosts ours = defaultOnlineHosts();
    EXPECT_EQ(submitButtonOutcome(ours, SubmitReply{17, "", ""}).pageUrl,
              ours.database + "/gpudb/gpu.php?which=17&v=2");
    EXPECT_EQ(submitButtonOutcome(ours, SubmitReply{-1, "", ""}).pageUrl, ours.web + "/redirect.php?id=416");
}

TEST(OnlineExchange, FieldsBeyondTheirLimitsNeverReachTheServer) {
    ValidationServerProcess server;
    ASSERT_TRUE(server.started());
    const SubmitButtonOutcome outcome = pressSubmitButton(server.hosts(), smallMachine(),
                                                          "A name that is longer than thirty characters",
                                                          "fourteenchars!XYZ", 0ms, kQuickLimits);
    EXPECT_EQ(outcome.pageUrl, server.url() + "/gpudb/gpu.php?which=1&v=2");
    ASSERT_TRUE(server.waitForRequests(1));
    const std::string body = bodyOf(server.requests()[0]);
    EXPECT_NE(body.find("&screen_name=A%20name%20that%20is%20longer%20than%20thi&"), std::string::npos) << body;
    EXPECT_NE(body.find("&submit_password=fourteenchars&"), std::string::npos) << body;
}

TEST(OnlineExchange, AReplySplitOverTwoPacketsIsReadWhole) {
    ValidationServerProcess server({"--mode", "split", "--delay", "0.3", "--version", "1.26.0.1"});
    ASSERT_TRUE(server.started());
    EXPECT_EQ(submitValidation(server.hosts(), smallMachine(), "", "", kQuickLimits).result, 1);
    VersionNumber latest = {};
    EXPECT_EQ(checkForUpdate(server.hosts(), latest, kQuickLimits), kUpdateNewer);
}

TEST(OnlineExchange, UpdateButtonShowsTheDialogOnlyForANewerVersion) {
    ValidationServerProcess newer({"--version", "1.27.0.3"});
    ASSERT_TRUE(newer.started());
    VersionNumber latest = {};
    const UpdateButtonOutcome shown = pressUpdateButton(newer.hosts(), latest, 0ms, kQuickLimits);
    EXPECT_EQ(shown.result, kUpdateNewer);
    ASSERT_TRUE(shown.showDialog);
    EXPECT_EQ(shown.dialog.title, "Lumenscope - Check for update");
    EXPECT_EQ(shown.dialog.text, "A newer version is available: 1.27.0.3");
    EXPECT_EQ(shown.dialog.downloadUrl, newer.url() + "/redirect.php?id=401");

    // A failed check says the same as a current version.
    const OnlineHosts dead = *onlineHostsFromUrl("http://127.0.0.1:" + std::to_string(deadLoopbackPort()));
    latest = {};
    const UpdateButtonOutcome failed = pressUpdateButton(dead, latest, 0ms, kQuickLimits);
    EXPECT_EQ(failed.result, kUpdateCheckFailed);
    EXPECT_FALSE(failed.showDialog);
    EXPECT_EQ(failed.infoText, "You  have the latest version of Lumenscope.");
}

TEST(OnlineExchange, DeadPortsAndClosedConnectionsFailAtOnce) {
    const OnlineHosts dead = *onlineHostsFromUrl("http://127.0.0.1:" + std::to_string(deadLoopbackPort()));
    Clock::time_point start = Clock::now();
    EXPECT_EQ(submitValidation(dead, smallMachine(), "", "").result, -1);
    std::printf("submission to a dead port: %.3f s\n", secondsSince(start));
    EXPECT_LT(secondsSince(start), 2.0);

    ValidationServerProcess closing({"--mode", "close"});
    ASSERT_TRUE(closing.started());
    start = Clock::now();
    EXPECT_EQ(submitValidation(closing.hosts(), smallMachine(), "", "").result, -1);
    VersionNumber latest = {};
    EXPECT_EQ(checkForUpdate(closing.hosts(), latest), kUpdateCheckFailed);
    EXPECT_LT(secondsSince(start), 2.0);

    // No usable server: nothing is sent anywhere.
    EXPECT_EQ(submitValidation(onlineHostsForOption("htp://typo"), smallMachine(), "", "").result, -1);
}

TEST(OnlineExchange, SilentAndSlowServersEndInTheTimeOut) {
    ValidationServerProcess silent({"--mode", "silent"});
    ASSERT_TRUE(silent.started());
    Clock::time_point start = Clock::now();
    EXPECT_EQ(submitValidation(silent.hosts(), smallMachine(), "", "").result, -1);
    const double submitSeconds = secondsSince(start);
    std::printf("submission to a silent server: %.3f s\n", submitSeconds);
    const double limit = ExchangeLimits{}.totalTimeoutMs / 1000.0;
    EXPECT_GE(submitSeconds, limit - 0.1);
    EXPECT_LT(submitSeconds, limit + 2.0);

    ValidationServerProcess slow({"--mode", "delay", "--delay", "3"});
    ASSERT_TRUE(slow.started());
    start = Clock::now();
    VersionNumber latest = {};
    EXPECT_EQ(checkForUpdate(slow.hosts(), latest, kQuickLimits), kUpdateCheckFailed);
    EXPECT_LT(secondsSince(start), 3.0);
}

}  // namespace
