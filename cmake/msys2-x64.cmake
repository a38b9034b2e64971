# Toolchain: MSYS2's own compiler, in the shell of its architecture.
include(${CMAKE_CURRENT_LIST_DIR}/one_file.cmake)
