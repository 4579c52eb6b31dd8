#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/vx_resource.h"

namespace Vantalux_nsp {

// The window a render window draws into: a context made by the program's window layer (an X11 window with
// an EGL surface, or a headless context drawing into a framebuffer object). The engine never makes one.
class vxWindowSurface {
public:
    virtual ~vxWindowSurface() = default;
    // Idempotent: true at once when the context is already current on this thread.
    virtual bool makeCurrent() = 0;
    // Ends a frame: a swap on a window; headless, whatever the window layer needs.
    virtual void present() = 0;
    // The framebuffer a frame is drawn into: 0 on a window, an offscreen one headless.
    virtual uint32_t framebuffer() const = 0;
    // Samples a pixel of that framebuffer has; 0 without multisampling.
    virtual int samples() const = 0;
};

// One window the engine draws into, and the owner of every resource made while it was current: OpenGL
// names belong to one context, so they go when the window goes, in the reverse of the order they came in.
class vxRenderWindow {
public:
    vxRenderWindow(vxWindowSurface* surface, int width, int height);
    ~vxRenderWindow();
    vxRenderWindow(const vxRenderWindow&) = delete;
    vxRenderWindow& operator=(const vxRenderWindow&) = delete;

    bool makeCurrent();
    void present();
    uint32_t framebuffer() const;
    int width() const { return m_width; }
    int height() const { return m_height; }
    int samples() const;
    // Binds the framebuffer a frame is drawn into, with a viewport over the whole window.
    void bindFramebuffer() const;

    // Makes a resource owned by this window.
    template <typename T, typename... Args>
    T* make(Args&&... args) {
        auto resource = std::make_unique<T>(std::forward<Args>(args)...);
        T* raw = resource.get();
        m_resources.push_back(std::move(resource));
        return raw;
    }
    // Frees one resource of this window now; false when it is not one of this window's.
    bool destroy(vxResource* resource);
    // Frees every resource, newest first.
    void destroyAll();
    size_t resourceCount() const { return m_resources.size(); }
    // The newest resource of type T with the given name (materials and textures are looked up by name).
    template <typename T>
    T* findNamed(const std::string& name) const {
        for (auto it = m_resources.rbegin(); it != m_resources.rend(); ++it)
            if (auto* typed = dynamic_cast<T*>(it->get()); typed && typed->getName() == name) return typed;
        return nullptr;
    }

    template <typename T, typename F>
    void forEach(F&& visit) const {
        for (const auto& resource : m_resources)
            if (auto* typed = dynamic_cast<T*>(resource.get())) visit(*typed);
    }

private:
    vxWindowSurface* m_surface;
    int m_width;
    int m_height;
    std::vector<std::unique_ptr<vxResource>> m_resources;
};

}  // namespace Vantalux_nsp
