// The PCI layer's scan over one device directory of any content: the device records, their driver facts and,
// for an amdgpu device, its hwmon attributes and live reads. The input's parts
// fill the files below in that order (the first part names the device directory); what the input does not
// reach is absent.
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_input.h"
#include "fuzz/scratch_root.h"
#include "kalidor/driver_values.h"
#include "kalidor/gpu_record.h"
#include "kalidor/platform/pci_bus.h"
#include "kalidor/platform/pci_driver_facts.h"
#include "kalidor/vendors/amd_live_reader.h"

using namespace Kalidornm;

namespace {

// Files of the device directory, after the directory's own name.
constexpr const char* kDeviceFiles[] = {
    "class", "vendor", "device", "subsystem_vendor", "subsystem_device", "revision", "boot_vga", "uevent",
    "power/runtime_status", "mem_info_vram_total", "mem_info_vram_vendor", "vbios_version", "gpu_busy_percent",
    "pp_dpm_sclk", "pp_dpm_mclk",
};
// Files of the device's hwmon directory.
constexpr const char* kHwmonFiles[] = {
    "temp1_input", "pwm1", "pwm1_max", "fan1_input", "in0_input",
    "power1_cap", "power1_cap_default", "power1_cap_min", "power1_cap_max",
};
// Files outside the device, which the driver facts read.
constexpr const char* kMachineFiles[] = {
    "proc/sys/kernel/osrelease", "proc/sys/kernel/version", "proc/driver/nvidia/version",
};

class Parts {
public:
    explicit Parts(std::vector<std::string_view> parts) : m_parts(std::move(parts)) {}
    bool more() const { return m_next < m_parts.size(); }
    std::string_view next() { return more() ? m_parts[m_next++] : std::string_view(); }

private:
    std::vector<std::string_view> m_parts;
    size_t m_next = 0;
};

void writeMachine(ScratchRoot& root, Parts& parts) {
    const std::string address = ScratchRoot::element(parts.next(), "0000:03:00.0");
    const std::string device = "sys/bus/pci/devices/" + address + "/";
    for (const char* file : kDeviceFiles)
        if (parts.more()) root.write(device + file, parts.next());
    // The driver link, the DRM card with one connector and the hwmon directory carry names of their own.
    if (parts.more()) {
        const std::string driver = std::string(parts.next());
        if (!driver.empty() && driver.size() < 4000) root.link(device + "driver", driver);
    }
    const std::string card = ScratchRoot::element(parts.next(), "card0");
    const std::string connector = ScratchRoot::element(parts.next(), "card0-DP-1");
    root.write(device + "drm/" + card + "/" + connector + "/status", "connected\n");
    const std::string hwmon = device + "hwmon/" + ScratchRoot::element(parts.next(), "hwmon2") + "/";
    for (const char* file : kHwmonFiles)
        if (parts.more()) root.write(hwmon + file, parts.next());
    for (const char* file : kMachineFiles)
        if (parts.more()) root.write(file, parts.next());
}

void readAmdSensors(const PciBus& bus, const PciDevice& device) {
    AmdLiveReader reader(bus);
    reader.addCard(device.address, resolveAmdCardFiles(device));
    GpuRecord record;
    record.pciAddress = device.address;
    record.vendorClass = kVendorClassAmd;
    record.overdriveVersion = 6;
    record.adlAdapterIndex = 0;
    float values[5] = {};
    uint32_t level = 0;
    int32_t power[4] = {};
    reader.readTemperatures(record, &values[0], &values[1], &values[2], &values[3]);
    reader.readFanSpeed(record, &values[0], &values[1]);
    if (reader.readLoad(record, &values[0], &values[1]) && !(values[0] >= 0.0f && values[0] <= 100.0f)) std::abort();
    reader.readCurrentClocks(record, &level, &values[0], &values[1], &values[2], &values[3]);
    for (uint32_t i = 0; i < 4; ++i) reader.readPerfLevel(record, i, &level, &values[0], &values[1], &values[2], &values[3]);
    reader.readPowerControl(record, &power[0], &power[1], &power[2], &power[3]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static ScratchRoot root;
    root.clear();
    Parts parts(splitFuzzInput(data, size));
    writeMachine(root, parts);

    const PciBus bus = PciBus::scan(root.path());
    for (const PciDevice& device : bus.devices()) {
        if (device.ids.vendor > 0xFFFF || device.ids.device > 0xFFFF || device.address.bus > 0xFF) std::abort();
        const SysfsDriverFacts facts = readDriverFacts(root.path(), device);
        driverVersionOf(facts);
        driverDateOf(facts);
        if (device.driver == "amdgpu") readAmdSensors(bus, device);
    }
    for (const PciDevice* device : bus.displayDevices())
        if (!device->isDisplay()) std::abort();
    return 0;
}
