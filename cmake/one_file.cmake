# How MinGW GCC and clang compile and link for Windows, wherever they run. ARD_X86 is for 32 bits.

# One file runs on any Windows: the compiler's own libraries are linked in, unused parts and symbols
# are left out.
set(CMAKE_C_FLAGS_INIT "-ffunction-sections -fdata-sections")
set(CMAKE_CXX_FLAGS_INIT "-ffunction-sections -fdata-sections")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
  set(CMAKE_${kind}_LINKER_FLAGS_RELEASE_INIT "-s")
endforeach()

if(ARD_X86)
  # The processor's old floating-point unit rounds differently from the new one, and answers shall not
  # depend on the architecture. Its successor needs an aligned stack, which hosts do not promise.
  foreach(language C CXX)
    string(APPEND CMAKE_${language}_FLAGS_INIT " -march=pentium4 -mtune=generic -mfpmath=sse -mstackrealign")
  endforeach()
endif()
