// Writes the engine demos' media: textures, the skybox's faces, the HDR sky cross and the knot model under
// MEDIA_DIR, the pictures the program holds as bytes under HELD_DIR, and small forms of the sky and the
// knot under CORPUS_DIR for the fuzz targets to start from. Every picture is drawn here from noise and
// shapes; nothing is taken from elsewhere.
#include <cstdio>
#include <string>

#include "knot_3ds.h"
#include "sky_hdr.h"
#include "textures.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s MEDIA_DIR HELD_DIR CORPUS_DIR\n", argv[0]);
        return 2;
    }
    const std::string media = argv[1], held = argv[2], corpus = argv[3];
    if (!media::writeTextures(media, held)) return 1;
    if (!media::writeSkyCross(media + "/textures/galileo_cross.hdr", 256)) {
        std::fprintf(stderr, "cannot write the sky cross\n");
        return 1;
    }
    if (!media::writeKnot3ds(media + "/models/knot.3DS", 240, 20)) {
        std::fprintf(stderr, "cannot write the knot\n");
        return 1;
    }
    if (!media::writeSkyCross(corpus + "/rgbe_reader/small_cross.hdr", 4) ||
        !media::writeKnot3ds(corpus + "/model_3ds/small_knot.3ds", 6, 3)) {
        std::fprintf(stderr, "cannot write the fuzz corpus\n");
        return 1;
    }
    return 0;
}
