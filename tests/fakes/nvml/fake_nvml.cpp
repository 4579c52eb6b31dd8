// A stand-in for NVIDIA's management library. It serves the GPUs described in the file named by the
// environment variable FAKE_NVML_CONFIG, read again at every init. One setting a line:
//   init_fails                      every init call fails
//   driver 550.54.15                the driver version text
//   fail <call>                     that call fails for every GPU (call names without the "nvml" prefix)
//   gpu <n> <key> <value>           a GPU's value; GPUs count up to the highest n
//   gpu <n> fail <call>             that call fails for this GPU
// Keys: pci_device, pci_subsystem, domain, bus (the GPU sits at device 0, function 0), name (rest of line), memory_mb, free_mb, vbios, cores, bus_width,
// pcie_width, irq, board_id, temp, mem_temp, fan, rpm, util_gpu, util_mem, decoder, clock_gfx, clock_mem,
// max_gfx, max_mem, app_gfx, app_mem, pstate, power, enforced, limit, default_limit, min_limit, max_limit,
// reasons, gpc_offset, mem_offset, pids (comma separated), energy (mJ), pstates (the supported P-states, comma
// separated, in the driver's order), pstate_clocks (one P-state's clock ranges: "<state> <graphics min> <graphics
// max> <memory min> <memory max>", MHz; a listed state without a line answers "not supported").
// FAKE_NVML_FAULT makes the library misbehave as a broken driver might:
//   errors         every call after init and the handle lookups fails, after scribbling over its outputs
//   zero_count     no GPU in the list and no process on a GPU
//   huge_count     0xFFFFFFFF GPUs in the list (the index lookups cycle through the real ones) and processes;
//                  a P-state list that fills the caller's whole room, repeating the GPU's states among
//                  states that do not exist
//   unterminated   every text fills the caller's whole buffer with no terminator
//   long_strings   every text is as long as the caller's buffer allows
//   special_chars  names, VBIOS and driver texts full of quotes, markup, format specifiers and UTF-8
//   huge_values    every quantity is the largest its type holds (0xFFFFFFFF MHz, 2^64-1 bytes); ids and bit
//                  masks stay as they are
// With FAKE_NVML_CALL_LOG naming a file, every call is appended to it as "<bus id> <call>", "-" for calls
// that name no GPU, so a test can see which GPUs were asked.
// Built three ways: the full library; FAKE_NVML_LEGACY, an old library with only the first versions of the
// calls, none of the newer optional ones (the P-state list and ranges, the energy counter among them) and no
// way to ask for a GPU by bus id; FAKE_NVML_BROKEN, missing a
// call every library has.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "kalidor/vendors/nvml_api.h"

struct nvmlDevice_st {
    unsigned int pciDevice = 0, pciSubsystem = 0, domain = 0, bus = 0;
    std::string name = "Fake GPU", vbios = "00.00.00.00.00";
    unsigned long long memoryMb = 0, freeMb = 0;
    unsigned int cores = 0, busWidth = 0, pcieWidth = 0, irq = 0, boardId = 0;
    unsigned int temp = 0, memTemp = 0, fan = 0, rpm = 0, utilGpu = 0, utilMem = 0, decoder = 0;
    unsigned int clockGfx = 0, clockMem = 0, maxGfx = 0, maxMem = 0, appGfx = 0, appMem = 0;
    int pstate = 32;
    unsigned int power = 0, enforced = 0, limit = 0, defaultLimit = 0, minLimit = 0, maxLimit = 0;
    unsigned long long reasons = 0;
    int gpcOffset = 0, memOffset = 0;
    std::vector<unsigned int> pids;
    unsigned long long energy = 0;
    std::vector<int> pstates;
    struct ClockRange {
        unsigned int minGfx = 0, maxGfx = 0, minMem = 0, maxMem = 0;
    };
    std::map<int, ClockRange> pstateClocks;
    std::set<std::string> failing;
};

