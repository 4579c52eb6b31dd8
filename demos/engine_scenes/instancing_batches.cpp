#include "demos/engine_scenes/instancing_batches.h"

#include <algorithm>

InstancingBatches instancingBatches(int asteroids, int maxVertexUniformComponents, int gpuVendor) {
    const int arraySize = gpuVendor == 2 ? 64 : 400;
    InstancingBatches b;
    b.batchSize = std::max(1, std::min(maxVertexUniformComponents / 8, arraySize));
    b.calls = asteroids <= 0 ? 0 : (asteroids + b.batchSize - 1) / b.batchSize;
    return b;
}
