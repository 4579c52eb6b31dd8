lumenscope_unit_test(unit_app
  unit/app_log_test.cpp
  unit/command_line_test.cpp
  unit/gl_interop_warning_test.cpp
  unit/message_boxes_test.cpp
)
target_link_libraries(unit_app PRIVATE lumenscope_app)

lumenscope_integration_test(integration_spine integration/spine_test.cpp)
target_compile_definitions(integration_spine PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")
add_dependencies(integration_spine lumenscope)
