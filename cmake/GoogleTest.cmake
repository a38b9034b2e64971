# Builds GoogleTest from the sources of Debian's `googletest`, natively or for Windows, as the targets
# gtest, gtest_main and gmock. Compiled here, it gets the same sanitizers as the code that it tests.
set(ARD_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "GoogleTest's sources")

if(CMAKE_HOST_WIN32)
  # MSYS2's own. Who has not installed it can build all but the tests.
  foreach(part gtest gtest_main gmock)
    add_library(${part} INTERFACE)
    target_link_libraries(${part} INTERFACE -l${part})
  endforeach()
  return()
endif()
if(NOT EXISTS ${ARD_GOOGLETEST_DIR}/googletest/src/gtest-all.cc)
  message(FATAL_ERROR "No GoogleTest in ${ARD_GOOGLETEST_DIR}: run tools/install-packages.sh")
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

function(ard_add_googletest target part source)
  set(dir ${ARD_GOOGLETEST_DIR}/${part})
  add_library(${target} STATIC EXCLUDE_FROM_ALL ${dir}/src/${source})
  target_include_directories(${target} SYSTEM PUBLIC ${dir}/include PRIVATE ${dir})
  target_compile_options(${target} PRIVATE -w)
  target_link_libraries(${target} PUBLIC ${ARGN})
endfunction()

ard_add_googletest(gtest googletest gtest-all.cc Threads::Threads)
ard_add_googletest(gtest_main googletest gtest_main.cc gtest)
ard_add_googletest(gmock googlemock gmock-all.cc gtest)
