// The metrics endpoint as clients see it, good and bad ones, through the test server serving a fixed exposition.

#include "metrics_endpoint/fixed_exposition.h"
#include "metrics_endpoint/metrics_client.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace {

ServerProcess startPlainServer()
{
    return ServerProcess(FIXED_METRICS_SERVER, {"--serve-metrics=127.0.0.1:0"});
}

TEST(MetricsEndpoint, AnswersMetricsTheIndexAndErrorsByPathAndMethod)
{
    ServerProcess server = startPlainServer();
    ASSERT_NE(server.port(), 0) << server.errorText();

    const std::string metrics = get(server.port(), "/metrics");
    EXPECT_EQ(statusOf(metrics), 200) << metrics;
    EXPECT_NE(metrics.find("\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\n"), std::string::npos)
        << metrics;
    EXPECT_EQ(bodyOf(metrics), kFixedExposition);

    const std::string index = get(server.port(), "/");
    EXPECT_EQ(statusOf(index), 200);
    EXPECT_NE(index.find("Content-Type: text/html"), std::string::npos);
    EXPECT_NE(bodyOf(index).find("href=\"/metrics\""), std::string::npos);

    EXPECT_EQ(statusOf(get(server.port(), "/metrics/extra")), 404);
    EXPECT_EQ(statusOf(get(server.port(), "/favicon.ico")), 404);
    const std::string post = exchange(server.port(), "POST /metrics HTTP/1.1\r\nHost: x\r\nConnection: close\r\n"
                                                     "Content-Length: 3\r\n\r\nabc");
    EXPECT_EQ(statusOf(post), 405) << post;
    EXPECT_NE(post.find("Allow: GET, HEAD"), std::string::npos);
    EXPECT_EQ(statusOf(get(server.port(), "/metrics", "DELETE")), 405);
    const std::string head = get(server.port(), "/metrics", "HEAD");
    EXPECT_EQ(statusOf(head), 200);
    EXPECT_EQ(bodyOf(head), "");

    EXPECT_EQ(server.stop(), 0);
}

TEST(MetricsEndpoint, MalformedAndOversizeRequestsGetClientErrorsAndTheServerGoesOn)
{
    ServerProcess server = startPlainServer();
    ASSERT_NE(server.port(), 0) << server.errorText();

    // A request line without a target: the library closes the connection without a status line.
    for (const char* noTarget : {"GARBAGE\r\n\r\n", "GET\r\n\r\n"}) {
        const std::string answer = exchange(server.port(), noTarget);
        EXPECT_TRUE(answer.empty() || (statusOf(answer) >= 400 && statusOf(answer) < 500)) << answer;
    }
    const std::vector<std::string> malformed = {
        "GET /metrics HTTP/1.1\r\nHost: x\r\nno colon in this header\r\n\r\n",
        "GET /metrics HTTP/1.1\r\n\r\n",  // HTTP/1.1 without Host
        "GET /metrics HTTP/1.1\r\nHost: x\r\nContent-Length: -5\r\n\r\n",
        std::string("GET /met\0rics HTTP/1.1\r\nHost: x\r\n\r\n", 37),
    };
    for (const std::string& request : malformed) {
        const int status = statusOf(exchange(server.port(), request));
        EXPECT_TRUE(status >= 400 && status < 500) << "status " << status << " for " << request;
    }

    const std::string longValue(10 * 1024, 'a');
    const int longHeader = statusOf(exchange(server.port(), "GET /metrics HTTP/1.1\r\nHost: x\r\nX-Long: " +
                                                                longValue + "\r\nConnection: close\r\n\r\n"));
    EXPECT_EQ(longHeader, 431);
    const int longLine =
        statusOf(exchange(server.port(), "GET /metrics?q=" + longValue + " HTTP/1.1\r\nHost: x\r\n\r\n"));
    EXPECT_EQ(longLine, 414);
    // Far beyond what the library keeps for a request's head: refused before it is even parsed.
    const std::string huge(100 * 1024, 'b');
    const int hugeHeader =
        statusOf(exchange(server.port(), "GET /metrics HTTP/1.1\r\nHost: x\r\nX-Huge: " + huge + "\r\n\r\n"));
    EXPECT_NE(hugeHeader, 200);
    // Just under the limit is a request like any other.
    const std::string fits(7 * 1024, 'c');
    EXPECT_EQ(statusOf(exchange(server.port(), "GET /metrics HTTP/1.1\r\nHost: x\r\nX-Fits: " + fits +
                                                   "\r\nConnection: close\r\n\r\n")),
              200);

    EXPECT_EQ(bodyOf(get(server.port(), "/metrics")), kFixedExposition);
    EXPECT_EQ(server.stop(), 0);
}

