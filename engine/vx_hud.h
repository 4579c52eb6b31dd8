#pragma once

#include "engine/vx_object.h"

namespace Vantalux_nsp {

class vxMaterial;

// A flat quad over the window, width x height pixels, placed by its centre in window coordinates whose
// origin is the middle of the window, y up. A frame draws it with vxRenderer::drawHud; scenes leave it out.
class vxHud : public vxObject {
public:
    vxHud(std::string name, int width, int height);

    void setMaterial(vxMaterial* material) { m_material = material; }
    vxMaterial* getMaterial() const { return m_material; }
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }

private:
    vxMaterial* m_material = nullptr;
    int m_width;
    int m_height;
};

// A picture over the whole window behind everything: the scene draws it first, without depth.
class vxBkgImage : public vxObject {
public:
    explicit vxBkgImage(std::string name);

    void setMaterial(vxMaterial* material) { m_material = material; }
    vxMaterial* getMaterial() const { return m_material; }

    void draw(vxRenderer& renderer, vxDrawMode mode, int pass) override;
    bool isBackground() const override { return true; }

private:
    vxMaterial* m_material = nullptr;
};

}  // namespace Vantalux_nsp
