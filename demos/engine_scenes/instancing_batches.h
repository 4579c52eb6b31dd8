#pragma once

// How the asteroid belt is cut into instanced draws: as many asteroids a draw as the vertex stage's uniforms
// hold (each asteroid takes two 4-float entries, its position and its rotation, of a 4 x 2 share of the
// components) and as the program's arrays are long.
struct InstancingBatches {
    int batchSize = 0;  // asteroids a draw
    int calls = 0;      // draws a frame
};

// The program's arrays hold 400 entries, or 64 on the vendor whose number is 2, whose compiler takes only the
// shorter form.
InstancingBatches instancingBatches(int asteroids, int maxVertexUniformComponents, int gpuVendor);
