# Unit tests of the GPU identification database and the PCI vendor names (kalidor/gpu_database).
lumenscope_unit_test(unit_gpu_database
  unit/gpu_database_test.cpp
  unit/gpu_naming_test.cpp
  unit/pci_vendor_table_test.cpp
)
target_link_libraries(unit_gpu_database PRIVATE gpu_database)
target_compile_definitions(unit_gpu_database PRIVATE GPU_DB_DIR="${PROJECT_SOURCE_DIR}/tools/gpu_db")
