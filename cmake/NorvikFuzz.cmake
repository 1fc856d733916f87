# Fuzz targets: LLVMFuzzerTestOneInput over a decoder or a parser, each with a corpus in tests/<folder>/corpus/<name>/.
#
# In the preset fuzz (clang) a target becomes a libFuzzer program in build/fuzz/fuzz. In every other preset it becomes a
# test that runs the corpus through the same function once, so that a case once found stays found.

# norvik_add_fuzz_target(NAME SOURCES... LIBRARIES... CORPUS DIRECTORY)
function(norvik_add_fuzz_target name)
    cmake_parse_arguments(ARG "" "CORPUS" "SOURCES;LIBRARIES" ${ARGN})
    cmake_path(ABSOLUTE_PATH ARG_CORPUS BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/fuzz")
    target_link_libraries(${name} PRIVATE norvik_options ${ARG_LIBRARIES})
    if(NORVIK_FUZZ)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/CorpusReplay.cpp")
        add_test(NAME ${name}.corpus COMMAND ${name} "${ARG_CORPUS}")
        set_tests_properties(${name}.corpus PROPERTIES TIMEOUT ${NORVIK_TEST_TIMEOUT}
            ENVIRONMENT "${NORVIK_TEST_ENVIRONMENT}")
    endif()
endfunction()
