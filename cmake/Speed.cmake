# ard_fast(SOURCE...): what every call of a host goes through. The library is built for size, but
# there speed counts more. The 32-bit library stays small: it has no room left.
function(ard_fast)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR CMAKE_SIZEOF_VOID_P EQUAL 4)
    return()
  endif()
  set_property(SOURCE ${ARGN} APPEND PROPERTY
    COMPILE_OPTIONS $<$<CONFIG:MinSizeRel>:-O2>)
endfunction()
