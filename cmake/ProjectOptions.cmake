# Settings that every target of ours is built with; link project_options to get them.
add_library(project_options INTERFACE)

target_compile_features(project_options INTERFACE cxx_std_20)
target_compile_definitions(
    project_options
    INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
              WINVER=0x0A00 _WIN32_WINNT=0x0A00
              $<$<BOOL:${COUNT_OBJECTS}>:BXBASE_COUNT_OBJECTS>
)
configure_file(cmake/version.h.in generated/version.h @ONLY)
target_include_directories(project_options INTERFACE ${CMAKE_BINARY_DIR}/generated)
target_compile_options(project_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)

if(CHECKED_BUILD)
    # The trapping form needs no runtime library, which does not exist for this compiler.
    target_compile_options(project_options INTERFACE -fsanitize=undefined -fsanitize-undefined-trap-on-error)
    target_compile_definitions(project_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()
