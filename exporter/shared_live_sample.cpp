#include "exporter/shared_live_sample.h"

#include "exporter/metrics_text.h"

namespace exporter {

SharedLiveSample::SharedLiveSample(ReadMachine read, std::chrono::milliseconds maxAge, Clock clock)
    : m_read(std::move(read)), m_maxAge(maxAge), m_clock(std::move(clock)) {}

std::string SharedLiveSample::metricsText() {
    const std::lock_guard<std::mutex> hold(m_lock);
    const auto now = m_clock();
    if (!m_readAt || now - *m_readAt >= m_maxAge) {
        const auto start = std::chrono::steady_clock::now();
        const Kalidornm::MachineSnapshot machine = m_read();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        m_text = renderMetricsText(machine, took.count());
        m_readAt = now;
        ++m_reads;
    }
    return m_text;
}

size_t SharedLiveSample::readCount() const {
    const std::lock_guard<std::mutex> hold(m_lock);
    return m_reads;
}

}  // namespace exporter
