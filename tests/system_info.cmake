# The operating-system facts the library reads from /etc and /proc.
lumenscope_unit_test(unit_system_info unit/os_release_test.cpp)
target_link_libraries(unit_system_info PRIVATE kalidor)

# The CPU clock measurement beside the one-second count it replaced; a benchmark, not a test.
add_executable(bench_cpu_clock bench/cpu_clock_bench.cpp)
target_link_libraries(bench_cpu_clock PRIVATE kalidor)
target_include_directories(bench_cpu_clock PRIVATE ${PROJECT_SOURCE_DIR})
