#include "engine/vantalux.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <filesystem>

#include "demos/gl_utility/gl_entry_points.h"
#include "engine/vx_hardware_caps.h"
#include "engine/vx_hud.h"
#include "engine/vx_material.h"
#include "engine/vx_mesh.h"
#include "engine/vx_model.h"
#include "engine/vx_model_data.h"
#include "engine/vx_render_window.h"
#include "engine/vx_skybox.h"
#include "engine/vx_texture.h"

namespace Vantalux_nsp {

vxTraceMgr* vxTraceMgr::getInstance() {
    static vxTraceMgr instance;
    return &instance;
}

void vxTraceMgr::logTrace(int level, const char* format, ...) {
    if (!m_enabled) return;
    char text[4096];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    std::lock_guard<std::mutex> guard(m_linesLock);
    m_lines.push_back(std::to_string(level) + ": " + text);
    if (m_lines.size() > kKeptLines) m_lines.pop_front();
}

std::deque<std::string> vxTraceMgr::recentLines() const {
    std::lock_guard<std::mutex> guard(m_linesLock);
    return m_lines;
}

uint32_t vxKma::genId() {
    static std::atomic<uint32_t> next{0};
    return ++next;
}

Vantalux* Vantalux::getInstance() {
    static Vantalux instance;
    return &instance;
}

bool Vantalux::startup(int glMajorVersion, int glMinorVersion, void*) {
    m_glMajor = glMajorVersion;
    m_glMinor = glMinorVersion;
    m_started = true;
    return true;
}

void Vantalux::shutdown(void*) {
    // A window still here belongs to a demo thread that has not ended: its context is current on that
    // thread, and its surface may be gone with the thread's window. Freeing it from here would race the
    // thread, so it is left for the end of the process.
    m_current = nullptr;
    m_started = false;
}

vxRenderWindow* Vantalux::createRenderWindow(vxWindowSurface* window, int width, int height, int, int, int, int,
                                             int glMajor, int glMinor, int) {
    if (!m_started || !window || width < 1 || height < 1 || !window->makeCurrent()) return nullptr;
    // The engine calls OpenGL through GLEW's table, which a context must fill before the first call.
    if (!bindGlEntryPoints()) return nullptr;
    vxHardwareCaps* caps = vxHardwareCaps::getInstance();
    if (!caps->read()) return nullptr;
    auto below = [&](int major, int minor) {
        return caps->getGLMajorVersion() < major ||
               (caps->getGLMajorVersion() == major && caps->getGLMinorVersion() < minor);
    };
    if (below(glMajor, glMinor)) {
        vxTraceMgr::getInstance()->logTrace(1, "OpenGL %d.%d is below what the window needs",
                                            caps->getGLMajorVersion(), caps->getGLMinorVersion());
        return nullptr;
    }
    auto renderWindow = std::make_unique<vxRenderWindow>(window, width, height);
    vxRenderWindow* raw = renderWindow.get();
    {
        std::lock_guard<std::mutex> guard(m_windowsLock);
        m_windows.push_back(std::move(renderWindow));
    }
    m_current = raw;
    raw->bindFramebuffer();
    return raw;
}

bool Vantalux::setCurrentRenderWindow(vxRenderWindow* window) {
    if (!window) m_current = nullptr;
    if (!window || !window->makeCurrent()) return false;
    m_current = window;
    return true;
}

void Vantalux::displayCurrentRenderWindow() {
    if (m_current) m_current->present();
}

void Vantalux::destroyRenderWindow(vxRenderWindow* window) {
    if (!window) return;
    std::unique_ptr<vxRenderWindow> owned;
    {
        std::lock_guard<std::mutex> guard(m_windowsLock);
        auto it = std::find_if(m_windows.begin(), m_windows.end(), [&](const auto& w) { return w.get() == window; });
        if (it == m_windows.end()) return;
        owned = std::move(*it);
        m_windows.erase(it);
    }
    m_renderer.forgetFontsOf(window);
    owned.reset();
    if (m_current == window) m_current = nullptr;
}

vxMesh* Vantalux::createMesh(const char* name) {
    return m_current ? m_current->make<vxMesh>(name ? name : "") : nullptr;
}

vxMesh* Vantalux::createGrid(const char* name, float width, float depth, int divisions) {
    vxMesh* grid = createMesh(name);
    if (!grid) return nullptr;
    grid->makeGrid(width, depth, divisions);
    grid->setColor({0.5f, 0.5f, 0.5f, 1.0f});
    return grid;
}

vxHud* Vantalux::createHud(const char* name, int width, int height) {
    return m_current ? m_current->make<vxHud>(name ? name : "", width, height) : nullptr;
}

vxBkgImage* Vantalux::createBkgImage(const char* name) {
    return m_current ? m_current->make<vxBkgImage>(name ? name : "") : nullptr;
}

vxSkybox* Vantalux::createSkybox(const char* name) {
    return m_current ? m_current->make<vxSkybox>(name ? name : "") : nullptr;
}

vxModel* Vantalux::createAndLoadModel(const char* path, int flags, int) {
    vxModelData data;
    if (!m_current || !vxLoadModelFile(path, data)) {
        vxTraceMgr::getInstance()->logTrace(1, "Unable to load model %s", path ? path : "(null)");
        return nullptr;
    }
    const std::filesystem::path file(path);
    std::vector<vxMaterial*> materials;
    if (flags & VX_MODEL_MATERIALS) {
        for (const vxModelData::Material& m : data.materials) {
            vxMaterial* material = m_current->make<vxMaterial>(m.name);
            material->setAmbient(m.ambient);
            material->setDiffuse(m.diffuse);
            material->setSpecular(m.specular);
            material->setShininess(m.shininess);
            if ((flags & VX_MODEL_TEXTURES) && !m.textureFile.empty()) {
                const std::string texturePath = (file.parent_path() / m.textureFile).string();
                if (vxTexture* texture = vxTextureMgr::getInstance()->createTexture2D(texturePath.c_str()))
                    material->addTexture(texture, 0);
            }
            materials.push_back(material);
        }
    }
    vxModel* model = m_current->make<vxModel>(file.stem().string());
    auto build = [&](const vxModelData::Node& node, vxObject* parent, auto& self) -> void {
        vxMesh* mesh = m_current->make<vxMesh>(node.name);
        mesh->setBaseTransform(node.transform);
        mesh->setData(node.mesh);
        for (const vxModelData::FaceGroup& group : node.groups)
            if (group.material < materials.size() && group.faceCount > 0)
                mesh->assignMaterialToFaces(materials[group.material], group.firstFace,
                                            group.firstFace + group.faceCount - 1);
        if (flags & VX_MODEL_BUILD_BUFFERS) mesh->buildBuffers();
        parent->addChild(mesh);
        for (const vxModelData::Node& child : node.children) self(child, mesh, self);
    };
    build(data.root, model, build);
    return model;
}

}  // namespace Vantalux_nsp
