# The engine: what can break without a GPU as unit tests, the rest on Mesa's llvmpipe through headless EGL.
lumenscope_unit_test(unit_engine
  engine/font_test.cpp
  engine/lsan_fontconfig.cpp
  engine/mesh_builders_test.cpp
  engine/scene_graph_test.cpp
)
target_link_libraries(unit_engine PRIVATE engine)
target_compile_definitions(unit_engine PRIVATE ENGINE_MEDIA_DIR="${PROJECT_SOURCE_DIR}/media")
