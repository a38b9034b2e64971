# Toolchain: 32-bit Windows by MinGW GCC.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR X86)
set(ARD_MINGW i686-w64-mingw32)
set(ARD_X86 ON)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
