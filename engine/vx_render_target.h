#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/vx_enums.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

class vxRenderWindow;
class vxTexture;

// An offscreen framebuffer with colour textures (one or several at once) and a depth buffer, or a depth
// texture alone for shadow maps. Each factory answers null when the driver cannot make it complete, or
// without a current render window.
class vxRenderTarget : public vxResource {
public:
    static constexpr int kMaxColorTargets = 8;

    static vxRenderTarget* createColorTarget(const char* name, int width, int height, VX_PIXEL_FORMAT pixelFormat,
                                             VX_INTERNAL_FORMAT internalFormat, bool depthBuffer = false);
    static vxRenderTarget* createMultipleColorTargets(const char* name, int count, int width, int height,
                                                      VX_PIXEL_FORMAT pixelFormat, VX_INTERNAL_FORMAT internalFormat,
                                                      bool depthBuffer = true);
    static vxRenderTarget* createDepthTarget(const char* name, int width, int height);

    vxRenderTarget(std::string name, vxRenderWindow* window);
    ~vxRenderTarget() override;

    const std::string& getName() const { return m_name; }
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    int getNumColorTargets() const { return int(m_colors.size()); }
    vxTexture* getColorTexture(int index) const;
    vxTexture* getDepthTexture() const { return m_depthTexture.get(); }

    // Draws into the target from now on, over its whole size; end() goes back to the window's framebuffer
    // and the viewport that was set before begin().
    void begin();
    void end();

private:
    static vxRenderTarget* _make(const char* name, int colorCount, int width, int height, VX_PIXEL_FORMAT pixelFormat,
                                 VX_INTERNAL_FORMAT internalFormat, bool depthBuffer, bool depthTexture);
    bool _create(int colorCount, int width, int height, VX_PIXEL_FORMAT pixelFormat, VX_INTERNAL_FORMAT internalFormat,
                 bool depthBuffer, bool depthTexture);

    std::string m_name;
    vxRenderWindow* m_window;
    uint32_t m_framebuffer = 0;
    uint32_t m_depthBuffer = 0;
    int m_width = 0;
    int m_height = 0;
    std::vector<std::unique_ptr<vxTexture>> m_colors;
    std::unique_ptr<vxTexture> m_depthTexture;
    int m_savedViewport[4] = {0, 0, 0, 0};
    bool m_active = false;
};

}  // namespace Vantalux_nsp
