# ard_warnings(<target>...): compiles the targets' own sources with every useful warning, as errors.
# Applied to each target of the project, not globally, because foreign code is built along with it.
option(ARD_WARNINGS_ARE_ERRORS "Stop at the first warning" ON)

function(ard_warnings)
  foreach(target IN LISTS ARGN)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      # GCC 12 sees overlapping copies in any `literal + std::wstring` (its bug 105651).
      target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    target_compile_options(${target} BEFORE PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
      $<$<BOOL:${ARD_WARNINGS_ARE_ERRORS}>:-Werror>)
  endforeach()
endfunction()
