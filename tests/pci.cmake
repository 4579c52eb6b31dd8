# The PCI access layer: address and sysfs parsers, one scan of the device directory, driver facts.
add_library(sysfs_tree STATIC support/sysfs_tree.cpp)
target_include_directories(sysfs_tree PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})

lumenscope_unit_test(unit_pci
  unit/sysfs_values_test.cpp
  unit/pci_bus_test.cpp
)
target_link_libraries(unit_pci PRIVATE kalidor sysfs_tree)
target_compile_definitions(unit_pci PRIVATE SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs")