namespace {

enum class Fault { None, Errors, ZeroCount, HugeCount, Unterminated, LongStrings, SpecialChars, HugeValues };

Fault faultFromEnvironment() {
    const char* text = std::getenv("FAKE_NVML_FAULT");
    const std::string name = text ? text : "";
    if (name == "errors") return Fault::Errors;
    if (name == "zero_count") return Fault::ZeroCount;
    if (name == "huge_count") return Fault::HugeCount;
    if (name == "unterminated") return Fault::Unterminated;
    if (name == "long_strings") return Fault::LongStrings;
    if (name == "special_chars") return Fault::SpecialChars;
    if (name == "huge_values") return Fault::HugeValues;
    return Fault::None;
}

constexpr const char* kSpecialText = "<Quadro & \"RTX\"> 'A6000' %s%n%x \\ \t\xC3\x84\xE2\x82\xAC";

struct FakeMachine {
    Fault fault = Fault::None;
    bool initFails = false;
    bool started = false;
    std::string driver = "550.54.15";
    std::set<std::string> failing;
    std::vector<nvmlDevice_st> gpus;
};

FakeMachine machine;

void setValue(nvmlDevice_st& g, const std::string& key, const char* v) {
    auto u = [v] { return unsigned(std::strtoul(v, nullptr, 0)); };
    if (key == "pci_device") g.pciDevice = u();
    else if (key == "pci_subsystem") g.pciSubsystem = u();
    else if (key == "domain") g.domain = u();
    else if (key == "bus") g.bus = u();
    else if (key == "name") g.name = v;
    else if (key == "memory_mb") g.memoryMb = u();
    else if (key == "free_mb") g.freeMb = u();
    else if (key == "vbios") g.vbios = v;
    else if (key == "cores") g.cores = u();
    else if (key == "bus_width") g.busWidth = u();
    else if (key == "pcie_width") g.pcieWidth = u();
    else if (key == "irq") g.irq = u();
    else if (key == "board_id") g.boardId = u();
    else if (key == "temp") g.temp = u();
    else if (key == "mem_temp") g.memTemp = u();
    else if (key == "fan") g.fan = u();
    else if (key == "rpm") g.rpm = u();
    else if (key == "util_gpu") g.utilGpu = u();
    else if (key == "util_mem") g.utilMem = u();
    else if (key == "decoder") g.decoder = u();
    else if (key == "clock_gfx") g.clockGfx = u();
    else if (key == "clock_mem") g.clockMem = u();
    else if (key == "max_gfx") g.maxGfx = u();
    else if (key == "max_mem") g.maxMem = u();
    else if (key == "app_gfx") g.appGfx = u();
    else if (key == "app_mem") g.appMem = u();
    else if (key == "pstate") g.pstate = int(std::strtol(v, nullptr, 0));
    else if (key == "power") g.power = u();
    else if (key == "enforced") g.enforced = u();
    else if (key == "limit") g.limit = u();
    else if (key == "default_limit") g.defaultLimit = u();
    else if (key == "min_limit") g.minLimit = u();
    else if (key == "max_limit") g.maxLimit = u();
    else if (key == "reasons") g.reasons = std::strtoull(v, nullptr, 0);
    else if (key == "gpc_offset") g.gpcOffset = int(std::strtol(v, nullptr, 0));
    else if (key == "mem_offset") g.memOffset = int(std::strtol(v, nullptr, 0));
    else if (key == "fail") g.failing.insert(v);
    else if (key == "energy") g.energy = std::strtoull(v, nullptr, 0);
    else if (key == "pstate_clocks") {
        int state = 0;
        nvmlDevice_st::ClockRange range;
        if (std::sscanf(v, "%d %u %u %u %u", &state, &range.minGfx, &range.maxGfx, &range.minMem, &range.maxMem) == 5)
            g.pstateClocks[state] = range;
    } else if (key == "pstates")
        for (const char* p = v; *p;) {
            char* end = nullptr;
            const long state = std::strtol(p, &end, 10);
            if (end == p) break;
            g.pstates.push_back(int(state));
            p = *end == ',' ? end + 1 : end;
        }
    else if (key == "pids")
        for (const char* p = v; *p;) {
            char* end = nullptr;
            g.pids.push_back(unsigned(std::strtoul(p, &end, 10)));
            p = *end == ',' ? end + 1 : end;
            if (end == p && *p) break;
        }
}

void readConfig() {
    machine = FakeMachine{};
    machine.fault = faultFromEnvironment();
    const char* path = std::getenv("FAKE_NVML_CONFIG");
    FILE* file = path ? std::fopen(path, "r") : nullptr;
    if (!file) return;
    char line[512];
    while (std::fgets(line, sizeof line, file)) {
        line[std::strcspn(line, "\r\n")] = '\0';
        char key[64] = {}, sub[64] = {};
        int consumed = 0;
        unsigned index = 0;
        if (std::sscanf(line, "gpu %u %63s %n", &index, sub, &consumed) == 2 && index < 64) {
            if (machine.gpus.size() <= index) machine.gpus.resize(index + 1);
            setValue(machine.gpus[index], sub, line + consumed);
        } else if (std::sscanf(line, "%63s %n", key, &consumed) == 1) {
            const std::string k = key;
            if (k == "init_fails") machine.initFails = true;
            else if (k == "driver") machine.driver = line + consumed;
            else if (k == "fail") machine.failing.insert(line + consumed);
        }
    }
    std::fclose(file);
}

std::string busIdOf(const nvmlDevice_st& g) {
    char text[32];
    std::snprintf(text, sizeof text, "%08X:%02X:00.0", g.domain, g.bus);
    return text;
}

void logCall(const nvmlDevice_st* device, const char* call) {
    const char* path = std::getenv("FAKE_NVML_CALL_LOG");
    FILE* file = path ? std::fopen(path, "a") : nullptr;
    if (!file) return;
    std::fprintf(file, "%s %s\n", device ? busIdOf(*device).c_str() : "-", call);
    std::fclose(file);
}

// The GPU behind a handle, or null when the call is to fail for it.
nvmlDevice_st* gpu(nvmlDevice_t device, const char* call) {
    logCall(device, call);
    if (!machine.started || !device || machine.failing.count(call) || device->failing.count(call)) return nullptr;
    return device;
}

bool faulty(Fault fault) { return machine.fault == fault; }

// A text into the caller's buffer of `length` bytes, as the fault mode has it.
nvmlReturn_t copyOut(const std::string& given, char* out, unsigned int length) {
    if (!out || length == 0) return NVML_ERROR_INVALID_ARGUMENT;
    const std::string text = faulty(Fault::SpecialChars) ? kSpecialText : given;
    if (faulty(Fault::Errors) || faulty(Fault::Unterminated)) {
        std::memset(out, 'X', length);
        return faulty(Fault::Errors) ? NVML_ERROR_UNKNOWN : NVML_SUCCESS;
    }
    if (faulty(Fault::LongStrings)) {
        std::memset(out, 'L', length - 1);
        out[length - 1] = '\0';
        return NVML_SUCCESS;
    }
    if (text.size() + 1 > length) return NVML_ERROR_INSUFFICIENT_SIZE;
    std::memcpy(out, text.c_str(), text.size() + 1);
    return NVML_SUCCESS;
}

// What a number read answers: the GPU's value, the largest of its type for a quantity, or an error after
// scribbling.
template <typename T>
nvmlReturn_t answer(T* out, T value, bool quantity = true) {
    if (!out) return NVML_ERROR_INVALID_ARGUMENT;
    if (faulty(Fault::Errors)) {
        *out = T(3);
        return NVML_ERROR_UNKNOWN;
    }
    *out = quantity && faulty(Fault::HugeValues) ? std::numeric_limits<T>::max() : value;
    return NVML_SUCCESS;
}

nvmlReturn_t start(const char* call) {
    readConfig();
    logCall(nullptr, call);
    if (machine.initFails) return NVML_ERROR_DRIVER_NOT_LOADED;
    machine.started = true;
    return NVML_SUCCESS;
}

nvmlReturn_t count(unsigned int* n) {
    logCall(nullptr, "DeviceGetCount");
    if (!machine.started || !n) return NVML_ERROR_UNINITIALIZED;
    *n = faulty(Fault::ZeroCount) ? 0u : faulty(Fault::HugeCount) ? 0xFFFFFFFFu : unsigned(machine.gpus.size());
    return NVML_SUCCESS;
}

nvmlReturn_t handle(unsigned int index, nvmlDevice_t* device) {
    if (!machine.started || !device || machine.gpus.empty()) return NVML_ERROR_INVALID_ARGUMENT;
    if (faulty(Fault::HugeCount)) index %= unsigned(machine.gpus.size());
    if (index >= machine.gpus.size()) return NVML_ERROR_INVALID_ARGUMENT;
    logCall(&machine.gpus[index], "DeviceGetHandleByIndex");
    *device = &machine.gpus[index];
    return NVML_SUCCESS;
}

#ifndef FAKE_NVML_LEGACY
// "domain:bus:device.function" in hex, the domain of any width.
nvmlReturn_t handleByBusId(const char* busId, nvmlDevice_t* device) {
    unsigned domain = 0, bus = 0, slot = 0, function = 0;
    if (!machine.started || !busId || !device) return NVML_ERROR_INVALID_ARGUMENT;
    if (std::sscanf(busId, "%x:%x:%x.%x", &domain, &bus, &slot, &function) != 4) return NVML_ERROR_INVALID_ARGUMENT;
    for (nvmlDevice_st& g : machine.gpus)
        if (g.domain == domain && g.bus == bus && slot == 0 && function == 0) {
            logCall(&g, "DeviceGetHandleByPciBusId");
            *device = &g;
            return NVML_SUCCESS;
        }
    return NVML_ERROR_NOT_FOUND;
}
#endif

nvmlReturn_t pciInfo(nvmlDevice_t device, nvmlPciInfo_t* pci) {
    nvmlDevice_st* g = gpu(device, "DeviceGetPciInfo");
    if (!g || !pci) return NVML_ERROR_UNKNOWN;
    if (faulty(Fault::Errors)) {
        std::memset(pci, 0x5A, sizeof *pci);
        return NVML_ERROR_UNKNOWN;
    }
    *pci = nvmlPciInfo_t{};
    pci->domain = g->domain;
    pci->bus = g->bus;
    pci->pciDeviceId = g->pciDevice;
    pci->pciSubSystemId = g->pciSubsystem;
    std::snprintf(pci->busId, sizeof pci->busId, "%s", busIdOf(*g).c_str());
    std::snprintf(pci->busIdLegacy, sizeof pci->busIdLegacy, "%04X:%02X:00.0", g->domain & 0xFFFF, g->bus);
    return NVML_SUCCESS;
}

template <typename P>
nvmlReturn_t processes(nvmlDevice_t device, unsigned int* n, P* infos) {
    nvmlDevice_st* g = gpu(device, "DeviceGetGraphicsRunningProcesses");
    if (!g || !n) return NVML_ERROR_UNKNOWN;
    if (faulty(Fault::Errors)) {
        *n = 3;
        return NVML_ERROR_UNKNOWN;
    }
    const size_t listed = faulty(Fault::ZeroCount) ? 0 : g->pids.size();
    if (*n < listed) {
        *n = unsigned(listed);
        return NVML_ERROR_INSUFFICIENT_SIZE;
    }
    for (size_t i = 0; i < listed; ++i) {
        infos[i] = P{};
        infos[i].pid = g->pids[i];
    }
    // A lying driver: a count far beyond what it wrote, and beyond the room it was given.
    *n = faulty(Fault::HugeCount) ? 0xFFFFFFFFu : unsigned(listed);
    return NVML_SUCCESS;
}

#define FAKE_READ(call, field) FAKE_ANSWER(call, field, true)
#define FAKE_READ_ID(call, field) FAKE_ANSWER(call, field, false)
#define FAKE_ANSWER(call, field, quantity)                                      \
    nvmlDevice_st* g = gpu(device, call);                                       \
    if (!g || !out) return NVML_ERROR_NOT_SUPPORTED;                            \
    return answer(out, std::remove_pointer_t<decltype(out)>(g->field), quantity)

}  // namespace

