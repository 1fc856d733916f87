# How tests are made and run: CTest knows every GoogleTest test by its own name and every Qt Test program by its program's.

find_package(GTest REQUIRED)
include(GoogleTest)

set(NORVIK_TEST_TIMEOUT 120)
set(NORVIK_TEST_ENVIRONMENT
    "QT_QPA_PLATFORM=offscreen"
    "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1"
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
    "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:second_deadlock_stack=1"
    "UBSAN_OPTIONS=print_stacktrace=1")

function(_norvik_test_program name)
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
    target_link_libraries(${name} PRIVATE norvik_options ${ARG_LIBRARIES})
    if(ARG_NEEDS)
        add_dependencies(${name} ${ARG_NEEDS})
    endif()
endfunction()

# norvik_add_test(NAME SOURCES... LIBRARIES... [NEEDS TARGETS...]): a GoogleTest program with a main of GoogleMock's.
# NEEDS names what the tests start or load without linking it.
function(norvik_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;NEEDS" ${ARGN})
    _norvik_test_program(${name})
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
    # On its way to CTest the list is taken apart three times more: without as many escapes, only the first variable
    # arrives.
    string(REPLACE ";" [[\\\\\\\;]] environment "${NORVIK_TEST_ENVIRONMENT}")
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${NORVIK_TEST_TIMEOUT} ENVIRONMENT "${environment}")
endfunction()

# norvik_add_qt_test(NAME SOURCES... LIBRARIES...): a Qt Test program with a main of its own.
function(norvik_add_qt_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;NEEDS" ${ARGN})
    _norvik_test_program(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE Qt6::Test)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${NORVIK_TEST_TIMEOUT}
        ENVIRONMENT "${NORVIK_TEST_ENVIRONMENT}" SKIP_REGULAR_EXPRESSION "SKIP   : ")
endfunction()
