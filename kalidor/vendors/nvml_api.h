#pragma once

// The part of NVIDIA's management library (libnvidia-ml.so.1) that the NVIDIA reader uses, declared from the
// library's public API reference. Nothing links against these: the reader loads the library at run time and
// types its function pointers with decltype of these prototypes, and the test double implements them.

#include <cstdint>

typedef int nvmlReturn_t;
inline constexpr nvmlReturn_t NVML_SUCCESS = 0;
inline constexpr nvmlReturn_t NVML_ERROR_UNINITIALIZED = 1;
inline constexpr nvmlReturn_t NVML_ERROR_INVALID_ARGUMENT = 2;
inline constexpr nvmlReturn_t NVML_ERROR_NOT_SUPPORTED = 3;
inline constexpr nvmlReturn_t NVML_ERROR_NO_PERMISSION = 4;
inline constexpr nvmlReturn_t NVML_ERROR_NOT_FOUND = 6;
inline constexpr nvmlReturn_t NVML_ERROR_INSUFFICIENT_SIZE = 7;
inline constexpr nvmlReturn_t NVML_ERROR_DRIVER_NOT_LOADED = 9;
inline constexpr nvmlReturn_t NVML_ERROR_UNKNOWN = 999;

typedef struct nvmlDevice_st* nvmlDevice_t;

inline constexpr unsigned int NVML_SYSTEM_DRIVER_VERSION_BUFFER_SIZE = 80;
inline constexpr unsigned int NVML_SYSTEM_NVML_VERSION_BUFFER_SIZE = 80;
inline constexpr unsigned int NVML_DEVICE_NAME_V2_BUFFER_SIZE = 96;
inline constexpr unsigned int NVML_DEVICE_VBIOS_VERSION_BUFFER_SIZE = 32;

// The _v2 and _v3 forms fill this layout; the first form has the same fields up to pciSubSystemId.
struct nvmlPciInfo_t {
    char busIdLegacy[16];
    unsigned int domain;
    unsigned int bus;             // 0 to 0xff
    unsigned int device;          // 0 to 31
    unsigned int pciDeviceId;     // device << 16 | vendor
    unsigned int pciSubSystemId;  // subdevice << 16 | subvendor
    char busId[32];
};

struct nvmlMemory_t {
    unsigned long long total;  // bytes
    unsigned long long free;   // bytes
    unsigned long long used;   // bytes
};

struct nvmlUtilization_t {
    unsigned int gpu;     // percent of the sample period a kernel ran
    unsigned int memory;  // percent of the sample period the frame buffer was read or written
};

typedef int nvmlTemperatureSensors_t;
inline constexpr nvmlTemperatureSensors_t NVML_TEMPERATURE_GPU = 0;

typedef int nvmlClockType_t;
inline constexpr nvmlClockType_t NVML_CLOCK_GRAPHICS = 0;
inline constexpr nvmlClockType_t NVML_CLOCK_SM = 1;
inline constexpr nvmlClockType_t NVML_CLOCK_MEM = 2;

typedef int nvmlClockId_t;
inline constexpr nvmlClockId_t NVML_CLOCK_ID_APP_CLOCK_DEFAULT = 2;

typedef int nvmlPstates_t;  // 0 (P0, highest performance) to 15; 32 unknown
inline constexpr nvmlPstates_t NVML_PSTATE_UNKNOWN = 32;
inline constexpr unsigned int NVML_MAX_GPU_PERF_PSTATES = 16;

// Bits of the clocks event (throttle) reasons.
inline constexpr unsigned long long nvmlClocksEventReasonGpuIdle = 0x1ULL;
inline constexpr unsigned long long nvmlClocksEventReasonApplicationsClocksSetting = 0x2ULL;
inline constexpr unsigned long long nvmlClocksEventReasonSwPowerCap = 0x4ULL;
inline constexpr unsigned long long nvmlClocksEventReasonHwSlowdown = 0x8ULL;
inline constexpr unsigned long long nvmlClocksEventReasonSyncBoost = 0x10ULL;
inline constexpr unsigned long long nvmlClocksEventReasonSwThermalSlowdown = 0x20ULL;
inline constexpr unsigned long long nvmlClocksEventReasonHwThermalSlowdown = 0x40ULL;
inline constexpr unsigned long long nvmlClocksEventReasonHwPowerBrakeSlowdown = 0x80ULL;
inline constexpr unsigned long long nvmlClocksEventReasonDisplayClockSetting = 0x100ULL;

struct nvmlFanSpeedInfo_t {
    unsigned int version;  // nvmlFanSpeedInfo_v1
    unsigned int fan;      // fan index
    unsigned int speed;    // out: RPM
};
inline constexpr unsigned int nvmlFanSpeedInfo_v1 = unsigned(sizeof(nvmlFanSpeedInfo_t)) | (1u << 24);

// One running process; the _v2 and _v3 queries use this layout, the first query the shorter one below.
struct nvmlProcessInfo_t {
    unsigned int pid;
    unsigned long long usedGpuMemory;  // bytes
    unsigned int gpuInstanceId;
    unsigned int computeInstanceId;
};
struct nvmlProcessInfo_v1_t {
    unsigned int pid;
    unsigned long long usedGpuMemory;  // bytes
};

