# Toolchain: 32-bit Windows by MinGW GCC.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR X86)
set(ARD_MINGW i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

# The processor's old floating-point unit rounds differently from the new one, and answers shall not
# depend on the architecture. Its successor needs an aligned stack, which hosts do not promise.
foreach(language C CXX)
  string(APPEND CMAKE_${language}_FLAGS_INIT " -march=pentium4 -mfpmath=sse -mstackrealign")
endforeach()
