#include "rgbe_writer.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace media {

namespace {

void toRgbe(const float* rgb, uint8_t out[4]) {
    const float v = std::fmax(rgb[0], std::fmax(rgb[1], rgb[2]));
    if (v < 1e-32f) {
        out[0] = out[1] = out[2] = out[3] = 0;
        return;
    }
    int exponent = 0;
    const float scale = std::frexp(v, &exponent) * 256.0f / v;
    for (int c = 0; c < 3; ++c) out[c] = uint8_t(std::fmax(rgb[c], 0.0f) * scale);
    out[3] = uint8_t(exponent + 128);
}

// One channel of a scanline: runs of four or more equal bytes as (128 + n, value), the rest as literals.
void encodeChannel(const std::vector<uint8_t>& values, std::vector<uint8_t>& out) {
    const size_t n = values.size();
    size_t i = 0;
    while (i < n) {
        size_t run = 1;
        while (i + run < n && run < 127 && values[i + run] == values[i]) ++run;
        if (run >= 4) {
            out.push_back(uint8_t(128 + run));
            out.push_back(values[i]);
            i += run;
            continue;
        }
        // A literal stretch up to the next run of four.
        size_t end = i;
        while (end < n && end - i < 128) {
            size_t ahead = 1;
            while (end + ahead < n && ahead < 4 && values[end + ahead] == values[end]) ++ahead;
            if (ahead >= 4) break;
            ++end;
        }
        out.push_back(uint8_t(end - i));
        out.insert(out.end(), values.begin() + long(i), values.begin() + long(end));
        i = end;
    }
}

}  // namespace

bool writeRgbe(const std::string& path, int width, int height, const std::vector<float>& rgb) {
    if (width < 8 || width >= 0x8000 || rgb.size() != size_t(width) * size_t(height) * 3) return false;
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    std::fprintf(file, "#?RADIANCE\n# a sky of our own, made by tools/make_engine_media.sh\nFORMAT=32-bit_rle_rgbe\n\n");
    std::fprintf(file, "-Y %d +X %d\n", height, width);
    std::vector<uint8_t> channel(static_cast<size_t>(width));
    std::vector<uint8_t> line;
    for (int y = 0; y < height; ++y) {
        std::vector<uint8_t> pixels(size_t(width) * 4);
        for (int x = 0; x < width; ++x) toRgbe(&rgb[(size_t(y) * size_t(width) + size_t(x)) * 3], &pixels[size_t(x) * 4]);
        line = {2, 2, uint8_t(width >> 8), uint8_t(width & 0xFF)};
        for (int c = 0; c < 4; ++c) {
            for (int x = 0; x < width; ++x) channel[size_t(x)] = pixels[size_t(x) * 4 + size_t(c)];
            encodeChannel(channel, line);
        }
        std::fwrite(line.data(), 1, line.size(), file);
    }
    return std::fclose(file) == 0;
}

}  // namespace media
