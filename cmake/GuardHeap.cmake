# Gives the guarded heap to every DLL and program made so far.
function(guard_heaps_in directory)
    get_property(targets DIRECTORY ${directory} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        if(type MATCHES "^(SHARED_LIBRARY|MODULE_LIBRARY|EXECUTABLE)$")
            target_link_libraries(${target} PRIVATE guard_heap_module)
        endif()
    endforeach()
    get_property(folders DIRECTORY ${directory} PROPERTY SUBDIRECTORIES)
    foreach(folder IN LISTS folders)
        guard_heaps_in(${folder})
    endforeach()
endfunction()

guard_heaps_in(${CMAKE_SOURCE_DIR})
# After the walk, or the heap would guard itself.
add_subdirectory(tests/support/guardheap)
