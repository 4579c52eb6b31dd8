# The online exchange. Its rules and the submission body are unit tests; the exchange with
# tools/validation_server.py, the update thread and the program's shutdown under it are integration tests.
lumenscope_unit_test(unit_online
  online/online_rules_test.cpp
  online/submit_body_test.cpp
  online/submission_facts_from_snapshot_test.cpp
)
target_link_libraries(unit_online PRIVATE online)

find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_package(nlohmann_json REQUIRED)
lumenscope_integration_test(integration_online
  online/online_exchange_test.cpp
  online/update_thread_test.cpp
  online/submission_roundtrip_test.cpp
)
target_link_libraries(integration_online PRIVATE online applog nlohmann_json::nlohmann_json)
add_dependencies(integration_online lumenscope fake_nvml_full fake_opencl)
target_compile_definitions(integration_online PRIVATE
  PYTHON3_EXECUTABLE="${Python3_EXECUTABLE}"
  VALIDATION_SERVER_SCRIPT="${PROJECT_SOURCE_DIR}/tools/validation_server.py"
  LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  FAKE_NVML_DIR="${CMAKE_CURRENT_BINARY_DIR}/fakes"
  FAKE_OPENCL_LIBRARY="$<TARGET_FILE:fake_opencl>"
  ONLINE_GOLDEN_DIR="${CMAKE_CURRENT_SOURCE_DIR}/golden/online")

# The reply parsers under libFuzzer, once the build knows fuzz targets.
if(COMMAND lumenscope_fuzz_target)
  lumenscope_fuzz_target(online_reply
    ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/online_reply_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/report/online/reply_parsers.cpp
    ${PROJECT_SOURCE_DIR}/report/online/online_hosts.cpp
    ${PROJECT_SOURCE_DIR}/report/online/text_filters.cpp)
endif()
