# SPDX-License-Identifier: MIT
# A fuzzer is one LLVMFuzzerTestOneInput and a folder of inputs that are kept. The fuzz preset links it with libFuzzer;
# every other configuration links it with a main that replays the inputs, as one more test.

include_guard(GLOBAL)

# orvanel_add_fuzzer(NAME SOURCES file... LIBS target... CORPUS folder)
function(orvanel_add_fuzzer name)
    cmake_parse_arguments(FUZZER "" "CORPUS" "SOURCES;LIBS" ${ARGN})
    get_filename_component(corpus "${FUZZER_CORPUS}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    if(ORVANEL_FUZZ)
        add_executable(fuzz_${name} ${FUZZER_SOURCES})
        target_link_libraries(fuzz_${name} PRIVATE orvanel_options ${FUZZER_LIBS})
        target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    elseif(BUILD_TESTING)
        add_executable(fuzz_${name} ${FUZZER_SOURCES} "${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp")
        target_link_libraries(fuzz_${name} PRIVATE orvanel_options ${FUZZER_LIBS})
        add_test(NAME fuzz_${name}.replay COMMAND fuzz_${name} "${corpus}")
        set_tests_properties(fuzz_${name}.replay PROPERTIES TIMEOUT ${ORVANEL_TEST_TIMEOUT} LABELS fuzz ENVIRONMENT "${ORVANEL_SANITIZER_ENVIRONMENT}")
    endif()
endfunction()
