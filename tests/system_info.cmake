# The operating-system facts the library reads from /etc and /proc.
lumenscope_unit_test(unit_system_info unit/os_release_test.cpp)
target_link_libraries(unit_system_info PRIVATE kalidor)
