// RGBE pictures of any bytes: read, and split as a cross cube map when they read.
#include <cstddef>
#include <cstdint>

#include "engine/vx_cube_cross.h"
#include "engine/vx_rgbe_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Vantalux_nsp::vxRgbeImage image;
    if (Vantalux_nsp::vxRgbeReader::readFromMemory(data, size, image)) {
        Vantalux_nsp::vxCubeCross::Faces faces;
        Vantalux_nsp::vxCubeCross::split(image, faces);
    }
    return 0;
}
