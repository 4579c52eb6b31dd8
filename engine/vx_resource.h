#pragma once

namespace Vantalux_nsp {

// Everything the engine hands out by pointer: textures, shaders, materials, render targets, scenes and
// their objects. Each belongs to the render window that was current when it was made, and goes with it.
class vxResource {
public:
    virtual ~vxResource() = default;
    vxResource(const vxResource&) = delete;
    vxResource& operator=(const vxResource&) = delete;

protected:
    vxResource() = default;
};

}  // namespace Vantalux_nsp