typedef int nvmlValueType_t;
inline constexpr nvmlValueType_t NVML_VALUE_TYPE_DOUBLE = 0;
inline constexpr nvmlValueType_t NVML_VALUE_TYPE_UNSIGNED_INT = 1;
inline constexpr nvmlValueType_t NVML_VALUE_TYPE_UNSIGNED_LONG = 2;
inline constexpr nvmlValueType_t NVML_VALUE_TYPE_UNSIGNED_LONG_LONG = 3;
inline constexpr nvmlValueType_t NVML_VALUE_TYPE_SIGNED_LONG_LONG = 4;
inline constexpr nvmlValueType_t NVML_VALUE_TYPE_SIGNED_INT = 5;

union nvmlValue_t {
    double dVal;
    unsigned int uiVal;
    unsigned long ulVal;
    unsigned long long ullVal;
    long long sllVal;
    int siVal;
};

inline constexpr unsigned int NVML_FI_DEV_MEMORY_TEMP = 82;  // °C

struct nvmlFieldValue_t {
    unsigned int fieldId;
    unsigned int scopeId;
    long long timestamp;    // microseconds since 1970
    long long latencyUsec;  // microseconds
    nvmlValueType_t valueType;
    nvmlReturn_t nvmlReturn;  // the value is valid only on NVML_SUCCESS
    nvmlValue_t value;
};

// Start and stop. The _v2 form does not fail on GPUs that cannot be attached to; the form with flags can
// start without attaching to any GPU, which leaves sleeping GPUs asleep until one is asked for by bus id.
inline constexpr unsigned int NVML_INIT_FLAG_NO_GPUS = 1;    // do not fail when no GPU is found
inline constexpr unsigned int NVML_INIT_FLAG_NO_ATTACH = 2;  // attach to no GPU at start
extern "C" nvmlReturn_t nvmlInitWithFlags(unsigned int flags);
extern "C" nvmlReturn_t nvmlInit_v2(void);
extern "C" nvmlReturn_t nvmlInit(void);
extern "C" nvmlReturn_t nvmlShutdown(void);

extern "C" nvmlReturn_t nvmlSystemGetDriverVersion(char* version, unsigned int length);  // "550.54.15"
extern "C" nvmlReturn_t nvmlSystemGetNVMLVersion(char* version, unsigned int length);    // "12.550.54.15"

// GPUs in the driver's order.
extern "C" nvmlReturn_t nvmlDeviceGetCount_v2(unsigned int* deviceCount);
extern "C" nvmlReturn_t nvmlDeviceGetCount(unsigned int* deviceCount);
extern "C" nvmlReturn_t nvmlDeviceGetHandleByIndex_v2(unsigned int index, nvmlDevice_t* device);
extern "C" nvmlReturn_t nvmlDeviceGetHandleByIndex(unsigned int index, nvmlDevice_t* device);
// The GPU at a PCI address, "domain:bus:device.function" in hex ("0000:01:00.0"); only that GPU is attached.
extern "C" nvmlReturn_t nvmlDeviceGetHandleByPciBusId_v2(const char* pciBusId, nvmlDevice_t* device);
extern "C" nvmlReturn_t nvmlDeviceGetHandleByPciBusId(const char* pciBusId, nvmlDevice_t* device);

extern "C" nvmlReturn_t nvmlDeviceGetPciInfo_v3(nvmlDevice_t device, nvmlPciInfo_t* pci);
extern "C" nvmlReturn_t nvmlDeviceGetPciInfo_v2(nvmlDevice_t device, nvmlPciInfo_t* pci);
extern "C" nvmlReturn_t nvmlDeviceGetPciInfo(nvmlDevice_t device, nvmlPciInfo_t* pci);
extern "C" nvmlReturn_t nvmlDeviceGetName(nvmlDevice_t device, char* name, unsigned int length);
extern "C" nvmlReturn_t nvmlDeviceGetMemoryInfo(nvmlDevice_t device, nvmlMemory_t* memory);
extern "C" nvmlReturn_t nvmlDeviceGetVbiosVersion(nvmlDevice_t device, char* version, unsigned int length);
extern "C" nvmlReturn_t nvmlDeviceGetNumGpuCores(nvmlDevice_t device, unsigned int* numCores);
extern "C" nvmlReturn_t nvmlDeviceGetMemoryBusWidth(nvmlDevice_t device, unsigned int* busWidth);  // bits
extern "C" nvmlReturn_t nvmlDeviceGetBoardId(nvmlDevice_t device, unsigned int* boardId);

// Sensors.
extern "C" nvmlReturn_t nvmlDeviceGetTemperature(nvmlDevice_t device, nvmlTemperatureSensors_t sensorType,
                                      unsigned int* temp);  // °C