TEST(MetricsEndpoint, TwoHundredConcurrentScrapesAreAllAnswered)
{
    ServerProcess server = startPlainServer();
    ASSERT_NE(server.port(), 0) << server.errorText();

    constexpr int kScrapers = 200;
    std::atomic<int> connected{0};
    std::vector<std::future<std::string>> answers;
    for (int i = 0; i < kScrapers; ++i) {
        answers.push_back(std::async(std::launch::async, [&] {
            ClientSocket client(server.port());
            ++connected;
            // Every scraper holds its connection open before any asks, so all 200 are open at once.
            const auto deadline = SteadyClock::now() + 10s;
            while (connected < kScrapers && SteadyClock::now() < deadline)
                std::this_thread::sleep_for(1ms);
            if (!client.connected() || !client.send("GET /metrics HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"))
                return std::string();
            return client.readUntilClosed(20000ms);
        }));
    }
    int answered = 0;
    for (auto& answer : answers) {
        const std::string text = answer.get();
        answered += statusOf(text) == 200 && bodyOf(text) == kFixedExposition;
    }
    EXPECT_EQ(answered, kScrapers);
    EXPECT_EQ(server.stop(), 0);
}

TEST(MetricsEndpoint, AByteASecondClientIsDroppedWithinTheDeadlineAndDelaysNoOne)
{
    ServerProcess server = startPlainServer();
    ASSERT_NE(server.port(), 0) << server.errorText();

    ClientSocket slow(server.port());
    ASSERT_TRUE(slow.connected());
    const auto start = SteadyClock::now();
    std::atomic<bool> dropped{false};
    std::thread trickle([&] {
        const std::string request = "GET /metrics HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Slow: " + std::string(64, 's');
        for (char c : request) {
            if (!slow.send(std::string(1, c)) || dropped)
                return;
            std::this_thread::sleep_for(1s);
        }
    });
    std::this_thread::sleep_for(2s);
    const auto scrapeStart = SteadyClock::now();
    EXPECT_EQ(bodyOf(get(server.port(), "/metrics")), kFixedExposition);
    EXPECT_LT(SteadyClock::now() - scrapeStart, 2s) << "a normal scrape waited on the slow client";

    dropped = slow.closedWithin(12000ms);
    EXPECT_TRUE(dropped) << "the slow client was still connected 14 s after it started";
    EXPECT_LT(SteadyClock::now() - start, 12s);
    trickle.join();
    EXPECT_EQ(server.stop(), 0);
}

TEST(MetricsEndpoint, AnIdleConnectionIsDropped)
{
    ServerProcess server = startPlainServer();
    ASSERT_NE(server.port(), 0) << server.errorText();
    ClientSocket idle(server.port());
    ASSERT_TRUE(idle.connected());
    EXPECT_TRUE(idle.closedWithin(12000ms));
    EXPECT_EQ(server.stop(), 0);
}

TEST(MetricsEndpoint, StopsWithinASecondOfSigtermWithConnectionsOpen)
{
    ServerProcess server = startPlainServer();
    ASSERT_NE(server.port(), 0) << server.errorText();
    ClientSocket idle(server.port());
    ClientSocket halfway(server.port());
    ASSERT_TRUE(halfway.send("GET /metrics HTTP/1.1\r\nHost: x\r\n"));
    EXPECT_EQ(statusOf(get(server.port(), "/metrics")), 200);

    const auto start = SteadyClock::now();
    EXPECT_EQ(server.stop(1000ms), 0);
    EXPECT_LT(SteadyClock::now() - start, 1s);
}

TEST(MetricsEndpoint, RefusesAnAddressInUseOrNotItsOwnWithAMessage)
{
    ServerProcess first = startPlainServer();
    ASSERT_NE(first.port(), 0) << first.errorText();
    ServerProcess second(FIXED_METRICS_SERVER, {"--serve-metrics=127.0.0.1:" + std::to_string(first.port())});
    EXPECT_EQ(second.waitForExit(5000ms), 1);
    EXPECT_NE(second.errorText().find("cannot serve metrics on 127.0.0.1:"), std::string::npos)
        << second.errorText();
    EXPECT_EQ(first.stop(), 0);
}

}  // namespace
