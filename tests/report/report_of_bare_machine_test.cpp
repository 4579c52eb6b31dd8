#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "tests/report/rendered_report.h"
#include "report/report_snapshot_from_facade.h"

namespace {

using namespace Kalidornm;

// The report of a machine replayed from tests/fixtures/sysfs/nothing: no display device, no EGL, no vendor
// library, read through the started library as the batch branch reads it.
class BareMachineReport : public ::testing::Test {
protected:
    void SetUp() override {
        KalidorSources sources;
        sources.rootDir = std::string(SYSFS_FIXTURES) + "/nothing";
        sources.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
        sources.eglLibrary = "";
        Kalidor::setSources(sources);
        m_library = Kalidor::getInstance();
        ASSERT_NE(m_library, nullptr);
        ASSERT_TRUE(m_library->startup(0, 0, 64, 64, 0, 0, true));
        // A known speed spares the one-second clock measurement, which this report does not depend on.
        m_library->caps()->cpuOs.cpuSpeedMhz = 3000;
    }

    void TearDown() override {
        if (m_library && !m_library->shutdown()) {
            gGlobals.gpus.clear();
            gGlobals.windows.clear();
            gGlobals.mainWindow = nullptr;
            Kalidor::destroyInstance();
        }
        gGlobals.summary = GpuSummary{};
        gGlobals.snapshot.reset();
        gGlobals.gpu_db_index = -1;
        gGlobals.hasDisplayDevice = false;
        Kalidor::setSources(KalidorSources{});
    }

    Kalidor* m_library = nullptr;
};

// The OS row used to be empty everywhere on such a machine, null in JSON, though the OS is known without a GPU.
TEST_F(BareMachineReport, TheJsonNamesTheOsWhileTextAndXmlKeepTheSummarysEmptyRow) {
    ASSERT_FALSE(m_library->hasDisplayDevice());
    report::ReportSnapshot snapshot;
    report::fillReportSnapshot(snapshot, *m_library);
    const std::string os = "Debian GNU/Linux 12 (bookworm) 64-bit - kernel 6.18.44";

    const RenderedReport r = renderReport(snapshot);
    EXPECT_EQ(nlohmann::json::parse(r.json)["system"]["os_description"], os);
    EXPECT_NE(r.text.find("- Operating System: \n"), std::string::npos);
    EXPECT_NE(r.xml.find("\n\t\t\tdescription=\"\""), std::string::npos);
    EXPECT_NE(r.text.find("*** NO GRAPHICS DRIVERS DETECTED ***"), std::string::npos);
}

}  // namespace
