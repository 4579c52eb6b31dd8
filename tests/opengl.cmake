lumenscope_unit_test(unit_opengl
  unit/opengl_extensions_test.cpp
  unit/opengl_probe_logic_test.cpp
)
target_link_libraries(unit_opengl PRIVATE kalidor)

# Real Mesa through EGL, no display needed.
lumenscope_integration_test(integration_opengl_probe
  integration/opengl_probe_test.cpp
)
target_link_libraries(integration_opengl_probe PRIVATE kalidor)

# The probe's wall time, measured by a benchmark rather than asserted in a test.
find_package(benchmark REQUIRED)
add_executable(bench_opengl_probe bench/opengl_probe_bench.cpp)
target_link_libraries(bench_opengl_probe PRIVATE kalidor benchmark::benchmark)

# The catalogue's parameters are checked against the system's GL headers.
find_file(GL_GLEW_HEADER GL/glew.h)
find_file(GL_GLEXT_HEADER GL/glext.h)
target_compile_definitions(unit_opengl PRIVATE GL_GLEW_HEADER="${GL_GLEW_HEADER}" GL_GLEXT_HEADER="${GL_GLEXT_HEADER}")
