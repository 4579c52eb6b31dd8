# The metrics endpoint: its parsers and deadline table on their own; the endpoint as clients see it, through a
# small program serving a fixed exposition; TLS and basic authentication with curl; a real Prometheus server.
find_library(CRYPT_LIBRARY crypt REQUIRED)
find_package(nlohmann_json REQUIRED)

add_executable(fixed_metrics_server metrics_endpoint/fixed_metrics_server.cpp)
target_link_libraries(fixed_metrics_server PRIVATE exporter_server)

lumenscope_unit_test(unit_metrics_request_parsing unit/metrics_request_parsing_test.cpp)
target_link_libraries(unit_metrics_request_parsing PRIVATE exporter_server ${CRYPT_LIBRARY})

foreach(name endpoint tls_auth prometheus_scrape)
  lumenscope_integration_test(integration_metrics_${name} metrics_endpoint/${name}_test.cpp)
  target_link_libraries(integration_metrics_${name} PRIVATE ${CRYPT_LIBRARY} nlohmann_json::nlohmann_json)
  add_dependencies(integration_metrics_${name} fixed_metrics_server)
  target_compile_definitions(integration_metrics_${name} PRIVATE
    FIXED_METRICS_SERVER="$<TARGET_FILE:fixed_metrics_server>")
endforeach()
# Prometheus also scrapes the program itself serving fixture machines, NVIDIA cards through the fake library.
add_dependencies(integration_metrics_prometheus_scrape lumenscope lumenscope_metrics fake_nvml_full)
target_compile_definitions(integration_metrics_prometheus_scrape PRIVATE
  LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>"
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  NVML_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/nvml"
  FAKE_NVML_LIBRARY_DIR="$<TARGET_FILE_DIR:fake_nvml_full>")

# Scrape latency against node_exporter's hwmon collector on a fixture machine; a benchmark, not a test.
add_executable(bench_scrape_latency bench/scrape_latency_bench.cpp)
add_dependencies(bench_scrape_latency fixed_metrics_server)
target_compile_definitions(bench_scrape_latency PRIVATE
  FIXED_METRICS_SERVER="$<TARGET_FILE:fixed_metrics_server>"
  FIXTURE_MACHINES_DIR="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs")
