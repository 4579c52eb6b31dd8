// vxFont::create through fontconfig (which face) and FreeType (its glyphs).
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <mutex>

#include "engine/vx_font.h"

namespace Vantalux_nsp {

namespace {

constexpr int kDotsPerInch = 96;
constexpr int kAtlasWidth = 256;
constexpr int kPadding = 1;  // between glyphs, so linear sampling never bleeds a neighbour in

struct FcPatternOwner {
    FcPattern* p;
    ~FcPatternOwner() {
        if (p) FcPatternDestroy(p);
    }
};

// The file and family fontconfig matches to `face`: the face itself when installed, else its substitute.
bool matchFace(const char* face, std::string& file, std::string& family) {
    static std::once_flag initialised;
    static bool configured = false;
    std::call_once(initialised, [] { configured = FcInit() == FcTrue; });
    if (!configured) return false;
    FcPatternOwner pattern{FcNameParse(reinterpret_cast<const FcChar8*>(face && *face ? face : "sans-serif"))};
    if (!pattern.p) return false;
    FcPatternAddBool(pattern.p, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pattern.p, FcMatchPattern);
    FcDefaultSubstitute(pattern.p);
    FcResult result = FcResultNoMatch;
    FcPatternOwner match{FcFontMatch(nullptr, pattern.p, &result)};
    if (!match.p) return false;
    FcChar8* path = nullptr;
    if (FcPatternGetString(match.p, FC_FILE, 0, &path) != FcResultMatch || !path) return false;
    file = reinterpret_cast<const char*>(path);
    FcChar8* name = nullptr;
    family = FcPatternGetString(match.p, FC_FAMILY, 0, &name) == FcResultMatch && name
                 ? reinterpret_cast<const char*>(name)
                 : "";
    return true;
}

struct FreeTypeLibrary {
    FT_Library handle = nullptr;
    FreeTypeLibrary() {
        if (FT_Init_FreeType(&handle) != 0) handle = nullptr;
    }
    ~FreeTypeLibrary() {
        if (handle) FT_Done_FreeType(handle);
    }
};

struct FreeTypeFace {
    FT_Face handle = nullptr;
    ~FreeTypeFace() {
        if (handle) FT_Done_Face(handle);
    }
};

}  // namespace

bool vxFont::create(const char* face, int pointSize) {
    m_atlas = {};
    std::string file, family;
    if (!matchFace(face, file, family)) return false;
    FreeTypeLibrary library;
    FreeTypeFace ftFace;
    if (!library.handle || FT_New_Face(library.handle, file.c_str(), 0, &ftFace.handle) != 0) return false;
    const int points = std::clamp(pointSize, 4, 200);
    if (FT_Set_Char_Size(ftFace.handle, 0, points * 64, kDotsPerInch, kDotsPerInch) != 0) return false;

    vxGlyphAtlas atlas;
    atlas.width = kAtlasWidth;
    atlas.ascender = int(ftFace.handle->size->metrics.ascender >> 6);
    atlas.lineHeight = int(ftFace.handle->size->metrics.height >> 6);
    // Shelf packing: glyphs left to right, a new row when one does not fit.
    struct Bitmap {
        std::vector<uint8_t> pixels;
        int width = 0, height = 0;
    };
    std::vector<Bitmap> bitmaps(atlas.glyphs.size());
    int penX = kPadding, penY = kPadding, rowHeight = 0;
    for (int code = vxGlyphAtlas::kFirst; code <= vxGlyphAtlas::kLast; ++code) {
        const size_t index = size_t(code - vxGlyphAtlas::kFirst);
        if (FT_Load_Char(ftFace.handle, FT_ULong(code), FT_LOAD_RENDER) != 0) continue;
        const FT_GlyphSlot slot = ftFace.handle->glyph;
        const FT_Bitmap& source = slot->bitmap;
        // Anti-aliased coverage, rows top first: what FT_LOAD_RENDER gives a scalable face.
        if (source.pixel_mode != FT_PIXEL_MODE_GRAY || source.pitch < int(source.width)) continue;
        Bitmap& bitmap = bitmaps[index];
        bitmap.width = std::min(int(source.width), kAtlasWidth - 2 * kPadding);
        bitmap.height = int(source.rows);
        bitmap.pixels.resize(size_t(bitmap.width) * size_t(bitmap.height));
        for (int y = 0; y < bitmap.height; ++y)
            for (int x = 0; x < bitmap.width; ++x)
                bitmap.pixels[size_t(y * bitmap.width + x)] = source.buffer[y * source.pitch + x];
        if (penX + bitmap.width + kPadding > kAtlasWidth) {
            penX = kPadding;
            penY += rowHeight + kPadding;
            rowHeight = 0;
        }
        vxGlyph& glyph = atlas.glyphs[index];
        glyph = {penX, penY, bitmap.width, bitmap.height, slot->bitmap_left, slot->bitmap_top,
                 int(slot->advance.x >> 6)};
        penX += bitmap.width + kPadding;
        rowHeight = std::max(rowHeight, bitmap.height);
    }
    atlas.height = penY + rowHeight + kPadding;
    atlas.coverage.assign(size_t(atlas.width) * size_t(atlas.height), 0);
    for (size_t i = 0; i < bitmaps.size(); ++i) {
        const vxGlyph& glyph = atlas.glyphs[i];
        for (int y = 0; y < glyph.height; ++y)
            std::copy_n(&bitmaps[i].pixels[size_t(y * glyph.width)], glyph.width,
                        &atlas.coverage[size_t((glyph.y + y) * atlas.width + glyph.x)]);
    }
    m_atlas = std::move(atlas);
    m_file = std::move(file);
    m_family = std::move(family);
    return true;
}

}  // namespace Vantalux_nsp
