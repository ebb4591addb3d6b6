# SPDX-License-Identifier: MIT
# Python 2.7 as imported targets. scripts/setup/python27.sh lays down what is described here.
#
#   Python27::Headers   headers, SYSTEM (they use `register`, which C++17 removed)
#   Python27::Module    what a loadable module links: the headers, and on Windows the import library. Elsewhere the
#                       interpreter that loads the module supplies the symbols.
#   Python27::Embed     headers and libpython2.7, for programs that start an interpreter of their own. It defines
#                       ORVANEL_PYTHON27_HOME, the text for Py_SetPythonHome. Absent when that Python has no library.
#
# ORVANEL_DEBUG_PYTHON makes all three mean the interpreter with reference counts. PYTHON27_RUN_EXECUTABLE is the interpreter
# that fits; PYTHON27_LIBRARY_PATH, PYTHON27_SITE and PYTHON27_HOME are its LD_LIBRARY_PATH, tqdm's folder and its PYTHONHOME.
# PYTHON27_RUN is the wrapper that needs none of them.

include_guard(GLOBAL)

option(ORVANEL_DEBUG_PYTHON "Use Python's debug build" OFF)
set(ORVANEL_PYTHON27_DIR "${PROJECT_SOURCE_DIR}/build/python27" CACHE PATH "What scripts/setup/python27.sh made")
set(ORVANEL_PYTHON27_WINDOWS_DIR "${PROJECT_SOURCE_DIR}/build/python27-windows" CACHE PATH "What scripts/setup/python27-windows.sh made")

add_library(Python27::Headers INTERFACE IMPORTED GLOBAL)
add_library(Python27::Module INTERFACE IMPORTED GLOBAL)
target_link_libraries(Python27::Module INTERFACE Python27::Headers)

if(CMAKE_SYSTEM_NAME STREQUAL "Windows")
    # Microsoft's linker reads the library of an installed Python, the other one what the set-up script made.
    set(library "${ORVANEL_PYTHON27_WINDOWS_DIR}/libs/libpython27.dll.a")
    if(MSVC)
        set(library "${ORVANEL_PYTHON27_WINDOWS_DIR}/libs/python27.lib")
    endif()
    if(NOT EXISTS "${library}")
        message(FATAL_ERROR "Python 2.7 for Windows is missing: run scripts/setup/python27-windows.sh, or set ORVANEL_PYTHON27_WINDOWS_DIR to an installed one")
    endif()
    target_include_directories(Python27::Headers SYSTEM INTERFACE "${ORVANEL_PYTHON27_WINDOWS_DIR}/include")
    if(NOT MSVC)
        # What pyconfig.h asks of a compiler that is not Microsoft's.
        target_compile_definitions(Python27::Headers INTERFACE MS_WIN64)
    endif()
    target_link_libraries(Python27::Module INTERFACE "${library}")
    # As a Windows program under Wine sees it.
    get_filename_component(home "${ORVANEL_PYTHON27_WINDOWS_DIR}" REALPATH)
    set(PYTHON27_HOME "Z:${home}")
    add_library(Python27::Embed INTERFACE IMPORTED GLOBAL)
    target_link_libraries(Python27::Embed INTERFACE Python27::Module)
    target_compile_definitions(Python27::Embed INTERFACE "ORVANEL_PYTHON27_HOME=\"${PYTHON27_HOME}\"")
    return()
endif()

if(NOT EXISTS "${ORVANEL_PYTHON27_DIR}/python27.cmake")
    message(FATAL_ERROR "Python 2.7 is missing: run scripts/setup/python27.sh (or set ORVANEL_PYTHON27_DIR to a folder it made)")
endif()
include("${ORVANEL_PYTHON27_DIR}/python27.cmake")
set(PYTHON27_LIBRARY_PATH "${ORVANEL_PYTHON27_DIR}/lib")
set(PYTHON27_SITE "${ORVANEL_PYTHON27_DIR}/site")
set(PYTHON27_RUN "${ORVANEL_PYTHON27_DIR}/bin/python2.7")

if(ORVANEL_DEBUG_PYTHON AND NOT PYTHON27_DEBUG_EXECUTABLE)
    message(STATUS "This Python 2.7 has no debug build: the release build stands in, references are not counted")
endif()
if(ORVANEL_DEBUG_PYTHON AND PYTHON27_DEBUG_EXECUTABLE)
    set(PYTHON27_RUN_EXECUTABLE "${PYTHON27_DEBUG_EXECUTABLE}")
    set(include_dirs ${PYTHON27_DEBUG_INCLUDE_DIRS})
    set(library "${PYTHON27_DEBUG_LIBRARY}")
    # Its counting macros hand their bare argument to a C cast, which the compiler lays at our door.
    target_compile_options(Python27::Headers INTERFACE -Wno-old-style-cast)
else()
    set(PYTHON27_RUN_EXECUTABLE "${PYTHON27_EXECUTABLE}")
    set(include_dirs ${PYTHON27_INCLUDE_DIRS})
    set(library "${PYTHON27_LIBRARY}")
endif()

target_include_directories(Python27::Headers SYSTEM INTERFACE ${include_dirs})
if(library)
    add_library(Python27::Embed INTERFACE IMPORTED GLOBAL)
    target_link_libraries(Python27::Embed INTERFACE Python27::Headers "${library}" ${CMAKE_DL_LIBS} util m)
    # The interpreter's own extension modules look its symbols up in the program.
    target_link_options(Python27::Embed INTERFACE "LINKER:--export-dynamic")
    target_compile_definitions(Python27::Embed INTERFACE "ORVANEL_PYTHON27_HOME=\"${PYTHON27_HOME}\"")
endif()
