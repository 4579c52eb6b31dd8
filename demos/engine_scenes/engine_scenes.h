#pragma once

#include <memory>

#include "harness/demo_scene.h"

// The eight demos that draw through the engine, one source each.
std::unique_ptr<DemoScene> makeFurryCubeDemo();
std::unique_ptr<DemoScene> makeHdrDofDemo();
std::unique_ptr<DemoScene> makeGeometryInstancingDemo();
std::unique_ptr<DemoScene> makeSoftShadowsDemo();
std::unique_ptr<DemoScene> makePointSpriteDemo();
std::unique_ptr<DemoScene> makeVertexDisplacementDemo();
std::unique_ptr<DemoScene> makeCelShadingDemo();
std::unique_ptr<DemoScene> makeSimpleMeshDemo();
