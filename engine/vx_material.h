#pragma once

#include <array>
#include <string>

#include "engine/vx_enums.h"
#include "engine/vx_math.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

class vxGpuShader;
class vxTexture;

// How a surface looks: colours for the fixed-function lights, render states, textures by unit and up to
// four programs, one per drawing pass.
class vxMaterial : public vxResource {
public:
    static constexpr int kMaxTextureUnits = 8;
    static constexpr int kMaxPasses = 4;

    explicit vxMaterial(std::string name);

    const std::string& getName() const { return m_name; }

    void setAmbient(const vxColor& c) { m_ambient = c; }
    void setDiffuse(const vxColor& c) { m_diffuse = c; }
    void setSpecular(const vxColor& c) { m_specular = c; }
    void setEmission(const vxColor& c) { m_emission = c; }
    void setShininess(float s) { m_shininess = s; }
    const vxColor& getAmbient() const { return m_ambient; }
    const vxColor& getDiffuse() const { return m_diffuse; }
    const vxColor& getSpecular() const { return m_specular; }
    float getShininess() const { return m_shininess; }

    void setLighting(bool on) { m_lighting = on; }
    void setCulling(bool on) { m_culling = on; }
    void setPolygonMode(VX_POLYGON_MODE mode) { m_polygonMode = mode; }
    void setSmoothShading(bool on) { m_smooth = on; }
    void setTexturing(bool on) { m_texturing = on; }
    void setDepthWrite(bool on) { m_depthWrite = on; }
    void setBlending(bool on) { m_blending = on; }
    void setBlendingFactors(VX_BLEND_FACTOR source, VX_BLEND_FACTOR destination) {
        m_blendSource = source, m_blendDestination = destination;
    }
    bool getLighting() const { return m_lighting; }
    bool getBlending() const { return m_blending; }

    // False for a unit out of range.
    bool addTexture(vxTexture* texture, int unit = 0);
    vxTexture* getTexture(int unit) const;
    // The program of a pass: slot 0 for pass 1 and for plain draws, slot 1 for pass 2, ...
    bool setGpuShader(vxGpuShader* shader, int slot = 0);
    vxGpuShader* getGpuShader(int slot = 0) const;

    // Sets the render states, colours and textures, and binds the program of `pass` when there is one.
    // With `keepFrameStates` blending and depth writes stay as the pass set them.
    void apply(int pass = 1, bool keepFrameStates = false) const;
    // The same without any program: a caller that binds its own.
    void applyState(bool keepFrameStates = false) const;
    // Undoes apply: program, texture units, blending, and the states back to the engine's defaults.
    void unapply(bool keepFrameStates = false) const;

    // Sorts the material into opaque or translucent for the scene's draw order.
    void classify() { m_translucent = m_blending; }
    bool isTranslucent() const { return m_translucent; }

private:
    std::string m_name;
    vxColor m_ambient{0.2f, 0.2f, 0.2f};
    vxColor m_diffuse{0.8f, 0.8f, 0.8f};
    vxColor m_specular{0, 0, 0};
    vxColor m_emission{0, 0, 0};
    float m_shininess = 0.0f;
    bool m_lighting = true;
    bool m_culling = true;
    bool m_smooth = true;
    bool m_texturing = true;
    bool m_depthWrite = true;
    bool m_blending = false;
    bool m_translucent = false;
    VX_POLYGON_MODE m_polygonMode = VX_POLYGON_FILL;
    VX_BLEND_FACTOR m_blendSource = VX_BLEND_ONE;
    VX_BLEND_FACTOR m_blendDestination = VX_BLEND_ZERO;
    std::array<vxTexture*, kMaxTextureUnits> m_textures{};
    std::array<vxGpuShader*, kMaxPasses> m_shaders{};
};

// Makes materials in the current render window; null without one.
class vxMaterialMgr {
public:
    static vxMaterialMgr* getInstance();
    vxMaterial* createMaterial(const char* name);
    // The newest material of that name in the current render window.
    vxMaterial* getMaterial(const char* name) const;
    // Sorts every material of the current window into opaque and translucent.
    void classifyMaterials();
};

}  // namespace Vantalux_nsp
