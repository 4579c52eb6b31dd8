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

# The program itself running each demo headless as a one-second benchmark.
lumenscope_integration_test(integration_demo_runs demos/demo_runs_test.cpp)
target_link_libraries(integration_demo_runs PRIVATE demos)
target_compile_definitions(integration_demo_runs PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_demo_runs lumenscope)

# The harness's threads inside the test process, on the same headless driver.
lumenscope_integration_test(integration_demo_harness demos/harness_threads_test.cpp)
target_link_libraries(integration_demo_harness PRIVATE demos)

# A demo window under a virtual X server, closed by Esc and by its close box.
add_executable(integration_demo_window demos/demo_window_test.cpp)
target_link_libraries(integration_demo_window PRIVATE GTest::gtest_main demos)
target_include_directories(integration_demo_window PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(integration_demo_window PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_demo_window lumenscope)
find_program(XVFB_RUN xvfb-run)
if(XVFB_RUN)
  add_test(NAME DemoWindow.EscAndTheCloseBoxEndTheDemo
           COMMAND ${XVFB_RUN} -a -s "-screen 0 1024x768x24" $<TARGET_FILE:integration_demo_window>)
  set_tests_properties(DemoWindow.EscAndTheCloseBoxEndTheDemo PROPERTIES LABELS integration TIMEOUT 300)
else()
  message(WARNING "xvfb-run not found (Debian package xvfb): the demo window test is left out")
endif()

# The bare EGL loop that tools/bench_demos.sh measures the harness against; a benchmark, not a test.
add_executable(bench_bare_triangle_loop bench/bare_triangle_loop.cpp)
target_link_libraries(bench_bare_triangle_loop PRIVATE demos)
