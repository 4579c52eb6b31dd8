# The service unit passes systemd's own check, installed with the program it starts; the Debian package built
# by cpack holds every installed piece and declares its libraries' packages.
lumenscope_integration_test(integration_packaging integration/packaging_test.cpp)
add_dependencies(integration_packaging lumenscope lumenscope_desktop man_page)
target_compile_definitions(integration_packaging PRIVATE
  CMAKE_COMMAND="${CMAKE_COMMAND}"
  CPACK_COMMAND="${CMAKE_CPACK_COMMAND}"
  BUILD_DIR="${CMAKE_BINARY_DIR}"
  PACKAGE_LIBDIR="${CMAKE_INSTALL_LIBDIR}"
  SERVICE_UNIT="${PROJECT_SOURCE_DIR}/packaging/lumenscope-exporter.service")
