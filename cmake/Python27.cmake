# SPDX-License-Identifier: MIT
# Python 2.7 as imported targets. scripts/setup/python27.sh lays down what is described here.
#
#   Python27::Headers       headers of the release build, SYSTEM (they use `register`, which C++17 removed). An extension
#                           module links this alone: the interpreter that loads it supplies the symbols.
#   Python27::Embed         the same and libpython2.7, for programs that start an interpreter of their own
#   Python27::DebugHeaders  as above for the interpreter with reference counts (python2.7-dbg)
#   Python27::DebugEmbed
#   Python27::Module        what a loadable module links: the headers, and on Windows the import library
#
# PYTHON27_EXECUTABLE / PYTHON27_DEBUG_EXECUTABLE are the interpreters themselves, PYTHON27_RUN / PYTHON27_DEBUG_RUN the
# wrappers that find tqdm and their libraries. An embedding program sets PYTHONHOME to PYTHON27_HOME.

include_guard(GLOBAL)

set(ORVANEL_PYTHON27_DIR "${PROJECT_SOURCE_DIR}/build/python27" CACHE PATH "What scripts/setup/python27.sh made")

function(_orvanel_python27_headers target)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${ARGN})
endfunction()

function(_orvanel_python27_embed target headers library)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_link_libraries(${target} INTERFACE ${headers} "${library}" ${CMAKE_DL_LIBS} util m)
    target_link_options(${target} INTERFACE "LINKER:--export-dynamic")
    target_compile_definitions(${target} INTERFACE "ORVANEL_PYTHON27_HOME=\"${PYTHON27_HOME}\"")
endfunction()

if(CMAKE_SYSTEM_NAME STREQUAL "Windows")
    include("${CMAKE_CURRENT_LIST_DIR}/Python27Windows.cmake")
    return()
endif()

if(NOT EXISTS "${ORVANEL_PYTHON27_DIR}/python27.cmake")
    message(FATAL_ERROR "Python 2.7 is missing: run scripts/setup/python27.sh (or set ORVANEL_PYTHON27_DIR to a folder it made)")
endif()
include("${ORVANEL_PYTHON27_DIR}/python27.cmake")

set(PYTHON27_RUN "${ORVANEL_PYTHON27_DIR}/bin/python2.7")
_orvanel_python27_headers(Python27::Headers ${PYTHON27_INCLUDE_DIRS})
add_library(Python27::Module INTERFACE IMPORTED GLOBAL)
target_link_libraries(Python27::Module INTERFACE Python27::Headers)
if(PYTHON27_LIBRARY)
    _orvanel_python27_embed(Python27::Embed Python27::Headers "${PYTHON27_LIBRARY}")
endif()

if(PYTHON27_DEBUG_EXECUTABLE)
    set(PYTHON27_DEBUG_RUN "${ORVANEL_PYTHON27_DIR}/bin/python2.7-dbg")
    _orvanel_python27_headers(Python27::DebugHeaders ${PYTHON27_DEBUG_INCLUDE_DIRS})
    if(PYTHON27_DEBUG_LIBRARY)
        _orvanel_python27_embed(Python27::DebugEmbed Python27::DebugHeaders "${PYTHON27_DEBUG_LIBRARY}")
    endif()
endif()
