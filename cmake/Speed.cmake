# ard_fast(<target> SOURCE...): what every call of a host goes through, of the target's sources. The
# library is built for size, but there speed counts more. To be called last of all that is said of the
# target.
function(ard_fast target)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU"
      OR NOT CMAKE_BUILD_TYPE STREQUAL "MinSizeRel")
    return()
  endif()
  # A target of its own, because sources with options of their own are never compiled together.
  get_target_property(sources ${target} SOURCES)
  list(REMOVE_ITEM sources ${ARGN})
  set_property(TARGET ${target} PROPERTY SOURCES ${sources} $<TARGET_OBJECTS:${target}_fast>)
  add_library(${target}_fast OBJECT ${ARGN})
  foreach(property COMPILE_OPTIONS INCLUDE_DIRECTORIES LINK_LIBRARIES)
    get_target_property(value ${target} ${property})
    if(NOT value MATCHES "NOTFOUND$")
      set_property(TARGET ${target}_fast PROPERTY ${property} ${value})
    endif()
  endforeach()
  # Compiled together they would be too much for the compiler, which then inlines less.
  target_compile_options(${target}_fast PRIVATE -O2 --param=large-unit-insns=1000000)
endfunction()
