find_package(nlohmann_json REQUIRED)

add_library(report_test_fixtures STATIC report/report_fixtures.cpp report/rendered_report.cpp)
target_link_libraries(report_test_fixtures PUBLIC report)
target_include_directories(report_test_fixtures PUBLIC ${PROJECT_SOURCE_DIR})

# Regenerates tests/golden/report; only tools/regen_report_golden.sh runs it.
add_executable(report_golden_writer report/golden_writer.cpp)
target_link_libraries(report_golden_writer PRIVATE report_test_fixtures)

lumenscope_unit_test(unit_report
  report/report_golden_test.cpp
  report/report_document_test.cpp
  report/json_report_test.cpp
  report/xml_text_test.cpp
  report/report_file_test.cpp
  report/report_of_bare_machine_test.cpp
  report/report_compute_test.cpp
  report/report_vulkan_test.cpp
  report/report_vulkan_fake_loader_test.cpp
)
target_link_libraries(unit_report PRIVATE report_test_fixtures nlohmann_json::nlohmann_json)
add_dependencies(unit_report fake_vulkan)
target_compile_definitions(unit_report PRIVATE
  FAKE_VULKAN_LIBRARY="$<TARGET_FILE:fake_vulkan>"
  REPORT_GOLDEN_DIR="${PROJECT_SOURCE_DIR}/tests/golden/report"
  SYSFS_FIXTURES="${PROJECT_SOURCE_DIR}/tests/fixtures/sysfs")

# XML reports parsed by an independent reader.
find_program(XMLLINT_PROGRAM xmllint)
lumenscope_integration_test(integration_report_xml report/report_xml_wellformed_test.cpp)
target_link_libraries(integration_report_xml PRIVATE report_test_fixtures)
target_compile_definitions(integration_report_xml PRIVATE XMLLINT_BINARY="${XMLLINT_PROGRAM}")

lumenscope_integration_test(integration_batch_reports report/batch_reports_test.cpp)
target_link_libraries(integration_batch_reports PRIVATE nlohmann_json::nlohmann_json)
target_compile_definitions(integration_batch_reports PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_batch_reports lumenscope)
