#pragma once

#include <cstdint>

#include "kalidor/gpu_record.h"
#include "kalidor/machine_snapshot.h"

namespace Kalidornm {

// What a vendor reader answers for the records it created. The facade picks the reader by the record's
// vendor class; every read goes to the driver, stores what it learnt in the record and reports success.
// The defaults answer "cannot read", which is all a record without a vendor reader gets.
// Out parameters may be null and are then skipped.
class GpuLiveReader {
public:
    virtual ~GpuLiveReader() = default;

    virtual bool readTemperatures(GpuRecord&, float* /*coreC*/, float* /*boardC*/, float* /*memoryC*/,
                                  float* /*vrmC*/) {
        return false;
    }
    virtual bool readFanSpeed(GpuRecord&, float* /*percent*/, float* /*rpm*/) { return false; }
    virtual bool readLoad(GpuRecord&, float* /*gpuPercent*/, float* /*frameBufferPercent*/) { return false; }
    virtual bool readCurrentClocks(GpuRecord&, uint32_t* /*pstate*/, float* /*gpuMhz*/, float* /*memMhz*/,
                                   float* /*shaderMhz*/, float* /*volts*/) {
        return false;
    }
    virtual bool readPerfLevel(GpuRecord&, uint32_t /*level*/, uint32_t* /*id*/, float* /*gpuMhz*/,
                               float* /*memMhz*/, float* /*shaderMhz*/, float* /*volts*/) {
        return false;
    }
    // Every value of the live sample beyond the reads above (temperatures by sensor, voltages by rail,
    // watts, joules, memory in use, throttle reasons), written into `sample`, which the reads above have
    // already filled. Called once per refresh, never for a sleeping GPU; what the driver does not give stays
    // unknown.
    virtual void readMoreLive(GpuRecord&, LiveSample& /*sample*/) {}
};

}  // namespace Kalidornm
