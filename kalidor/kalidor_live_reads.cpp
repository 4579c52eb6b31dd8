#include "kalidor/kalidor.h"

#include "kalidor/library_globals.h"

namespace Kalidornm {

bool Kalidor::readGpuTemperatures(int gpu, float* coreC, float* boardC, float* memoryC, float* vrmC) {
    GpuRecord* r = record(gpu);
    GpuLiveReader* reader = r ? readerOf(*r) : nullptr;
    return reader && reader->readTemperatures(*r, coreC, boardC, memoryC, vrmC);
}

float Kalidor::readGpuCoreTemperature(int gpu) {
    float core = 0.0f;
    return readGpuTemperatures(gpu, &core, nullptr, nullptr, nullptr) ? core : 0.0f;
}

bool Kalidor::readGpuFanSpeed(int gpu, float* percent, float* rpm) {
    GpuRecord* r = record(gpu);
    GpuLiveReader* reader = r ? readerOf(*r) : nullptr;
    return reader && reader->readFanSpeed(*r, percent, rpm);
}

bool Kalidor::readGpuLoad(int gpu, float* gpuPercent, float* frameBufferPercent) {
    GpuRecord* r = record(gpu);
    GpuLiveReader* reader = r ? readerOf(*r) : nullptr;
    return reader && reader->readLoad(*r, gpuPercent, frameBufferPercent);
}

bool Kalidor::readGpuCurrentClocks(int gpu, uint32_t* pstate, float* gpuMhz, float* memMhz, float* shaderMhz,
                                   float* volts) {
    GpuRecord* r = record(gpu);
    GpuLiveReader* reader = r ? readerOf(*r) : nullptr;
    return reader && reader->readCurrentClocks(*r, pstate, gpuMhz, memMhz, shaderMhz, volts);
}

bool Kalidor::readGpuPerfLevel(int gpu, uint32_t level, uint32_t* id, float* gpuMhz, float* memMhz,
                               float* shaderMhz, float* volts) {
    GpuRecord* r = record(gpu);
    if (!r || level >= r->perfLevelCount) return false;
    GpuLiveReader* reader = readerOf(*r);
    return reader && reader->readPerfLevel(*r, level, id, gpuMhz, memMhz, shaderMhz, volts);
}

void Kalidor::readGpuMoreLive(int gpu, LiveSample& sample) {
    GpuRecord* r = record(gpu);
    if (GpuLiveReader* reader = r ? readerOf(*r) : nullptr) reader->readMoreLive(*r, sample);
}

}  // namespace Kalidornm
