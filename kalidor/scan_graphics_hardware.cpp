#include <cstring>
#include <string>

#include "kalidor/gpu_database/gpu_naming.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/library_log.h"
#include "kalidor/opengl/opengl_summary.h"

namespace Kalidornm {

namespace {

// The summary's driver text. AMD's Catalyst form needs the primary Catalyst version, which amdgpu never
// reports; NVIDIA's "Forceware" form needs the legacy control panel's version, which the Linux driver does
// not have. Both stay for the day a reader fills them.
std::string primaryDriverText(int32_t vendorKind, const PrimaryDriverValues& driver) {
    const std::string version = driver.driverVersion, date = driver.driverDate, gl = driver.openGLDriverName;
    if (vendorKind == kPrimaryVendorAmd && driver.catalystVersion[0])
        return version + " - Catalyst " + driver.catalystVersion + " (" + date + ")";
    if (version.empty()) return "unknown";
    if (!gl.empty() && !date.empty()) return version + " (" + date + ") - GL:" + gl;
    if (!date.empty()) return version + " (" + date + ")";
    return version;
}

// "n.a." without a BIOS string; a string with the word "Version" keeps what follows it.
std::string primaryBiosVersion(const char* biosString) {
    if (!biosString[0]) return "n.a.";
    const char* word = std::strstr(biosString, "Version");
    return word ? std::string(word + 7) : std::string(biosString);
}

}  // namespace

bool Kalidor::scanGraphicsHardware() {
    LibraryLog& trace = generalTrace();
    HardwareCaps* machine = caps();
    if (!machine) return false;
    GpuSummary& summary = gGlobals.summary;
    const PrimaryDisplay& primary = machine->display.primary;
    trace.write("Kalidor::scanGraphicsHardware() - START");

    const GpuRecord* first = record(0);
    const PrimaryGpuDbFacts facts = primaryGpuDbFacts(primary.vendorId, primary.deviceId, primary.subdeviceId,
                                                      first ? first->displayDeviceString : nullptr);
    gGlobals.gpu_db_index = facts.row;
    trace.write("Kalidor::scanGraphicsHardware() - gGlobals.gpu_db_index: %d", gGlobals.gpu_db_index);
    copyText(summary.gpuName, facts.name);
    trace.write("Kalidor::scanGraphicsHardware() - 01");

    trace.write("Kalidor::scanGraphicsHardware() - 02");
    trace.write("Kalidor::scanGraphicsHardware() - 03");
    copyText(summary.driverText, primaryDriverText(machine->primaryVendorKind, machine->driver).c_str());

    trace.write("Kalidor::scanGraphicsHardware() - 04");
    copyText(summary.codename, facts.codename);
    trace.write("Kalidor::scanGraphicsHardware() - 05");
    if (facts.row != -1) {
        summary.unifiedShaders = facts.unifiedShaders;
        summary.vertexPipes = facts.vertexPipes;
        summary.pixelPipes = facts.pixelPipes;
        summary.tdpWatts = facts.tdpWatts;
    }
    trace.write("Kalidor::scanGraphicsHardware() - 06");
    if (facts.row != -1) {
        summary.tmus = facts.tmus;
        summary.rops = facts.rops;
    }

    trace.write("Kalidor::scanGraphicsHardware() - 07");

    trace.write("Kalidor::scanGraphicsHardware() - 08");
    trace.write("Kalidor::scanGraphicsHardware() - 09");
    const bool nvidiaPrimary = machine->primaryVendorKind == kPrimaryVendorNvidia;
    if (nvidiaPrimary && first && first->physicalFrameBufferKb != 0)
        summary.videoMemoryMb = first->physicalFrameBufferKb >> 10;
    else
        summary.videoMemoryMb = machine->driver.memorySizeBytes >> 20;

    trace.write("Kalidor::scanGraphicsHardware() - 10");
    copyText(summary.biosVersion, primaryBiosVersion(machine->driver.biosString).c_str());

    trace.write("Kalidor::scanGraphicsHardware() - 11");
    summary.vendorId = uint32_t(primary.vendorId);
    summary.deviceId = uint32_t(primary.deviceId);
    if (nvidiaPrimary) {
        // Without the legacy control panel there is no second count to fall back on.
        summary.totalGpuCount = machine->nvidia.nvLogicalGpuCount;
        if (summary.totalGpuCount == 0) summary.totalGpuCount = 1;
    } else if (machine->primaryVendorKind == kPrimaryVendorAmd) {
        summary.totalGpuCount = machine->amd.agsGpuCount;
        if (summary.totalGpuCount == 0) summary.totalGpuCount = 1;
    }

    trace.write("Kalidor::scanGraphicsHardware() - 12");
    const CpuOsInfo& cpuOs = machine->cpuOs;
    if (cpuOs.osDescription[0]) copyText(summary.osDescription, cpuOs.osDescription);

    trace.write("Kalidor::scanGraphicsHardware() - 13");
    copyOpenGlSummary(*machine, summary);
    trace.write("Kalidor::scanGraphicsHardware() - END");
    return true;
}

}  // namespace Kalidornm
