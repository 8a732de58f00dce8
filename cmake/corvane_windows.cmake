# SPDX-License-Identifier: MIT
# What Windows shows of a file: its icon, version and description.

enable_language(RC)

# corvane_windows_resource(TARGET DESCRIPTION [ICON]): gives a program or a shared library its
# version resource, and its icon.
function(corvane_windows_resource target description)
  set(DESCRIPTION "${description}")
  set(ICON "")
  if(ARGC GREATER 2)
    set(ICON "1 ICON \"${ARGV2}\"")
  endif()
  get_target_property(type ${target} TYPE)
  set(FILE_TYPE VFT_APP)
  if(type STREQUAL SHARED_LIBRARY)
    set(FILE_TYPE VFT_DLL)
  endif()
  string(REPLACE "." "," NUMBERS "${PROJECT_VERSION}")
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/windows_resource.rc.in" "${resource}.in" @ONLY)
  file(GENERATE OUTPUT "${resource}" INPUT "${resource}.in" TARGET ${target})
  # A library of its own: the resource compiler does not know the C++ compiler's options.
  add_library(${target}_resource OBJECT "${resource}")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resource>)
endfunction()
