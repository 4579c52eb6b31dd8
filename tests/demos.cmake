# The demo harness and the GL utility layer: rules and data on GoogleTest, no context needed.
lumenscope_unit_test(unit_demos
  demos/bench_result_test.cpp
  demos/cl_demo_rules_test.cpp
  demos/context_choice_test.cpp
  demos/frame_stats_test.cpp
  demos/harness_rules_test.cpp
  demos/mesh_builders_test.cpp
  demos/mesh_record_test.cpp
)
target_link_libraries(unit_demos PRIVATE demos)

# The same layer on Mesa through a headless EGL context.
lumenscope_integration_test(integration_gl_utility demos/gl_utility_test.cpp)
target_link_libraries(integration_gl_utility PRIVATE demos)

# Every shader program the demos build from media/shaders/, compiled and linked on the same driver.
lumenscope_integration_test(integration_shader_programs demos/shader_programs_test.cpp)
target_link_libraries(integration_shader_programs PRIVATE demos)

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
find_program(XVFB_RUN xvfb-run REQUIRED)
add_test(NAME DemoWindow.EscAndTheCloseBoxEndTheDemo
         COMMAND ${XVFB_RUN} -a -s "-screen 0 1024x768x24" $<TARGET_FILE:integration_demo_window>)
set_tests_properties(DemoWindow.EscAndTheCloseBoxEndTheDemo PROPERTIES LABELS integration TIMEOUT 300)

# The bare EGL loop that tools/bench_demos.sh measures the harness against; a benchmark, not a test.
add_executable(bench_bare_triangle_loop bench/bare_triangle_loop.cpp)
target_link_libraries(bench_bare_triangle_loop PRIVATE demos)

# The OpenCL demos' kernels on the machine's OpenCL CPU device, against references worked out on the CPU.
lumenscope_integration_test(integration_cl_kernels demos/cl_kernels_test.cpp)
target_link_libraries(integration_cl_kernels PRIVATE demos)

# The program running each OpenCL demo headless on the machine's OpenCL CPU device.
lumenscope_integration_test(integration_cl_demo_runs demos/cl_demo_runs_test.cpp)
target_link_libraries(integration_cl_demo_runs PRIVATE demos)
target_compile_definitions(integration_cl_demo_runs PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_cl_demo_runs lumenscope)

# The OpenCL demos' compute steps beside the device's copy bandwidth, for tools/bench_cl_demos.sh; a
# benchmark, not a test.
add_executable(bench_cl_compute bench/cl_compute_bench.cpp)
target_link_libraries(bench_cl_compute PRIVATE demos)
target_include_directories(bench_cl_compute PRIVATE ${PROJECT_SOURCE_DIR})

# The program built with the sanitizers, ended by SIGTERM and by Escape on its main window at random
# moments while a demo of each family runs: three runs of each (tools/stop_demos_at_random.sh runs more).
if(LUMENSCOPE_SANITIZE)
  find_program(XDOTOOL xdotool REQUIRED)
  add_library(keep_libraries_mapped SHARED sanitizers/keep_libraries_mapped.c)
  # Loaded into the program before the sanitizer's runtime, so without the sanitizers itself.
  target_compile_options(keep_libraries_mapped PRIVATE -fno-sanitize=all)
  target_link_options(keep_libraries_mapped PRIVATE -fno-sanitize=all)
  foreach(family gl3 opencl engine)
    add_test(NAME DemoShutdown.${family}
             COMMAND ${PROJECT_SOURCE_DIR}/tools/stop_demos_at_random.sh --binary $<TARGET_FILE:lumenscope>
                     --preload $<TARGET_FILE:keep_libraries_mapped> --runs 3 --random-start 24 --family ${family})
    # One at a time: two xvfb-run -a started at the same moment can pick the same display.
    set_tests_properties(DemoShutdown.${family} PROPERTIES LABELS demo_shutdown TIMEOUT 1200 RESOURCE_LOCK xvfb)
  endforeach()
endif()
