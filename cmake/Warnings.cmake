# Compiler settings for our own targets; users of the library do not get them.
function(lomlisp_warnings target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  if(MSVC)
    target_compile_options(${target} PRIVATE /utf-8 /W4 /permissive-)
    if(LOMLISP_WERROR)
      target_compile_options(${target} PRIVATE /WX)
    endif()
    return()
  endif()
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wformat=2)
  # GCC takes the texts of a std::variant that is moved for uninitialised; the sanitizers see what is.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
  endif()
  if(LOMLISP_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(LOMLISP_SANITIZE)
    target_compile_definitions(${target} PUBLIC LOMLISP_SANITIZED)
    target_compile_options(${target} PUBLIC -fsanitize=address,undefined -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    # A third of what GCC takes for its checks; Clang has these of the same code.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PUBLIC -fno-sanitize=null,alignment,vptr,object-size)
    endif()
  endif()
endfunction()

# The fuzzer sees which ways an input goes through this target.
function(lomlisp_fuzzed target)
  if(LOMLISP_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()
