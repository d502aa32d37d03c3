# Client modules, and programs that load them.

# A client module: a shared object from sources that bring acrxEntryPoint. The library must be there once, so
# for the embedded host a module links the shared library; where that is an archive, the module gets headers
# alone, and finds the library and the platform functions in the program that loads it, which Windows cannot.
# For the real host it gets a library of its own.
function(lomlisp_add_module name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES PREFIX "")
  target_compile_features(${name} PRIVATE cxx_std_20)
  if(LOMLISP_HOST_SDK)
    target_link_libraries(${name} PRIVATE lomlisp::lomlisp)
    if(LOMLISP_MODULE_SUFFIX)
      set_target_properties(${name} PROPERTIES SUFFIX "${LOMLISP_MODULE_SUFFIX}")
    endif()
    if(MSVC)
      target_link_options(${name} PRIVATE /EXPORT:acrxEntryPoint,PRIVATE /EXPORT:acrxGetApiVersion,PRIVATE)
    endif()
    return()
  endif()
  if(BUILD_SHARED_LIBS)
    target_link_libraries(${name} PRIVATE lomlisp::embedded)
    if(MSVC)
      target_link_options(${name} PRIVATE /EXPORT:acrxEntryPoint,PRIVATE)
    endif()
    return()
  endif()
  if(WIN32)
    message(FATAL_ERROR "On Windows a module needs the shared library: BUILD_SHARED_LIBS")
  endif()
  foreach(what INCLUDE_DIRECTORIES COMPILE_DEFINITIONS COMPILE_OPTIONS LINK_OPTIONS)
    set_property(TARGET ${name} APPEND PROPERTY ${what} $<TARGET_PROPERTY:lomlisp,INTERFACE_${what}>)
  endforeach()
  # The program's functions must not take the place of those that the module has under the same names.
  if(NOT APPLE)
    target_link_options(${name} PRIVATE LINKER:-Bsymbolic-functions)
  endif()
  lomlisp_module_code(${name})
endfunction()

# How the code of a module is compiled, also where an archive has it for one.
function(lomlisp_module_code name)
  # A unique symbol would keep the module in the process for ever, with its static objects.
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
endfunction()

# Makes a program one that can load modules: of archives, all of the library and of the embedded host is in
# it, where modules find it. Archives that it links besides may need the library too; they find it there as well.
function(lomlisp_host_program target)
  if(BUILD_SHARED_LIBS)
    target_link_libraries(${target} PRIVATE lomlisp::embedded)
    return()
  endif()
  set_target_properties(${target} PROPERTIES ENABLE_EXPORTS ON)
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:lomlisp> $<TARGET_OBJECTS:lomlisp_embedded>)
  target_link_libraries(${target} PRIVATE lomlisp::embedded)
endfunction()
