# SPDX-License-Identifier: MIT
# What Windows shows of a file, its icon, version and description, and how it treats a program.

enable_language(RC)

# corvane_windows_resource(TARGET DESCRIPTION [ICON]): gives a program or a shared library its
# version resource and its icon, and a program its manifest.
function(corvane_windows_resource target description)
  set(DESCRIPTION "${description}")
  set(ICON "")
  if(ARGC GREATER 2)
    set(ICON "1 ICON \"${ARGV2}\"")
  endif()
  get_target_property(type ${target} TYPE)
  set(FILE_TYPE VFT_DLL)
  set(MANIFEST "")
  if(type STREQUAL EXECUTABLE)
    set(FILE_TYPE VFT_APP)
    set(manifest "${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest")
    if(MSVC) # whose linker adds one
      target_sources(${target} PRIVATE "${manifest}")
    else()
      set(MANIFEST "1 RT_MANIFEST \"${manifest}\"")
    endif()
  endif()
  string(REPLACE "." "," NUMBERS "${PROJECT_VERSION}")
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/windows_resource.rc.in" "${resource}.in" @ONLY)
  file(GENERATE OUTPUT "${resource}" INPUT "${resource}.in" TARGET ${target})
  # A library of its own: the resource compiler does not know the C++ compiler's options.
  add_library(${target}_resource OBJECT "${resource}")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resource>)
endfunction()
