#include "kalidor/vendors/amd_reader.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "kalidor/gpu_database/gpu_naming.h"
#include "kalidor/library_log.h"
#include "kalidor/platform/amdgpu_drm_info.h"
#include "kalidor/platform/pci_names.h"
#include "kalidor/vendors/amd_live_reader.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

std::string adapterNameOf(const std::string& idsList, const PciDevice& device) {
    std::string name = pciDeviceOnlyName(idsList, device.ids.vendor, device.ids.device);
    if (name.empty()) {
        char fallback[32];
        std::snprintf(fallback, sizeof fallback, "AMD device %04X", device.ids.device);
        name = fallback;
    }
    return name;
}

// The memory type from the driver's own device info, asked on the card's render node (or its card node);
// a sleeping card is not asked, and where no answer comes the type stays empty and the report leaves its row
// out.
void readMemoryType(GpuRecord& record, const PciDevice& device, const BackendServices& services) {
    const std::string& node = device.renderNode.empty() ? device.drmCard : device.renderNode;
    // radeon answers none of amdgpu's queries.
    if (node.empty() || device.driver != "amdgpu" || !services.pci.mayTouch(device.address)) return;
    const auto info = queryAmdgpuMemoryInfo(services.sources.amdgpuLibrary,
                                            underRoot(services.sources, "/dev/dri/" + node));
    if (!info || !*amdgpuVramTypeName(info->vramType)) return;
    copyText(record.memoryType, amdgpuVramTypeName(info->vramType));
    generalTrace().write("AMD_Display_Library_Init - memory info: size:%lu, bandwidth:%lu, "
                         "memoryInfo.strMemoryType:%s",
                         static_cast<unsigned long>(record.memorySizeMb) << 20, 0ul, record.memoryType);
}

}  // namespace

void applyAmdDatabaseFacts(GpuRecord& record, const AmdAdapterInfo& info) {
    const auto facts = amdAdapterDbFacts(record.vendorId, record.deviceId, record.subdeviceId, info.strAdapterName);
    if (!facts) {
        copyText(record.name, info.strAdapterName);
        return;
    }
    copyText(record.codename, facts->codename);
    copyText(record.name, facts->name);
    if (record.vendorId == 0x1002) {
        record.shaderCores = facts->shaderCores;
        record.tmus = facts->tmus;
        record.rops = facts->rops;
        record.tdpWatts = facts->tdpWatts;
    }
}

