// The RGBE reader and the cross cube map: pictures read back as written, damaged files refused whole, and
// each cube face taken from the right part of the cross the right way up.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "engine/vx_cube_cross.h"
#include "engine/vx_rgbe_reader.h"

using namespace Vantalux_nsp;

namespace {

std::vector<uint8_t> bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

void append(std::vector<uint8_t>& out, std::initializer_list<int> values) {
    for (int v : values) out.push_back(uint8_t(v));
}

// Two scanlines of a picture 8 wide: the first run-length encoded per channel, the second flat with an
// old-style repeat code.
std::vector<uint8_t> smallPicture() {
    std::vector<uint8_t> file = bytesOf("#?RADIANCE\n# made by a test\nFORMAT=32-bit_rle_rgbe\nEXPOSURE=1.0\n\n-Y 2 +X 8\n");
    append(file, {2, 2, 0, 8});
    append(file, {128 + 8, 128});                     // red: 128 eight times
    append(file, {4, 0, 64, 128, 255, 128 + 4, 32});  // green: four literals, then 32 four times
    append(file, {128 + 8, 0});                       // blue: 0
    append(file, {128 + 8, 129});                     // exponent 129: one unit is 2/256
    append(file, {64, 64, 64, 128});                  // (64, 64, 64) at exponent 128
    append(file, {1, 1, 1, 6});                       // ... repeated six times
    append(file, {0, 0, 0, 0});                       // black
    return file;
}

float decoded(int mantissa, int exponent) { return (float(mantissa) + 0.5f) * std::ldexp(1.0f, exponent - 136); }

}  // namespace

TEST(RgbeReader, ReadsEncodedFlatAndRepeatedScanlines) {
    const std::vector<uint8_t> file = smallPicture();
    vxRgbeImage image;
    ASSERT_TRUE(vxRgbeReader::readFromMemory(file.data(), file.size(), image));
    ASSERT_EQ(image.width, 8);
    ASSERT_EQ(image.height, 2);
    ASSERT_EQ(image.rgb.size(), 8u * 2u * 3u);
    auto pixel = [&](int x, int y) { return &image.rgb[(size_t(y) * 8 + size_t(x)) * 3]; };
    const int greens[8] = {0, 64, 128, 255, 32, 32, 32, 32};
    for (int x = 0; x < 8; ++x) {
        EXPECT_FLOAT_EQ(pixel(x, 0)[0], decoded(128, 129)) << x;
        EXPECT_FLOAT_EQ(pixel(x, 0)[1], decoded(greens[x], 129)) << x;
    }
    for (int x = 0; x < 7; ++x) EXPECT_FLOAT_EQ(pixel(x, 1)[2], decoded(64, 128)) << x;
    EXPECT_EQ(pixel(7, 1)[0], 0.0f);
}

TEST(RgbeReader, ConvertsFloatsBackWithinTheFormatsPrecision) {
    // What a writer stores for a value v: mantissa v / 2^e * 256 with the exponent of the largest channel.
    for (float v : {0.001f, 0.5f, 1.0f, 3.75f, 60.0f, 1000.0f}) {
        int exponent = 0;
        const float scale = std::frexp(v, &exponent) * 256.0f / v;
        const uint8_t rgbe[4] = {uint8_t(v * scale), uint8_t(v * 0.5f * scale), 0, uint8_t(exponent + 128)};
        float rgb[3];
        vxRgbeReader::rgbeToFloat(rgbe, rgb);
        EXPECT_NEAR(rgb[0], v, v / 128.0f);
        EXPECT_NEAR(rgb[1], v * 0.5f, v / 128.0f);
        EXPECT_LT(rgb[2], v / 128.0f);
    }
}

TEST(RgbeReader, RefusesEveryTruncationOfAPicture) {
    const std::vector<uint8_t> file = smallPicture();
    for (size_t length = 0; length < file.size(); ++length) {
        vxRgbeImage image;
        EXPECT_FALSE(vxRgbeReader::readFromMemory(file.data(), length, image)) << "cut at " << length;
        EXPECT_TRUE(image.rgb.empty());
    }
}

TEST(RgbeReader, RefusesHeadersItCannotHonour) {
    const char* headers[] = {
        "RADIANCE\n\n-Y 1 +X 1\n",                      // no magic
        "#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 1 +X 1\n",  // another colour space
        "#?RADIANCE\n\n+Y 1 +X 1\n",                    // rows from the bottom
        "#?RADIANCE\n\n-Y 0 +X 1\n",
        "#?RADIANCE\n\n-Y -5 +X 1\n",
        "#?RADIANCE\n\n-Y 100000 +X 100000\n",          // far beyond the size limit
        "#?RADIANCE\n\n-Y 1 +X 1 junk\n",
    };
    for (const char* header : headers) {
        std::vector<uint8_t> file = bytesOf(header);
        append(file, {128, 128, 128, 128});
        vxRgbeImage image;
        EXPECT_FALSE(vxRgbeReader::readFromMemory(file.data(), file.size(), image)) << header;
    }
}

