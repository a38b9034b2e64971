# Toolchain: clang for 64-bit Windows, with the headers, libraries and linker of MinGW GCC. A second
# opinion on the code; what it builds is not delivered.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(ARD_MINGW x86_64-w64-mingw32)
set(ARD_MINGW_CLANG ON)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
