# SPDX-License-Identifier: MIT
# Writes the open-source acknowledgment as one HTML page:
#   cmake -DOUTPUT=FILE -DLICENSES=FOLDER -DNAME_VERSION=... -P make-acknowledgment.cmake
# It fails when a component is incomplete or names a licence whose text is missing.

cmake_minimum_required(VERSION 3.25)

# Appends to a text that all functions here share.
function(add_html html)
  set_property(GLOBAL APPEND_STRING PROPERTY content "${html}\n")
endfunction()

# The text as it has to stand in HTML.
function(to_html text result)
  string(REPLACE "&" "&amp;" text "${text}")
  string(REPLACE "<" "&lt;" text "${text}")
  string(REPLACE ">" "&gt;" text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# The name by which the reader knows a licence.
function(licence_title id result)
  string(REPLACE "LicenseRef-" "" title "${id}")
  set(${result} "${title}" PARENT_SCOPE)
endfunction()

function(section id title)
  add_html("<h2 id=\"${id}\">${title}</h2>")
endfunction()

function(component name)
  cmake_parse_arguments(part "" "VERSION;PURPOSE;HOME" "COPYRIGHT;LICENCES" ${ARGN})
  if(part_KEYWORDS_MISSING_VALUES OR part_UNPARSED_ARGUMENTS OR NOT part_LICENCES)
    message(FATAL_ERROR "${name} is incomplete: ${part_KEYWORDS_MISSING_VALUES}")
  endif()
  string(STRIP "${name} ${part_VERSION}" title)
  add_html("<h3>${title}</h3>")
  if(part_PURPOSE)
    add_html("<p>${part_PURPOSE}. <a href=\"${part_HOME}\">${part_HOME}</a></p>")
  endif()
  add_html("<ul>")
  foreach(holder IN LISTS part_COPYRIGHT)
    to_html("${holder}" holder)
    add_html("<li>Copyright © ${holder}</li>")
  endforeach()
  foreach(id IN LISTS part_LICENCES)
    licence_title("${id}" title)
    add_html("<li>Licence: <a href=\"#${id}\">${title}</a></li>")
    set_property(GLOBAL APPEND PROPERTY licences "${id}")
  endforeach()
  add_html("</ul>")
endfunction()

function(add_licence_texts)
  section(licences "Licence texts")
  get_property(licences GLOBAL PROPERTY licences)
  list(REMOVE_DUPLICATES licences)
  # The LGPL is a set of additions to the GPL, which therefore has to come with it.
  string(REPLACE "LGPL-3.0-only" "LGPL-3.0-only;GPL-3.0-only" licences "${licences}")
  foreach(id IN LISTS licences)
    licence_title("${id}" title)
    file(READ "${LICENSES}/${id}.txt" text)
    to_html("${text}" text)
    add_html("<h3 id=\"${id}\">${title}</h3>\n<pre>${text}</pre>")
  endforeach()
endfunction()

include("${CMAKE_CURRENT_LIST_DIR}/components.cmake")
add_licence_texts()
get_property(CONTENT GLOBAL PROPERTY content)
file(READ "${CMAKE_CURRENT_LIST_DIR}/page.html.in" page)
string(CONFIGURE "${page}" page @ONLY)
file(WRITE "${OUTPUT}" "${page}")
