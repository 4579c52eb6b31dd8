# The install: the media lookup beside an installed binary; what lands under a prefix, checked by the desktop's
# own validators too; the installed program run from there; --help and --version.
lumenscope_unit_test(unit_media_directory unit/media_directory_test.cpp)
target_link_libraries(unit_media_directory PRIVATE demos)
target_compile_definitions(unit_media_directory PRIVATE
  INSTALL_BINDIR="${CMAKE_INSTALL_BINDIR}"
  MEDIA_INSTALL_DIR="${LUMENSCOPE_MEDIA_INSTALL_DIR}"
  SOURCE_MEDIA_DIR="${PROJECT_SOURCE_DIR}/media")

lumenscope_integration_test(integration_help integration/help_test.cpp)
target_link_libraries(integration_help PRIVATE command_line)
add_dependencies(integration_help lumenscope)
target_compile_definitions(integration_help PRIVATE LUMENSCOPE_BINARY="$<TARGET_FILE:lumenscope>")

lumenscope_integration_test(integration_install integration/install_test.cpp)
target_link_libraries(integration_install PRIVATE command_line)
add_dependencies(integration_install lumenscope lumenscope_desktop man_page)
target_compile_definitions(integration_install PRIVATE
  CMAKE_COMMAND="${CMAKE_COMMAND}"
  BUILD_DIR="${CMAKE_BINARY_DIR}"
  INSTALL_BINDIR="${CMAKE_INSTALL_BINDIR}"
  INSTALL_LIBDIR="${CMAKE_INSTALL_LIBDIR}"
  INSTALL_DATADIR="${CMAKE_INSTALL_DATADIR}"
  INSTALL_MANDIR="${CMAKE_INSTALL_MANDIR}"
  MEDIA_INSTALL_DIR="${LUMENSCOPE_MEDIA_INSTALL_DIR}"
  PACKAGING_DIR="${PROJECT_SOURCE_DIR}/packaging"
  SOURCE_MEDIA_DIR="${PROJECT_SOURCE_DIR}/media")
