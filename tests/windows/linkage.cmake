# SPDX-License-Identifier: MIT
# What the Windows binaries import and export: the system's own libraries and the interpreter, and their entries.
#   cmake -DOBJDUMP=... -DMODULE=_Orvanel.pyd -DCANVAS=OrvanelCanvas.dll -P linkage.cmake

cmake_minimum_required(VERSION 3.25)

set(system advapi32 gdi32 gdiplus kernel32 msvcrt ole32 oleaut32 user32 winmm)

# check(FILE EXPORTS [LIBRARY...]): these libraries too may be imported.
function(check file exports)
    set(allowed ${system} ${ARGN})
    execute_process(COMMAND "${OBJDUMP}" -p "${file}" OUTPUT_VARIABLE dump RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${file} cannot be read")
    endif()
    string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${dump}")
    list(TRANSFORM imports REPLACE "DLL Name: " "")
    message("${file}\n  imports ${imports}")
    if(NOT imports)
        message(FATAL_ERROR "no import was found: the test does not read this objdump")
    endif()
    foreach(import IN LISTS imports)
        string(TOLOWER "${import}" name)
        string(REGEX REPLACE "\\.dll$" "" name "${name}")
        if(NOT name IN_LIST allowed)
            message(FATAL_ERROR "${file} imports ${import}")
        endif()
    endforeach()
    # The last table of the exports, up to an empty line: "[   0] name".
    string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table[^\n]*\n(.*)" table "${dump}")
    string(REGEX REPLACE "\n\n.*" "\n" table "${CMAKE_MATCH_1}")
    string(REGEX MATCHALL "[A-Za-z_][A-Za-z0-9_@?]*\n" found "${table}")
    list(TRANSFORM found STRIP)
    message("  exports ${found}")
    if(NOT "${found}" STREQUAL "${exports}")
        message(FATAL_ERROR "${file} exports ${found} and not ${exports}")
    endif()
endfunction()

check("${MODULE}" "init_Orvanel" python27)
check("${CANVAS}" "DllCanUnloadNow;DllGetClassObject;DllRegisterServer;DllUnregisterServer")
