# SPDX-License-Identifier: MIT
# Toolchain file: compiles on Linux for Windows, with Debian's MinGW-w64. CORVANE_MINGW_PROCESSOR is
# x86_64 (the default) or i686.

set(CORVANE_MINGW_PROCESSOR "x86_64" CACHE STRING "Processor of the Windows machine")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVANE_MINGW_PROCESSOR)
set(triplet "${CORVANE_MINGW_PROCESSOR}-w64-mingw32")

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR "${CORVANE_MINGW_PROCESSOR}")
# The other variant of the compiler has no std::thread.
set(CMAKE_CXX_COMPILER "${triplet}-g++-posix")
set(CMAKE_RC_COMPILER "${triplet}-windres")

# The header-only libraries of the host are good for Windows too, but not what lies beside them in
# its include folder: hence a folder that holds nothing else.
set(header_only "${CMAKE_BINARY_DIR}/header_only")
get_property(trying GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT trying)
  file(MAKE_DIRECTORY "${header_only}/include")
  foreach(library IN ITEMS nlohmann CLI)
    file(CREATE_LINK "/usr/include/${library}" "${header_only}/include/${library}" SYMBOLIC)
  endforeach()
  # Copied, since a package finds its headers by where it lies itself.
  file(COPY /usr/share/cmake/nlohmann_json /usr/share/cmake/CLI11
       DESTINATION "${header_only}/share/cmake")
endif()

cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH root)
set(CMAKE_FIND_ROOT_PATH "/usr/${triplet}" "${header_only}"
                         "${root}/build/qt-windows/installed")
set(CMAKE_CROSSCOMPILING_EMULATOR "${root}/scripts/run-under-wine")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
