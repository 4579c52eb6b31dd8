#include "engine/vx_renderer.h"

#include <GL/glew.h>

#include <algorithm>

#include "engine/vantalux.h"
#include "engine/vx_font.h"
#include "engine/vx_gl_states.h"
#include "engine/vx_hud.h"
#include "engine/vx_material.h"
#include "engine/vx_object.h"
#include "engine/vx_render_window.h"

namespace Vantalux_nsp {

namespace {

vxRenderWindow* currentWindow() { return Vantalux::getInstance()->getCurrentRenderWindow(); }

GLenum glState(VX_STATE state) {
    switch (state) {
        case VX_DEPTH_TEST: return GL_DEPTH_TEST;
        case VX_BLENDING: return GL_BLEND;
        case VX_CULLING: return GL_CULL_FACE;
        case VX_LIGHTING: return GL_LIGHTING;
        case VX_TEXTURING: return GL_TEXTURE_2D;
        case VX_MULTISAMPLE: return GL_MULTISAMPLE;
        default: return 0;  // the write masks are not capabilities
    }
}

// Projection and model-view both the given matrices until restore(), in text mode and for quads.
void pushMatrices(const vxMat4& projection) {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadMatrixf(projection.data());
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
}

void popMatrices() {
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

}  // namespace

void vxRenderer::beginFrame() {
    vxRenderWindow* window = currentWindow();
    if (!window) return;
    window->bindFramebuffer();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDisable(GL_BLEND);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glFrontFace(GL_CCW);
    glEnable(GL_NORMALIZE);  // scaled models keep unit normals for the lights
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_TRUE);
    glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SEPARATE_SPECULAR_COLOR);
}

void vxRenderer::endFrame() {
    if (m_textMode) endTextMode();
    glUseProgram(0);
}

void vxRenderer::setClearColor(const vxColor& color) { glClearColor(color.r, color.g, color.b, color.a); }

void vxRenderer::clear(bool color, bool depth) {
    GLbitfield mask = 0;
    if (color) mask |= GL_COLOR_BUFFER_BIT;
    if (depth) {
        mask |= GL_DEPTH_BUFFER_BIT;
        glDepthMask(GL_TRUE);  // a clear honours the depth write mask
    }
    if (mask) glClear(mask);
}

void vxRenderer::setClearDepth(float depth) { glClearDepth(depth); }

void vxRenderer::enableState(VX_STATE state) {
    if (state == VX_DEPTH_WRITE) glDepthMask(GL_TRUE);
    else if (state == VX_COLOR_WRITE) glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    else if (const GLenum cap = glState(state)) glEnable(cap);
}

void vxRenderer::disableState(VX_STATE state) {
    if (state == VX_DEPTH_WRITE) glDepthMask(GL_FALSE);
    else if (state == VX_COLOR_WRITE) glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    else if (const GLenum cap = glState(state)) glDisable(cap);
}

void vxRenderer::setBlendFactors(VX_BLEND_FACTOR source, VX_BLEND_FACTOR destination) {
    glBlendFunc(toGlBlendFactor(source), toGlBlendFactor(destination));
}

void vxRenderer::setDepthFunc(VX_DEPTH_FUNC function) { glDepthFunc(toGlDepthFunc(function)); }

void vxRenderer::setCullMode(VX_CULL_MODE mode) { glCullFace(toGlCullFace(mode)); }

void vxRenderer::setActiveTextureUnit(int unit) {
    if (unit >= 0 && unit < vxMaterial::kMaxTextureUnits) glActiveTexture(GLenum(GL_TEXTURE0 + unit));
}

void vxRenderer::setGlobalAmbient(const vxColor& color) { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, color.data()); }

void vxRenderer::setTextureMatrix(int unit, const vxMat4& matrix) {
    if (unit < 0 || unit >= vxMaterial::kMaxTextureUnits) return;
    glActiveTexture(GLenum(GL_TEXTURE0 + unit));
    glMatrixMode(GL_TEXTURE);
    glLoadMatrixf(matrix.data());
    glMatrixMode(GL_MODELVIEW);
    glActiveTexture(GL_TEXTURE0);
}

void vxRenderer::drawFullscreenQuad(int width, int height) {
    if (width < 1 || height < 1) return;
    glViewport(0, 0, width, height);
    pushMatrices(vxMat4::orthographic(0, 1, 0, 1, -1, 1));
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0), glVertex2f(0, 0);
    glTexCoord2f(1, 0), glVertex2f(1, 0);
    glTexCoord2f(1, 1), glVertex2f(1, 1);
    glTexCoord2f(0, 1), glVertex2f(0, 1);
    glEnd();
    popMatrices();
}

void vxRenderer::drawObject(vxObject& object, int pass) {
    pushObjectTransform(object);
    object.draw(*this, vxDrawMode::kPass, pass);
    popObjectTransform();
}

void vxRenderer::pushObjectTransform(const vxObject& object) {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glMultMatrixf(object.getAbsoluteTransform().data());
}

void vxRenderer::popObjectTransform() {
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

void vxRenderer::drawHud(vxHud& hud) {
    vxRenderWindow* window = currentWindow();
    if (!window) return;
    const float w = float(window->width()), h = float(window->height());
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT | GL_POLYGON_BIT | GL_VIEWPORT_BIT);
    glViewport(0, 0, window->width(), window->height());
    pushMatrices(vxMat4::orthographic(-w / 2, w / 2, -h / 2, h / 2, -1, 1));
    if (vxMaterial* material = hud.getMaterial()) material->apply(1);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    const vxVec3 c = hud.getPosition();
    const float hw = float(hud.getWidth()) / 2, hh = float(hud.getHeight()) / 2;
    glColor4f(1, 1, 1, 1);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0), glVertex2f(c.x - hw, c.y - hh);
    glTexCoord2f(1, 0), glVertex2f(c.x + hw, c.y - hh);
    glTexCoord2f(1, 1), glVertex2f(c.x + hw, c.y + hh);
    glTexCoord2f(0, 1), glVertex2f(c.x - hw, c.y + hh);
    glEnd();
    if (vxMaterial* material = hud.getMaterial()) material->unapply();
    popMatrices();
    glPopAttrib();
}