extern "C" nvmlReturn_t nvmlDeviceGetFieldValues(nvmlDevice_t device, int valuesCount, nvmlFieldValue_t* values);
// percent
extern "C" nvmlReturn_t nvmlDeviceGetFanSpeed_v2(nvmlDevice_t device, unsigned int fan, unsigned int* speed);
extern "C" nvmlReturn_t nvmlDeviceGetFanSpeed(nvmlDevice_t device, unsigned int* speed);                      // percent
extern "C" nvmlReturn_t nvmlDeviceGetFanSpeedRPM(nvmlDevice_t device, nvmlFanSpeedInfo_t* fanSpeed);
extern "C" nvmlReturn_t nvmlDeviceGetUtilizationRates(nvmlDevice_t device, nvmlUtilization_t* utilization);
extern "C" nvmlReturn_t nvmlDeviceGetDecoderUtilization(nvmlDevice_t device, unsigned int* utilization,  // percent
                                             unsigned int* samplingPeriodUs);                 // microseconds

// Clocks, all in MHz.
extern "C" nvmlReturn_t nvmlDeviceGetClockInfo(nvmlDevice_t device, nvmlClockType_t type, unsigned int* clock);
extern "C" nvmlReturn_t nvmlDeviceGetMaxClockInfo(nvmlDevice_t device, nvmlClockType_t type, unsigned int* clock);
extern "C" nvmlReturn_t nvmlDeviceGetDefaultApplicationsClock(nvmlDevice_t device, nvmlClockType_t clockType,
                                                   unsigned int* clockMHz);
extern "C" nvmlReturn_t nvmlDeviceGetClock(nvmlDevice_t device, nvmlClockType_t clockType, nvmlClockId_t clockId,
                                unsigned int* clockMHz);
extern "C" nvmlReturn_t nvmlDeviceGetGpcClkVfOffset(nvmlDevice_t device, int* offset);  // MHz
extern "C" nvmlReturn_t nvmlDeviceGetMemClkVfOffset(nvmlDevice_t device, int* offset);  // MHz
extern "C" nvmlReturn_t nvmlDeviceSetApplicationsClocks(nvmlDevice_t device, unsigned int memClockMHz,
                                             unsigned int graphicsClockMHz);
extern "C" nvmlReturn_t nvmlDeviceGetPerformanceState(nvmlDevice_t device, nvmlPstates_t* pState);
// The P-states the GPU has, best first. size is the room in bytes; entries past the last state read
// NVML_PSTATE_UNKNOWN. NVML_ERROR_INSUFFICIENT_SIZE when the list does not fit.
extern "C" nvmlReturn_t nvmlDeviceGetSupportedPerformanceStates(nvmlDevice_t device, nvmlPstates_t* pstates,
                                                                unsigned int size);
// The lowest and highest clock of one domain in one P-state.
extern "C" nvmlReturn_t nvmlDeviceGetMinMaxClockOfPState(nvmlDevice_t device, nvmlClockType_t type,
                                                         nvmlPstates_t pstate, unsigned int* minClockMHz,
                                                         unsigned int* maxClockMHz);
extern "C" nvmlReturn_t nvmlDeviceGetCurrentClocksEventReasons(nvmlDevice_t device, unsigned long long* reasons);
extern "C" nvmlReturn_t nvmlDeviceGetCurrentClocksThrottleReasons(nvmlDevice_t device, unsigned long long* reasons);

// Power, all in milliwatts.
extern "C" nvmlReturn_t nvmlDeviceGetPowerUsage(nvmlDevice_t device, unsigned int* power);
extern "C" nvmlReturn_t nvmlDeviceGetEnforcedPowerLimit(nvmlDevice_t device, unsigned int* limit);
extern "C" nvmlReturn_t nvmlDeviceGetPowerManagementLimit(nvmlDevice_t device, unsigned int* limit);
extern "C" nvmlReturn_t nvmlDeviceGetPowerManagementDefaultLimit(nvmlDevice_t device, unsigned int* defaultLimit);
extern "C" nvmlReturn_t nvmlDeviceGetPowerManagementLimitConstraints(nvmlDevice_t device, unsigned int* minLimit,
                                                          unsigned int* maxLimit);
extern "C" nvmlReturn_t nvmlDeviceSetPowerManagementLimit(nvmlDevice_t device, unsigned int limit);  // needs root
// Energy the GPU drew since the driver was last loaded, in millijoules.
extern "C" nvmlReturn_t nvmlDeviceGetTotalEnergyConsumption(nvmlDevice_t device, unsigned long long* energy);

// Processes with a graphics context on the GPU. infoCount: in, room in infos; out, entries written (or needed).
extern "C" nvmlReturn_t nvmlDeviceGetGraphicsRunningProcesses_v3(nvmlDevice_t device, unsigned int* infoCount,
                                                      nvmlProcessInfo_t* infos);
extern "C" nvmlReturn_t nvmlDeviceGetGraphicsRunningProcesses_v2(nvmlDevice_t device, unsigned int* infoCount,
                                                      nvmlProcessInfo_t* infos);
extern "C" nvmlReturn_t nvmlDeviceGetGraphicsRunningProcesses(nvmlDevice_t device, unsigned int* infoCount,
                                                   nvmlProcessInfo_v1_t* infos);

