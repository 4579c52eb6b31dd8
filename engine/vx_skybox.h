#pragma once

#include <array>

#include "engine/vx_object.h"

namespace Vantalux_nsp {

class vxGpuShader;
class vxTexture;

// A box of sky around the camera, drawn behind everything: six pictures, or one cube map. The box follows
// its position; a frame moves it to the camera's.
class vxSkybox : public vxObject {
public:
    // Right (+X), left (-X), top (+Y), bottom (-Y), front (-Z, what a camera looks at by default), back
    // (+Z); each picture stands as kVxSkyboxFaceFrames tells.
    enum Face { kRight, kLeft, kTop, kBottom, kFront, kBack };

    explicit vxSkybox(std::string name);

    // A face's picture from an image file, in the current render window; false when it cannot be read.
    bool loadFace(int face, const char* path);
    // The texture coordinates of a face's corners: bottom left, bottom right, top right, top left as seen
    // from inside the box.
    void setFaceTexCoords(int face, const vxVec2 corners[4]);
    // Shows a cube map instead of the six pictures.
    void setCubemap(vxTexture* cubemap) { m_cubemap = cubemap; }
    vxTexture* getCubemap() const { return m_cubemap; }
    // A program that draws the cube map instead of the fixed-function path (a pass that writes more than
    // colour, such as depth for a later blur). It gets the direction as texture coordinate 0.
    void setGpuShader(vxGpuShader* shader) { m_shader = shader; }
    // Half the edge of the box; it has to lie within the camera's far plane.
    void setSize(float halfEdge) { m_halfEdge = halfEdge; }

    void draw(vxRenderer& renderer, vxDrawMode mode, int pass) override;
    bool isBackground() const override { return true; }

private:
    std::array<vxTexture*, 6> m_faces{};
    std::array<std::array<vxVec2, 4>, 6> m_texCoords;
    vxTexture* m_cubemap = nullptr;
    vxGpuShader* m_shader = nullptr;
    float m_halfEdge = 500.0f;
};

}  // namespace Vantalux_nsp
