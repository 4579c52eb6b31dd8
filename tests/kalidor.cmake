lumenscope_unit_test(unit_kalidor
  unit/gpu_list_test.cpp
  unit/kalidor_facade_test.cpp
  unit/kalidor_primary_names_test.cpp
)
target_link_libraries(unit_kalidor PRIVATE kalidor)
