# Release programs are hardened: damaged memory ends the process before it can be made use of. What a compiler or a
# processor doesn't know is left out. The sanitizers and debug builds do without: they see more by themselves.
include(CheckCXXCompilerFlag)

function(lamina_harden)
    set(compiling)
    foreach(option IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection=full
            -mbranch-protection=standard)
        string(MAKE_C_IDENTIFIER LAMINA_HAS${option} known)
        check_cxx_compiler_flag(${option} ${known})
        if(${known})
            list(APPEND compiling ${option})
        endif()
    endforeach()
    # Some distributions set a level of their own.
    list(APPEND compiling -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
    add_compile_options("$<$<CONFIG:Release>:${compiling}>")
    # All addresses of other libraries are found at the start, and can't be written afterwards.
    add_link_options("$<$<CONFIG:Release>:LINKER:-z,relro,-z,now,-z,noexecstack>")
endfunction()

lamina_harden()
