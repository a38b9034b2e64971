# Settings of the whole build: language, output folders, compiler cache, sanitizers. To be included
# by the root, after project().

option(ARD_SANITIZE "Stop at the first address or undefined-behaviour error" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# A DLL counts as a runtime file: it lands beside the programs that load it.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

find_program(ARD_CCACHE ccache)
mark_as_advanced(ARD_CCACHE)
if(ARD_CCACHE)
  foreach(language C CXX)
    if(NOT DEFINED CMAKE_${language}_COMPILER_LAUNCHER)
      set(CMAKE_${language}_COMPILER_LAUNCHER ${ARD_CCACHE})
    endif()
  endforeach()
endif()

# For benchmarks/, which lays the functions out in several ways: those begin where a line of the
# processor's cache does, which leaves less to chance.
if(NOT WIN32 AND CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_options(-ffunction-sections -falign-functions=64)
endif()

if(ARD_SANITIZE)
  set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all)
  add_compile_options(${sanitize} -fno-omit-frame-pointer)
  add_link_options(${sanitize})
endif()

# What a fuzzer runs is watched for the branches it takes.
option(ARD_FUZZ "Build the fuzzers (fuzzers/), by clang" OFF)
if(ARD_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  # Windows 7 is the oldest system addressed.
  add_compile_definitions(UNICODE _UNICODE NOMINMAX _WIN32_WINNT=0x0601)
  # GCC 12 takes calls of objects in unnamed namespaces for ones that cannot happen, and leaves out
  # what follows, when it looks for the only function that such a call may mean.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fno-devirtualize)
  endif()

  # The system chooses where an image is loaded, its data is no code, and a function whose stack has
  # been written over ends the process. 32-bit images have no structured exception handlers.
  add_compile_options(-fstack-protector-strong)
  add_link_options(-fstack-protector-strong -Wl,--dynamicbase,--nxcompat
    $<IF:$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>,-Wl$<COMMA>--high-entropy-va,-Wl$<COMMA>--no-seh>)

  # Lines for addresses, and nothing of when or where they were compiled: paths begin at the root, or
  # at the folder of the build, in which a compiler cache may make them relative.
  file(RELATIVE_PATH to_root ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
  add_compile_options(-g1 -gno-column-info
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${to_root}=
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}/=)
  add_link_options(-Wl,--no-insert-timestamp)
endif()

# A toolchain may serve for its warnings alone: then programs and DLLs are empty files.
if(ARD_COMPILE_ONLY)
  foreach(language C CXX)
    set(CMAKE_${language}_LINK_EXECUTABLE "<CMAKE_COMMAND> -E touch <TARGET>")
    set(CMAKE_${language}_CREATE_SHARED_LIBRARY "<CMAKE_COMMAND> -E touch <TARGET> <TARGET_IMPLIB>")
    set(CMAKE_${language}_CREATE_SHARED_MODULE "${CMAKE_${language}_CREATE_SHARED_LIBRARY}")
  endforeach()
endif()
