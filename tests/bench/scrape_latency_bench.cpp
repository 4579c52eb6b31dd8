// Scrape latency of our metrics endpoint against node_exporter's hwmon collector over the same fixture machine's
// hwmon files, both scraped the same way (a fresh connection per scrape, 50 scrapes a second) in one run; prints
// the 50th and 99th percentiles of each. A benchmark, not a test.
//   bench_scrape_latency [--seconds=N] [--fixture=SYSFS_MACHINE_DIR] [--ours=PROGRAM ARGS...]
// --ours names the program serving our endpoint (it prints "serving metrics at ..."); by default the small test
// server of a fixed exposition. Ended by SIGINT or SIGTERM, it stops both servers and removes its copy first.

#include "metrics_endpoint/metrics_client.h"
#include "support/free_port.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>

namespace {

namespace fs = std::filesystem;

// node_exporter finds hwmon devices under class/hwmon, which the fixture machines leave to the device tree:
// a copy of the fixture's sys folder with those links added.
fs::path sysfsWithHwmonClass(const fs::path& fixture)
{
    const fs::path root = fs::temp_directory_path() / ("scrape_bench_sys_" + std::to_string(getpid()));
    fs::remove_all(root);
    fs::copy(fixture / "sys", root, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    fs::create_directories(root / "class/hwmon");
    // Fixture machines made of several cards may give two devices the same hwmon number: the class folder
    // numbers them anew, as the kernel does.
    int next = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "devices")) {
        if (entry.is_directory() && entry.path().parent_path().filename() == "hwmon" &&
            entry.path().filename().string().rfind("hwmon", 0) == 0)
            fs::create_directory_symlink(entry.path(), root / "class/hwmon" / ("hwmon" + std::to_string(next++)));
    }
    return root;
}

volatile std::sig_atomic_t gStopSignal = 0;

void rememberStop(int signal)
{
    gStopSignal = signal;
}

// The copy of a fixture's sys folder, removed when the benchmark ends.
struct FolderCopy {
    explicit FolderCopy(fs::path folder) : path(std::move(folder)) {}
    ~FolderCopy()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    FolderCopy(const FolderCopy&) = delete;
    FolderCopy& operator=(const FolderCopy&) = delete;
    const fs::path path;
};

// node_exporter with its hwmon collector alone over `sysfs`, on a free loopback port; stopped when the
// benchmark ends, and sent SIGTERM by the kernel should the benchmark die first.
struct NodeExporter {
    explicit NodeExporter(const fs::path& sysfs) : port(freeLoopbackPort())
    {
        pid = fork();
        if (pid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            const std::string sysArg = "--path.sysfs=" + sysfs.string();
            const std::string listen = "--web.listen-address=127.0.0.1:" + std::to_string(port);
            if (!freopen("/dev/null", "w", stderr))
                _exit(126);
            execlp("prometheus-node-exporter", "prometheus-node-exporter", "--collector.disable-defaults",
                   "--collector.hwmon", sysArg.c_str(), listen.c_str(), nullptr);
            _exit(127);
        }
    }
    ~NodeExporter()
    {
        if (pid <= 0)
            return;
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
    NodeExporter(const NodeExporter&) = delete;
    NodeExporter& operator=(const NodeExporter&) = delete;
    const int port;
    pid_t pid = -1;
};

struct Percentiles {
    double p50Ms = 0, p99Ms = 0;
    int failed = 0;
};

Percentiles scrapeAtFiftyASecond(int port, int seconds)
{
    std::vector<double> latencies;
    int failed = 0;
    auto next = SteadyClock::now();
    for (int i = 0; i < seconds * 50 && !gStopSignal; ++i) {
        std::this_thread::sleep_until(next);
        next += 20ms;
        const auto start = SteadyClock::now();
        const std::string answer = get(port, "/metrics");
        const std::chrono::duration<double, std::milli> took = SteadyClock::now() - start;
        if (statusOf(answer) != 200)
            ++failed;
        else
            latencies.push_back(took.count());
    }
    Percentiles result;
    result.failed = failed;
    if (latencies.empty())
        return result;
    std::sort(latencies.begin(), latencies.end());
    result.p50Ms = latencies[latencies.size() / 2];
    result.p99Ms = latencies[std::min(latencies.size() - 1, latencies.size() * 99 / 100)];
    return result;
}

bool answers(int port)
{
    const auto deadline = SteadyClock::now() + 10s;
    while (SteadyClock::now() < deadline && !gStopSignal) {
        if (statusOf(get(port, "/metrics")) == 200)
            return true;
        std::this_thread::sleep_for(100ms);
    }
    return false;
}

}  // namespace

int main(int argc, char** argv)
{
    int seconds = 10;
    fs::path fixture = FIXTURE_MACHINES_DIR "/amdgpu-rx6800";
    std::string ours = FIXED_METRICS_SERVER;
    std::vector<std::string> oursArgs = {"--serve-metrics=127.0.0.1:0"};
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg.rfind("--seconds=", 0) == 0) {
            seconds = std::stoi(arg.substr(10));
        } else if (arg.rfind("--fixture=", 0) == 0) {
            fixture = arg.substr(10);
        } else if (arg.rfind("--ours=", 0) == 0) {
            ours = arg.substr(7);
            oursArgs.assign(argv + i + 1, argv + argc);
            break;
        }
    }

    // SIGINT or SIGTERM ends the scraping early; the servers are then stopped and the copy removed as at the
    // end of a whole run.
    struct sigaction onStop{};
    onStop.sa_handler = rememberStop;
    sigaction(SIGINT, &onStop, nullptr);
    sigaction(SIGTERM, &onStop, nullptr);

    ServerProcess endpoint(ours, oursArgs);
    if (endpoint.port() == 0) {
        std::cerr << "our endpoint did not start: " << endpoint.errorText() << '\n';
        return 1;
    }
    const FolderCopy sysfs(sysfsWithHwmonClass(fixture));
    const NodeExporter node(sysfs.path);
    if (!answers(node.port)) {
        std::cerr << "node_exporter did not answer\n";
        return 1;
    }
    // The comparison means something only when node_exporter reads the fixture's hwmon files.
    if (bodyOf(get(node.port, "/metrics")).find("node_hwmon_temp_celsius{") == std::string::npos) {
        std::cerr << "node_exporter read no hwmon temperature from " << sysfs.path << '\n';
        return 1;
    }
    const Percentiles nodeResult = scrapeAtFiftyASecond(node.port, seconds);
    const Percentiles ourResult = scrapeAtFiftyASecond(endpoint.port(), seconds);
    if (gStopSignal)
        return 128 + gStopSignal;

    std::printf("%-24s %10s %10s %8s\n", "endpoint (50 scrapes/s)", "p50 ms", "p99 ms", "failed");
    std::printf("%-24s %10.3f %10.3f %8d\n", "lumenscope", ourResult.p50Ms, ourResult.p99Ms, ourResult.failed);
    std::printf("%-24s %10.3f %10.3f %8d\n", "node_exporter hwmon", nodeResult.p50Ms, nodeResult.p99Ms,
                nodeResult.failed);
    return ourResult.failed == 0 && nodeResult.failed == 0 ? 0 : 1;
}
