# The layers of ARCHITECTURE.md hold: every #include of the program's sources names one file from the source
# root and follows an allowed edge (tools/check_layers.py), and the checker itself reports the faults it must.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_test(NAME check_layers COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/check_layers.py ${PROJECT_SOURCE_DIR})
add_test(NAME check_layers_rules COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/check_layers.py --self-check)
set_tests_properties(check_layers check_layers_rules PROPERTIES LABELS layers)
