# The monitor's lines, the metrics exposition and the shared sample, on hand-made snapshots; the exposition
# is checked by promtool (Debian prometheus).
lumenscope_unit_test(unit_exporter unit/exporter_test.cpp)
target_link_libraries(unit_exporter PRIVATE exporter)
