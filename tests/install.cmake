# --help and --version, answered by the built program.
lumenscope_integration_test(integration_help integration/help_test.cpp)
target_link_libraries(integration_help PRIVATE command_line)
add_dependencies(integration_help lumenscope)
target_compile_definitions(integration_help PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
