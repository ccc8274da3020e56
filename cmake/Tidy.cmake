# The target "tidy": clang-tidy over all sources of ours, as .clang-tidy says.
find_program(RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(NOT RUN_CLANG_TIDY)
    message(STATUS "run-clang-tidy (Debian's package clang-tidy) was not found: there is no target \"tidy\".")
    return()
endif()

# clang reads what was written for GCC: it is told the target and where GCC's C++ library and the Windows headers
# are, but has compiler headers of its own.
set(clang_arguments --target=x86_64-w64-windows-gnu)
foreach(directory IN LISTS CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
    if(NOT directory MATCHES "/lib/gcc/" OR directory MATCHES "/include/c\\+\\+")
        list(APPEND clang_arguments -isystem ${directory})
    endif()
endforeach()
# The build has made errors of the compiler's warnings already; clang's own differ and are not wanted.
list(APPEND clang_arguments -w)
list(TRANSFORM clang_arguments PREPEND "-extra-arg=")

add_custom_target(
    tidy
    COMMAND ${RUN_CLANG_TIDY} -quiet -p ${CMAKE_BINARY_DIR} ${clang_arguments}
            "^${CMAKE_SOURCE_DIR}/\(Components|framework|toolkit|draftmail|host|examples|tests|bench|docs\)/.*cpp$"
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    USES_TERMINAL
    VERBATIM
)
