# The start-up log's GPU block for a machine whose NVIDIA GPUs the fake management library serves.
lumenscope_integration_test(integration_nvidia_log integration/nvidia_log_test.cpp)
add_dependencies(integration_nvidia_log lumenscope fake_nvml_full)
target_compile_definitions(integration_nvidia_log PRIVATE
  LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
  FAKE_NVML_LIBRARY_DIR="$<TARGET_FILE_DIR:fake_nvml_full>")
