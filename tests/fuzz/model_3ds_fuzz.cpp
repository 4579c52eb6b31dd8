// 3DS files of any bytes through the model loading path: our chunk check, then the importer.
#include <cstddef>
#include <cstdint>

#include "engine/vx_model_data.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Vantalux_nsp::vxModelData model;
    Vantalux_nsp::vxLoadModelFromMemory(data, size, "3ds", model);
    return 0;
}
