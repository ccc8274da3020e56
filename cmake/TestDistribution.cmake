# Makes the portable ZIP, unpacks it, and runs the program from there.
include("${CMAKE_CURRENT_LIST_DIR}/MakeDistribution.cmake")

set(unpacked "${OUTPUT}/unpacked")
file(REMOVE_RECURSE "${unpacked}")
file(ARCHIVE_EXTRACT INPUT "${OUTPUT}/${PACKAGE}.zip" DESTINATION "${unpacked}")

function(expect_output pattern)
    execute_process(
        COMMAND ${EMULATOR} "${unpacked}/${PACKAGE}/scanexport.exe" ${ARGN}
        OUTPUT_VARIABLE output
        ERROR_VARIABLE errors
        RESULT_VARIABLE result
    )
    if(NOT result EQUAL 0 OR NOT output MATCHES "${pattern}")
        message(FATAL_ERROR "scanexport.exe ${ARGN} ended with ${result} and wrote:\n${output}${errors}")
    endif()
endfunction()

expect_output("[0-9]+\\.[0-9]+\\.[0-9]+" --version)
expect_output("exportdata-factory\\.dir\\.file.*exportdata-factory\\.mail\\.file.*exportdata-factory\\.zip\\.file" --list)

# No program needs the mail client until somebody registers it; the program with a window would wait for its user.
foreach(name DraftMail.dll ScanHost.exe)
    if(NOT EXISTS "${unpacked}/${PACKAGE}/${name}")
        message(FATAL_ERROR "The ZIP has no ${name}.")
    endif()
endforeach()
