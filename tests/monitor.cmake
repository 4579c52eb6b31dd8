# The monitor, --json and --textfile of the built program on fixture machines.
lumenscope_integration_test(integration_monitor integration/monitor_test.cpp)
add_dependencies(integration_monitor lumenscope fake_nvml_full)
target_compile_definitions(integration_monitor PRIVATE
  LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  NVML_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/nvml"
  FAKE_NVML_LIBRARY_DIR="$<TARGET_FILE_DIR:fake_nvml_full>")

# The monitor's CPU time per tick against the bare reads of the same files, on the eight-card machine; a
# benchmark, not a test.
add_executable(bench_monitor_tick bench/monitor_tick_bench.cpp)
target_link_libraries(bench_monitor_tick PRIVATE fixture_library exporter)
target_compile_definitions(bench_monitor_tick PRIVATE NVML_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/nvml")

# --json's printing without a started hardware library.
lumenscope_unit_test(unit_json_report_run unit/json_report_run_test.cpp)
target_link_libraries(unit_json_report_run PRIVATE lumenscope_live)
