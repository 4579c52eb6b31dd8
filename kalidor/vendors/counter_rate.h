#pragma once

#include <cstdint>
#include <optional>

namespace Kalidornm {

// The rate of a counter the driver keeps running (energy in µJ, idle time in ms) between two reads. The first
// read only stores the counter; a counter that went backwards (it wrapped, or the driver reset it) or a clock
// that did not move gives no rate for that read, and the new pair is kept for the next one.
class CounterRate {
public:
    // Counter units per microsecond since the previous read: watts for µJ, and for ms of idle time the idle
    // share divided by 1000.
    std::optional<double> take(uint64_t counter, int64_t nowMicroseconds) {
        std::optional<double> rate;
        if (m_counter && counter >= *m_counter && nowMicroseconds > m_atMicroseconds)
            rate = double(counter - *m_counter) / double(nowMicroseconds - m_atMicroseconds);
        m_counter = counter;
        m_atMicroseconds = nowMicroseconds;
        return rate;
    }

private:
    std::optional<uint64_t> m_counter;
    int64_t m_atMicroseconds = 0;
};

}  // namespace Kalidornm
