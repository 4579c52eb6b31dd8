# The online exchange. Its rules and the submission body are unit tests.
lumenscope_unit_test(unit_online
  online/online_rules_test.cpp
  online/submit_body_test.cpp
)
target_link_libraries(unit_online PRIVATE online)
