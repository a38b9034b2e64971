# ard_warnings(<target>...): compiles the targets' own sources with every useful warning, as errors.
# Applied to each target of the project, not globally, because foreign code is built along with it.
function(ard_warnings)
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  endforeach()
endfunction()
