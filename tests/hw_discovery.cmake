# A fake EGL library offering a software device, for the machine with no PCI display device.
add_library(fake_egl_software SHARED fakes/fake_egl_software.cpp)
set_target_properties(fake_egl_software PROPERTIES OUTPUT_NAME EGL PREFIX lib SUFFIX .so.1
                      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fakes/egl_software)

lumenscope_unit_test(unit_hw_discovery
  unit/display_ids_test.cpp
  unit/cpu_identity_test.cpp
  unit/fixture_machines_test.cpp
)
target_link_libraries(unit_hw_discovery PRIVATE kalidor fixture_library)
add_dependencies(unit_hw_discovery fake_egl_software)
target_compile_definitions(unit_hw_discovery PRIVATE
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  FAKE_EGL_SOFTWARE="$<TARGET_FILE:fake_egl_software>")

lumenscope_integration_test(integration_hw_log integration/hw_log_test.cpp)
target_link_libraries(integration_hw_log PRIVATE kalidor)
target_compile_definitions(integration_hw_log PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_hw_log lumenscope)

# A developer's tool, not a test: replays a fixture machine and writes its start-up log.
add_executable(replay_machine tools/replay_machine.cpp)
target_link_libraries(replay_machine PRIVATE lumenscope_app)
target_include_directories(replay_machine PRIVATE ${PROJECT_SOURCE_DIR})
