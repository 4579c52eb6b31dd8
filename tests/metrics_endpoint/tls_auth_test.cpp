// TLS and basic authentication of the metrics endpoint, with a certificate made by openssl and a bcrypt hash
// made by crypt_r, scraped by curl as an operator would.

#include "metrics_endpoint/fixed_exposition.h"
#include "metrics_endpoint/metrics_client.h"
#include "metrics_endpoint/test_credentials.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

std::string curl(const std::string& arguments)
{
    return runCommand("curl --silent --show-error --max-time 10 --write-out '\\n%{http_code}' " + arguments +
                      " 2>&1")
        .output;
}

// The HTTP status curl saw ("000" when it got no answer).
std::string curlStatus(const std::string& arguments)
{
    const std::string output = curl(arguments);
    return output.size() >= 3 ? output.substr(output.size() - 3) : output;
}

TEST(MetricsTls, CurlTrustingTheCertificateScrapesAndPlainHttpIsRefused)
{
    const TestCertificate certificate = makeTestCertificate();
    ASSERT_TRUE(certificate.made) << certificate.message;
    ServerProcess server(FIXED_METRICS_SERVER, {"--serve-metrics=127.0.0.1:0", "--metrics-tls-cert=" +
                                                    certificate.certificate.string(),
                                                "--metrics-tls-key=" + certificate.key.string()});
    ASSERT_NE(server.port(), 0) << server.errorText();
    EXPECT_NE(server.errorText().find("https://127.0.0.1:"), std::string::npos);
    const std::string url = "https://127.0.0.1:" + std::to_string(server.port()) + "/metrics";

    EXPECT_EQ(curl("--cacert " + certificate.certificate.string() + " " + url), kFixedExposition + std::string("\n200"));
    // Without the certificate curl does not trust the server.
    EXPECT_EQ(curlStatus(url), "000");

    const std::string plain = get(server.port(), "/metrics");
    EXPECT_EQ(plain.find(kFixedExposition), std::string::npos) << plain;
    EXPECT_NE(statusOf(plain), 200);
    EXPECT_EQ(curl("--cacert " + certificate.certificate.string() + " " + url), kFixedExposition + std::string("\n200"));
    EXPECT_EQ(server.stop(), 0);
}

TEST(MetricsTls, AKeyOthersCanReadIsRefusedWithAMessage)
{
    const TestCertificate certificate = makeTestCertificate();
    ASSERT_TRUE(certificate.made) << certificate.message;
    for (mode_t mode : {0640, 0604}) {
        ASSERT_EQ(chmod(certificate.key.c_str(), mode), 0);
        ServerProcess server(FIXED_METRICS_SERVER, {"--serve-metrics=127.0.0.1:0", "--metrics-tls-cert=" +
                                                        certificate.certificate.string(),
                                                    "--metrics-tls-key=" + certificate.key.string()});
        EXPECT_EQ(server.port(), 0);
        EXPECT_EQ(server.waitForExit(5000ms), 1);
        EXPECT_NE(server.errorText().find("is open to other users"), std::string::npos) << server.errorText();
    }
}

TEST(MetricsAuth, MissingOrWrongCredentialsGet401AndTheRightOnesScrape)
{
    const TestUsersFile users = makeUsersFile({{"prometheus", "scrape-secret"}, {"grafana", "other-secret"}});
    ASSERT_TRUE(users.made) << users.message;
    ServerProcess server(FIXED_METRICS_SERVER,
                         {"--serve-metrics=127.0.0.1:0", "--metrics-auth-file=" + users.path.string()});
    ASSERT_NE(server.port(), 0) << server.errorText();
    const std::string url = "http://127.0.0.1:" + std::to_string(server.port()) + "/metrics";

    const std::string missing = runCommand("curl --silent --include --max-time 10 " + url).output;
    EXPECT_EQ(statusOf(missing), 401);
    EXPECT_NE(missing.find("WWW-Authenticate: Basic realm=\"lumenscope\""), std::string::npos) << missing;
    EXPECT_EQ(curlStatus("--user prometheus:wrong-secret " + url), "401");
    EXPECT_EQ(curlStatus("--user nobody:scrape-secret " + url), "401");
    EXPECT_EQ(curlStatus("--user grafana:scrape-secret " + url), "401");  // one user's password is not another's
    EXPECT_EQ(curlStatus("-H 'Authorization: Basic !!!!' " + url), "401");

    for (int scrape = 0; scrape < 3; ++scrape)  // the later ones from the remembered credential
        EXPECT_EQ(curl("--user prometheus:scrape-secret " + url), kFixedExposition + std::string("\n200"));
    EXPECT_EQ(curl("--user grafana:other-secret " + url), kFixedExposition + std::string("\n200"));

    EXPECT_EQ(server.stop(), 0);
    EXPECT_EQ(server.errorText().find("secret"), std::string::npos) << server.errorText();
}

TEST(MetricsAuth, AUsersFileThatIsNotUserColonBcryptIsRefusedWithTheLine)
{
    const fs::path path = fs::path(testing::TempDir()) / "users-bad";
    std::ofstream(path) << "# users\nprometheus:plaintext\n";
    ServerProcess server(FIXED_METRICS_SERVER, {"--serve-metrics=127.0.0.1:0", "--metrics-auth-file=" + path.string()});
    EXPECT_EQ(server.waitForExit(5000ms), 1);
    EXPECT_NE(server.errorText().find("line 2 is not user:bcrypt-hash"), std::string::npos) << server.errorText();
}

}  // namespace
