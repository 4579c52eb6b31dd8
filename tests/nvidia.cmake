# The NVIDIA reader against a fake management library, built three ways into directories of their own so that
# each holds a file named as the real library is.
foreach(variant full legacy broken)
  add_library(fake_nvml_${variant} SHARED fakes/nvml/fake_nvml.cpp)
  target_include_directories(fake_nvml_${variant} PRIVATE ${PROJECT_SOURCE_DIR}/kalidor)
  set_target_properties(fake_nvml_${variant} PROPERTIES
    PREFIX "lib" OUTPUT_NAME "nvidia-ml" SUFFIX ".so.1"
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/fakes/nvml_${variant})
endforeach()
target_compile_definitions(fake_nvml_legacy PRIVATE FAKE_NVML_LEGACY)
target_compile_definitions(fake_nvml_broken PRIVATE FAKE_NVML_BROKEN)

lumenscope_unit_test(unit_nvidia
  unit/nvidia_reader_test.cpp
  unit/nvidia_facade_test.cpp
)
target_link_libraries(unit_nvidia PRIVATE kalidor)
add_dependencies(unit_nvidia fake_nvml_full fake_nvml_legacy fake_nvml_broken)
target_compile_definitions(unit_nvidia PRIVATE FAKE_NVML_DIR="${CMAKE_CURRENT_BINARY_DIR}/fakes")
