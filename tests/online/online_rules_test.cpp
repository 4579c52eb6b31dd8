#include <gtest/gtest.h>

#include <string>

#include "report/online/online_hosts.h"
#include "report/online/reply_parsers.h"
#include "report/online/text_filters.h"

namespace {

using namespace online;

TEST(TextFilters, AScreenNameOfTwoWordsLosesItsMarkAndLeadingBlank) {
    EXPECT_EQ(sanitizeForUrl(" Jane Doe!"), "Jane%20Doe");
    EXPECT_EQ(sanitizeForName(" Jane Doe!"), "Jane_Doe");
    EXPECT_EQ(sanitizeKeepOnly(" pass word"), "password");
    // Blanks behind the last kept character still count: they follow a kept one.
    EXPECT_EQ(sanitizeForUrl("ab "), "ab%20");
}

TEST(TextFilters, NothingThatCouldSplitAFormItemSurvives) {
    const std::string hostile = "a&b=c%20d+e?f#g'h\"i;j\\k\r\nl\tm";
    for (const std::string& out : {sanitizeForUrl(hostile), sanitizeForName(hostile), sanitizeKeepOnly(hostile)}) {
        EXPECT_EQ(out.find_first_of("&=+?#'\";\\\r\n\t"), std::string::npos) << out;
    }
    EXPECT_EQ(sanitizeKeepOnly(hostile), "abc20defghijklm");
    EXPECT_EQ(sanitizeForUrl("GeForce (R) @ 1.5/2: x|y_z-w"), "GeForce%20(R)%20@%201.5/2:%20x|y_z-w");
    // Bytes above 127 are no letters, whatever the locale says.
    EXPECT_EQ(sanitizeKeepOnly("Radeon\xe2\x84\xa2"), "Radeon");
}

TEST(TextFilters, EmptySourcesAndLengthLimits) {
    EXPECT_EQ(sanitizeForUrl(""), "NULL");
    EXPECT_EQ(sanitizeForName(""), "NULL");
    EXPECT_EQ(sanitizeKeepOnly(""), "");
    // A source of blanks only is not empty: it filters to nothing.
    EXPECT_EQ(sanitizeForUrl("   "), "");

    EXPECT_EQ(sanitizeKeepOnly(std::string(300, 'x')).size(), kFilterSourceLimit);
    std::string blanks;
    for (int i = 0; i < 100; ++i) blanks += "a ";
    const std::string url = sanitizeForUrl(blanks);
    EXPECT_LE(url.size(), kFilterResultLimit);
    // The cut falls between whole pieces, never inside an escape.
    EXPECT_TRUE(url.ends_with("a") || url.ends_with("%20")) << url;
}

TEST(SubmitReply, TheAnswerIsTheTextOfTheFirstBracketPairAnywhereInTheBytes) {
    EXPECT_EQ(parseSubmitReply("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n[42]").result, 42);
    // A bracket in a header counts: the reply is read whole, headers included.
    EXPECT_EQ(parseSubmitReply("HTTP/1.1 200 OK\r\nX-Note: [7]\r\n\r\n[42]").result, 7);
    EXPECT_EQ(parseSubmitReply("]x[5]").result, 5);
    EXPECT_EQ(parseSubmitReply("[ -3 ]").result, -3);
    EXPECT_EQ(parseSubmitReply("[12abc]").result, 12);
    // A NUL inside the bytes does not end the search.
    EXPECT_EQ(parseSubmitReply(std::string("head\0er\r\n\r\n[9]", 15)).result, 9);
}

TEST(SubmitReply, FailuresAndAnswersWithoutANumber) {
    EXPECT_EQ(parseSubmitReply("").result, -1);
    EXPECT_EQ(parseSubmitReply("no brackets at all").result, -1);
    EXPECT_EQ(parseSubmitReply("[12").result, -1);
    const SubmitReply letters = parseSubmitReply("[abc]");
    EXPECT_EQ(letters.result, 0);
    EXPECT_TRUE(letters.urlParam.empty());
    EXPECT_TRUE(letters.message.empty());
    // "MSG=" with nothing behind it is no message: it reads as the number 0.
    EXPECT_EQ(parseSubmitReply("[MSG=]").result, 0);
    // Numbers beyond 32 bits saturate instead of wrapping into an answer of the table.
    EXPECT_EQ(parseSubmitReply("[99999999999]").result, INT32_MAX);
    EXPECT_EQ(parseSubmitReply("[-99999999999]").result, INT32_MIN);
}

TEST(SubmitReply, MessagesAndPrivateSubmissionsAreCutToTheirBuffers) {
    const SubmitReply message = parseSubmitReply("[MSG=hello]");
    EXPECT_EQ(message.result, -1);
    EXPECT_EQ(message.message, "hello");
    const SubmitReply priv = parseSubmitReply("[abc&p=x]");
    EXPECT_EQ(priv.result, 0);
    EXPECT_EQ(priv.urlParam, "abc&p=x");

    EXPECT_EQ(parseSubmitReply("[&p" + std::string(200, 'p') + "]").urlParam.size(), kUrlParamLimit);
    // 254 characters are an answer, 255 are a failure.
    EXPECT_EQ(parseSubmitReply("[" + std::string(250, ' ') + "1234]").result, 1234);
    EXPECT_EQ(parseSubmitReply("[" + std::string(251, ' ') + "1234]").result, -1);
}

int checkedAgainstUs(const char* reply) {
    VersionNumber latest = {};
    if (!parseVersionReply(reply, latest)) return -1;
    return compareWithThisVersion(latest);
}

TEST(VersionReply, ComparesWithThisVersionByThePackedNumbers) {
    EXPECT_EQ(checkedAgainstUs("[1.26.0.0]"), 0);
    EXPECT_EQ(checkedAgainstUs("[1.26.0.1]"), 1);
    EXPECT_EQ(checkedAgainstUs("[1.27.0.0]"), 1);
    EXPECT_EQ(checkedAgainstUs("[1.25.9.9]"), 0);
    EXPECT_EQ(checkedAgainstUs("[0.99.99.99]"), 0);
    EXPECT_EQ(checkedAgainstUs("HTTP/1.1 200 OK\r\n\r\n[2.0.0.0]"), 1);
    // A field above 255 spills into the next one by its bits: 1.24.512.0 packs as 1.26.0.0, 1.24.768.0 as
    // 1.27.0.0.
    EXPECT_EQ(checkedAgainstUs("[1.24.512.0]"), 0);
    EXPECT_EQ(checkedAgainstUs("[1.24.768.0]"), 1);
    EXPECT_EQ(checkedAgainstUs("version 1.27.0.0"), -1);
    EXPECT_EQ(checkedAgainstUs("[abc]"), 0);
    EXPECT_EQ(checkedAgainstUs("["), 0);
}

TEST(VersionReply, NumbersThatCannotBeReadKeepTheirValues) {
    VersionNumber latest = {9, 9, 9, 9};
    ASSERT_TRUE(parseVersionReply("[2.x.1.1]", latest));
    EXPECT_EQ(latest, (VersionNumber{2, 9, 9, 9}));
    latest = {0, 0, 0, 0};
    ASSERT_TRUE(parseVersionReply("[1.27] and more", latest));
    EXPECT_EQ(latest, (VersionNumber{1, 27, 0, 0}));
    latest = {0, 0, 0, 0};
    ASSERT_TRUE(parseVersionReply("[ 1. 2. 3. 4]", latest));  // as scanf's %d, blanks before a number pass
    EXPECT_EQ(latest, (VersionNumber{1, 2, 3, 4}));
}

TEST(OnlineHosts, OursAreHttpsOnTheHomePageDomain) {
    const OnlineHosts ours = defaultOnlineHosts();
    for (const std::string& host : {ours.web, ours.database}) {
        EXPECT_TRUE(host.starts_with("https://")) << host;
        EXPECT_TRUE(host.ends_with("lumenscope.example.org")) << host;
    }
    EXPECT_EQ(onlineHostsForOption("").web, ours.web);
}

TEST(OnlineHosts, AServerOfOurOwnIsASchemeAHostAndAPortAtMost) {
    for (const char* url : {"http://127.0.0.1:8080", "https://gpudb.example.net", "http://[::1]:9000/",
                            "http://localhost/", "https://a-b.example:443"}) {
        const std::optional<OnlineHosts> hosts = onlineHostsFromUrl(url);
        ASSERT_TRUE(hosts) << url;
        EXPECT_EQ(hosts->web, hosts->database) << url;
        EXPECT_FALSE(hosts->web.ends_with("/")) << url;  // pages are joined with their own slash
    }
    EXPECT_EQ(onlineHostsFromUrl("http://127.0.0.1:8080/")->webName, "127.0.0.1");
    EXPECT_EQ(onlineHostsFromUrl("http://[::1]:9000")->webName, "[::1]");
    EXPECT_EQ(pageUrl(onlineHostsFromUrl("http://h:1/")->web, "/redirect.php?id=401"), "http://h:1/redirect.php?id=401");

    for (const char* url : {"", "127.0.0.1:8080", "ftp://host", "http://", "http://host/path", "http://host?x=1",
                            "http://host:0", "http://host:65536", "http://host:", "http://ho st", "http://user@host",
                            "http://[::1", "http://[]:80", "http://-host", "file:///etc/passwd"}) {
        EXPECT_FALSE(onlineHostsFromUrl(url)) << url;
    }
}

TEST(OnlineHosts, AnUnreadableServerOptionSendsNothingAnywhereRatherThanToOurs) {
    const OnlineHosts hosts = onlineHostsForOption("htp://typo:8080");
    EXPECT_TRUE(hosts.web.empty());
    EXPECT_TRUE(hosts.database.empty());
    EXPECT_EQ(pageUrl(hosts.web, "/redirect.php?id=416"), "");
    EXPECT_EQ(hosts.webName, "htp://typo:8080");  // the failure line names what was given
}

}  // namespace
