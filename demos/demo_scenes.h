#pragma once

#include <memory>

#include "harness/demo_scene.h"

// The demos' scenes, one source each; the catalogue lists which record runs which.
std::unique_ptr<DemoScene> makeGl4TessellationDemo();
std::unique_ptr<DemoScene> makeGl3TorusDemo();
std::unique_ptr<DemoScene> makeGl3TriangleDemo();
