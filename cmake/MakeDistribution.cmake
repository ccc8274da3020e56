# Makes OUTPUT/PACKAGE.zip from what SETTINGS names.
include("${SETTINGS}")
get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)

set(folder "${OUTPUT}/${PACKAGE}")
file(REMOVE_RECURSE "${OUTPUT}")
file(COPY ${PROGRAM_FILES} "${PROGRAM_FOLDER}/lang" "${root}/README.md" DESTINATION "${folder}")
file(GLOB pictures "${root}/docs/pictures/*.png")
file(COPY ${pictures} DESTINATION "${folder}/docs/pictures")
file(GLOB binaries "${folder}/*.exe" "${folder}/*.dll")
execute_process(COMMAND "${STRIP}" ${binaries} COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND "${CMAKE_COMMAND}" -E tar cf "${PACKAGE}.zip" --format=zip "${PACKAGE}"
    WORKING_DIRECTORY "${OUTPUT}"
    COMMAND_ERROR_IS_FATAL ANY
)
file(REMOVE_RECURSE "${folder}")
