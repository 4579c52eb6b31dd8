# The demo harness and the GL utility layer: rules and data on GoogleTest, no context needed.
lumenscope_unit_test(unit_demos
  demos/bench_result_test.cpp
  demos/context_choice_test.cpp
  demos/frame_stats_test.cpp
  demos/harness_rules_test.cpp
  demos/mat4_test.cpp
  demos/mesh_builders_test.cpp
)
target_link_libraries(unit_demos PRIVATE demos)

# The same layer on Mesa through a headless EGL context.
lumenscope_integration_test(integration_gl_utility demos/gl_utility_test.cpp)
target_link_libraries(integration_gl_utility PRIVATE demos)
