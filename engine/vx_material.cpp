#include "engine/vx_material.h"

#include <GL/glew.h>

#include "engine/vantalux.h"
#include "engine/vx_gl_states.h"
#include "engine/vx_gpu_shader.h"
#include "engine/vx_render_window.h"
#include "engine/vx_texture.h"

namespace Vantalux_nsp {

vxMaterial::vxMaterial(std::string name) : m_name(std::move(name)) {}

bool vxMaterial::addTexture(vxTexture* texture, int unit) {
    if (unit < 0 || unit >= kMaxTextureUnits) return false;
    m_textures[size_t(unit)] = texture;
    return true;
}

vxTexture* vxMaterial::getTexture(int unit) const {
    return unit >= 0 && unit < kMaxTextureUnits ? m_textures[size_t(unit)] : nullptr;
}

bool vxMaterial::setGpuShader(vxGpuShader* shader, int slot) {
    if (slot < 0 || slot >= kMaxPasses) return false;
    m_shaders[size_t(slot)] = shader;
    return true;
}

vxGpuShader* vxMaterial::getGpuShader(int slot) const {
    return slot >= 0 && slot < kMaxPasses ? m_shaders[size_t(slot)] : nullptr;
}

void vxMaterial::applyState(bool keepFrameStates) const {
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, m_ambient.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, m_diffuse.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, m_specular.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, m_emission.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, m_shininess < 0 ? 0 : m_shininess > 128 ? 128 : m_shininess);
    // Unlit surfaces take the diffuse colour as they are.
    glColor4fv(m_diffuse.data());
    if (m_lighting) glEnable(GL_LIGHTING);
    else glDisable(GL_LIGHTING);
    if (m_culling) glEnable(GL_CULL_FACE);
    else glDisable(GL_CULL_FACE);
    glPolygonMode(GL_FRONT_AND_BACK, toGlPolygonMode(m_polygonMode));
    glShadeModel(m_smooth ? GL_SMOOTH : GL_FLAT);
    if (!keepFrameStates) {
        glDepthMask(m_depthWrite ? GL_TRUE : GL_FALSE);
        if (m_blending) {
            glEnable(GL_BLEND);
            glBlendFunc(toGlBlendFactor(m_blendSource), toGlBlendFactor(m_blendDestination));
        } else {
            glDisable(GL_BLEND);
        }
    }
    for (int unit = 0; unit < kMaxTextureUnits; ++unit) {
        const vxTexture* texture = m_textures[size_t(unit)];
        if (!texture || !m_texturing) continue;
        texture->bind(unit);
        // The fixed-function path samples 2D textures of the enabled units; programs ignore this.
        if (texture->getKind() == vxTexture::k2D) glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    }
    glActiveTexture(GL_TEXTURE0);
}

void vxMaterial::apply(int pass, bool keepFrameStates) const {
    applyState(keepFrameStates);
    if (vxGpuShader* shader = getGpuShader(pass < 1 ? 0 : pass - 1)) shader->bind();
}

void vxMaterial::unapply(bool keepFrameStates) const {
    glUseProgram(0);
    for (int unit = 0; unit < kMaxTextureUnits; ++unit) {
        const vxTexture* texture = m_textures[size_t(unit)];
        if (!texture || !m_texturing) continue;
        texture->unbind(unit);
        glDisable(GL_TEXTURE_2D);
    }
    glActiveTexture(GL_TEXTURE0);
    if (!keepFrameStates) {  // else blending and depth writes belong to the pass
        if (m_blending) glDisable(GL_BLEND);
        if (!m_depthWrite) glDepthMask(GL_TRUE);
    }
    if (m_polygonMode != VX_POLYGON_FILL) glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

vxMaterialMgr* vxMaterialMgr::getInstance() {
    static vxMaterialMgr instance;
    return &instance;
}

vxMaterial* vxMaterialMgr::createMaterial(const char* name) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    return window ? window->make<vxMaterial>(name ? name : "") : nullptr;
}

vxMaterial* vxMaterialMgr::getMaterial(const char* name) const {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    return window && name ? window->findNamed<vxMaterial>(name) : nullptr;
}

void vxMaterialMgr::classifyMaterials() {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    if (window) window->forEach<vxMaterial>([](vxMaterial& material) { material.classify(); });
}

}  // namespace Vantalux_nsp
