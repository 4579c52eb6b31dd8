// A real Prometheus server (started here, on a free loopback port, with a storage folder of its own) scrapes the
// endpoint every second, plainly and over TLS with basic authentication; its query API gives back the values of
// the served exposition. The same for the program itself serving fixture machines, where the values expected
// are worked out from the fixture's own files. promtool finds no fault in what either serves.

#include "metrics_endpoint/fixed_exposition.h"
#include "metrics_endpoint/metrics_client.h"
#include "metrics_endpoint/test_credentials.h"
#include "support/free_port.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
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
            prctl(PR_SET_PDEATHSIG, SIGTERM);
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

// The program itself, on two fixture machines: the AMD card's hwmon files (millidegrees, microwatts) and the
// eight-card machine, whose NVIDIA cards answer through the fake management library (degrees, milliwatts).
const fs::path kSysfsFixtures = SYSFS_FIXTURES;
const fs::path kRx6800Hwmon =
    kSysfsFixtures / "amdgpu-rx6800/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0/hwmon/hwmon2";
const fs::path kEightGpusNvml = fs::path(NVML_FIXTURES) / "eight-gpus.conf";

double numberIn(const fs::path& path)
{
    std::ifstream in(path);
    double value = -1;
    in >> value;
    return value;
}

// Each NVIDIA card of a fake management library setting file ("gpu N KEY VALUE" lines), by PCI address (from
// its "bus" line), with its settings.
std::map<std::string, std::map<std::string, double>> nvmlCardsByAddress(const fs::path& path)
{
    std::map<std::string, std::map<std::string, double>> byIndex;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        std::string gpu, index, key, value;
        if (words >> gpu >> index >> key >> value && gpu == "gpu")
            byIndex[index][key] = std::strtod(value.c_str(), nullptr);
    }
    std::map<std::string, std::map<std::string, double>> cards;
    for (const auto& [index, settings] : byIndex) {
        char address[16];
        std::snprintf(address, sizeof address, "0000:%02x:00.0", unsigned(settings.at("bus")));
        cards[address] = settings;
    }
    return cards;
}

std::optional<double> queriedNumber(const PrometheusServer& prometheus, const std::string& expression)
{
    const std::optional<std::string> value = prometheus.query(expression);
    return value ? std::optional<double>(std::stod(*value)) : std::nullopt;
}

TEST(PrometheusScrape, ScrapesTheProgramOnFixtureMachinesAndQueriesTheFixturesValues)
{
    const std::string fakeNvmlDir = FAKE_NVML_LIBRARY_DIR;
    ServerProcess amd(LUMENSCOPE_BINARY,
                      {"--serve-metrics=127.0.0.1:0", "--root=" + (kSysfsFixtures / "amdgpu-rx6800").string()});
    ASSERT_NE(amd.port(), 0) << amd.errorText();
    ServerProcess eight(LUMENSCOPE_BINARY,
                        {"--serve-metrics=127.0.0.1:0", "--root=" + (kSysfsFixtures / "eight-gpus").string()},
                        {{"LD_LIBRARY_PATH", fakeNvmlDir}, {"FAKE_NVML_CONFIG", kEightGpusNvml.string()}});
    ASSERT_NE(eight.port(), 0) << eight.errorText();
    for (const int port : {amd.port(), eight.port()}) {
        const CommandResult check = runCommand("curl --silent http://127.0.0.1:" + std::to_string(port) +
                                               "/metrics | promtool check metrics 2>&1");
        EXPECT_EQ(check.status, 0) << check.output;
        EXPECT_EQ(check.output, "");
    }

    PrometheusServer prometheus(testFolder("prometheus-program"),
                                "  - job_name: amd\n    static_configs:\n      - targets: ['127.0.0.1:" +
                                    std::to_string(amd.port()) +
                                    "']\n  - job_name: eight\n    static_configs:\n      - targets: ['127.0.0.1:" +
                                    std::to_string(eight.port()) + "']\n");
    ASSERT_TRUE(prometheus.waitForTwoScrapes("amd"));
    ASSERT_TRUE(prometheus.waitForTwoScrapes("eight"));

    const std::string amdCard = "job=\"amd\",gpu=\"0000:03:00.0\"";
    for (const auto& [sensor, file] : {std::pair{"edge", "temp1_input"}, std::pair{"junction", "temp2_input"},
                                       std::pair{"memory", "temp3_input"}}) {
        EXPECT_EQ(queriedNumber(prometheus, "lumenscope_gpu_temperature_celsius{" + amdCard + ",sensor=\"" +
                                                sensor + "\"}"),
                  numberIn(kRx6800Hwmon / file) / 1000)
            << sensor;
    }
    EXPECT_EQ(queriedNumber(prometheus, "lumenscope_gpu_power_watts{" + amdCard + "}"),
              numberIn(kRx6800Hwmon / "power1_average") / 1e6);

    const auto nvidiaCards = nvmlCardsByAddress(kEightGpusNvml);
    ASSERT_EQ(nvidiaCards.size(), 2u);
    for (const auto& [address, settings] : nvidiaCards) {
        const std::string card = "job=\"eight\",gpu=\"" + address + "\"";
        EXPECT_EQ(queriedNumber(prometheus, "lumenscope_gpu_temperature_celsius{" + card + ",sensor=\"edge\"}"),
                  settings.at("temp"))
            << address;
        EXPECT_EQ(queriedNumber(prometheus, "lumenscope_gpu_power_watts{" + card + "}"),
                  settings.at("power") / 1000)  // milliwatts
            << address;
    }
    // The sleeping AMD card of the eight: marked, and no reading of it stored.
    const std::string asleep = "job=\"eight\",gpu=\"0000:14:00.0\"";
    EXPECT_EQ(queriedNumber(prometheus, "lumenscope_gpu_suspended{" + asleep + "}"), 1.0);
    EXPECT_EQ(prometheus.query("lumenscope_gpu_temperature_celsius{" + asleep + "}"), std::nullopt);

    EXPECT_EQ(amd.stop(), 0) << amd.errorText();
    EXPECT_EQ(eight.stop(), 0) << eight.errorText();
}

}  // namespace
