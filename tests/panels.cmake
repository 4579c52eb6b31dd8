# The desktop window: panels and dialogs on the offscreen platform, over fixture machines and fake libraries.
find_package(Qt6 REQUIRED COMPONENTS Test Widgets)

add_executable(unit_panels
  panels/qt_test_main.cpp
  panels/gpu_panel_test.cpp
  panels/main_dialog_test.cpp
  panels/tools_panel_test.cpp
  panels/report_dialog_test.cpp
  panels/layout_test.cpp
  panels/panel_rules_test.cpp
)
target_link_libraries(unit_panels PRIVATE lumenscope_panels Qt6::Test GTest::gtest GTest::gmock)
target_include_directories(unit_panels PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
add_dependencies(unit_panels fake_nvml_full fake_opencl fake_cuda)
target_compile_definitions(unit_panels PRIVATE
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  FAKE_NVML_DIR="${CMAKE_CURRENT_BINARY_DIR}/fakes"
  FAKE_COMPUTE_DIR="${CMAKE_BINARY_DIR}/fakes/compute")
gtest_discover_tests(unit_panels PROPERTIES LABELS unit ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
                     DISCOVERY_TIMEOUT 60)
