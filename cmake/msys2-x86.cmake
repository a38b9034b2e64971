# Toolchain: MSYS2's own compiler, in the shell of its architecture.
set(ARD_X86 ON)
include(${CMAKE_CURRENT_LIST_DIR}/one_file.cmake)
