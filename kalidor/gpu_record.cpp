#include "kalidor/gpu_record.h"

#include <algorithm>

namespace Kalidornm {

namespace {
constexpr const char* kServedLimiterNames[] = {"power", "temperature", "voltage", "overvoltage"};
}

GpuRecord::GpuRecord() {
    for (size_t slot = 0; slot < kPerfLimiterSlots; ++slot) {
        perfLimiterName[slot] = std::make_unique<char[]>(128);
        if (slot < std::size(kServedLimiterNames)) {
            char(&text)[128] = *reinterpret_cast<char(*)[128]>(perfLimiterName[slot].get());
            copyText(text, kServedLimiterNames[slot]);
        }
    }
}

void GpuRecord::allocatePerfLevels(uint32_t count) {
    if (perfLevels || count == 0) return;
    perfLevels = std::make_unique<PerfLevel[]>(count);
    perfLevelCount = count;
}

GpuRecord* GpuList::at(long index) const {
    if (index < 0 || size_t(index) >= m_records.size()) return nullptr;
    return m_records[size_t(index)].get();
}

GpuRecord& GpuList::append(std::unique_ptr<GpuRecord> record) {
    m_records.push_back(std::move(record));
    return *m_records.back();
}

bool GpuList::sortByBusId() {
    if (m_records.empty()) return false;
    if (m_records.size() == 1) return true;
    std::vector<int32_t> busIds;
    for (const auto& record : m_records) busIds.push_back(record->busId);
    std::sort(busIds.begin(), busIds.end());

    // For each sorted id take the first record still holding it; a duplicate id finds nothing the second time.
    std::vector<std::unique_ptr<GpuRecord>> sorted;
    for (int32_t id : busIds) {
        auto match = std::find_if(m_records.begin(), m_records.end(),
                                  [id](const std::unique_ptr<GpuRecord>& r) { return r && r->busId == id; });
        if (match != m_records.end()) sorted.push_back(std::move(*match));
    }
    m_records = std::move(sorted);
    return true;
}

}  // namespace Kalidornm
