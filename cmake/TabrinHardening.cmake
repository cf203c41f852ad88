# Makes smaller what a mistake in the library could do to the program around it: a stack protector, checked calls of the C
# library, tables that cannot be written once the library is loaded, no executable data, addresses that differ from start to
# start. tests/house/check_hardening_*.sh read this back from the finished library.
#
# Not together with the sanitizers: they check more, and checked calls would get in their way.

# _FORTIFY_SOURCE=3 knows sizes, too, that are found out only at run time. Who cannot do that warns and takes 2.
function(tabrin_find_fortify_level result)
    include(CheckCXXSourceCompiles)
    set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
    check_cxx_source_compiles("#include <cstring>\nint main() { return 0; }" TABRIN_HAS_FORTIFY_SOURCE_3)
    if(TABRIN_HAS_FORTIFY_SOURCE_3)
        set(${result} 3 PARENT_SCOPE)
    else()
        set(${result} 2 PARENT_SCOPE)
    endif()
endfunction()

function(tabrin_harden target)
    if(MSVC OR TABRIN_SANITIZE)
        return() # Visual C++ does its part without being asked
    endif()
    get_target_property(type ${target} TYPE)
    if(MINGW)
        # Here the stack protector and the checked calls come from libssp, which would make the DLL need one more DLL of the
        # system, ADVAPI32.
        if(type STREQUAL "SHARED_LIBRARY")
            target_link_options(${target} PRIVATE LINKER:--dynamicbase,--high-entropy-va,--nxcompat)
        endif()
        return()
    endif()
    tabrin_find_fortify_level(level)
    # The checks need sizes that only an optimising compiler knows.
    target_compile_options(
        ${target} PRIVATE -fstack-protector-strong
                          $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=${level}>)
    if(type STREQUAL "SHARED_LIBRARY")
        target_link_options(${target} PRIVATE LINKER:-z,relro,-z,now,-z,noexecstack)
    endif()
endfunction()
