#pragma once

#include "engine/vx_object.h"

namespace Vantalux_nsp {

// A model loaded from a file: a node whose children are the file's named objects, each a mesh with the
// file's materials on its faces.
class vxModel : public vxObject {
public:
    explicit vxModel(std::string name) : vxObject(std::move(name), kModel) {}
};

// What createAndLoadModel does besides reading the file.
enum VX_MODEL_FLAGS {
    VX_MODEL_BUILD_BUFFERS = 1,  // vertex and index buffers made at once rather than at the first draw
    VX_MODEL_MATERIALS = 2,      // the file's materials made and assigned; else the meshes draw plain
    VX_MODEL_TEXTURES = 4,       // the textures the materials name, from the model's folder
};

}  // namespace Vantalux_nsp
