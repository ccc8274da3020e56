# Makes OUTPUT/PACKAGE.zip from what SETTINGS names.
include("${SETTINGS}")
include("${CMAKE_CURRENT_LIST_DIR}/StageProgram.cmake")
get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)

set(folder "${OUTPUT}/${PACKAGE}")
stage_program("${folder}")
file(COPY "${root}/README.md" DESTINATION "${folder}")
file(GLOB pictures "${root}/docs/pictures/*.png")
file(COPY ${pictures} DESTINATION "${folder}/docs/pictures")
file(REMOVE "${OUTPUT}/${PACKAGE}.zip")
execute_process(
    COMMAND "${CMAKE_COMMAND}" -E tar cf "${PACKAGE}.zip" --format=zip "${PACKAGE}"
    WORKING_DIRECTORY "${OUTPUT}"
    COMMAND_ERROR_IS_FATAL ANY
)
file(REMOVE_RECURSE "${folder}")
