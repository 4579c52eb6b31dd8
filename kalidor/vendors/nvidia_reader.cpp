#include "kalidor/vendors/nvidia_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/library_log.h"
#include "kalidor/platform/pci_driver_facts.h"
#include "kalidor/platform/pci_names.h"
#include "kalidor/vendors/nvidia_gpu.h"
#include "kalidor/vendors/nvidia_limits.h"
#include "kalidor/vendors/nvidia_pstates.h"
#include "kalidor/vendors/nvml_library.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

NvidiaState::NvidiaState() = default;
NvidiaState::~NvidiaState() = default;
NvidiaState::NvidiaState(NvidiaState&&) noexcept = default;
NvidiaState& NvidiaState::operator=(NvidiaState&&) noexcept = default;

void NvidiaState::reset() { *this = NvidiaState{}; }

void* NvidiaState::handleAt(const PciAddress& address) const {
    for (uint32_t i = 0; i < nvPhysicalGpuCount; ++i)
        if (nvGpuInfo[i].address == address) return nvGpuInfo[i].handle;
    return nullptr;
}

namespace {

using namespace nvidia_limits;

nvmlDevice_t device(void* handle) { return static_cast<nvmlDevice_t>(handle); }

// The GPU's address as the driver writes it ("00000000:01:00.0"); the numeric fields where that text is odd.
PciAddress addressOf(const nvmlPciInfo_t& pci) {
    char busId[sizeof pci.busId + 1] = {};
    std::memcpy(busId, pci.busId, sizeof pci.busId);
    if (const auto parsed = parsePciAddress(busId)) return *parsed;
    return PciAddress{pci.domain, pci.bus & 0xFF, pci.device & 0x1F, 0};
}

// The record's place and ids: the PCI layer's where the GPU was asked for by its bus id, the driver's where it
// answers.
void readPciIds(const NvmlLibrary& nvml, GpuRecord& r, const NvGpuInfo& info, const PciDevice* gpu) {
    if (gpu) {
        r.busId = int32_t(gpu->address.bus);
        r.vendorId = gpu->ids.vendor, r.deviceId = gpu->ids.device;
        r.subvendorId = gpu->ids.subvendor, r.subdeviceId = gpu->ids.subdevice;
        r.nvDeviceId32 = gpu->ids.device << 16 | gpu->ids.vendor;
        r.nvSubsystemId32 = gpu->ids.subdevice << 16 | gpu->ids.subvendor;
    }
    r.pciAddress = info.address;
    nvmlPciInfo_t pci{};
    if (nvml.deviceGetPciInfo(device(r.nvPhysicalGpu), &pci) != NVML_SUCCESS) return;
    r.busId = int32_t(pci.bus & 0xFF);
    r.nvDeviceId32 = pci.pciDeviceId;
    r.nvSubsystemId32 = pci.pciSubSystemId;
    r.vendorId = pci.pciDeviceId & 0xFFFF;
    r.deviceId = pci.pciDeviceId >> 16;
    r.subvendorId = pci.pciSubSystemId & 0xFFFF;
    r.subdeviceId = pci.pciSubSystemId >> 16;
}

// Takes a GPU the driver handed out into the handle table with what the driver tells about it; its index
// there, or -1 when the table is full.
int32_t addHandle(NvidiaState& state, nvmlDevice_t handle) {
    if (state.nvPhysicalGpuCount >= kMaxNvidiaGpus) return -1;
    const NvmlLibrary& nvml = *state.library();
    const uint32_t index = state.nvPhysicalGpuCount++;
    state.nvLogicalGpuCount = state.nvPhysicalGpuCount;
    state.nvPhysicalGpus[index] = handle;
    NvGpuInfo& info = state.nvGpuInfo[index];
    info.handle = handle;
    char name[NVML_DEVICE_NAME_V2_BUFFER_SIZE] = {};
    if (nvml.deviceGetName(handle, name, sizeof name) == NVML_SUCCESS) copyDriverText(info.fullName, name);
    nvmlMemory_t memory{};
    if (nvml.deviceGetMemoryInfo && nvml.deviceGetMemoryInfo(handle, &memory) == NVML_SUCCESS &&
        memory.total <= kMaxMemoryBytes)
        info.physicalFrameBufferKb = uint32_t(std::min<unsigned long long>(memory.total >> 10, UINT32_MAX));
    nvmlPciInfo_t pci{};
    if (nvml.deviceGetPciInfo(handle, &pci) == NVML_SUCCESS) info.address = addressOf(pci);
    return int32_t(index);
}

bool alreadyTaken(const NvidiaState& state, nvmlDevice_t handle) {
    for (uint32_t i = 0; i < state.nvPhysicalGpuCount; ++i)
        if (state.nvPhysicalGpus[i] == handle) return true;
    return false;
}

// Every GPU of the driver's own list, in its order: for machines whose PCI bus shows no NVIDIA GPU (WSL,
// some containers), where nothing is known to sleep. The count is the driver's word and is capped: no more
// than kMaxNvidiaGpus indices are asked, and a handle handed out twice is taken once. A GPU whose handle the
// driver refuses is left out.
void takeDriversList(NvidiaState& state) {
    const NvmlLibrary& nvml = *state.library();
    unsigned int count = 0;
    if (nvml.deviceGetCount(&count) != NVML_SUCCESS) count = 0;
    count = std::min(count, kMaxNvidiaGpus);
    for (unsigned int i = 0; i < count && state.nvPhysicalGpuCount < kMaxNvidiaGpus; ++i) {
        nvmlDevice_t handle = nullptr;
        if (nvml.deviceGetHandleByIndex(i, &handle) == NVML_SUCCESS && handle && !alreadyTaken(state, handle))
            addHandle(state, handle);
    }
}

// Name and figures from the GPU database; without a row the driver's name, else the PCI id list's.
void nameFromDatabase(GpuRecord& r, const NvGpuInfo& info, const BackendServices& services) {
    const int32_t row = findGpuRow(r.vendorId, r.deviceId);
    if (row >= 0 && *gpuDbName(r.vendorId, row)) {
        copyText(r.name, gpuDbName(r.vendorId, row));
        copyText(r.codename, gpuDbCodename(r.vendorId, row));
        r.tmus = gpuDbClampedFigure(r.vendorId, row, GpuDbFigure::Tmus);
        r.rops = gpuDbClampedFigure(r.vendorId, row, GpuDbFigure::Rops);
    } else if (info.fullName[0]) {
        copyText(r.name, info.fullName);
    } else {
        copyText(r.name, pciDeviceName(pciIdsListFor(services.sources), r.vendorId, r.deviceId).c_str());
    }
}

void readCounters(const NvmlLibrary& nvml, GpuRecord& r) {
    const nvmlDevice_t d = device(r.nvPhysicalGpu);
    unsigned int value = 0;
    if (nvml.deviceGetMemoryBusWidth && nvml.deviceGetMemoryBusWidth(d, &value) == NVML_SUCCESS &&
        value <= kMaxBusWidthBits)
        r.memoryBusWidth = value;
    if (nvml.deviceGetNumGpuCores && nvml.deviceGetNumGpuCores(d, &value) == NVML_SUCCESS && value <= kMaxCores)
        r.shaderCores = int32_t(value);
}

void readPerfLevelTable(const NvmlLibrary& nvml, GpuRecord& r) {
    const std::vector<PerfLevel> levels = buildNvidiaPerfLevels(readNvidiaPstates(nvml, device(r.nvPhysicalGpu)));
    r.allocatePerfLevels(uint32_t(levels.size()));
    for (uint32_t i = 0; i < r.perfLevelCount && i < levels.size(); ++i) r.perfLevels[i] = levels[i];
}

// The record of one GPU the driver handed out: its place and ids, display slot and kernel driver values, then
// what the driver tells about it.
void fillRecord(NvidiaState& state, uint32_t index, GpuRecord& r, const BackendServices& services,
                uint32_t& last, const PciDevice* gpu) {
    const NvmlLibrary& nvml = *state.library();
    r.nvPhysicalGpu = state.nvPhysicalGpus[index];
    r.vendorClass = kVendorClassNvidia;
    readPciIds(nvml, r, state.nvGpuInfo[index], gpu);
    takeDisplaySlot(r, services.display, last);
    readGpuDriverValues(r, services);

    copyText(r.driverAdapterString, state.nvDriverAdapterString);
    copyText(r.driverBranch, state.nvDriverBranch);
    r.nvDriverVersion = state.nvDriverVersion;
    formatNvidiaDriverVersion(state.nvDriverVersion, r.driverVersion);

    nameFromDatabase(r, state.nvGpuInfo[index], services);
    NvidiaGpu(nvml, r).readTemperatures(nullptr, nullptr, nullptr, nullptr);
    r.hasTemperature = r.sensorGpu.read && r.sensorGpu.current > 0.0f;
    readCounters(nvml, r);
    readPerfLevelTable(nvml, r);

    r.physicalFrameBufferKb = state.nvGpuInfo[index].physicalFrameBufferKb;
    r.memorySizeMb = r.physicalFrameBufferKb >> 10;
    char bios[NVML_DEVICE_VBIOS_VERSION_BUFFER_SIZE] = {};
    r.biosVersion[0] = '\0';
    if (nvml.deviceGetVbiosVersion &&
        nvml.deviceGetVbiosVersion(device(r.nvPhysicalGpu), bios, sizeof bios) == NVML_SUCCESS)
        copyDriverText(r.biosVersion, bios);
}

// The record of a GPU the driver is not asked about (it sleeps, or the driver cannot be asked without waking
// others): PCI ids, the GPU database and the kernel driver's values; no handle, no live value.
void addPciRecord(const PciDevice& gpu, GpuList& gpus, const BackendServices& services, uint32_t& last) {
    GpuRecord& r = gpus.append(std::make_unique<GpuRecord>());
    const PciIds& ids = gpu.ids;
    r.vendorClass = kVendorClassNvidia;
    r.pciAddress = gpu.address;
    r.busId = int32_t(gpu.address.bus);
    r.vendorId = ids.vendor, r.deviceId = ids.device;
    r.subvendorId = ids.subvendor, r.subdeviceId = ids.subdevice;
    r.nvDeviceId32 = ids.device << 16 | ids.vendor;
    r.nvSubsystemId32 = ids.subdevice << 16 | ids.subvendor;
    takeDisplaySlot(r, services.display, last);
    readGpuDriverValues(r, services);
    nameFromDatabase(r, NvGpuInfo{}, services);
}

bool isNvidiaGpu(const PciDevice& device) { return device.ids.vendor == PciVendorNvidia && device.isDisplay(); }

bool busHasNvidiaGpu(const PciBus& pci) {
    for (const PciDevice& device : pci.devices())
        if (isNvidiaGpu(device)) return true;
    return false;
}

bool anySleeping(const std::vector<const PciDevice*>& gpus) {
    for (const PciDevice* gpu : gpus)
        if (gpu->asleep()) return true;
    return false;
}

bool allSleeping(const std::vector<const PciDevice*>& gpus) {
    for (const PciDevice* gpu : gpus)
        if (!gpu->asleep()) return false;
    return !gpus.empty();
}

// GPUs through NVIDIA's management library.
class NvidiaBackend final : public VendorBackend {
public:
    explicit NvidiaBackend(NvidiaState& state) : m_state(state) {}

