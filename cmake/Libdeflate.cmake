# The target `libdeflate`: an installed one where LIBDEFLATE_ROOT names its folder, otherwise one built here from
# Debian's source package, because Debian has no built one for this target.
set(LIBDEFLATE_ROOT "" CACHE PATH "Folder of an installed libdeflate (include/, lib/); empty builds it from source")

if(LIBDEFLATE_ROOT OR NOT CMAKE_HOST_SYSTEM_NAME STREQUAL "Linux")
    find_path(
        LIBDEFLATE_INCLUDE_DIR libdeflate.h HINTS "${LIBDEFLATE_ROOT}/include"
        NO_CMAKE_FIND_ROOT_PATH REQUIRED
    )
    find_library(
        LIBDEFLATE_LIBRARY NAMES libdeflate.a deflate libdeflate deflatestatic HINTS "${LIBDEFLATE_ROOT}/lib"
        NO_CMAKE_FIND_ROOT_PATH REQUIRED
    )
    add_library(libdeflate UNKNOWN IMPORTED GLOBAL)
    set_target_properties(
        libdeflate PROPERTIES
        IMPORTED_LOCATION "${LIBDEFLATE_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${LIBDEFLATE_INCLUDE_DIR}"
    )
    return()
endif()

execute_process(
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/fetch-libdeflate.sh
    OUTPUT_VARIABLE libdeflate_archive
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY
)
file(ARCHIVE_EXTRACT INPUT "${libdeflate_archive}" DESTINATION "${CMAKE_BINARY_DIR}/libdeflate")
file(GLOB libdeflate_source LIST_DIRECTORIES true "${CMAKE_BINARY_DIR}/libdeflate/libdeflate-*")

# Only what writing raw deflate streams needs.
add_library(
    libdeflate STATIC
    ${libdeflate_source}/lib/crc32.c
    ${libdeflate_source}/lib/deflate_compress.c
    ${libdeflate_source}/lib/utils.c
    ${libdeflate_source}/lib/arm/cpu_features.c
    ${libdeflate_source}/lib/x86/cpu_features.c
)
target_include_directories(libdeflate SYSTEM PUBLIC "${libdeflate_source}")
# A debug build of ours is no reason for slow compression.
target_compile_options(libdeflate PRIVATE -O2)
