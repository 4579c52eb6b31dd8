# AMD reader: sysfs parsers, adapter list, naming rules, and whole machines replayed from fixture trees.
lumenscope_unit_test(unit_amd_reader
  unit/amd_sysfs_values_test.cpp
  unit/amd_adapters_test.cpp
  unit/amd_reader_test.cpp
  unit/amd_gpu_metrics_test.cpp
)
target_link_libraries(unit_amd_reader PRIVATE kalidor)
target_compile_definitions(unit_amd_reader PRIVATE SYSFS_FIXTURES="${PROJECT_SOURCE_DIR}/tests/fixtures/sysfs")
