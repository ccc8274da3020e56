# Fails when a source of ours is not as .clang-format wants it:
#   cmake -D CLANG_FORMAT=PROGRAM -P CheckFormat.cmake
get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)

set(patterns)
foreach(folder Components framework toolkit draftmail host examples tests bench docs samples)
    list(APPEND patterns ${folder}/*.h ${folder}/*.cpp ${folder}/*.c)
endforeach()
list(TRANSFORM patterns PREPEND "${root}/")
file(GLOB_RECURSE sources RELATIVE "${root}" ${patterns})
if(NOT sources)
    message(FATAL_ERROR "No sources were found.")
endif()

execute_process(
    COMMAND ${CLANG_FORMAT} --dry-run -Werror ${sources}
    WORKING_DIRECTORY "${root}"
    RESULT_VARIABLE result
)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "Some sources are not formatted; clang-format -i does it.")
endif()
