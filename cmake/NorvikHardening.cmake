# What makes a fault in a release build harder to exploit: a camera is a stranger, and its packets are parsed here. All of
# it is for the optimised configurations; the sanitizers watch more closely than these do, and the two don't go together.
# scripts/check_hardening.sh tells whether a file has them.

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)  # the programs are position-independent, as their libraries are

if(NOT NORVIK_SANITIZE)
    include(CheckCXXCompilerFlag)
    include(CheckCXXSourceCompiles)
    set(_norvik_optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")

    # Level 3 also checks buffers whose size is known at run time alone. Needs glibc 2.35, and 2 is what others have.
    check_cxx_source_compiles("#include <features.h>
        #if !__GLIBC_PREREQ(2, 35) || (!defined(__clang__) && __GNUC__ < 12)
        #error
        #endif
        int main() {}" NORVIK_HAS_FORTIFY_3)
    set(_norvik_fortify 2)
    if(NORVIK_HAS_FORTIFY_3)
        set(_norvik_fortify 3)
    endif()
    add_compile_options("$<${_norvik_optimised}:-U_FORTIFY_SOURCE>" "$<${_norvik_optimised}:-D_FORTIFY_SOURCE=${_norvik_fortify}>")

    foreach(flag IN ITEMS stack-protector-strong stack-clash-protection cf-protection)
        string(MAKE_C_IDENTIFIER "NORVIK_HAS_${flag}" _norvik_has)
        check_cxx_compiler_flag(-f${flag} ${_norvik_has})
        if(${_norvik_has})
            add_compile_options("$<${_norvik_optimised}:-f${flag}>")
        endif()
    endforeach()

    add_link_options("$<${_norvik_optimised}:LINKER:-z,relro,-z,now,-z,noexecstack>")
endif()
