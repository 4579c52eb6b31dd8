#include <gtest/gtest.h>

#include <cstring>

#include "kalidor/gpu_record.h"

namespace {

using namespace Kalidornm;

std::unique_ptr<GpuRecord> recordOnBus(int32_t bus, const char* name) {
    auto record = std::make_unique<GpuRecord>();
    record->busId = bus;
    copyText(record->name, name);
    return record;
}

TEST(GpuRecord, StartsWithNeverReadValuesAndTheFourServedLimiterNames) {
    GpuRecord r;
    EXPECT_EQ(r.busId, -1);
    EXPECT_EQ(r.adlAdapterIndex, -1);
    EXPECT_EQ(r.displaySlot, 1000u);
    EXPECT_FLOAT_EQ(r.fanPercent, -1.0f);
    EXPECT_FLOAT_EQ(r.videoLoadPercent, -1.0f);
    EXPECT_FALSE(r.sensorGpu.read);
    EXPECT_STREQ(r.perfLimiterName[0].get(), "power");
    EXPECT_STREQ(r.perfLimiterName[1].get(), "temperature");
    EXPECT_STREQ(r.perfLimiterName[2].get(), "voltage");
    EXPECT_STREQ(r.perfLimiterName[3].get(), "overvoltage");
    EXPECT_STREQ(r.perfLimiterName[15].get(), "");
}

TEST(GpuRecord, TextCopiesAreCutAtTheFieldSize) {
    char field[8];
    copyText(field, "0123456789");
    EXPECT_STREQ(field, "0123456");
    copyText(field, nullptr);
    EXPECT_STREQ(field, "");
}

TEST(GpuRecord, PerfLevelsAreCreatedOnceWhenTheCountIsFirstKnown) {
    GpuRecord r;
    r.allocatePerfLevels(0);
    EXPECT_EQ(r.perfLevels, nullptr);
    r.allocatePerfLevels(3);
    ASSERT_NE(r.perfLevels, nullptr);
    PerfLevel* first = r.perfLevels.get();
    r.allocatePerfLevels(8);
    EXPECT_EQ(r.perfLevels.get(), first);
    EXPECT_EQ(r.perfLevelCount, 3u);
}

TEST(GpuList, IndicesPastEitherEndGiveNull) {
    GpuList list;
    EXPECT_EQ(list.at(0), nullptr);
    list.append(recordOnBus(3, "a"));
    EXPECT_NE(list.at(0), nullptr);
    EXPECT_EQ(list.at(1), nullptr);
    EXPECT_EQ(list.at(-1), nullptr);
}

TEST(GpuList, SortByBusIdOrdersRecordsAndKeepsEveryOne) {
    GpuList list;
    EXPECT_FALSE(list.sortByBusId());
    list.append(recordOnBus(65, "c"));
    EXPECT_TRUE(list.sortByBusId());
    list.append(recordOnBus(1, "a"));
    list.append(recordOnBus(33, "b"));
    list.append(recordOnBus(33, "b2"));
    ASSERT_TRUE(list.sortByBusId());
    ASSERT_EQ(list.size(), 4u);
    EXPECT_STREQ(list.at(0)->name, "a");
    EXPECT_STREQ(list.at(1)->name, "b");
    EXPECT_STREQ(list.at(2)->name, "b2");
    EXPECT_STREQ(list.at(3)->name, "c");
}

}  // namespace
