# What the Windows toolchains share. ARD_MINGW is the prefix of the tools; ARD_MINGW_CLANG asks for
# clang in place of GCC.

# The "posix" variant is the one whose standard library has threads.
if(ARD_MINGW_CLANG)
  set(CMAKE_C_COMPILER clang)
  set(CMAKE_CXX_COMPILER clang++)
  set(CMAKE_C_COMPILER_TARGET x86_64-w64-windows-gnu)
  set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-windows-gnu)
else()
  set(CMAKE_C_COMPILER ${ARD_MINGW}-gcc-posix)
  set(CMAKE_CXX_COMPILER ${ARD_MINGW}-g++-posix)
endif()
set(CMAKE_RC_COMPILER ${ARD_MINGW}-windres)

# Clang does not find the headers of a GCC that is named by its thread model, so it is told where they
# are. Linking is left out: clang's idea of such a GCC's libraries is wrong, and only the warnings count.
if(ARD_MINGW_CLANG)
  execute_process(
    COMMAND ${ARD_MINGW}-g++-posix -print-libgcc-file-name
    OUTPUT_VARIABLE ard_gcc_dir OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  get_filename_component(ard_gcc_dir ${ard_gcc_dir} DIRECTORY)
  set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES
    ${ard_gcc_dir}/include/c++ ${ard_gcc_dir}/include/c++/${ARD_MINGW}
    ${ard_gcc_dir}/include/c++/backward)
  set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
  set(ARD_COMPILE_ONLY ON)
endif()

set(CMAKE_FIND_ROOT_PATH /usr/${ARD_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

include(${CMAKE_CURRENT_LIST_DIR}/one_file.cmake)
