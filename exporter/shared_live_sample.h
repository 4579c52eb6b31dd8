#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "kalidor/machine_snapshot.h"

// The newest live sample, shared by every caller: however many ask (scrapes from the server's threads), the
// GPUs are read at most once per `maxAge`, and a caller gets the exposition of the newest sample.
namespace exporter {

class SharedLiveSample {
public:
    // Reads every GPU now and gives the machine with its fresh samples.
    using ReadMachine = std::function<Kalidornm::MachineSnapshot()>;
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit SharedLiveSample(ReadMachine read, std::chrono::milliseconds maxAge = std::chrono::seconds(1),
                              Clock clock = [] { return std::chrono::steady_clock::now(); });

    // The metrics exposition of the newest sample; reads first when the sample is older than maxAge.
    // Safe to call from any thread.
    std::string metricsText();
    // How many times the GPUs were read.
    size_t readCount() const;

private:
    ReadMachine m_read;
    std::chrono::milliseconds m_maxAge;
    Clock m_clock;
    mutable std::mutex m_lock;  // one read at a time; callers meanwhile wait for its result
    std::optional<std::chrono::steady_clock::time_point> m_readAt;
    std::string m_text;  // rendered once per read
    size_t m_reads = 0;
};

}  // namespace exporter
