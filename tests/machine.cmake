# Whole machines through the facade: fixture trees and trees written at test time, with the fake management
# library where a machine has an NVIDIA driver.
lumenscope_unit_test(unit_machine
  unit/gpu_addresses_test.cpp
  unit/sleep_rule_test.cpp
  unit/every_gpu_record_test.cpp
  unit/nvml_faults_test.cpp
  unit/amd_memory_type_test.cpp
  unit/intel_machines_test.cpp
  unit/nvidia_desktop_live_test.cpp
  unit/live_only_start_test.cpp
)
target_link_libraries(unit_machine PRIVATE fixture_library sysfs_tree)
add_dependencies(unit_machine fake_nvml_full fake_nvml_legacy fake_nvml_broken)
target_compile_definitions(unit_machine PRIVATE FAKE_NVML_DIR="${CMAKE_CURRENT_BINARY_DIR}/fakes"
                           SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
                           NVML_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/nvml")
