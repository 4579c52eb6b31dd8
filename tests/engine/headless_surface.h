#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/vx_render_window.h"

// A window for the engine without any display: a Mesa context on EGL's surfaceless platform drawing into a
// framebuffer object of the window's size. Tests read its pixels back.
class HeadlessSurface : public Vantalux_nsp::vxWindowSurface {
public:
    HeadlessSurface() = default;
    ~HeadlessSurface() override;
    HeadlessSurface(const HeadlessSurface&) = delete;
    HeadlessSurface& operator=(const HeadlessSurface&) = delete;

    // False when no EGL context can be had.
    bool create(int width, int height);

    bool makeCurrent() override;
    void present() override;
    uint32_t framebuffer() const override { return m_framebuffer; }
    int samples() const override { return 0; }

    // RGBA of a pixel of the framebuffer, from the bottom left corner.
    std::array<uint8_t, 4> pixel(int x, int y) const;
    int width() const { return m_width; }
    int height() const { return m_height; }

private:
    void* m_display = nullptr;
    void* m_context = nullptr;
    uint32_t m_framebuffer = 0;
    uint32_t m_color = 0;
    uint32_t m_depth = 0;
    int m_width = 0;
    int m_height = 0;
};
