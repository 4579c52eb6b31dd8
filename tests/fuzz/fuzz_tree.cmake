# The fuzz tree: a build of its own, with clang, in which every library is compiled with libFuzzer's coverage
# hooks, AddressSanitizer and UBSan, and only the fuzz targets and what they link are built by default.
#   CC=clang-15 CXX=clang++-15 cmake -S . -B build-fuzz -DLUMENSCOPE_FUZZ=ON
# A component registers a target wherever it keeps its tests, guarded so the normal build skips it:
#   if(COMMAND lumenscope_fuzz_target)
#     lumenscope_fuzz_target(<name> <sources>...)
#   endif()
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "The fuzz tree needs clang and libFuzzer: configure it with CC=clang-15 CXX=clang++-15")
endif()

add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
                    -fno-omit-frame-pointer)
add_link_options(-fsanitize=address,undefined)

set(LUMENSCOPE_FUZZ_SECONDS 30 CACHE STRING "How long the test run of each fuzz target lasts, in seconds")
set(LUMENSCOPE_FUZZ_CORPUS_DIR ${CMAKE_CURRENT_LIST_DIR}/corpus)

# Builds <name>_fuzz from the sources (a file defining LLVMFuzzerTestOneInput and what it exercises) into
# <build>/fuzz, and adds the test fuzz_<name>, label "fuzz", which runs it for LUMENSCOPE_FUZZ_SECONDS.
# The committed inputs in tests/fuzz/corpus/<name> are read, never written: what the run finds goes to
# <build>/fuzz-corpus/<name>, and an input that fails goes to <build>/fuzz-crashes with the name in front.
function(lumenscope_fuzz_target name)
  set(target ${name}_fuzz)
  add_executable(${target} ${ARGN})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  # Sources compiled in here read the version and the log sink of the bottom layer.
  target_link_libraries(${target} PRIVATE base)
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz
                                             LUMENSCOPE_FUZZ_TARGET ON)

  set(found ${CMAKE_BINARY_DIR}/fuzz-corpus/${name})
  file(MAKE_DIRECTORY ${found} ${CMAKE_BINARY_DIR}/fuzz-crashes)
  set(corpus ${found})
  if(IS_DIRECTORY ${LUMENSCOPE_FUZZ_CORPUS_DIR}/${name})
    list(APPEND corpus ${LUMENSCOPE_FUZZ_CORPUS_DIR}/${name})
  endif()
  add_test(NAME fuzz_${name}
           COMMAND ${target} -max_total_time=${LUMENSCOPE_FUZZ_SECONDS} -timeout=20 -rss_limit_mb=2048
                   -print_final_stats=1 -artifact_prefix=${CMAKE_BINARY_DIR}/fuzz-crashes/${name}- ${corpus})
  math(EXPR limit "${LUMENSCOPE_FUZZ_SECONDS} + 300")
  set_tests_properties(fuzz_${name} PROPERTIES LABELS fuzz TIMEOUT ${limit})
endfunction()

# Every other target of the tree stays out of the default build; the fuzz targets pull in the libraries they
# link. Runs once the whole tree is read, so it sees targets added after this file.
function(lumenscope_fuzz_targets_only dir)
  get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(fuzz ${target} LUMENSCOPE_FUZZ_TARGET)
    if(NOT fuzz)
      set_property(TARGET ${target} PROPERTY EXCLUDE_FROM_ALL ON)
    endif()
  endforeach()
  get_property(subdirectories DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  foreach(subdirectory IN LISTS subdirectories)
    lumenscope_fuzz_targets_only(${subdirectory})
  endforeach()
endfunction()
cmake_language(DEFER CALL lumenscope_fuzz_targets_only ${CMAKE_CURRENT_SOURCE_DIR})
