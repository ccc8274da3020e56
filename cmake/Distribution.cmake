# The targets "dist", a portable ZIP of the program folder, and "installer". Both are made in dist/ of the build folder:
# BasicExport-VERSION-win64.zip and ScanHost-VERSION-win64-setup.exe.
get_property(program_targets GLOBAL PROPERTY shipped_targets)
set(program_files ${runtime_libraries})
foreach(target IN LISTS program_targets)
    list(APPEND program_files $<TARGET_FILE:${target}>)
endforeach()

find_program(MAKENSIS makensis)
file(
    GENERATE
    OUTPUT ${CMAKE_BINARY_DIR}/distribution.cmake
    CONTENT
        "set(PACKAGE \"${PROJECT_NAME}-${PROJECT_VERSION}-win64\")
set(INSTALLER \"ScanHost-${PROJECT_VERSION}-win64-setup.exe\")
set(VERSION \"${PROJECT_VERSION}\")
set(MAKER \"${PROJECT_MAKER}\")
set(PROGRAM_FILES \"${program_files}\")
set(PROGRAM_FOLDER \"${CMAKE_RUNTIME_OUTPUT_DIRECTORY}\")
set(STRIP \"${CMAKE_STRIP}\")
set(MAKENSIS \"${MAKENSIS}\")
set(EMULATOR \"${CMAKE_CROSSCOMPILING_EMULATOR}\")
"
)
set(make_distribution ${CMAKE_COMMAND} -D SETTINGS=${CMAKE_BINARY_DIR}/distribution.cmake)

add_custom_target(
    dist
    COMMAND ${make_distribution} -D OUTPUT=${CMAKE_BINARY_DIR}/dist
            -P ${CMAKE_SOURCE_DIR}/cmake/MakeDistribution.cmake
    DEPENDS ${program_targets}
    VERBATIM
)

# Only Debian's makensis makes 64-bit installers.
if(MAKENSIS AND CMAKE_CROSSCOMPILING)
    add_custom_target(
        installer
        COMMAND ${make_distribution} -D OUTPUT=${CMAKE_BINARY_DIR}/dist
                -P ${CMAKE_SOURCE_DIR}/cmake/MakeInstaller.cmake
        DEPENDS ${program_targets}
        VERBATIM
    )
else()
    message(STATUS "makensis (Debian's package nsis) was not found: there is no target \"installer\".")
endif()

add_test(
    NAME Distribution.RunsFromAFreshFolder
    COMMAND ${make_distribution} -D OUTPUT=${CMAKE_BINARY_DIR}/dist-test
            -P ${CMAKE_SOURCE_DIR}/cmake/TestDistribution.cmake
)
set_tests_properties(Distribution.RunsFromAFreshFolder PROPERTIES TIMEOUT 120)
