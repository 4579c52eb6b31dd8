#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "kalidor/vendors/amd_gpu_metrics.h"

namespace {

using namespace Kalidornm;

// A gpu_metrics table as the firmware leaves it: the header, then all ones wherever no value is written.
struct MetricsBytes {
    std::vector<uint8_t> bytes;
    MetricsBytes(uint16_t size, uint8_t format, uint8_t content) : bytes(size, 0xFF) {
        put(0, size, 2);
        bytes[2] = format;
        bytes[3] = content;
    }
    MetricsBytes& put(size_t offset, uint64_t value, size_t width) {
        for (size_t i = 0; i < width; ++i) bytes[offset + i] = uint8_t(value >> (8 * i));
        return *this;
    }
    std::optional<AmdGpuMetrics> parse(size_t size) const { return parseAmdGpuMetrics(bytes.data(), size); }
    std::optional<AmdGpuMetrics> parse() const { return parse(bytes.size()); }
};

// gpu_metrics_v1_3 of an RDNA 2 card: temperatures in °C from byte 4, socket power in W at 22, the fan in RPM
// at 72, the chip-independent throttle bits at 112.
MetricsBytes discreteTable() {
    MetricsBytes m(120, 1, 3);
    m.put(4, 45, 2).put(6, 52, 2).put(8, 48, 2).put(10, 44, 2).put(12, 41, 2);  // vrmem left all ones
    m.put(22, 41, 2).put(72, 1100, 2).put(112, (uint64_t(1) << 0) | (uint64_t(1) << 36), 8);
    return m;
}

TEST(AmdGpuMetrics, DiscreteTableGivesItsTemperaturesFanPowerAndThrottleBits) {
    const auto m = discreteTable().parse();
    ASSERT_TRUE(m);
    EXPECT_EQ(m->formatRevision, 1);
    EXPECT_EQ(m->contentRevision, 3);
    EXPECT_EQ(m->edgeC, 45.0f);
    EXPECT_EQ(m->hotspotC, 52.0f);
    EXPECT_EQ(m->memoryC, 48.0f);
    EXPECT_EQ(m->vrGfxC, 44.0f);
    EXPECT_EQ(m->vrSocC, 41.0f);
    EXPECT_FALSE(m->vrMemC);  // 0xFFFF: the firmware gives none
    EXPECT_FALSE(m->gfxC);    // an APU field: not in this layout
    EXPECT_EQ(m->socketPowerWatts, 41.0f);
    EXPECT_EQ(m->fanRpm, 1100.0f);
    EXPECT_EQ(m->throttleStatus, (uint64_t(1) << 0) | (uint64_t(1) << 36));

    // v1_1 has no chip-independent throttle bits: the bytes there are not read as such.
    MetricsBytes older = discreteTable();
    older.bytes[3] = 1;
    const auto v11 = older.parse();
    ASSERT_TRUE(v11);
    EXPECT_EQ(v11->fanRpm, 1100.0f);
    EXPECT_FALSE(v11->throttleStatus);
}

TEST(AmdGpuMetrics, ApuTablesGiveHundredthsOfADegreeAndMilliwatts) {
    MetricsBytes v22(128, 2, 2);
    v22.put(16, 5300, 2).put(18, 5150, 2).put(44, 14320, 2).put(120, uint64_t(1) << 37, 8);
    const auto m = v22.parse();
    ASSERT_TRUE(m);
    EXPECT_FLOAT_EQ(*m->gfxC, 53.0f);
    EXPECT_FLOAT_EQ(*m->socC, 51.5f);
    EXPECT_FLOAT_EQ(*m->socketPowerWatts, 14.32f);
    EXPECT_FALSE(m->edgeC);
    EXPECT_FALSE(m->fanRpm);
    EXPECT_EQ(m->throttleStatus, uint64_t(1) << 37);

    MetricsBytes v30(264, 3, 0);
    v30.put(4, 4725, 2).put(6, 4410, 2).put(112, 23456, 4);
    const auto phoenix = v30.parse();
    ASSERT_TRUE(phoenix);
    EXPECT_FLOAT_EQ(*phoenix->gfxC, 47.25f);
    EXPECT_FLOAT_EQ(*phoenix->socC, 44.1f);
    EXPECT_FLOAT_EQ(*phoenix->socketPowerWatts, 23.456f);
    EXPECT_FALSE(phoenix->throttleStatus);
}

TEST(AmdGpuMetrics, ShortFilesAndSizesThatLieNeverReadPastTheEnd) {
    const MetricsBytes full = discreteTable();
    // Every cut of the file: fields that end past the cut are absent, those before it stay.
    for (size_t cut = 0; cut <= full.bytes.size(); ++cut) {
        // A copy of exactly `cut` bytes, so that a read past them shows under the sanitizers.
        std::vector<uint8_t> bytes(full.bytes.begin(), full.bytes.begin() + long(cut));
        const auto m = parseAmdGpuMetrics(bytes.data(), bytes.size());
        if (cut < 4) {
            EXPECT_FALSE(m) << cut;
            continue;
        }
        ASSERT_TRUE(m) << cut;
        EXPECT_EQ(m->edgeC.has_value(), cut >= 6) << cut;
        EXPECT_EQ(m->fanRpm.has_value(), cut >= 74) << cut;
        EXPECT_EQ(m->throttleStatus.has_value(), cut >= 120) << cut;
    }
    EXPECT_FALSE(parseAmdGpuMetrics(nullptr, 120));

    // A header that claims more than the file holds, or less: the smaller of the two bounds the table.
    MetricsBytes claimsMore = discreteTable();
    claimsMore.put(0, 0xFFFF, 2);
    const auto more = claimsMore.parse(80);
    ASSERT_TRUE(more);
    EXPECT_EQ(more->fanRpm, 1100.0f);
    EXPECT_FALSE(more->throttleStatus);
    MetricsBytes claimsLess = discreteTable();
    claimsLess.put(0, 24, 2);
    const auto less = claimsLess.parse();
    ASSERT_TRUE(less);
    EXPECT_EQ(less->socketPowerWatts, 41.0f);
    EXPECT_FALSE(less->fanRpm);
    claimsLess.put(0, 3, 2);  // smaller than its own header
    EXPECT_FALSE(claimsLess.parse());
}

TEST(AmdGpuMetrics, UnknownLayoutsGiveNothing) {
    // v1_4 and v1_5 are the data-centre tables, laid out otherwise; 0 and 4 are no format at all.
    const std::pair<int, int> unknown[] = {{1, 4}, {1, 5}, {2, 5}, {3, 1}, {0, 0}, {4, 0}, {255, 255}};
    for (const auto& [format, content] : unknown) {
        const MetricsBytes m(256, uint8_t(format), uint8_t(content));
        EXPECT_FALSE(m.parse()) << format << "." << content;
    }
}

TEST(AmdGpuMetrics, ThrottleBitsAreNamedLowestFirstAndUnnamedBitsDropped) {
    EXPECT_TRUE(amdThrottleReasonNames(0).empty());
    const uint64_t status = (uint64_t(1) << 57) | (uint64_t(1) << 36) | (uint64_t(1) << 16) | (uint64_t(1) << 4) |
                            (uint64_t(1) << 10) | (uint64_t(1) << 63);  // 10 and 63 carry no name
    EXPECT_EQ(amdThrottleReasonNames(status), (std::vector<std::string>{"spl", "tdc_gfx", "temp_hotspot", "fit"}));
}

}  // namespace
