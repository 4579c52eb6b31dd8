// A real Prometheus server (started here, on a free loopback port, with a storage folder of its own) scrapes the
// endpoint every second, plainly and over TLS with basic authentication; its query API gives back the values of
// the served exposition. promtool finds no fault in what the endpoint serves.

#include "metrics_endpoint/fixed_exposition.h"
#include "metrics_endpoint/metrics_client.h"
#include "metrics_endpoint/test_credentials.h"
#include "support/free_port.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// The sample value of a series line of the fixed exposition, by the line's beginning.
std::string servedValue(const std::string& seriesStart)
{
    std::istringstream lines(kFixedExposition);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(seriesStart, 0) == 0)
            return line.substr(line.rfind(' ') + 1);
    }
    return {};
}

// A Prometheus server of the test's own, ended with SIGTERM (and killed if it lingers) when the test ends.
class PrometheusServer {
public:
    PrometheusServer(const fs::path& folder, const std::string& scrapeConfig) : port_(freeLoopbackPort())
    {
        fs::create_directories(folder / "data");
        std::ofstream(folder / "prometheus.yml") << "global:\n  scrape_interval: 1s\n  scrape_timeout: 1s\n"
                                                    "scrape_configs:\n" << scrapeConfig;
        const std::string log = (folder / "prometheus.log").string();
        pid_ = fork();
        if (pid_ == 0) {
            const std::string config = "--config.file=" + (folder / "prometheus.yml").string();
            const std::string storage = "--storage.tsdb.path=" + (folder / "data").string();
            const std::string listen = "--web.listen-address=127.0.0.1:" + std::to_string(port_);
            if (!freopen(log.c_str(), "w", stderr) || !freopen(log.c_str(), "a", stdout))
                _exit(126);
            execlp("prometheus", "prometheus", config.c_str(), storage.c_str(), listen.c_str(), nullptr);
            _exit(127);
        }
    }
    ~PrometheusServer()
    {
        if (pid_ <= 0)
            return;
        kill(pid_, SIGTERM);
        for (int i = 0; i < 500 && waitpid(pid_, nullptr, WNOHANG) == 0; ++i)
            std::this_thread::sleep_for(10ms);
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }

    // The first sample of an instant query's answer, as text; nothing while there is none.
    std::optional<std::string> query(const std::string& expression) const
    {
        const CommandResult answer = runCommand("curl --silent --max-time 5 --get --data-urlencode 'query=" +
                                                expression + "' http://127.0.0.1:" + std::to_string(port_) +
                                                "/api/v1/query");
        const nlohmann::json reply = nlohmann::json::parse(answer.output, nullptr, false);
        if (reply.is_discarded() || reply.value("status", "") != "success")
            return std::nullopt;
        const nlohmann::json& result = reply["data"]["result"];
        if (!result.is_array() || result.empty())
            return std::nullopt;
        return result[0]["value"][1].get<std::string>();
    }

    // Waits (up to a generous limit) until the job has been scraped successfully twice.
    bool waitForTwoScrapes(const std::string& job) const
    {
        const auto deadline = SteadyClock::now() + 60s;
        while (SteadyClock::now() < deadline) {
            const std::optional<std::string> count = query("sum_over_time(up{job=\"" + job + "\"}[5m])");
            if (count && std::stod(*count) >= 2)
                return true;
            std::this_thread::sleep_for(500ms);
        }
        return false;
    }

private:
    int port_;
    pid_t pid_ = -1;
};

void expectServedValuesQueried(const PrometheusServer& prometheus, const std::string& job)
{
    ASSERT_TRUE(prometheus.waitForTwoScrapes(job));
    EXPECT_EQ(prometheus.query("lumenscope_gpu_temperature_celsius{job=\"" + job +
                               "\",gpu=\"0000:03:00.0\",sensor=\"edge\"}"),
              servedValue("lumenscope_gpu_temperature_celsius{gpu=\"0000:03:00.0\",sensor=\"edge\"}"));
    EXPECT_EQ(prometheus.query("lumenscope_gpu_power_watts{job=\"" + job + "\",gpu=\"0000:03:00.0\"}"),
              servedValue("lumenscope_gpu_power_watts{gpu=\"0000:03:00.0\"}"));
}

fs::path testFolder(const std::string& name)
{
    const fs::path folder = fs::path(testing::TempDir()) / (name + "-" + std::to_string(getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

TEST(PrometheusScrape, ScrapesThePlainEndpointAndQueriesTheServedValues)
{
    ASSERT_EQ(servedValue("lumenscope_gpu_temperature_celsius{"), "47");  // the fixture itself
    ServerProcess endpoint(FIXED_METRICS_SERVER, {"--serve-metrics=127.0.0.1:0"});
    ASSERT_NE(endpoint.port(), 0) << endpoint.errorText();
    const std::string url = "http://127.0.0.1:" + std::to_string(endpoint.port()) + "/metrics";
    const CommandResult check = runCommand("curl --silent " + url + " | promtool check metrics 2>&1");
    EXPECT_EQ(check.status, 0) << check.output;
    EXPECT_EQ(check.output, "");

    {
        PrometheusServer prometheus(testFolder("prometheus-plain"),
                                    "  - job_name: plain\n    static_configs:\n      - targets: ['127.0.0.1:" +
                                        std::to_string(endpoint.port()) + "']\n");
        expectServedValuesQueried(prometheus, "plain");
    }
    EXPECT_EQ(endpoint.stop(), 0);
}

TEST(PrometheusScrape, ScrapesTheTlsEndpointWithBasicAuthentication)
{
    const TestCertificate certificate = makeTestCertificate();
    ASSERT_TRUE(certificate.made) << certificate.message;
    const TestUsersFile users = makeUsersFile({{"prometheus", "scrape-secret"}});
    ASSERT_TRUE(users.made) << users.message;
    ServerProcess endpoint(FIXED_METRICS_SERVER,
                           {"--serve-metrics=127.0.0.1:0", "--metrics-tls-cert=" + certificate.certificate.string(),
                            "--metrics-tls-key=" + certificate.key.string(),
                            "--metrics-auth-file=" + users.path.string()});
    ASSERT_NE(endpoint.port(), 0) << endpoint.errorText();
    {
        PrometheusServer prometheus(
            testFolder("prometheus-tls"),
            "  - job_name: tls\n    scheme: https\n    tls_config:\n      ca_file: " +
                certificate.certificate.string() +
                "\n    basic_auth:\n      username: prometheus\n      password: scrape-secret\n"
                "    static_configs:\n      - targets: ['127.0.0.1:" + std::to_string(endpoint.port()) + "']\n");
        expectServedValuesQueried(prometheus, "tls");
    }
    EXPECT_EQ(endpoint.stop(), 0);
}

}  // namespace
