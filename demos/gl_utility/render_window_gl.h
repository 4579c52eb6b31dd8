#pragma once

#include <cstdint>
#include <vector>

#include "demos/gl_utility/native_window.h"

// The OpenGL context of one demo, made and used only on the demo thread. On a window it draws into an EGL
// window surface; headless it draws into a framebuffer object of the window's size on a surfaceless
// context. Either way a frame is drawn into framebuffer() and ended by present().
class RenderWindowGL {
public:
    // The version asked for: 0 is 2.0, 1 is 3.0, 2 is 3.1, 3 is 3.2, 4 is 4.0, 5 is 4.1.
    enum ContextKind : uint32_t { kGl20 = 0, kGl30, kGl31, kGl32, kGl40, kGl41 };

    RenderWindowGL() = default;
    ~RenderWindowGL();
    RenderWindowGL(const RenderWindowGL&) = delete;
    RenderWindowGL& operator=(const RenderWindowGL&) = delete;

    // Makes the context for `window` (a null display: headless) with `msaaSamples` samples (0: none; the
    // best on offer when the exact count is not), leaves it current and sets the demos' starting state.
    // With `keepLastFrame` the last presented frame stays readable for readLastFrame(). False when no
    // context could be made; any kind outside ContextKind makes nothing.
    bool create(const NativeWindow& window, int width, int height, int msaaSamples, uint32_t contextKind,
                bool keepLastFrame = false);
    // True at once when already current; a demo calls it each frame.
    bool makeCurrent();
    // Ends a frame: swaps a window's buffers; headless, waits until the frame's rendering is complete.
    void present();
    // Drops the context and everything made for it.
    void release();
    // The version the context reports; false without a context.
    bool getVersion(int* major, int* minor) const;

    // The framebuffer a frame is drawn into: 0 on a window, the offscreen one headless. Demos that render to
    // framebuffer objects of their own bind this one to draw into the window again.
    uint32_t framebuffer() const { return m_drawFramebuffer; }
    bool headless() const { return m_headless; }
    // The samples the window's framebuffer has; 0 without multisampling.
    int samples() const { return m_samples; }
    // The last presented frame as RGBA bytes, bottom row first; false when it cannot be read.
    bool readLastFrame(std::vector<uint8_t>& rgba);

    int width = 0;
    int height = 0;
    bool valid = false;
    bool current = false;
    uint32_t contextKind = 0;

private:
    bool _createEglContext(const NativeWindow& window, int major, int minor, int msaaSamples, bool keepLastFrame);
    bool _makeEglCurrent();
    void _swapEglBuffers();
    void _releaseEgl();
    bool _createOffscreenFramebuffer(int msaaSamples);
    void _deleteOffscreenFramebuffer();
    void _setStartingState(int msaaSamples);
    void _waitForFrame();

    void* m_eglDisplay = nullptr;  // EGLDisplay
    void* m_eglContext = nullptr;  // EGLContext
    void* m_eglSurface = nullptr;  // EGLSurface; null headless
    bool m_ownsDisplay = false;    // a window's display is ours to terminate; the headless one is shared
    bool m_headless = false;
    int m_samples = 0;
    uint32_t m_drawFramebuffer = 0;
    uint32_t m_colorBuffer = 0;
    uint32_t m_depthBuffer = 0;
    uint32_t m_resolveFramebuffer = 0;  // single-sampled copy of a multisampled offscreen frame
    uint32_t m_resolveColorBuffer = 0;
    uint32_t m_vertexArray = 0;
};
