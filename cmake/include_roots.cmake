# lumenscope_export_folder(<target> <folder>...): the target's users, and the target itself, reach the headers
# of each folder as "<folder>/file.h" and nothing else of the tree. The build links the folder into an include
# root of the target's own, so a target that does not link a layer cannot find that layer's headers.
function(lumenscope_export_folder target)
  set(root ${CMAKE_BINARY_DIR}/include_roots/${target})
  foreach(folder IN LISTS ARGN)
    get_filename_component(parent ${root}/${folder} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    if(NOT EXISTS ${root}/${folder})
      file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
    endif()
  endforeach()
  target_include_directories(${target} PUBLIC ${root})
endfunction()
