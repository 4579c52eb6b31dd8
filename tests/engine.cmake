# The engine: what can break without a GPU as unit tests, the rest on Mesa's llvmpipe through headless EGL.
lumenscope_unit_test(unit_engine
  engine/font_test.cpp
  engine/lsan_fontconfig.cpp
  engine/math_test.cpp
  engine/mesh_builders_test.cpp
  engine/model_3ds_test.cpp
  engine/rgbe_reader_test.cpp
  engine/scene_graph_test.cpp
)
target_link_libraries(unit_engine PRIVATE engine)
target_compile_definitions(unit_engine PRIVATE ENGINE_MEDIA_DIR="${PROJECT_SOURCE_DIR}/media")

# The media's readers under libFuzzer, once the build knows fuzz targets.
if(COMMAND lumenscope_fuzz_target)
  lumenscope_fuzz_target(rgbe_reader
    ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/rgbe_reader_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/engine/vx_rgbe_reader.cpp
    ${PROJECT_SOURCE_DIR}/engine/vx_cube_cross.cpp
    ${PROJECT_SOURCE_DIR}/engine/vx_math.cpp)
  lumenscope_fuzz_target(model_3ds
    ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/model_3ds_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/engine/vx_model_assimp.cpp
    ${PROJECT_SOURCE_DIR}/engine/vx_model_3ds_check.cpp
    ${PROJECT_SOURCE_DIR}/engine/vx_math.cpp)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(FUZZ_ASSIMP REQUIRED IMPORTED_TARGET assimp)
  target_link_libraries(model_3ds_fuzz PRIVATE PkgConfig::FUZZ_ASSIMP)
endif()

lumenscope_integration_test(integration_engine_llvmpipe
  engine/engine_gl_test.cpp
  engine/headless_surface.cpp
)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)
target_link_libraries(integration_engine_llvmpipe PRIVATE engine OpenGL::EGL OpenGL::GL)
target_compile_definitions(integration_engine_llvmpipe PRIVATE ENGINE_MEDIA_DIR="${PROJECT_SOURCE_DIR}/media")

# The engine demos' rules that run on the processor.
lumenscope_unit_test(unit_engine_scenes engine/engine_scene_rules_test.cpp)
target_link_libraries(unit_engine_scenes PRIVATE demos)

# The program running each engine demo headless as a one-second benchmark, and refusing what it cannot run.
lumenscope_integration_test(integration_engine_demo_runs engine/engine_demo_runs_test.cpp)
target_link_libraries(integration_engine_demo_runs PRIVATE demos)
target_compile_definitions(integration_engine_demo_runs PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_engine_demo_runs lumenscope)

# The engine's own share of a frame, apart from OpenGL: a benchmark that tools/bench_engine_demos.sh runs.
add_executable(bench_engine_frame_cost bench/engine_frame_cost.cpp)
target_link_libraries(bench_engine_frame_cost PRIVATE demos)
