# Most of what a compiler does for a file is reading headers and making the same templates once more, under
# the sanitizers above all. With LOMLISP_UNITY the files of a folder are compiled as one, so the names in
# their anonymous namespaces must differ. Without it each file is compiled alone, which shows whether it
# includes what it needs.
# OTHERS compiles those of the library alone.
set(LOMLISP_UNITY OFF CACHE STRING "Compile the files of a folder as one: OFF, ON, ALL, or OTHERS")

# Further arguments are folders whose files stay alone, unless LOMLISP_UNITY is ALL.
function(lomlisp_unity target)
  if(NOT LOMLISP_UNITY)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    cmake_path(GET source PARENT_PATH folder)
    cmake_path(GET folder FILENAME folder)
    if(NOT folder)
      set(folder top)
    endif()
    if(folder IN_LIST ARGN AND NOT LOMLISP_UNITY STREQUAL "ALL")
      set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    else()
      set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${folder}")
    endif()
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  # GCC takes the files that are included for headers, where types of anonymous namespaces differ each time.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()
