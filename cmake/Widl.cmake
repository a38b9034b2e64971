# Interface definitions.
#
# ard_widl(<target> <idl file> [OUT_DIR <dir>] [DEPENDS <imported idl file>...])
#   From <name>.idl, generates what tools/type_library.py makes of it (<name>.h, <name>_i.c, <name>.tlb,
#   <name>_classes.h, <name>.manifest, <name>.cs, <name>_TLB.pas) in OUT_DIR (default: the current binary
#   folder), and makes <target> a static library of the identifiers. Linking to it gives the headers as
#   system headers. A copy of the manifest lands beside the programs.
#
# ard_embed_typelib(<target> <rc file> <widl target>)
#   Adds the resource script to <target>. It finds the type library and the manifest by their plain file
#   names (`1 TYPELIB "<name>.tlb"`), and is compiled again when they change.

find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(ARD_WIDL NAMES ${ARD_MINGW}-widl x86_64-w64-mingw32-widl widl REQUIRED)

# Debian's MinGW has the headers of the system's interfaces but neither their definitions nor the type
# library that every automation library imports; Wine's packages have both. Host files, hence no find
# root. On Windows the compiler has the definitions, and the system the type library.
find_path(ARD_WIDL_INCLUDE_DIR oaidl.idl
  PATHS ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES} /usr/include/wine/wine/windows /usr/include/wine/windows
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_path(ARD_WIDL_TYPELIB_DIR stdole2.tlb
  PATHS $ENV{SystemRoot}/System32 /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/i386-linux-gnu/wine/i386-windows
        /usr/lib/wine/x86_64-windows
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)
# widl writes down when it was run. On Windows nobody can tell it another time.
find_program(ARD_FAKETIME faketime)
set(ard_dateless)
if(ARD_FAKETIME)
  set(ard_dateless ${ARD_FAKETIME} -f "2000-01-01 00:00:00")
elseif(NOT CMAKE_HOST_WIN32)
  message(FATAL_ERROR "No faketime: run tools/install-packages.sh")
endif()
mark_as_advanced(ARD_FAKETIME ARD_WIDL ARD_WIDL_INCLUDE_DIR ARD_WIDL_TYPELIB_DIR)

function(ard_widl target idl)
  cmake_parse_arguments(arg "" "OUT_DIR" "DEPENDS" ${ARGN})
  if(NOT arg_OUT_DIR)
    set(arg_OUT_DIR ${CMAKE_CURRENT_BINARY_DIR})
  endif()
  cmake_path(ABSOLUTE_PATH idl)
  cmake_path(GET idl STEM name)
  cmake_path(GET idl PARENT_PATH idl_dir)
  set(base ${arg_OUT_DIR}/${name})

  # Pointer size decides the type library's system kind.
  math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
  set(tool ${PROJECT_SOURCE_DIR}/tools/type_library.py)
  set(manifest ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}.manifest)
  file(MAKE_DIRECTORY ${arg_OUT_DIR})
  add_custom_command(
    OUTPUT ${base}.h ${base}_i.c ${base}.tlb ${base}_classes.h ${base}.manifest ${manifest}
           ${base}.cs ${base}_TLB.pas
    COMMAND ${CMAKE_COMMAND} -E env TZ=UTC
            ${Python3_EXECUTABLE} ${tool} ${idl} ${arg_OUT_DIR} ${CMAKE_C_COMPILER}
            ${ard_dateless} ${ARD_WIDL} --win${bits} -I ${idl_dir}
            -I ${ARD_WIDL_INCLUDE_DIR} -L ${ARD_WIDL_TYPELIB_DIR}
    COMMAND ${CMAKE_COMMAND} -E copy ${base}.manifest ${manifest}
    DEPENDS ${tool} ${PROJECT_SOURCE_DIR}/tools/interop.py ${PROJECT_SOURCE_DIR}/tools/published.py
            ${idl} ${arg_DEPENDS}
    COMMENT "Interfaces of ${name}.idl"
    VERBATIM)

  add_library(${target} STATIC ${base}_i.c ${base}.h ${base}_classes.h ${base}.tlb)
  target_include_directories(${target} SYSTEM INTERFACE ${arg_OUT_DIR})
  set_target_properties(${target} PROPERTIES ARD_TYPELIB ${base}.tlb)
endfunction()

function(ard_embed_typelib target rc widl_target)
  get_target_property(typelib ${widl_target} ARD_TYPELIB)
  cmake_path(GET typelib PARENT_PATH typelib_dir)
  target_sources(${target} PRIVATE ${rc})
  add_dependencies(${target} ${widl_target})
  set_property(SOURCE ${rc} APPEND PROPERTY OBJECT_DEPENDS ${typelib})
  set_property(SOURCE ${rc} APPEND PROPERTY INCLUDE_DIRECTORIES ${typelib_dir})
endfunction()
