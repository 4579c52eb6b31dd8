#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "tests/report/rendered_report.h"
#include "report/report_generator.h"
#include "tests/report/report_fixtures.h"

namespace {

using namespace report;
using namespace report_fixtures;

size_t countOf(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

TEST(ReportDocument, ASecondGenerationKeepsTheFirstReportsLiveValues) {
    ReportBuffers b;
    ReportSnapshot first = amdMachineWithoutCatalyst();
    generateReport(b, first);
    const std::string text = b.fileText, display = b.displayText, xml = b.xmlBody;
    ReportSnapshot later = first;
    later.gpus[0].perfLevels[1].gpuClockMhz = 1400.0f;
    later.system.cpuSpeedMhz = 1200;
    generateReport(b, later);
    EXPECT_EQ(b.fileText, text);
    EXPECT_EQ(b.displayText, display);
    EXPECT_EQ(b.xmlBody, xml);
    EXPECT_TRUE(b.generated);
}

TEST(ReportDocument, TextFormsDifferOnlyInTheirLineEnds) {
    const RenderedReport r = renderReport(nvidiaMachine());
    std::string withoutCr = r.displayText;
    std::erase(withoutCr, '\r');
    EXPECT_EQ(withoutCr, r.text);
    EXPECT_EQ(countOf(r.displayText, "\r\n"), countOf(r.text, "\n"));
    // The text report keeps the literal li tags.
    EXPECT_NE(r.text.find("    <li>GL_ARB_framebuffer_object</li>\n"), std::string::npos);
}

// Vulkan needs no display, so its section follows the system section of a machine without a driver.
TEST(ReportDocument, WithoutADriverOnlyTheVulkanSectionFollowsTheSystemSection) {
    const RenderedReport r = renderReport(noDriverMachine());
    EXPECT_EQ(r.xml.find("graphics_cards"), std::string::npos);
    EXPECT_EQ(r.text.find("OpenGL"), std::string::npos);
    EXPECT_EQ(r.text.find("Misc."), std::string::npos);
    const std::string tail = "*** NO GRAPHICS DRIVERS DETECTED ***\n***\n- Renderer: n.a.\n\n\n"
                             "===================================[ Vulkan Capabilities ]\n"
                             "- Vulkan: not read: no Vulkan loader\n";
    ASSERT_GE(r.text.size(), tail.size());
    EXPECT_EQ(r.text.substr(r.text.size() - tail.size()), tail);
    EXPECT_NE(r.xml.find("\n\t\t<renderer \n\t\t\tmodel=\"n.a.\"\n\t\t />\n\t\t<vulkan status=\"not read: no Vulkan "
                         "loader\" />\n\n</lumen_scope>"),
              std::string::npos);
}

TEST(ReportDocument, BoostValuesGiveGtx600AndOtherwiseThePerformanceStates) {
    const RenderedReport boost = renderReport(nvidiaMachine());
    EXPECT_EQ(countOf(boost.xml, "<gtx600 "), 1u);
    EXPECT_EQ(countOf(boost.xml, "<pstate "), 0u);
    EXPECT_NE(boost.text.find("  - GPU boost clock: 1058 MHz\n"), std::string::npos);  // truncated
    EXPECT_NE(boost.text.find("  - GPU power target: 100 % TDP\n"), std::string::npos);

    for (auto clear : {+[](ReportNvidiaClocks& c) { c.baseClockMhz.reset(); },
                       +[](ReportNvidiaClocks& c) { c.boostClockMhz = 0.0f; },
                       +[](ReportNvidiaClocks& c) { c.powerTargetPercent = 0.0f; }}) {
        ReportSnapshot s = nvidiaMachine();
        clear(s.gpus[0].nvidia);
        const RenderedReport r = renderReport(s);
        EXPECT_EQ(countOf(r.xml, "<gtx600 "), 0u);
        EXPECT_NE(r.xml.find("\n\t\t\t<pstate nv_pstate=\"8\" gpu_clock=\"324\" mem_clock=\"162\" vddc=\"0.987\" />"),
                  std::string::npos);
        EXPECT_NE(r.text.find("  - PState 0 - GPU clock: 1006 MHz, memory: 3004 MHz, VDDC: 1.175V\n"),
                  std::string::npos);
    }
    // Another vendor never gets gtx600, whatever its values, and its states carry no P-state number.
    const RenderedReport amd = renderReport(amdMachineWithoutCatalyst());
    EXPECT_EQ(countOf(amd.xml, "<gtx600 "), 0u);
    EXPECT_NE(amd.xml.find("\n\t\t\t<pstate gpu_clock=\"1340\" mem_clock=\"2000\" vddc=\"1.150\" />"),
              std::string::npos);
}

TEST(ReportDocument, ExtensionsStandTwiceFirstWithTheirNotes) {
    const RenderedReport r = renderReport(nvidiaMachine());
    EXPECT_EQ(countOf(r.text, "- OpenGL Extensions: 3 extensions (GL=2 and WGL=1)\n"), 2u);
    EXPECT_EQ(countOf(r.xml, "<opengl_extensions num_extensions=\"3\" num_gl_extensions=\"2\" num_wgl_extensions=\"1\" >"),
              2u);
    const size_t withNote = r.text.find("<li>GL_ARB_framebuffer_object (OpenGL 3.0)</li>");
    const size_t plain = r.text.find("<li>GL_ARB_framebuffer_object</li>");
    ASSERT_NE(withNote, std::string::npos);
    ASSERT_NE(plain, std::string::npos);
    EXPECT_LT(withNote, plain);
    EXPECT_EQ(countOf(r.xml, "<li>GL_EXT_texture_compression_s3tc</li>"), 2u);
}

TEST(ReportDocument, DriverRowsFollowTheVendor) {
    // AMD: a driver text without a Catalyst version gives no driver row at all.
    ReportSnapshot amd = amdMachineWithoutCatalyst();
    RenderedReport r = renderReport(amd);
    EXPECT_EQ(r.text.find("  - Driver:"), std::string::npos);
    EXPECT_EQ(r.xml.find("driver=\""), std::string::npos);
    amd.gpus[0].catalystVersion = "15.7";
    r = renderReport(amd);
    EXPECT_NE(r.text.find("  - Driver: Catalyst 15.7 (23.0.4)\n"), std::string::npos);
    amd.gpus[0].isCrimson = true;
    amd.gpus[0].driverVersion.reset();  // falls back to the primary driver text
    r = renderReport(amd);
    EXPECT_NE(r.xml.find("\n\t\tdriver=\"Crimson 15.7 (23.0.4 (2023-06-01))\""), std::string::npos);

    // NVIDIA: the version number x 100 printed through a single-precision product.
    r = renderReport(nvidiaMachine());
    EXPECT_NE(r.text.find("  - Driver: 535.183.01 (R535.18)\n  - Branch: r535_00\n"), std::string::npos);
    ReportSnapshot nv = nvidiaMachine();
    nv.driver.primaryDriverVersion.reset();
    r = renderReport(nv);
    EXPECT_EQ(r.text.find("  - Branch:"), std::string::npos);  // no version, no branch either

    // Others: the primary driver text.
    r = renderReport(intelSoftwareMachine());
    EXPECT_NE(r.text.find("  - Driver: Mesa 22.3.6\n"), std::string::npos);
}

TEST(ReportDocument, GpuRowsStandOnlyWhereTheirValueExists) {
    const RenderedReport r = renderReport(intelSoftwareMachine());
    EXPECT_NE(r.text.find("  - GPU codename: \n"), std::string::npos);  // an empty text exists
    EXPECT_EQ(r.text.find("  - Bus Id:"), std::string::npos);             // 0
    EXPECT_EQ(r.text.find("  - Memory size:"), std::string::npos);
    EXPECT_EQ(r.text.find("  - BIOS version:"), std::string::npos);        // null
    EXPECT_EQ(r.text.find("  - Memory bus width:"), std::string::npos);    // read failed
    EXPECT_NE(r.xml.find("\n\t\tvendor_id=\"8086\"\n\t\tdevice_id=\"3E92\""), std::string::npos);
    ReportSnapshot s = intelSoftwareMachine();
    s.gpus[0].subdeviceId = 0x86;
    EXPECT_NE(renderReport(s).text.find("  - Subdevice ID: 1043-  86\n"), std::string::npos);
}

TEST(ReportDocument, LinkSectionsOnlyWhenTheToolsPanelChoseThem) {
    ReportSnapshot s = nvidiaMachine();
    RenderedReport r = renderReport(s);
    EXPECT_EQ(r.text.find("Related Graphics Drivers"), std::string::npos);
    EXPECT_EQ(r.xml.find("graphics_cards_reviews"), std::string::npos);
    s.links = ReportLinks{{{"", "https://drivers.example/nv"}},
                          {{"GTX 680", "https://reviews.example/gtx680"}, {"Radeon", "https://reviews.example/hd"}}};
    r = renderReport(s);
    EXPECT_NE(r.text.find("\n\n===================================[ Related Graphics Drivers ]\n- https://drivers.example/nv\n"),
              std::string::npos);
    EXPECT_NE(r.xml.find("\n\t\t\t<review url=\"https://reviews.example/gtx680\" />"), std::string::npos);
    EXPECT_EQ(r.xml.find("reviews.example/hd"), std::string::npos);
    // Without a display-device string the renderer is searched instead.
    s.primaryDisplayDeviceString.clear();
    s.links->reviews = {{"PCIe", "https://reviews.example/pcie"}};
    EXPECT_NE(renderReport(s).xml.find("reviews.example/pcie"), std::string::npos);
}

TEST(ReportDocument, MiscSectionAndControlPanel) {
    ReportSnapshot s = nvidiaMachine();
    EXPECT_NE(renderReport(s).text.find("===================================[ Misc. ]"), std::string::npos);
    s.nvidiaControlPanel = ReportNvidiaControlPanel{};
    EXPECT_EQ(renderReport(s).text.find("NVIDIA Control Panel"), std::string::npos);  // temperature 0
    s.nvidiaControlPanel->coreTemperatureC = 52;
    s.nvidiaControlPanel->displayBoard = "P2002";
    const RenderedReport r = renderReport(s);
    EXPECT_NE(r.text.find("- NVIDIA CPL: Display Board: [P2002]\n"), std::string::npos);
    EXPECT_NE(r.xml.find("\n\t\t\tdisplay_board=\"[P2002]\""), std::string::npos);
    EXPECT_EQ(r.text.find("Display Adapter"), std::string::npos);
    s.system.osIsVista = true;
    EXPECT_EQ(renderReport(s).text.find("Misc."), std::string::npos);
}

TEST(ReportDocument, MalformedVersionAndMissingGlsl) {
    ReportSnapshot s = intelSoftwareMachine();
    s.gl.version.clear();
    s.gl.glslVersion.clear();
    const RenderedReport r = renderReport(s);
    EXPECT_NE(r.text.find("- OpenGL Version: ***N.A.*** - The graphics driver has returned a malformed string version!\n"),
              std::string::npos);
    EXPECT_NE(r.xml.find("\n\t\t\topengl_version=\"1.1\""), std::string::npos);
    EXPECT_NE(r.xml.find("\n\t\t\tglsl_version=\"Not Supported\""), std::string::npos);
}

TEST(ReportDocument, OpenClDeviceRowsFollowTheDevice) {
    const RenderedReport nv = renderReport(nvidiaMachine());
    EXPECT_NE(nv.text.find("\t- CL_NV_DEVICE_WARP_SIZE: 32\n"), std::string::npos);
    EXPECT_NE(nv.xml.find("\n\t\t\t\tCL_DEVICE_VENDOR_ID=\"0x10DE\""), std::string::npos);
    const RenderedReport sw = renderReport(intelSoftwareMachine());
    EXPECT_EQ(sw.text.find("CL_NV_DEVICE"), std::string::npos);
    EXPECT_NE(sw.text.find("\t- CL_DEVICE_TYPE: CPU / DEFAULT\n"), std::string::npos);
    EXPECT_NE(sw.text.find("\t- CL_EXEC_NATIVE_KERNEL: YES\n"), std::string::npos);
    EXPECT_NE(sw.xml.find("\n\t\t\t\tCL_EXEC_NATIVE_KERNEL=\"1\""), std::string::npos);
    EXPECT_NE(sw.text.find("\t- CL_DEVICE_GLOBAL_MEM_SIZE: 12288MB\n"), std::string::npos);
}

// Reports used to stop at a fixed buffer size and lines at 4,095 bytes, which cut a long device list and
// left its XML without closing tags.
TEST(ReportDocument, ALongReportIsNeverCut) {
    ReportSnapshot s = intelSoftwareMachine();
    s.gl.extensions.assign(20000, ReportGlExtension{std::string(100, 'x'), "note"});
    const std::string longName(5000, 'y');
    s.gl.extensions.push_back(ReportGlExtension{longName, ""});
    ReportBuffers b;
    generateReport(b, s);
    EXPECT_GT(b.fileText.size(), 4000000u);
    EXPECT_EQ(countOf(b.fileText, "    <li>" + longName + "</li>\n"), 2u);
    EXPECT_EQ(countOf(b.xmlBody, "\n\t\t\t<li>" + longName + "</li>"), 2u);
    // The sections behind the extensions are all there.
    EXPECT_NE(b.fileText.find("- Num OpenCL platforms: 1\n"), std::string::npos);
    EXPECT_NE(b.xmlBody.find("\n\t\t</opencl>"), std::string::npos);
}

TEST(ReportDocument, XmlValuesAreEscapedWhileTheTextKeepsThemAsGiven) {
    ReportSnapshot s = nvidiaMachine();
    s.system.osDescription = "Debian & <Friends> \"12\"";
    s.driver.primaryDriverVersion = "535 <beta>";
    s.gl.extensions[0].note = "A & B";
    s.clPlatforms[0].devices[0].extensions.push_back("cl_vendor_<odd>&name");
    s.links = ReportLinks{{{"", "https://drivers.example/?a=1&b=2"}}, {}};
    const RenderedReport r = renderReport(s);
    EXPECT_NE(r.text.find("- Operating System: Debian & <Friends> \"12\"\n"), std::string::npos);
    EXPECT_NE(r.xml.find("description=\"Debian &amp; &lt;Friends&gt; &quot;12&quot;\""), std::string::npos);
    EXPECT_NE(r.xml.find("driver=\"535 &lt;beta&gt; (R535.18)\""), std::string::npos);
    EXPECT_NE(r.xml.find("<li>GL_ARB_framebuffer_object (A &amp; B)</li>"), std::string::npos);
    EXPECT_NE(r.xml.find("<li>cl_vendor_&lt;odd&gt;&amp;name</li>"), std::string::npos);
    EXPECT_NE(r.xml.find("<driver url=\"https://drivers.example/?a=1&amp;b=2\" />"), std::string::npos);
    EXPECT_EQ(r.xml.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n", 0), 0u);
}

TEST(ReportDocument, WritersRefuseANullPathOrAnUnopenableFile) {
    ReportBuffers b;
    ReportSnapshot s = noDriverMachine();
    generateReport(b, s);
    int error = 0;
    EXPECT_FALSE(writeTextReport(b, nullptr, &error));
    EXPECT_EQ(error, EINVAL);
    EXPECT_FALSE(writeXmlReport(b, s, nullptr));
    EXPECT_FALSE(writeTextReport(b, "/proc/lumenscope_report.txt", &error));
    EXPECT_NE(error, 0);
    EXPECT_FALSE(writeXmlReport(b, s, "/nonexistent-dir/report.xml", &error));
    EXPECT_EQ(error, ENOENT);
}

}  // namespace