bool AMD_Display_Library_Init(AmdState& amd, AmdLiveReader& live, const std::vector<const PciDevice*>& devices,
                              const BackendServices& services, GpuList& gpus) {
    LibraryLog& trace = generalTrace();
    trace.write("AMD_Display_Library_Init - START");
    amd.amdAdapterCount = 0;
    amd.amdUsableAdapterCount = 0;
    if (amd.adlLoaded) {
        trace.write("AMD_Display_Library_Init - END ERROR.");
        return false;
    }
    if (devices.empty()) return false;  // no driver bound: nothing to load, no message

    trace.write("AMD_Display_Library_Init - function pointers.");
    trace.write("AMD_Display_Library_Init - ADL_Main_Control_Create()");
    trace.write("AMD_Display_Library_Init - ADL_Main_Control_Create() OK.");

    std::vector<std::string> names;
    const std::string idsList = pciIdsListFor(services.sources);
    for (const PciDevice* device : devices) names.push_back(adapterNameOf(idsList, *device));
    std::vector<AmdAdapterInfo> adapters = buildAmdAdapterList(devices, names);
    if (adapters.empty()) return false;
    amd.adlLoaded = true;
    amd.adlAdapterCount = int32_t(adapters.size());
    trace.write("AMD_Display_Library_Init -  Found: %d adapters", amd.adlAdapterCount);
    amd.adlAdapterInfo = adapters;

    uint32_t last = kNoDisplaySlot;
    for (size_t i = 0; i < adapters.size(); ++i) {
        const AmdAdapterInfo info = adapters[i];
        trace.write("AMD_Display_Library_Init -  adapter %d - vendor ID: %d", int(i), info.iVendorID);
        // The vendor is compared as the decimal number 1002: the driver library gives the hex digits that way.
        if (!amdAdapterIsNew(info, amd.seenAdapters) || info.iVendorID != 1002) continue;

        ++amd.amdAdapterCount;
        ++amd.amdUsableAdapterCount;
        GpuRecord& record = gpus.append(std::make_unique<GpuRecord>());
        record.hasTemperature = true;
        record.vendorClass = kVendorClassAmd;
        record.adlAdapterIndex = info.iAdapterIndex;
        record.pciAddress = info.address;
        record.busId = info.iBusNumber;

        const PciDevice& device = *devices[info.device];
        record.overdriveVersion = device.hwmonDir.empty() ? 0 : 6;
        live.addCard(device.address, resolveAmdCardFiles(device));

        record.vendorId = device.ids.vendor;
        record.deviceId = device.ids.device;
        record.subvendorId = device.ids.subvendor;
        record.subdeviceId = device.ids.subdevice;
        takeDisplaySlot(record, services.display, last);
        readGpuDriverValues(record, services);
        applyAmdDatabaseFacts(record, info);

        trace.write("AMD_Display_Library_Init -  adapter %d - AMD_Display_Library_ReadGpuTemperature()", int(i));
        live.readTemperatures(record, nullptr, nullptr, nullptr, nullptr);
        trace.write("AMD_Display_Library_Init -  adapter %d - AMD_Display_Library_ReadGpuTemperature() OK.",
                    int(i));
        live.readFanSpeed(record, nullptr, nullptr);
        live.readPerfLevels(record, true);
        readMemoryType(record, device, services);
    }
    trace.write("AMD_Display_Library_Init - END OK.");
    return true;
}

namespace {

// GPUs of the amdgpu kernel driver, read through its sysfs attributes and hwmon.
class AmdBackend final : public VendorBackend {
public:
    explicit AmdBackend(AmdState& state) : m_state(state) {}

    // The devices the amdgpu driver serves, and the older cards radeon still drives (their hwmon gives a
    // temperature and the fan), in address order.
    std::vector<const PciDevice*> detect(const PciBus& pci) const override {
        std::vector<const PciDevice*> devices;
        for (const PciDevice& device : pci.devices())
            if (device.driver == "amdgpu" || device.driver == "radeon") devices.push_back(&device);
        return devices;
    }

    void createRecords(const std::vector<const PciDevice*>& devices, const BackendServices& services,
                       GpuList& gpus) override {
        LibraryLog& trace = generalTrace();
        trace.write("ATI_Init() START");
        m_state = AmdState{};
        m_reader = std::make_unique<AmdLiveReader>(services.pci);
        // The GPU and CrossFire counts: every device bound to amdgpu is a GPU; the platform has no CrossFire.
        m_state.agsGpuCount = uint32_t(
            std::count_if(devices.begin(), devices.end(), [](const PciDevice* d) { return d->driver == "amdgpu"; }));
        m_state.agsCrossfireGpuCount = 0;
        trace.write("AMD - Num GPUs: %d", int(m_state.agsGpuCount));
        trace.write("AMD - Num CrossFire GPUs: %d", int(m_state.agsCrossfireGpuCount));
        if (AMD_Display_Library_Init(m_state, *m_reader, devices, services, gpus)) trace.write("ATI_Init() END OK.");
    }

    GpuLiveReader* liveReader() override { return m_reader.get(); }

private:
    AmdState& m_state;
    std::unique_ptr<AmdLiveReader> m_reader;
};

}  // namespace

std::unique_ptr<VendorBackend> makeAmdBackend(VendorBlocks& blocks) { return std::make_unique<AmdBackend>(blocks.amd); }

}  // namespace Kalidornm
