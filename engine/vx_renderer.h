#pragma once

#include <cstdint>
#include <vector>

#include "engine/vx_enums.h"
#include "engine/vx_math.h"

namespace Vantalux_nsp {

class vxFont;
class vxHud;
class vxObject;
class vxRenderWindow;

// Frame-level drawing on the current render window: the begin and end of a frame, clears, render states,
// full-screen quads, point sprites and text.
class vxRenderer {
public:
    // Binds the window's framebuffer over the whole window and resets the states a frame starts from.
    void beginFrame();
    void endFrame();

    void setClearColor(const vxColor& color);
    void clear(bool color, bool depth);
    void setClearDepth(float depth);

    void enableState(VX_STATE state);
    void disableState(VX_STATE state);
    void setBlendFactors(VX_BLEND_FACTOR source, VX_BLEND_FACTOR destination);
    void setDepthFunc(VX_DEPTH_FUNC function);
    void setCullMode(VX_CULL_MODE mode);
    void setActiveTextureUnit(int unit);
    // Colour of the fixed-function light model's ambient term.
    void setGlobalAmbient(const vxColor& color);
    // The texture matrix of a unit, for projected textures; the identity resets it.
    void setTextureMatrix(int unit, const vxMat4& matrix);

    // A quad over a viewport of width x height with texture coordinates 0 to 1, projection and model-view
    // the identity for it and put back after it.
    void drawFullscreenQuad(int width, int height);
    // One object alone (not its children) at its place in the world, under the camera applied: what a
    // demo draws outside its scene's order.
    void drawObject(vxObject& object, int pass = 1);
    // The model-view matrix of the camera applied times the object's absolute transform, until the pop:
    // for a demo that binds and draws a mesh's data itself.
    void pushObjectTransform(const vxObject& object);
    void popObjectTransform();
    // A HUD quad over the current window, in window coordinates centred on the middle, y up.
    void drawHud(vxHud& hud);

    // Point sprites: texture coordinates of unit 0 run over each point, the program sets the point size.
    void beginPointSprites();
    void endPointSprites();
    // `count` points from arrays of 4 floats each: positions, colours, and texture coordinates of unit 0.
    void drawPoints(int count, const float* positions, const float* colors, const float* texCoords);

    // Text on the current window: pixel coordinates from the top left corner, blended, no depth.
    void beginTextMode();
    void drawFont(const vxFont& font);
    void endTextMode();
    // A font's glyphs go to a texture of the current window when registered and leave it when forgotten;
    // only registered fonts draw.
    bool registerFont(vxFont* font);
    void forgetFont(vxFont* font);
    // Forgets every font registered on a window that is going away.
    void forgetFontsOf(const vxRenderWindow* window);

    // Samples a pixel of the current window has; 0 without multisampling.
    int getMSAASamples() const;

private:
    struct FontTexture {
        vxFont* font;
        vxRenderWindow* window;
        uint32_t texture;
    };
    const FontTexture* _fontTexture(const vxFont& font) const;

    std::vector<FontTexture> m_fonts;
    bool m_textMode = false;
};

}  // namespace Vantalux_nsp
