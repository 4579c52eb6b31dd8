# A fake libdrm_amdgpu under its soname, asked for AMD memory types.
find_path(LIBDRM_AMDGPU_INCLUDE_DIR NAMES amdgpu.h PATH_SUFFIXES libdrm REQUIRED)
add_library(fake_drm_amdgpu SHARED fakes/drm/fake_drm_amdgpu.cpp)
target_include_directories(fake_drm_amdgpu PRIVATE ${LIBDRM_AMDGPU_INCLUDE_DIR})
set_target_properties(fake_drm_amdgpu PROPERTIES OUTPUT_NAME drm_amdgpu PREFIX lib SUFFIX .so.1
                      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fakes/drm)

# Fixture machines started through the library as a program starts it, with the fake management library, a
# fake libdrm_amdgpu and a fake EGL where a machine needs them.
add_library(fixture_library STATIC support/fixture_library.cpp)
target_link_libraries(fixture_library PUBLIC kalidor)
target_include_directories(fixture_library PUBLIC ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(fixture_library PRIVATE
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs"
  FAKE_EGL_SOFTWARE="$<TARGET_FILE:fake_egl_software>"
  FAKE_NVML_LIBRARY="$<TARGET_FILE:fake_nvml_full>"
  FAKE_DRM_AMDGPU="$<TARGET_FILE:fake_drm_amdgpu>")
add_dependencies(fixture_library fake_egl_software fake_nvml_full fake_drm_amdgpu)

# Golden reports of whole fixture machines: sysfs tree, facade, text, XML and JSON.
add_library(machine_reports STATIC report/machine_reports.cpp)
target_link_libraries(machine_reports PUBLIC fixture_library report_test_fixtures)
target_compile_definitions(machine_reports PRIVATE NVML_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/nvml")

lumenscope_unit_test(unit_machine_golden report/machine_golden_test.cpp report/intel_machine_reports_test.cpp
  report/amd_live_machines_test.cpp)
target_link_libraries(unit_machine_golden PRIVATE machine_reports nlohmann_json::nlohmann_json)
target_compile_definitions(unit_machine_golden PRIVATE
  MACHINE_GOLDEN_DIR="${CMAKE_CURRENT_SOURCE_DIR}/golden/machines"
  SYSFS_FIXTURES="${CMAKE_CURRENT_SOURCE_DIR}/fixtures/sysfs")

# Regenerates tests/golden/machines; only tools/regen_machine_golden.sh runs it.
add_executable(machine_golden_writer report/machine_golden_writer.cpp)
target_link_libraries(machine_golden_writer PRIVATE machine_reports)