extern "C" {

#ifndef FAKE_NVML_LEGACY
nvmlReturn_t nvmlInitWithFlags(unsigned int flags) {
    char call[64];
    std::snprintf(call, sizeof call, "InitWithFlags %u", flags);
    return start(call);
}
nvmlReturn_t nvmlInit_v2(void) { return start("Init_v2"); }
nvmlReturn_t nvmlDeviceGetHandleByPciBusId_v2(const char* busId, nvmlDevice_t* d) { return handleByBusId(busId, d); }
nvmlReturn_t nvmlDeviceGetCount_v2(unsigned int* n) { return count(n); }
nvmlReturn_t nvmlDeviceGetHandleByIndex_v2(unsigned int i, nvmlDevice_t* d) { return handle(i, d); }
nvmlReturn_t nvmlDeviceGetPciInfo_v3(nvmlDevice_t d, nvmlPciInfo_t* p) { return pciInfo(d, p); }
nvmlReturn_t nvmlDeviceGetFanSpeed_v2(nvmlDevice_t device, unsigned int fan, unsigned int* out) {
    if (fan != 0) return NVML_ERROR_INVALID_ARGUMENT;
    FAKE_READ("DeviceGetFanSpeed", fan);
}
nvmlReturn_t nvmlDeviceGetFanSpeedRPM(nvmlDevice_t device, nvmlFanSpeedInfo_t* info) {
    nvmlDevice_st* g = gpu(device, "DeviceGetFanSpeedRPM");
    if (!g || !info || info->version != nvmlFanSpeedInfo_v1 || info->fan != 0) return NVML_ERROR_NOT_SUPPORTED;
    return answer(&info->speed, g->rpm);
}
nvmlReturn_t nvmlDeviceGetFieldValues(nvmlDevice_t device, int n, nvmlFieldValue_t* values) {
    nvmlDevice_st* g = gpu(device, "DeviceGetFieldValues");
    if (!g || !values) return NVML_ERROR_INVALID_ARGUMENT;
    for (int i = 0; i < n; ++i) {
        values[i].nvmlReturn = NVML_ERROR_NOT_SUPPORTED;
        if (values[i].fieldId == NVML_FI_DEV_MEMORY_TEMP && g->memTemp != 0) {
            values[i].valueType = NVML_VALUE_TYPE_UNSIGNED_INT;
            values[i].nvmlReturn = answer(&values[i].value.uiVal, g->memTemp);
        }
    }
    return faulty(Fault::Errors) ? NVML_ERROR_UNKNOWN : NVML_SUCCESS;
}
nvmlReturn_t nvmlDeviceGetDecoderUtilization(nvmlDevice_t device, unsigned int* out, unsigned int* periodUs) {
    if (periodUs) *periodUs = 167000;
    FAKE_READ("DeviceGetDecoderUtilization", decoder);
}
nvmlReturn_t nvmlDeviceGetIrqNum(nvmlDevice_t device, unsigned int* out) { FAKE_READ("DeviceGetIrqNum", irq); }
nvmlReturn_t nvmlDeviceGetCurrentClocksEventReasons(nvmlDevice_t device, unsigned long long* out) {
    FAKE_READ_ID("DeviceGetCurrentClocksEventReasons", reasons);
}
nvmlReturn_t nvmlDeviceGetSupportedPerformanceStates(nvmlDevice_t device, nvmlPstates_t* out, unsigned int size) {
    nvmlDevice_st* g = gpu(device, "DeviceGetSupportedPerformanceStates");
    if (!g || !out) return NVML_ERROR_NOT_SUPPORTED;
    const size_t room = size / sizeof(nvmlPstates_t);
    if (faulty(Fault::Errors)) {
        for (size_t i = 0; i < room; ++i) out[i] = nvmlPstates_t(3);
        return NVML_ERROR_UNKNOWN;
    }
    if (faulty(Fault::HugeCount)) {
        // Every slot written: the GPU's states over and over, every third slot a state no GPU has.
        for (size_t i = 0; i < room; ++i) {
            const bool invented = i % 3 == 2 || g->pstates.empty();
            out[i] = invented ? nvmlPstates_t(1000 + int(i)) : g->pstates[i % g->pstates.size()];
        }
        return NVML_SUCCESS;
    }
    if (g->pstates.size() > room) return NVML_ERROR_INSUFFICIENT_SIZE;
    for (size_t i = 0; i < room; ++i) out[i] = i < g->pstates.size() ? g->pstates[i] : NVML_PSTATE_UNKNOWN;
    return NVML_SUCCESS;
}
nvmlReturn_t nvmlDeviceGetMinMaxClockOfPState(nvmlDevice_t device, nvmlClockType_t type, nvmlPstates_t pstate,
                                              unsigned int* low, unsigned int* high) {
    nvmlDevice_st* g = gpu(device, "DeviceGetMinMaxClockOfPState");
    if (!g || !low || !high || (type != NVML_CLOCK_GRAPHICS && type != NVML_CLOCK_MEM)) return NVML_ERROR_NOT_SUPPORTED;
    const auto found = g->pstateClocks.find(pstate);
    if (found == g->pstateClocks.end()) return NVML_ERROR_NOT_SUPPORTED;
    const nvmlDevice_st::ClockRange& range = found->second;
    const bool graphics = type == NVML_CLOCK_GRAPHICS;
    answer(low, graphics ? range.minGfx : range.minMem);
    return answer(high, graphics ? range.maxGfx : range.maxMem);
}
nvmlReturn_t nvmlDeviceGetTotalEnergyConsumption(nvmlDevice_t device, unsigned long long* out) {
    FAKE_READ("DeviceGetTotalEnergyConsumption", energy);
}
nvmlReturn_t nvmlDeviceGetGraphicsRunningProcesses_v3(nvmlDevice_t d, unsigned int* n, nvmlProcessInfo_t* p) {
    return processes(d, n, p);
}
#else
nvmlReturn_t nvmlDeviceGetCurrentClocksThrottleReasons(nvmlDevice_t device, unsigned long long* out) {
    FAKE_READ_ID("DeviceGetCurrentClocksEventReasons", reasons);
}
#endif

nvmlReturn_t nvmlInit(void) { return start("Init"); }
nvmlReturn_t nvmlShutdown(void) {
    machine.started = false;
    return NVML_SUCCESS;
}
nvmlReturn_t nvmlSystemGetDriverVersion(char* out, unsigned int length) {
    logCall(nullptr, "SystemGetDriverVersion");
    if (!machine.started || machine.failing.count("SystemGetDriverVersion")) return NVML_ERROR_UNKNOWN;
    return copyOut(machine.driver, out, length);
}
nvmlReturn_t nvmlSystemGetNVMLVersion(char* out, unsigned int length) {
    logCall(nullptr, "SystemGetNVMLVersion");
    return copyOut("12." + machine.driver, out, length);
}
nvmlReturn_t nvmlDeviceGetCount(unsigned int* n) { return count(n); }
nvmlReturn_t nvmlDeviceGetHandleByIndex(unsigned int i, nvmlDevice_t* d) { return handle(i, d); }
nvmlReturn_t nvmlDeviceGetPciInfo(nvmlDevice_t d, nvmlPciInfo_t* p) { return pciInfo(d, p); }
#ifndef FAKE_NVML_BROKEN
nvmlReturn_t nvmlDeviceGetName(nvmlDevice_t device, char* out, unsigned int length) {
    nvmlDevice_st* g = gpu(device, "DeviceGetName");
    return g ? copyOut(g->name, out, length) : NVML_ERROR_UNKNOWN;
}
#endif
nvmlReturn_t nvmlDeviceGetMemoryInfo(nvmlDevice_t device, nvmlMemory_t* memory) {
    nvmlDevice_st* g = gpu(device, "DeviceGetMemoryInfo");
    if (!g || !memory) return NVML_ERROR_UNKNOWN;
    nvmlReturn_t result = answer(&memory->total, g->memoryMb << 20);
    answer(&memory->free, g->freeMb << 20);
    memory->used = memory->total - memory->free;
    return result;
}
nvmlReturn_t nvmlDeviceGetVbiosVersion(nvmlDevice_t device, char* out, unsigned int length) {
    nvmlDevice_st* g = gpu(device, "DeviceGetVbiosVersion");
    return g ? copyOut(g->vbios, out, length) : NVML_ERROR_UNKNOWN;
}
nvmlReturn_t nvmlDeviceGetNumGpuCores(nvmlDevice_t device, unsigned int* out) { FAKE_READ("DeviceGetNumGpuCores", cores); }
nvmlReturn_t nvmlDeviceGetMemoryBusWidth(nvmlDevice_t device, unsigned int* out) {
    FAKE_READ("DeviceGetMemoryBusWidth", busWidth);
}
nvmlReturn_t nvmlDeviceGetCurrPcieLinkWidth(nvmlDevice_t device, unsigned int* out) {
    FAKE_READ("DeviceGetCurrPcieLinkWidth", pcieWidth);
}
nvmlReturn_t nvmlDeviceGetBoardId(nvmlDevice_t device, unsigned int* out) { FAKE_READ_ID("DeviceGetBoardId", boardId); }
nvmlReturn_t nvmlDeviceGetTemperature(nvmlDevice_t device, nvmlTemperatureSensors_t sensor, unsigned int* out) {
    if (sensor != NVML_TEMPERATURE_GPU) return NVML_ERROR_INVALID_ARGUMENT;
    FAKE_READ("DeviceGetTemperature", temp);
}
nvmlReturn_t nvmlDeviceGetFanSpeed(nvmlDevice_t device, unsigned int* out) { FAKE_READ("DeviceGetFanSpeed", fan); }
nvmlReturn_t nvmlDeviceGetUtilizationRates(nvmlDevice_t device, nvmlUtilization_t* out) {
    nvmlDevice_st* g = gpu(device, "DeviceGetUtilizationRates");
    if (!g || !out) return NVML_ERROR_NOT_SUPPORTED;
    answer(&out->memory, g->utilMem);
    return answer(&out->gpu, g->utilGpu);
}
nvmlReturn_t nvmlDeviceGetClockInfo(nvmlDevice_t device, nvmlClockType_t type, unsigned int* out) {
    if (type == NVML_CLOCK_MEM) { FAKE_READ("DeviceGetClockInfo", clockMem); }
    FAKE_READ("DeviceGetClockInfo", clockGfx);
}
nvmlReturn_t nvmlDeviceGetMaxClockInfo(nvmlDevice_t device, nvmlClockType_t type, unsigned int* out) {
    if (type == NVML_CLOCK_MEM) { FAKE_READ("DeviceGetMaxClockInfo", maxMem); }
    FAKE_READ("DeviceGetMaxClockInfo", maxGfx);
}
nvmlReturn_t nvmlDeviceGetDefaultApplicationsClock(nvmlDevice_t device, nvmlClockType_t type, unsigned int* out) {
    if (type == NVML_CLOCK_MEM) { FAKE_READ("DeviceGetDefaultApplicationsClock", appMem); }
    FAKE_READ("DeviceGetDefaultApplicationsClock", appGfx);
}
nvmlReturn_t nvmlDeviceGetClock(nvmlDevice_t device, nvmlClockType_t type, nvmlClockId_t id, unsigned int* out) {
    if (id != NVML_CLOCK_ID_APP_CLOCK_DEFAULT) return NVML_ERROR_NOT_SUPPORTED;
    if (type == NVML_CLOCK_MEM) { FAKE_READ("DeviceGetClock", appMem); }
    FAKE_READ("DeviceGetClock", appGfx);
}
nvmlReturn_t nvmlDeviceGetGpcClkVfOffset(nvmlDevice_t device, int* out) { FAKE_READ("DeviceGetGpcClkVfOffset", gpcOffset); }
nvmlReturn_t nvmlDeviceGetMemClkVfOffset(nvmlDevice_t device, int* out) { FAKE_READ("DeviceGetMemClkVfOffset", memOffset); }
nvmlReturn_t nvmlDeviceSetApplicationsClocks(nvmlDevice_t device, unsigned int mem, unsigned int graphics) {
    nvmlDevice_st* g = gpu(device, "DeviceSetApplicationsClocks");
    if (!g) return NVML_ERROR_NOT_SUPPORTED;
    g->clockMem = mem, g->clockGfx = graphics;
    return NVML_SUCCESS;
}
nvmlReturn_t nvmlDeviceGetPerformanceState(nvmlDevice_t device, nvmlPstates_t* out) {
    FAKE_READ("DeviceGetPerformanceState", pstate);
}
nvmlReturn_t nvmlDeviceGetPowerUsage(nvmlDevice_t device, unsigned int* out) { FAKE_READ("DeviceGetPowerUsage", power); }
nvmlReturn_t nvmlDeviceGetEnforcedPowerLimit(nvmlDevice_t device, unsigned int* out) {
    FAKE_READ("DeviceGetEnforcedPowerLimit", enforced);
}
nvmlReturn_t nvmlDeviceGetPowerManagementLimit(nvmlDevice_t device, unsigned int* out) {
    FAKE_READ("DeviceGetPowerManagementLimit", limit);
}
nvmlReturn_t nvmlDeviceGetPowerManagementDefaultLimit(nvmlDevice_t device, unsigned int* out) {
    FAKE_READ("DeviceGetPowerManagementDefaultLimit", defaultLimit);
}
nvmlReturn_t nvmlDeviceGetPowerManagementLimitConstraints(nvmlDevice_t device, unsigned int* low,
                                                          unsigned int* high) {
    nvmlDevice_st* g = gpu(device, "DeviceGetPowerManagementLimitConstraints");
    if (!g || !low || !high) return NVML_ERROR_NOT_SUPPORTED;
    answer(low, g->minLimit);
    return answer(high, g->maxLimit);
}
nvmlReturn_t nvmlDeviceSetPowerManagementLimit(nvmlDevice_t device, unsigned int limit) {
    nvmlDevice_st* g = gpu(device, "DeviceSetPowerManagementLimit");
    if (!g || limit < g->minLimit || limit > g->maxLimit) return NVML_ERROR_INVALID_ARGUMENT;
    g->limit = limit;
    return NVML_SUCCESS;
}
nvmlReturn_t nvmlDeviceGetGraphicsRunningProcesses(nvmlDevice_t d, unsigned int* n, nvmlProcessInfo_v1_t* p) {
    return processes(d, n, p);
}

}  // extern "C"