    // The NVIDIA display controllers bound to NVIDIA's kernel driver, in address order; those on nouveau or on
    // no driver are left to the generic backend.
    std::vector<const PciDevice*> detect(const PciBus& pci) const override {
        std::vector<const PciDevice*> gpus;
        for (const PciDevice& device : pci.devices())
            if (isNvidiaGpu(device) && device.driver == "nvidia") gpus.push_back(&device);
        return gpus;
    }

    // The sleep rule: a sleeping GPU gets no call of the management library at all. The library is started
    // without attaching to any GPU and each awake GPU is asked for by its bus id, so a sleeping one is never
    // even enumerated; when every NVIDIA GPU sleeps the library is not loaded. Every GPU gets a record: one
    // the library does not serve (asleep, library missing or failing, handle refused) gets it from the PCI
    // layer and the GPU database, with no live value.
    void createRecords(const std::vector<const PciDevice*>& devices, const BackendServices& services,
                       GpuList& gpus) override {
        LibraryLog& trace = zTrace();
        m_state.reset();
        m_reader.reset();
        uint32_t last = kNoDisplaySlot;
        // NVIDIA GPUs on other drivers are the generic backend's; the library's own list is for machines
        // whose bus shows no NVIDIA GPU at all.
        if (devices.empty() && busHasNvidiaGpu(services.pci)) return;
        if (allSleeping(devices)) {
            trace.write("NVML - every NVIDIA GPU sleeps; the driver is not asked");
            takeModuleVersion(services);
            for (const PciDevice* gpu : devices) addPciRecord(*gpu, gpus, services, last);
            return;
        }
        const std::string& libraryPath = services.sources.nvmlLibrary;
        auto nvml = std::make_unique<NvmlLibrary>();
        if (!nvml->load(libraryPath) || !nvml->start()) {
            trace.write("NVML - %s not available", libraryPath.c_str());
            if (!devices.empty()) takeModuleVersion(services);
            for (const PciDevice* gpu : devices) addPciRecord(*gpu, gpus, services, last);
            return;
        }
        m_state.nvml = std::move(nvml);
        readDriverVersion();
        m_reader = makeNvidiaLiveReader(m_state, services.pci);

        if (devices.empty()) {
            takeDriversList(m_state);
            for (uint32_t i = 0; i < m_state.nvPhysicalGpuCount; ++i)
                fillRecord(m_state, i, gpus.append(std::make_unique<GpuRecord>()), services, last, nullptr);
            return;
        }
        const NvmlLibrary& lib = *m_state.library();
        // A library too old to be asked by bus id can only list every GPU, which would wake the sleeping ones.
        const bool listInstead = !lib.deviceGetHandleByPciBusId;
        if (listInstead && !anySleeping(devices)) takeDriversList(m_state);
        for (const PciDevice* gpu : devices) {
            int32_t index = -1;
            if (listInstead) {
                for (uint32_t i = 0; i < m_state.nvPhysicalGpuCount && index < 0; ++i)
                    if (m_state.nvGpuInfo[i].address == gpu->address) index = int32_t(i);
            } else if (!gpu->asleep()) {
                nvmlDevice_t handle = nullptr;
                if (lib.deviceGetHandleByPciBusId(gpu->address.text().c_str(), &handle) == NVML_SUCCESS && handle &&
                    !alreadyTaken(m_state, handle))
                    index = addHandle(m_state, handle);
                // Asked for by this address, the GPU sits there whatever its PCI info says or fails to say.
                if (index >= 0) m_state.nvGpuInfo[index].address = gpu->address;
            }
            if (index < 0) {
                addPciRecord(*gpu, gpus, services, last);
                continue;
            }
            fillRecord(m_state, uint32_t(index), gpus.append(std::make_unique<GpuRecord>()), services, last, gpu);
        }
    }

