# Fuzz targets of the parsers that read what the machine, its drivers and the user hand us. They exist only
# in the fuzz tree (tests/fuzz/fuzz_tree.cmake), each with a test of label "fuzz".
if(COMMAND lumenscope_fuzz_target)
  set(fuzz_dir ${CMAKE_CURRENT_SOURCE_DIR}/fuzz)
  add_library(fuzz_scratch_root STATIC ${fuzz_dir}/scratch_root.cpp)

  lumenscope_fuzz_target(command_line ${fuzz_dir}/command_line_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/app/command_line.cpp ${PROJECT_SOURCE_DIR}/app/long_options.cpp
    ${PROJECT_SOURCE_DIR}/app/app_state.cpp
    ${PROJECT_SOURCE_DIR}/app/platform/process_linux.cpp)
  # Whatever the application state holds beyond the command line links in from its own library, where one exists.
  target_link_libraries(command_line_fuzz PRIVATE $<TARGET_NAME_IF_EXISTS:online>)

  lumenscope_fuzz_target(cl_extensions ${fuzz_dir}/cl_extensions_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/compute/opencl_tokeniser.cpp)

  foreach(name gl_extensions display_ids cpuid driver_values amd_sysfs_values amd_gpu_metrics)
    lumenscope_fuzz_target(${name} ${fuzz_dir}/${name}_fuzz.cpp)
    target_link_libraries(${name}_fuzz PRIVATE kalidor)
  endforeach()

  lumenscope_fuzz_target(metrics_request ${fuzz_dir}/metrics_request_fuzz.cpp)
  target_link_libraries(metrics_request_fuzz PRIVATE exporter_parsing)

  lumenscope_fuzz_target(vulkan_answers ${fuzz_dir}/vulkan_answers_fuzz.cpp)
  target_link_libraries(vulkan_answers_fuzz PRIVATE lumenscope_vulkan report)

  foreach(name proc_system pci_scan pci_ids)
    lumenscope_fuzz_target(${name} ${fuzz_dir}/${name}_fuzz.cpp)
    target_link_libraries(${name}_fuzz PRIVATE kalidor fuzz_scratch_root)
  endforeach()
endif()

# What the fuzz targets found, kept as unit tests of the normal and the sanitizer build.
lumenscope_unit_test(unit_fuzz_findings unit/fuzz_findings_test.cpp)
target_link_libraries(unit_fuzz_findings PRIVATE kalidor)
