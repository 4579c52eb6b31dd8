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
