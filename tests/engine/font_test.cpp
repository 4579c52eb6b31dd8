// The HUD font without a GPU: the face asked for, or what the system offers in its place, rasterised into
// glyphs that lay a line out left to right.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine/vx_font.h"

using namespace Vantalux_nsp;

TEST(Font, AFaceAskedByANameNotInstalledStillGivesGlyphs) {
    for (const char* face : {"Verdana", "No Such Face 12345", ""}) {
        vxFont font;
        ASSERT_TRUE(font.create(face, 10)) << face;
        EXPECT_FALSE(font.getFontFile().empty());
        const vxGlyphAtlas& atlas = font.getAtlas();
        EXPECT_GT(atlas.lineHeight, 0);
        // 10 points at 96 dots an inch are 13 pixels: a capital stands between 7 and 13 of them.
        EXPECT_GE(atlas.glyph('H').height, 7) << face;
        EXPECT_LE(atlas.glyph('H').height, 13) << face;
        EXPECT_LE(atlas.glyph('H').bearingY, atlas.ascender);
    }
}

TEST(Font, GlyphsLieInsideTheirImageWithoutOverlapping) {
    vxFont font;
    ASSERT_TRUE(font.create("Verdana", 10));
    const vxGlyphAtlas& atlas = font.getAtlas();
    ASSERT_EQ(atlas.coverage.size(), size_t(atlas.width) * size_t(atlas.height));
    for (size_t i = 0; i < atlas.glyphs.size(); ++i) {
        const vxGlyph& a = atlas.glyphs[i];
        ASSERT_GE(a.x, 0);
        ASSERT_GE(a.y, 0);
        ASSERT_LE(a.x + a.width, atlas.width) << i;
        ASSERT_LE(a.y + a.height, atlas.height) << i;
        for (size_t j = i + 1; j < atlas.glyphs.size(); ++j) {
            const vxGlyph& b = atlas.glyphs[j];
            const bool apart = a.x + a.width <= b.x || b.x + b.width <= a.x || a.y + a.height <= b.y || b.y + b.height <= a.y;
            EXPECT_TRUE(apart || a.width == 0 || b.width == 0) << char(i + 32) << " over " << char(j + 32);
        }
    }
    // Ink where a glyph is, none in the space's place.
    const vxGlyph& m = atlas.glyph('M');
    int ink = 0;
    for (int y = 0; y < m.height; ++y)
        for (int x = 0; x < m.width; ++x) ink += atlas.coverage[size_t((m.y + y) * atlas.width + m.x + x)] > 128;
    EXPECT_GT(ink, 10);
    EXPECT_EQ(atlas.glyph(' ').width, 0);
    EXPECT_GT(atlas.glyph(' ').advance, 0);
}

TEST(Font, LinesMeasureByTheirCharactersAndUnknownOnesShowAsQuestionMarks) {
    vxFont font;
    ASSERT_TRUE(font.create("Verdana", 10));
    font.setText("Frames=%d - Elapsed time=%4.1f sec", 1234, 12.34);
    EXPECT_EQ(font.getText(), "Frames=1234 - Elapsed time=12.3 sec");
    EXPECT_GT(font.measure("WWWW"), font.measure("iiii"));
    EXPECT_EQ(font.measure("\xC3\xA9\t"), 3 * font.measure("?"));  // two bytes of UTF-8 and a tab
    // A line longer than the font keeps is cut, never overrun.
    const std::string longText(2000, 'x');
    font.setText("%s", longText.c_str());
    EXPECT_LT(font.getText().size(), longText.size());
    EXPECT_EQ(font.getText(), std::string(font.getText().size(), 'x'));
}
