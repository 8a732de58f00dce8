# SPDX-License-Identifier: MIT
# What every target of the project shares: language level, warnings, sanitizers.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CORVANE_CCACHE ccache)
if(CORVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CORVANE_CCACHE}")
endif()

add_library(corvane_options INTERFACE)
target_include_directories(corvane_options INTERFACE "${PROJECT_SOURCE_DIR}")
if(MSVC)
  target_compile_options(corvane_options INTERFACE /W4 /utf-8 $<$<BOOL:${CORVANE_WERROR}>:/WX>)
else()
  target_compile_options(
    corvane_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                              $<$<BOOL:${CORVANE_WERROR}>:-Werror>)
endif()
if(CORVANE_SANITIZE)
  target_compile_options(corvane_options INTERFACE -fsanitize=${CORVANE_SANITIZE}
                                                   -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(corvane_options INTERFACE -fsanitize=${CORVANE_SANITIZE})
endif()

# corvane_library(NAME SOURCES... ): one static library of a folder.
function(corvane_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC corvane_options)
endfunction()

# corvane_qt_library(NAME SOURCES... ): the same with Qt's meta-object compiler,
# and without Qt's implicit narrow-string conversions.
function(corvane_qt_library name)
  corvane_library(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
endfunction()
