# SPDX-License-Identifier: MIT
# Run by cmake --install: copies the libraries that the program and Qt's files load in their turn,
# but for those of Windows. Set before: program, qt_files, library_folders, the folder that the program
# is in and what strips a file.

cmake_minimum_required(VERSION 3.25)

# Also where the folder is made on another system than Windows.
set(CMAKE_GET_RUNTIME_DEPENDENCIES_PLATFORM windows+pe)

file(GET_RUNTIME_DEPENDENCIES
     EXECUTABLES "${program}"
     LIBRARIES ${qt_files}
     DIRECTORIES ${library_folders}
     RESOLVED_DEPENDENCIES_VAR libraries
     UNRESOLVED_DEPENDENCIES_VAR missing
     PRE_EXCLUDE_REGEXES "^api-ms-" "^ext-ms-"
     POST_EXCLUDE_REGEXES "[/\\][Ss][Yy][Ss][Tt][Ee][Mm]32[/\\]")

# On another system Windows' own are missing, and Qt's, whose names are in small letters here.
foreach(file IN LISTS qt_files)
  get_filename_component(name "${file}" NAME)
  string(TOLOWER "${name}" name)
  list(REMOVE_ITEM missing "${name}")
endforeach()
list(FILTER missing INCLUDE REGEX "^(qt5|lib)")
if(missing)
  message(FATAL_ERROR "In none of ${library_folders}: ${missing}")
endif()
set(folder "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${folder}")
foreach(library IN LISTS libraries)
  file(COPY "${library}" DESTINATION "${folder}")
  # Most of MinGW's runtime is for debuggers. Microsoft's compiler comes with nothing to strip.
  if(CMAKE_INSTALL_DO_STRIP AND strip)
    get_filename_component(name "${library}" NAME)
    execute_process(COMMAND "${strip}" "${folder}/${name}" COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