void vxRenderer::beginPointSprites() {
    glEnable(GL_POINT_SPRITE);
    glEnable(GL_VERTEX_PROGRAM_POINT_SIZE);
    glActiveTexture(GL_TEXTURE0);
    glTexEnvi(GL_POINT_SPRITE, GL_COORD_REPLACE, GL_TRUE);
}

void vxRenderer::endPointSprites() {
    glActiveTexture(GL_TEXTURE0);
    glTexEnvi(GL_POINT_SPRITE, GL_COORD_REPLACE, GL_FALSE);
    glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
    glDisable(GL_POINT_SPRITE);
}

void vxRenderer::drawPoints(int count, const float* positions, const float* colors, const float* texCoords) {
    if (count < 1 || !positions) return;
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(4, GL_FLOAT, 0, positions);
    if (colors) {
        glEnableClientState(GL_COLOR_ARRAY);
        glColorPointer(4, GL_FLOAT, 0, colors);
    }
    if (texCoords) {
        glClientActiveTexture(GL_TEXTURE0);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(4, GL_FLOAT, 0, texCoords);
    }
    glDrawArrays(GL_POINTS, 0, count);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

void vxRenderer::beginTextMode() {
    vxRenderWindow* window = currentWindow();
    if (!window || m_textMode) return;
    m_textMode = true;
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT | GL_POLYGON_BIT | GL_TEXTURE_BIT |
                 GL_VIEWPORT_BIT | GL_CURRENT_BIT);
    glUseProgram(0);
    glViewport(0, 0, window->width(), window->height());
    // Pixel coordinates, y down from the top edge.
    pushMatrices(vxMat4::orthographic(0, float(window->width()), float(window->height()), 0, -1, 1));
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glActiveTexture(GL_TEXTURE0);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
}

void vxRenderer::drawFont(const vxFont& font) {
    const FontTexture* registered = _fontTexture(font);
    if (!m_textMode || !registered) return;
    const vxGlyphAtlas& atlas = font.getAtlas();
    const float sw = 1.0f / float(atlas.width), sh = 1.0f / float(atlas.height);
    glBindTexture(GL_TEXTURE_2D, registered->texture);
    glColor4fv(font.getColor().data());
    float penX = float(font.getX());
    const float baseline = float(font.getY() + atlas.ascender);
    glBegin(GL_QUADS);
    for (char c : font.getText()) {
        const vxGlyph& g = atlas.glyph(c);
        if (g.width > 0 && g.height > 0) {
            const float x0 = penX + float(g.bearingX), y0 = baseline - float(g.bearingY);
            const float x1 = x0 + float(g.width), y1 = y0 + float(g.height);
            const float s0 = float(g.x) * sw, t0 = float(g.y) * sh;
            const float s1 = float(g.x + g.width) * sw, t1 = float(g.y + g.height) * sh;
            glTexCoord2f(s0, t0), glVertex2f(x0, y0);
            glTexCoord2f(s0, t1), glVertex2f(x0, y1);
            glTexCoord2f(s1, t1), glVertex2f(x1, y1);
            glTexCoord2f(s1, t0), glVertex2f(x1, y0);
        }
        penX += float(g.advance);
    }
    glEnd();
    glBindTexture(GL_TEXTURE_2D, 0);
}

void vxRenderer::endTextMode() {
    if (!m_textMode) return;
    m_textMode = false;
    popMatrices();
    glPopAttrib();
}

bool vxRenderer::registerFont(vxFont* font) {
    vxRenderWindow* window = currentWindow();
    if (!font || !window || !font->isCreated()) return false;
    if (_fontTexture(*font)) return true;
    const vxGlyphAtlas& atlas = font->getAtlas();
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    // Coverage as alpha: text takes its colour from the font and its shape from the glyphs.
    glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA8, atlas.width, atlas.height, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                 atlas.coverage.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glBindTexture(GL_TEXTURE_2D, 0);
    m_fonts.push_back({font, window, texture});
    return true;
}

void vxRenderer::forgetFont(vxFont* font) {
    for (auto it = m_fonts.begin(); it != m_fonts.end(); ++it) {
        if (it->font != font) continue;
        it->window->makeCurrent();  // the texture is a name of that window's context
        glDeleteTextures(1, &it->texture);
        m_fonts.erase(it);
        return;
    }
}

void vxRenderer::forgetFontsOf(const vxRenderWindow* window) {
    for (auto it = m_fonts.begin(); it != m_fonts.end();) {
        if (it->window != window) {
            ++it;
            continue;
        }
        it->window->makeCurrent();
        glDeleteTextures(1, &it->texture);
        it = m_fonts.erase(it);
    }
}

const vxRenderer::FontTexture* vxRenderer::_fontTexture(const vxFont& font) const {
    const vxRenderWindow* window = currentWindow();
    for (const FontTexture& f : m_fonts)
        if (f.font == &font && f.window == window) return &f;
    return nullptr;
}

int vxRenderer::getMSAASamples() const {
    const vxRenderWindow* window = currentWindow();
    return window ? window->samples() : 0;
}

}  // namespace Vantalux_nsp
