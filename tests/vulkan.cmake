# The fake Vulkan loader under the loader's soname, in a folder of its own; tests name its file directly.
set(vulkan_fake_dir ${CMAKE_BINARY_DIR}/fakes/vulkan)
add_library(fake_vulkan SHARED fakes/vulkan/fake_vulkan.cpp)
set_target_properties(fake_vulkan PROPERTIES PREFIX lib OUTPUT_NAME vulkan SUFFIX .so.1
                      LIBRARY_OUTPUT_DIRECTORY ${vulkan_fake_dir})

find_package(nlohmann_json REQUIRED)
lumenscope_unit_test(unit_vulkan
  unit/vulkan_fake_loader_test.cpp
  unit/vulkan_field_rows_test.cpp
  unit/vulkan_sleep_rule_test.cpp
)
target_link_libraries(unit_vulkan PRIVATE lumenscope_vulkan report fixture_library sysfs_tree
                      nlohmann_json::nlohmann_json)
add_dependencies(unit_vulkan fake_vulkan)
target_compile_definitions(unit_vulkan PRIVATE FAKE_VULKAN_LIBRARY="$<TARGET_FILE:fake_vulkan>"
                           SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs")

# Against Debian's vulkaninfo on Mesa's software device; fails where either is missing.
add_executable(integration_vulkan_lavapipe integration/vulkan_lavapipe_test.cpp)
target_link_libraries(integration_vulkan_lavapipe PRIVATE GTest::gtest_main nlohmann_json::nlohmann_json)
target_compile_definitions(integration_vulkan_lavapipe PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_vulkan_lavapipe lumenscope)
gtest_discover_tests(integration_vulkan_lavapipe PROPERTIES LABELS lavapipe DISCOVERY_TIMEOUT 60)

# Discovery's own wall time through the system's loader, measured by a benchmark rather than printed by a test.
add_executable(bench_vulkan_discovery bench/vulkan_discovery_bench.cpp)
target_link_libraries(bench_vulkan_discovery PRIVATE lumenscope_vulkan benchmark::benchmark)
