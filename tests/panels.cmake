# The desktop window: panels and dialogs on the offscreen platform, over fixture machines and fake libraries.
find_package(Qt6 REQUIRED COMPONENTS Test Widgets)

add_executable(unit_panels
  panels/qt_test_main.cpp
  panels/gpu_panel_test.cpp
  panels/main_dialog_test.cpp
  panels/demo_options_dialog_test.cpp
  panels/start_buttons_test.cpp
  panels/tools_panel_test.cpp
  panels/report_dialog_test.cpp
  panels/layout_test.cpp
  panels/panel_rules_test.cpp
  panels/opengl_panel_test.cpp
  panels/compute_panels_test.cpp
  panels/validation_panel_test.cpp
  panels/vulkan_panel_test.cpp
)
target_link_libraries(unit_panels PRIVATE lumenscope_panels Qt6::Test GTest::gtest GTest::gmock)
target_include_directories(unit_panels PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
add_dependencies(unit_panels fake_nvml_full fake_opencl fake_cuda)
target_compile_definitions(unit_panels PRIVATE
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  FAKE_NVML_DIR="${CMAKE_CURRENT_BINARY_DIR}/fakes"
  FAKE_COMPUTE_DIR="${CMAKE_BINARY_DIR}/fakes/compute")
# The test main picks the offscreen platform itself. Tests with an OpenGL context load Mesa, whose one-time
# allocation the suppressions name; it shows only with whole allocation stacks.
gtest_discover_tests(unit_panels DISCOVERY_TIMEOUT 60 PROPERTIES LABELS unit ENVIRONMENT
  "LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/sanitizers/lsan.supp:fast_unwind_on_malloc=0")

# The panels over real parts of this machine: the Validation panel against the loopback validation server,
# the OpenCL panel over the system's OpenCL loader.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_package(nlohmann_json REQUIRED)
add_executable(integration_panels
  panels/qt_test_main.cpp
  panels/validation_online_test.cpp
  panels/opencl_panel_pocl_test.cpp
  panels/vulkan_panel_lavapipe_test.cpp
)
target_link_libraries(integration_panels PRIVATE lumenscope_panels Qt6::Test GTest::gtest nlohmann_json::nlohmann_json)
target_include_directories(integration_panels PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(integration_panels PRIVATE
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  FAKE_NVML_DIR="${CMAKE_CURRENT_BINARY_DIR}/fakes"
  PYTHON3_EXECUTABLE="${Python3_EXECUTABLE}"
  VALIDATION_SERVER_SCRIPT="${PROJECT_SOURCE_DIR}/tools/validation_server.py")
gtest_discover_tests(integration_panels PROPERTIES LABELS integration ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
                     DISCOVERY_TIMEOUT 60)

# The real program's window under an X server of its own, with screenshots of every tab in the build tree.
find_package(X11 REQUIRED)
find_program(XVFB_RUN xvfb-run REQUIRED)
add_executable(integration_window integration/window_under_xvfb_test.cpp)
target_link_libraries(integration_window PRIVATE GTest::gtest_main X11::X11 X11::Xtst Qt6::Gui)
target_include_directories(integration_window PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(integration_window PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
                           SCREENSHOT_DIR="${CMAKE_CURRENT_BINARY_DIR}/screenshots")
add_dependencies(integration_window lumenscope)
add_test(NAME WindowUnderXvfb.EveryTabIsShownAndEscapeShutsTheProgramDown
         COMMAND ${XVFB_RUN} -a -s "-screen 0 1024x768x24" $<TARGET_FILE:integration_window>)
set_tests_properties(WindowUnderXvfb.EveryTabIsShownAndEscapeShutsTheProgramDown PROPERTIES LABELS integration
                     TIMEOUT 180)

# The OpenGL Start button of the real program, worked through the X server's test extension: options, demo
# window, result row.
find_library(XTST_LIBRARY NAMES Xtst REQUIRED)
add_executable(integration_start_button integration/start_button_under_xvfb_test.cpp)
target_link_libraries(integration_start_button PRIVATE GTest::gtest_main X11::X11 ${XTST_LIBRARY} Qt6::Gui)
target_include_directories(integration_start_button PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(integration_start_button PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
                           SCREENSHOT_DIR="${CMAKE_CURRENT_BINARY_DIR}/screenshots")
add_dependencies(integration_start_button lumenscope)
add_test(NAME StartButtonUnderXvfb.TriangleStartsWithTheTypedWidthAndASecondStartOpensNothing
         COMMAND ${XVFB_RUN} -a -s "-screen 0 1024x768x24" $<TARGET_FILE:integration_start_button>)
set_tests_properties(StartButtonUnderXvfb.TriangleStartsWithTheTypedWidthAndASecondStartOpensNothing PROPERTIES
                     LABELS integration TIMEOUT 300)

# Benchmarks of the window, run by tools/bench_window.sh; not part of ctest.
add_executable(bench_window_tick bench/window_tick_bench.cpp)
target_link_libraries(bench_window_tick PRIVATE lumenscope_panels)
target_include_directories(bench_window_tick PRIVATE ${PROJECT_SOURCE_DIR})
target_compile_definitions(bench_window_tick PRIVATE SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
                           FAKE_NVML_LIBRARY="${CMAKE_CURRENT_BINARY_DIR}/fakes/nvml_full/libnvidia-ml.so.1")
add_dependencies(bench_window_tick fake_nvml_full)
add_executable(bench_window_opengl bench/window_opengl_bench.cpp)
target_link_libraries(bench_window_opengl PRIVATE lumenscope_panels)
target_include_directories(bench_window_opengl PRIVATE ${PROJECT_SOURCE_DIR})
add_executable(bench_window_startup bench/window_startup_bench.cpp)
target_link_libraries(bench_window_startup PRIVATE X11::X11 X11::Xtst)
target_include_directories(bench_window_startup PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})

# The newer-version dialog of the real program against the loopback validation server, found and worked with
# xdotool under an X server of its own.
find_program(XDOTOOL xdotool REQUIRED)
add_executable(integration_update_dialog integration/update_dialog_under_xvfb_test.cpp)
target_link_libraries(integration_update_dialog PRIVATE GTest::gtest_main X11::X11 ${XTST_LIBRARY} Qt6::Gui report)
target_include_directories(integration_update_dialog PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(integration_update_dialog PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
                           SCREENSHOT_DIR="${CMAKE_CURRENT_BINARY_DIR}/screenshots"
                           PYTHON3_EXECUTABLE="${Python3_EXECUTABLE}"
                           VALIDATION_SERVER_SCRIPT="${PROJECT_SOURCE_DIR}/tools/validation_server.py")
add_dependencies(integration_update_dialog lumenscope)
add_test(NAME UpdateDialogUnderXvfb.ClosesOnItsButtonAndOnEscapeAndTheMainWindowGoesOn
         COMMAND ${XVFB_RUN} -a -s "-screen 0 1024x768x24" $<TARGET_FILE:integration_update_dialog>)
set_tests_properties(UpdateDialogUnderXvfb.ClosesOnItsButtonAndOnEscapeAndTheMainWindowGoesOn PROPERTIES
                     LABELS integration TIMEOUT 300)
