#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/report/rendered_report.h"
#include "tests/report/report_fixtures.h"

namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// pocl ends both of its extension strings without a blank, so the list rule of the text and XML reports
// loses cl_pocl_content_size and cl_khr_fp64; report.json, the one that scripts read, lost them as well.
TEST(ReportCompute, JsonListsEveryExtensionTheDriverReportedWhileTextAndXmlKeepTheListRule) {
    report::ReportSnapshot s = report_fixtures::intelSoftwareMachine();
    report::ReportClPlatform& platform = s.clPlatforms[0];
    platform.extensions = {"cl_khr_icd"};
    platform.reportedExtensions = {"cl_khr_icd", "cl_pocl_content_size"};
    report::ReportClDevice& device = platform.devices[0];
    device.extensions = {"cl_khr_byte_addressable_store"};
    device.reportedExtensions = {"cl_khr_byte_addressable_store", "cl_khr_fp64"};

    const RenderedReport r = renderReport(s);
    const json j = json::parse(r.json);
    const json& jsonPlatform = j["opencl"]["platforms"][0];
    EXPECT_EQ(jsonPlatform["extensions"], json::array({"cl_khr_icd", "cl_pocl_content_size"}));
    EXPECT_EQ(jsonPlatform["devices"][0]["extensions"], json::array({"cl_khr_byte_addressable_store", "cl_khr_fp64"}));

    EXPECT_THAT(r.text,
                HasSubstr("\t- CL_DEVICE_EXTENSIONS: 1\n\t- Extensions:\n\t\t- cl_khr_byte_addressable_store\n"));
    EXPECT_THAT(r.text, Not(HasSubstr("cl_khr_fp64")));
    EXPECT_THAT(r.xml, HasSubstr("CL_DEVICE_EXTENSIONS=\"1\""));
    EXPECT_THAT(r.xml, Not(HasSubstr("cl_khr_fp64")));
}

// A CUDA line of several rows: the values join on the line, stand one per attribute or joined in one, and
// make one JSON array.
TEST(ReportCompute, CudaRowsOfOneLineJoinInTextAndXmlAndMakeOneJsonArray) {
    report::ReportSnapshot s = report_fixtures::nvidiaMachine();
    report::ReportCudaDevice& d = s.cudaDevices[0];
    d.computeMajor = 12, d.computeMinor = 1;
    d.maxThreadsDim[0] = 7, d.maxThreadsDim[1] = 8, d.maxThreadsDim[2] = 9;
    d.clockRate = -1;  // a driver's garbage clock still prints, as a number

    const RenderedReport r = renderReport(s);
    EXPECT_THAT(r.text, HasSubstr("\t- Compute Capability: 12.1\n"));
    EXPECT_THAT(r.text, HasSubstr("\t- Threads Per Block: 7 x 8 x 9\n"));
    EXPECT_THAT(r.text, HasSubstr("\t- Shader Clock Rate: 0 MHz\n"));
    EXPECT_THAT(r.xml, HasSubstr("\n\t\t\t\tcompute_capability=\"12.1\""));
    EXPECT_THAT(r.xml, HasSubstr("\n\t\t\t\tmax_threads_per_block_x=\"7\"\n\t\t\t\tmax_threads_per_block_y=\"8\""));
    const json cuda = json::parse(r.json)["cuda"]["devices"][0];
    EXPECT_EQ(cuda["compute_capability"], json::array({12, 1}));
    EXPECT_EQ(cuda["max_threads_dim"], json::array({7, 8, 9}));
    EXPECT_EQ(cuda["clock_rate_khz"], -1);
}

}  // namespace
