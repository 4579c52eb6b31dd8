#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/vx_renderer.h"

// The scene-graph renderer that the engine demos draw through: OpenGL compatibility contexts, fixed-function
// lights and GLSL programs, scenes of meshes, render targets, text. Calls are not locked: the program lets one
// thread at a time into the engine.
namespace Vantalux_nsp {

class vxBkgImage;
class vxHud;
class vxMesh;
class vxModel;
class vxRenderWindow;
class vxSkybox;
class vxWindowSurface;

// The engine's own trace. It keeps its most recent lines in memory (a diagnostic for tests and debugging);
// the shell switches it off at start-up, after which every trace call is dropped.
class vxTraceMgr {
public:
    static constexpr size_t kKeptLines = 64;

    static vxTraceMgr* getInstance();

    void disable() { m_enabled = false; }
    void enable() { m_enabled = true; }
    bool isEnabled() const { return m_enabled; }

    void logTrace(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

    // The kept lines, oldest first, each as "level: text".
    std::deque<std::string> recentLines() const;

private:
    std::atomic<bool> m_enabled{true};
    mutable std::mutex m_linesLock;
    std::deque<std::string> m_lines;
};

// Identifiers for engine objects: a new number on every call, from any thread.
class vxKma {
public:
    static uint32_t genId();
};

class Vantalux {
public:
    static Vantalux* getInstance();

    // Readies the engine; the version is the one the program asks its contexts for, kept for callers that
    // want it. `reserved` must be null.
    bool startup(int glMajorVersion, int glMinorVersion, void* reserved);
    // Stops the engine. Render windows a demo has not destroyed are left alone: see the definition.
    void shutdown(void* reserved);

    bool isStarted() const { return m_started; }
    int glMajorVersion() const { return m_glMajor; }
    int glMinorVersion() const { return m_glMinor; }

    // A render window over a context the window layer made (`window`), width x height pixels, made current.
    // The bit depths and sample count are what the caller asked the window layer for; the window's own
    // sample count is what getMSAASamples reports. Null without a started engine, without a surface, when
    // its context cannot be made current, or when the context's OpenGL version is below glMajor.glMinor,
    // what the window's demo needs.
    vxRenderWindow* createRenderWindow(vxWindowSurface* window, int width, int height, int colorBits, int depthBits,
                                       int stencilBits, int msaaSamples, int glMajor, int glMinor, int doubleBuffered);
    // Makes the window's context current and the window the one creation calls and the renderer act on;
    // null leaves no window current (and answers false).
    bool setCurrentRenderWindow(vxRenderWindow* window);
    vxRenderWindow* getCurrentRenderWindow() const { return m_current; }
    // Ends the frame of the current window: a swap, or what the window layer does headless.
    void displayCurrentRenderWindow();
    // Frees the window and everything made in it.
    void destroyRenderWindow(vxRenderWindow* window);

    vxRenderer* getRenderer() { return &m_renderer; }

    // Objects of the current render window; null without one. Meshes are empty until made into a shape.
    vxMesh* createMesh(const char* name);
    // Reference lines in the XZ plane, `divisions` cells a side, drawn in grey.
    vxMesh* createGrid(const char* name, float width, float depth, int divisions);
    vxHud* createHud(const char* name, int width, int height);
    vxBkgImage* createBkgImage(const char* name);
    vxSkybox* createSkybox(const char* name);
    // A model from a file (3DS and what else the importer reads), with VX_MODEL_FLAGS; `reserved` must be 0.
    // Null when the file cannot be read.
    vxModel* createAndLoadModel(const char* path, int flags, int reserved);

private:
    bool m_started = false;
    int m_glMajor = 0;
    int m_glMinor = 0;
    std::mutex m_windowsLock;
    std::vector<std::unique_ptr<vxRenderWindow>> m_windows;
    vxRenderWindow* m_current = nullptr;
    vxRenderer m_renderer;
};

}  // namespace Vantalux_nsp