    GpuLiveReader* liveReader() override { return m_reader.get(); }

private:
    // Regression: with every NVIDIA GPU asleep the driver version read 0 ("R0.00" in the report) though the
    // kernel module tells it without waking anything.
    void takeModuleVersion(const BackendServices& services) {
        const std::string version = kernelModuleVersion(services.sources.rootDir, "nvidia");
        formatNvidiaDriverBranch(version.c_str(), m_state.nvDriverBranch);
        m_state.nvDriverVersion = nvidiaDriverVersionNumber(version.c_str());
    }

    void readDriverVersion() {
        LibraryLog& trace = zTrace();
        const NvmlLibrary& lib = *m_state.library();
        char buffer[NVML_SYSTEM_NVML_VERSION_BUFFER_SIZE] = {};
        char text[NVML_SYSTEM_NVML_VERSION_BUFFER_SIZE] = {};
        if (lib.systemGetNvmlVersion && lib.systemGetNvmlVersion(buffer, sizeof buffer) == NVML_SUCCESS) {
            copyDriverText(text, buffer);
            trace.write("NVAPI version: %s", text);
        }
        char driverBuffer[NVML_SYSTEM_DRIVER_VERSION_BUFFER_SIZE] = {};
        char driver[NVML_SYSTEM_DRIVER_VERSION_BUFFER_SIZE] = {};
        if (lib.systemGetDriverVersion(driverBuffer, sizeof driverBuffer) == NVML_SUCCESS)
            copyDriverText(driver, driverBuffer);
        formatNvidiaDriverBranch(driver, m_state.nvDriverBranch);
        m_state.nvDriverVersion = nvidiaDriverVersionNumber(driver);
        trace.write("NVAPI - driver version: %s --- %u --- %s", m_state.nvDriverBranch, m_state.nvDriverVersion,
                    m_state.nvDriverAdapterString);
    }

    NvidiaState& m_state;
    std::unique_ptr<GpuLiveReader> m_reader;
};

}  // namespace

std::unique_ptr<VendorBackend> makeNvidiaBackend(VendorBlocks& blocks) {
    return std::make_unique<NvidiaBackend>(blocks.nvidia);
}

}  // namespace Kalidornm