TEST(RgbeReader, RefusesRunsThatOverflowTheScanline) {
    std::vector<uint8_t> run = bytesOf("#?RGBE\n\n-Y 1 +X 8\n");
    append(run, {2, 2, 0, 8, 128 + 9, 1});  // nine values in a scanline of eight
    std::vector<uint8_t> repeat = bytesOf("#?RGBE\n\n-Y 1 +X 4\n");
    append(repeat, {10, 10, 10, 130, 1, 1, 1, 200});  // a repeat code reaching past the end
    std::vector<uint8_t> width = bytesOf("#?RGBE\n\n-Y 1 +X 8\n");
    append(width, {2, 2, 0, 9});  // scanline header naming another width
    for (const auto* file : {&run, &repeat, &width}) {
        vxRgbeImage image;
        EXPECT_FALSE(vxRgbeReader::readFromMemory(file->data(), file->size(), image));
    }
}

TEST(CubeCross, EachFaceComesFromItsTileTheRightWayUp) {
    constexpr int kTile = 4;
    vxRgbeImage cross;
    cross.width = 3 * kTile;
    cross.height = 4 * kTile;
    cross.rgb.assign(size_t(cross.width) * size_t(cross.height) * 3, -1.0f);
    // Red numbers the tile, green is the row within it (top row 0), blue the column.
    const int tiles[6][2] = {{1, 0}, {0, 1}, {1, 1}, {2, 1}, {1, 2}, {1, 3}};  // up, left, front, right, down, back
    for (int t = 0; t < 6; ++t)
        for (int y = 0; y < kTile; ++y)
            for (int x = 0; x < kTile; ++x) {
                float* p = &cross.rgb[(size_t(tiles[t][1] * kTile + y) * size_t(cross.width) + size_t(tiles[t][0] * kTile + x)) * 3];
                p[0] = float(t), p[1] = float(y), p[2] = float(x);
            }
    vxCubeCross::Faces faces;
    ASSERT_TRUE(vxCubeCross::split(cross, faces));
    ASSERT_EQ(faces.size, kTile);
    auto texel = [&](int face, int row, int column) { return &faces.rgb[size_t(face)][(size_t(row) * kTile + size_t(column)) * 3]; };
    // OpenGL's +X, -X, +Y, -Y, +Z, -Z are the right, left, up, down, back and front tiles.
    const int tileOfFace[6] = {3, 1, 0, 4, 5, 2};
    for (int face = 0; face < 6; ++face)
        for (int row = 0; row < kTile; ++row)
            for (int column = 0; column < kTile; ++column) ASSERT_EQ(texel(face, row, column)[0], tileOfFace[face]);
    // The first texel row of a side face (t = 0) looks up: the top row of its tile (the back tile aside).
    for (int face : {0, 1, 5}) EXPECT_EQ(texel(face, 0, 1)[1], 0.0f) << face;
    // The front tile stands as the viewer sees it: its left column lies towards -X, which OpenGL's -Z face
    // keeps at its last column (s grows towards -X there).
    EXPECT_EQ(texel(5, 1, kTile - 1)[2], 0.0f);
    // The back tile is upside down in the cross: its top row meets the floor.
    EXPECT_EQ(texel(4, kTile - 1, 1)[1], 0.0f);
    // The up tile's top row lies towards the back (+Z): OpenGL's +Y face keeps +Z at its last row.
    EXPECT_EQ(texel(2, kTile - 1, 1)[1], 0.0f);
}

TEST(CubeCross, RefusesPicturesThatAreNotAVerticalCross) {
    for (auto [w, h] : {std::pair{12, 12}, {4, 4}, {0, 0}, {13, 16}, {12, 17}}) {
        vxRgbeImage image;
        image.width = w, image.height = h;
        image.rgb.assign(size_t(w) * size_t(h) * 3, 1.0f);
        vxCubeCross::Faces faces;
        EXPECT_FALSE(vxCubeCross::split(image, faces)) << w << "x" << h;
    }
}

TEST(CubeCross, OurSkyHasItsSunAboveTheHorizonAndTheGroundBelow) {
    vxRgbeImage image;
    ASSERT_TRUE(vxRgbeReader::readFile(ENGINE_MEDIA_DIR "/textures/galileo_cross.hdr", image));
    vxCubeCross::Faces faces;
    ASSERT_TRUE(vxCubeCross::split(image, faces));
    float brightest = 0, upper = 0, lower = 0;
    vxVec3 sun;
    for (int face = 0; face < 6; ++face)
        for (int row = 0; row < faces.size; ++row)
            for (int column = 0; column < faces.size; ++column) {
                const float* p = &faces.rgb[size_t(face)][(size_t(row) * size_t(faces.size) + size_t(column)) * 3];
                const vxVec3 d = vxCubeCross::faceDirection(face, (column + 0.5f) / faces.size, (row + 0.5f) / faces.size);
                const float luminance = 0.3f * p[0] + 0.59f * p[1] + 0.11f * p[2];
                if (luminance > brightest) brightest = luminance, sun = d;
                (d.y > 0 ? upper : lower) += luminance;
            }
    // A sun well above the bright-pass threshold of the HDR demo, in the sky, and a sky brighter than land.
    EXPECT_GT(brightest, 20.0f);
    EXPECT_GT(sun.normalized().y, 0.15f);
    EXPECT_GT(upper, 2 * lower);
}
