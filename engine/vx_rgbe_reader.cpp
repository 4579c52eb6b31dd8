#include "engine/vx_rgbe_reader.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace Vantalux_nsp {

namespace {

// Reads the bytes after the header one scanline at a time, never past the end.
class Cursor {
public:
    Cursor(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    bool atEnd() const { return m_position >= m_size; }
    size_t left() const { return m_size - m_position; }
    bool take(uint8_t* out, size_t count) {
        if (count > left()) return false;
        std::memcpy(out, m_data + m_position, count);
        m_position += count;
        return true;
    }
    bool byte(uint8_t& out) { return take(&out, 1); }
    // One header line without its newline; false at the end of the data or for a line beyond reason.
    bool line(std::string_view& out) {
        const size_t start = m_position;
        while (m_position < m_size && m_data[m_position] != '\n') {
            if (m_position - start > 1024) return false;
            ++m_position;
        }
        if (m_position >= m_size) return false;
        out = std::string_view(reinterpret_cast<const char*>(m_data + start), m_position - start);
        ++m_position;
        return true;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_position = 0;
};

bool readHeader(Cursor& cursor, int& width, int& height) {
    std::string_view line;
    if (!cursor.line(line) || line.substr(0, 2) != "#?") return false;
    for (;;) {
        if (!cursor.line(line)) return false;
        if (line.empty()) break;
        if (line.substr(0, 7) == "FORMAT=" && line != "FORMAT=32-bit_rle_rgbe") return false;  // XYZE and others
    }
    if (!cursor.line(line) || line.size() > 64) return false;
    char text[65];
    std::memcpy(text, line.data(), line.size());
    text[line.size()] = '\0';
    char extra = 0;
    // Only the standard orientation: rows from the top, pixels from the left.
    if (std::sscanf(text, "-Y %d +X %d%c", &height, &width, &extra) != 2) return false;
    return width > 0 && height > 0 && width <= vxRgbeReader::kMaxSide && height <= vxRgbeReader::kMaxSide &&
           size_t(width) * size_t(height) <= vxRgbeReader::kMaxPixels;
}

// Pixels of a scanline without per-channel runs: plain RGBE quadruples, where (1, 1, 1, n) repeats the
// previous pixel n times (n shifted left by 8 for each repeat code in a row).
bool readFlatScanline(Cursor& cursor, uint8_t* pixels, int width, const uint8_t first[4]) {
    int x = 0, shift = 0;
    uint8_t pixel[4];
    std::memcpy(pixel, first, 4);
    bool haveFirst = true;
    while (x < width) {
        if (!haveFirst && !cursor.take(pixel, 4)) return false;
        haveFirst = false;
        if (pixel[0] == 1 && pixel[1] == 1 && pixel[2] == 1) {
            if (x == 0 || shift > 16) return false;
            const long count = long(pixel[3]) << shift;
            if (count > width - x) return false;
            for (long i = 0; i < count; ++i, ++x) std::memcpy(pixels + size_t(x) * 4, pixels + size_t(x - 1) * 4, 4);
            shift += 8;
        } else {
            std::memcpy(pixels + size_t(x) * 4, pixel, 4);
            ++x;
            shift = 0;
        }
    }
    return true;
}

// A scanline in the newer encoding: each of the four channels on its own, as runs (count above 128: one
// value count - 128 times) and literals (count up to 128: that many values).
bool readRunLengthScanline(Cursor& cursor, uint8_t* pixels, int width) {
    for (int channel = 0; channel < 4; ++channel) {
        int x = 0;
        while (x < width) {
            uint8_t count = 0;
            if (!cursor.byte(count)) return false;
            if (count > 128) {
                const int run = count - 128;
                uint8_t value = 0;
                if (run > width - x || !cursor.byte(value)) return false;
                for (int i = 0; i < run; ++i, ++x) pixels[size_t(x) * 4 + size_t(channel)] = value;
            } else {
                if (count == 0 || count > width - x) return false;
                for (int i = 0; i < count; ++i, ++x)
                    if (!cursor.byte(pixels[size_t(x) * 4 + size_t(channel)])) return false;
            }
        }
    }
    return true;
}

bool readScanline(Cursor& cursor, uint8_t* pixels, int width) {
    uint8_t first[4];
    if (!cursor.take(first, 4)) return false;
    const bool encoded = width >= 8 && width < 0x8000 && first[0] == 2 && first[1] == 2 && (first[2] & 0x80) == 0;
    if (!encoded) return readFlatScanline(cursor, pixels, width, first);
    if (((first[2] << 8) | first[3]) != width) return false;
    return readRunLengthScanline(cursor, pixels, width);
}

}  // namespace

void vxRgbeReader::rgbeToFloat(const uint8_t rgbe[4], float rgb[3]) {
    if (rgbe[3] == 0) {
        rgb[0] = rgb[1] = rgb[2] = 0.0f;
        return;
    }
    const float scale = std::ldexp(1.0f, int(rgbe[3]) - (128 + 8));
    for (int c = 0; c < 3; ++c) rgb[c] = (float(rgbe[c]) + 0.5f) * scale;
}

bool vxRgbeReader::readFromMemory(const uint8_t* data, size_t size, vxRgbeImage& image) {
    image = {};
    if (!data) return false;
    Cursor cursor(data, size);
    int width = 0, height = 0;
    if (!readHeader(cursor, width, height)) return false;
    // Every scanline takes at least four bytes; a file shorter than that is cut short. The picture grows a
    // scanline at a time, so a header that promises more than the data holds allocates little.
    if (cursor.left() / 4 < size_t(height)) return false;
    std::vector<uint8_t> scanline(size_t(width) * 4);
    std::vector<float> rgb;
    for (int y = 0; y < height; ++y) {
        if (!readScanline(cursor, scanline.data(), width)) return false;
        rgb.resize(size_t(y + 1) * size_t(width) * 3);
        float* out = &rgb[size_t(y) * size_t(width) * 3];
        for (int x = 0; x < width; ++x) rgbeToFloat(&scanline[size_t(x) * 4], out + size_t(x) * 3);
    }
    image.width = width;
    image.height = height;
    image.rgb = std::move(rgb);
    return true;
}

bool vxRgbeReader::readFile(const char* path, vxRgbeImage& image) {
    image = {};
    if (!path) return false;
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path, "rb"), &std::fclose);
    if (!file) return false;
    std::vector<uint8_t> bytes;
    uint8_t block[65536];
    for (size_t n; (n = std::fread(block, 1, sizeof block, file.get())) > 0;) {
        bytes.insert(bytes.end(), block, block + n);
        if (bytes.size() > kMaxPixels * 4 + 65536) return false;
    }
    return readFromMemory(bytes.data(), bytes.size(), image);
}

}  // namespace Vantalux_nsp
