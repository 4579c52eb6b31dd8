# Fake OpenCL and CUDA driver libraries under their exact sonames, in one folder that the compute unit tests
# put first on the library path.
set(compute_fake_dir ${CMAKE_BINARY_DIR}/fakes/compute)
foreach(fake IN ITEMS opencl cuda)
  add_library(fake_${fake} SHARED fakes/compute/fake_${fake}.cpp)
  set_target_properties(fake_${fake} PROPERTIES PREFIX lib SUFFIX .so.1 LIBRARY_OUTPUT_DIRECTORY ${compute_fake_dir})
endforeach()
set_target_properties(fake_opencl PROPERTIES OUTPUT_NAME OpenCL)
set_target_properties(fake_cuda PROPERTIES OUTPUT_NAME cuda)

# Like lumenscope_unit_test, with the fakes on the library path.
add_executable(unit_compute
  unit/compute_test_log.h
  unit/compute_fake_fixtures.h
  unit/opencl_fake_driver_test.cpp
  unit/opencl_driver_faults_test.cpp
  unit/cuda_fake_driver_test.cpp
  unit/cuda_driver_faults_test.cpp
  unit/opencl_tokeniser_test.cpp
  unit/compute_field_rows_test.cpp
)
target_link_libraries(unit_compute PRIVATE compute GTest::gtest_main GTest::gmock)
target_include_directories(unit_compute PRIVATE ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
add_dependencies(unit_compute fake_opencl fake_cuda)
gtest_discover_tests(unit_compute PROPERTIES LABELS unit ENVIRONMENT "LD_LIBRARY_PATH=${compute_fake_dir}"
                     DISCOVERY_TIMEOUT 60)

find_package(OpenCL REQUIRED)
lumenscope_integration_test(integration_compute integration/opencl_pocl_test.cpp)
target_link_libraries(integration_compute PRIVATE compute OpenCL::OpenCL)
target_compile_definitions(integration_compute PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_compute lumenscope)

# Discovery's wall time, measured by a benchmark rather than printed by a test.
find_package(benchmark REQUIRED)
add_executable(bench_opencl_discovery bench/opencl_discovery_bench.cpp)
target_link_libraries(bench_opencl_discovery PRIVATE compute benchmark::benchmark)
target_include_directories(bench_opencl_discovery PRIVATE ${PROJECT_SOURCE_DIR})

# The batch program through every failure mode of the fake drivers (OpenCL, CUDA, the Vulkan loader), under a label of its own: `make test`
# runs it in the sanitizer build too, where any sanitizer report of the program fails it.
find_package(nlohmann_json REQUIRED)
add_executable(fake_driver_batch integration/fake_driver_batch_test.cpp)
target_link_libraries(fake_driver_batch PRIVATE GTest::gtest_main nlohmann_json::nlohmann_json)
target_compile_definitions(fake_driver_batch PRIVATE
  LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
  FAKE_DRIVER_DIR="${compute_fake_dir}"
  FAKE_VULKAN_LIBRARY="$<TARGET_FILE:fake_vulkan>"
  LSAN_SUPPRESSIONS="${CMAKE_CURRENT_SOURCE_DIR}/sanitizers/lsan.supp")
add_dependencies(fake_driver_batch lumenscope fake_opencl fake_cuda fake_vulkan)
gtest_discover_tests(fake_driver_batch PROPERTIES LABELS fake_drivers DISCOVERY_TIMEOUT 60)
