# Benchmarks, built in every preset so that they don't rot, and run by hand from the release preset.

find_package(benchmark REQUIRED)

add_custom_target(benchmarks)  # all of them, which scripts/bench.sh runs

# norvik_add_bench(NAME SOURCES... LIBRARIES... [NEEDS TARGETS...]): a Google Benchmark program that prints its figures last.
# It lies in build/<preset>/bench. NEEDS names what it starts or loads without linking it.
function(norvik_add_bench name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;NEEDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bench")
    target_link_libraries(${name} PRIVATE norvik_options ${ARG_LIBRARIES} bench_figures)
    add_dependencies(benchmarks ${name})
    if(ARG_NEEDS)
        add_dependencies(${name} ${ARG_NEEDS})
    endif()
endfunction()
