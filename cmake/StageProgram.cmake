# stage_program(FOLDER): puts the program as people get it into a fresh FOLDER, from what the settings name.
function(stage_program folder)
    file(REMOVE_RECURSE "${folder}")
    file(COPY ${PROGRAM_FILES} "${PROGRAM_FOLDER}/lang" DESTINATION "${folder}")
    file(GLOB binaries "${folder}/*.exe" "${folder}/*.dll")
    execute_process(COMMAND "${STRIP}" ${binaries} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
