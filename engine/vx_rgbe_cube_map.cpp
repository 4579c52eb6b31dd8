// vxRgbeReader::loadRGBECubeMap: the reader's picture made into an OpenGL cube map.
#include "engine/vantalux.h"
#include "engine/vx_cube_cross.h"
#include "engine/vx_rgbe_reader.h"
#include "engine/vx_texture.h"

namespace Vantalux_nsp {

vxTexture* vxRgbeReader::loadRGBECubeMap(const char* path) {
    vxRgbeImage cross;
    vxCubeCross::Faces faces;
    if (!readFile(path, cross) || !vxCubeCross::split(cross, faces)) {
        vxTraceMgr::getInstance()->logTrace(1, "%s is not an RGBE cross cube map", path ? path : "(null)");
        return nullptr;
    }
    const float* texels[6];
    for (size_t f = 0; f < 6; ++f) texels[f] = faces.rgb[f].data();
    vxTextureData options;
    options.filter = VX_FILTER_LINEAR;
    options.internalFormat = VX_INTERNAL_FORMAT_FLOAT;
    return vxTextureMgr::getInstance()->createCubeMap(path, faces.size, texels, options);
}

}  // namespace Vantalux_nsp
