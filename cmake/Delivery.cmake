# What is handed out for Windows: the same bytes from every build of the same sources.
#
# ard_deliver(<target> <description>)
#   Gives a program or DLL its version resource, and leaves it without symbols. They are beside it, in
#   <file>.debug; tools/crash_line.sh turns an address into a line with them.
#
# ard_automation_server(<target> <description>)
#   The same for a DLL that registers itself.
if(NOT WIN32)
  return()
endif()
enable_language(RC)

function(ard_deliver target description)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(file_type VFT_APP)
    set(suffix .exe)
  else()
    set(file_type VFT_DLL)
    set(suffix .dll)
    set(self_register "      VALUE \"OLESelfRegister\", \"\"\n")
  endif()
  set(version ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${version} @ONLY)
  target_sources(${target} PRIVATE ${version})
  if(NOT ARD_COMPILE_ONLY)
    set(file $<TARGET_FILE:${target}>)
    set(dateless ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${dateless} ${CMAKE_OBJCOPY} --only-keep-debug ${file} ${file}.debug
      COMMAND ${dateless} ${CMAKE_STRIP} ${file}
      COMMAND ${dateless} ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file}.debug ${file}
      VERBATIM)
  endif()
endfunction()

function(ard_automation_server target description)
  set_target_properties(${target} PROPERTIES PREFIX "")
  # The exports are stdcall functions under their plain names.
  target_link_options(${target} PRIVATE -Wl,--enable-stdcall-fixup)
  target_link_libraries(${target} PRIVATE ard_own_runtime)
  ard_deliver(${target} ${description})
endfunction()
