#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "compute/cuda_device_fields.h"
#include "compute/opencl_device_fields.h"

// The row tables drive every output: two rows under one name would make a duplicate XML attribute or a JSON
// key that silently replaces the other, and a query asked twice would read one field into two places.
namespace {

using namespace compute;

TEST(ComputeFieldRows, EveryOpenClQueryAndOutputNameBelongsToOneRow) {
    std::set<cl_device_info> queries;
    std::set<std::string> labels, xmlNames, jsonNames;
    for (const ClDeviceField& f : clDeviceFields()) {
        EXPECT_TRUE(queries.insert(f.query).second) << f.label;
        EXPECT_TRUE(labels.insert(f.label).second) << f.label;
        if (f.shows(kClTextXmlReport)) {
            EXPECT_TRUE(xmlNames.insert(f.xmlName ? f.xmlName : f.label).second) << f.label;
        }
        if (f.shows(kClJsonReport)) {
            EXPECT_TRUE(jsonNames.insert(std::string(f.jsonGroup ? f.jsonGroup : "") + "/" + f.jsonName).second)
                << f.label;
        }
        EXPECT_EQ(findClDeviceField(f.query), &f);
    }
    EXPECT_EQ(findClDeviceField(0xFFFF), nullptr);

    // The reports write every row once, the extension list after all the values.
    const auto order = clReportFieldOrder();
    ASSERT_EQ(order.size(), clDeviceFields().size());
    EXPECT_EQ(order.back()->kind, ClQuery::ExtensionList);
    EXPECT_EQ(std::set<const ClDeviceField*>(order.begin(), order.end()).size(), order.size());
}

TEST(ComputeFieldRows, EveryCudaAttributeAndOutputNameBelongsToOneRow) {
    std::set<int> attributes;
    std::set<std::string> xmlNames, jsonNames;
    for (const CudaDeviceField& f : cudaDeviceFields()) {
        if (f.source == CudaSource::Attribute) {
            EXPECT_TRUE(attributes.insert(f.attribute).second) << f.attribute;
        }
        if (f.xmlName && f.shows(kCudaTextXmlReport)) {
            EXPECT_TRUE(xmlNames.insert(f.xmlName).second) << f.xmlName;
        }
        if (f.jsonName) {
            EXPECT_TRUE(jsonNames.insert(f.jsonName).second) << f.jsonName;
        }
    }
}

// A driver's 0xFFFFFFFF printed through a signed int read as "-1MHz".
TEST(ComputeFieldRows, LargeValuesPrintUnsignedAndShiftedOnSixtyFourBits) {
    ClDeviceRecord device;
    device.maxClockMhz = 0xFFFFFFFF;
    device.globalMemSize = uint64_t(1) << 63;
    device.vendorId = 0x10DE;
    device.maxWorkItemSizes[2] = 0x100000000;
    EXPECT_EQ(clFieldText(*findClDeviceField(CL_DEVICE_MAX_CLOCK_FREQUENCY), device), "4294967295");
    EXPECT_EQ(clFieldText(*findClDeviceField(CL_DEVICE_GLOBAL_MEM_SIZE), device), "8796093022208");
    EXPECT_EQ(clFieldText(*findClDeviceField(CL_DEVICE_VENDOR_ID), device), "0x10DE");
    EXPECT_EQ(clFieldText(*findClDeviceField(CL_DEVICE_MAX_WORK_ITEM_SIZES), device), "[0 ; 0 ; 4294967296]");
}

}  // namespace
