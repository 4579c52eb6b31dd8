#include "engine/vx_skybox.h"

#include <GL/glew.h>

#include "engine/vx_cube_faces.h"
#include "engine/vx_gpu_shader.h"
#include "engine/vx_texture.h"

namespace Vantalux_nsp {

namespace {

// Bottom left, bottom right, top right and top left corner of a face on the unit cube.
vxVec3 corner(const vxCubeFaceFrame& f, int i) {
    const float u = i == 1 || i == 2 ? 1.0f : -1.0f, v = i >= 2 ? 1.0f : -1.0f;
    return f.axis + f.right * u + f.up * v;
}

}  // namespace

vxSkybox::vxSkybox(std::string name) : vxObject(std::move(name), kSkybox) {
    for (auto& face : m_texCoords) face = {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
}

bool vxSkybox::loadFace(int face, const char* path) {
    if (face < 0 || face >= 6) return false;
    vxTextureData options;
    options.addressing = VX_ADDRESS_CLAMP;  // no seam from the opposite edge
    vxTexture* texture = vxTextureMgr::getInstance()->createTexture2D(path, options);
    if (!texture) return false;
    m_faces[size_t(face)] = texture;
    return true;
}

void vxSkybox::setFaceTexCoords(int face, const vxVec2 corners[4]) {
    if (face < 0 || face >= 6 || !corners) return;
    for (size_t i = 0; i < 4; ++i) m_texCoords[size_t(face)][i] = corners[i];
}

void vxSkybox::draw(vxRenderer&, vxDrawMode mode, int) {
    if (mode == vxDrawMode::kDepthOnly) return;
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_TEXTURE_BIT | GL_CURRENT_BIT);
    glUseProgram(0);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glActiveTexture(GL_TEXTURE0);
    glColor4f(1, 1, 1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glScalef(m_halfEdge, m_halfEdge, m_halfEdge);
    if (m_cubemap) {
        glEnable(GL_TEXTURE_CUBE_MAP);
        m_cubemap->bind(0);
        if (m_shader) m_shader->bind();
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glBegin(GL_QUADS);
        for (const vxCubeFaceFrame& face : kVxSkyboxFaceFrames)
            for (int i = 0; i < 4; ++i) {
                const vxVec3 c = corner(face, i);
                glTexCoord3f(c.x, c.y, c.z);
                glVertex3f(c.x, c.y, c.z);
            }
        glEnd();
        if (m_shader) m_shader->unbind();
        m_cubemap->unbind(0);
    } else {
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        for (size_t f = 0; f < 6; ++f) {
            if (!m_faces[f]) continue;
            m_faces[f]->bind(0);
            glBegin(GL_QUADS);
            for (size_t i = 0; i < 4; ++i) {
                const vxVec3 c = corner(kVxSkyboxFaceFrames[f], int(i));
                glTexCoord2f(m_texCoords[f][i].x, m_texCoords[f][i].y);
                glVertex3f(c.x, c.y, c.z);
            }
            glEnd();
            m_faces[f]->unbind(0);
        }
    }
    glPopMatrix();
    glPopAttrib();
}

}  // namespace Vantalux_nsp
