# What every target of the tree has in common: language level, warnings, sanitizers, include root.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(norvik_options INTERFACE)
# Includes start at the root of the tree, so that each says where it points.
target_include_directories(norvik_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(norvik_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(NORVIK_WARNINGS_AS_ERRORS)
    target_compile_options(norvik_options INTERFACE -Werror)
endif()

if(NORVIK_SANITIZE)
    # For every target, the tests' libraries included: a sanitizer that sees half of a program reports nonsense.
    add_compile_options(-fsanitize=${NORVIK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${NORVIK_SANITIZE})
endif()

# norvik_add_library(NAME SOURCES...): a static library of the tree, named as its folder.
function(norvik_add_library name)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC "$<BUILD_INTERFACE:norvik_options>")
endfunction()

# norvik_add_program(NAME SOURCES...): a program in build/<preset>/bin.
function(norvik_add_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE norvik_options)
endfunction()
