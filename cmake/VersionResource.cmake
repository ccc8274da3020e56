# ship(TARGET DESCRIPTION [ICON FILE]): makes TARGET part of the product. It goes into what people get and has a version
# resource, whose description is the name that the system shows for a program, and the icon.
function(ship target description)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "ICON" "")
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        set(file_type VFT_APP)
        set(file_name ${target}${CMAKE_EXECUTABLE_SUFFIX})
    else()
        set(file_type VFT_DLL)
        set(file_name ${target}${CMAKE_SHARED_LIBRARY_SUFFIX})
    endif()
    set(icon_line)
    set(icon)
    if(arg_ICON)
        get_filename_component(icon ${arg_ICON} ABSOLUTE)
        # The system shows the icon with the lowest number.
        set(icon_line "1 ICON \"${icon}\"")
    endif()

    set(script ${CMAKE_BINARY_DIR}/generated/${target}-version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${script} @ONLY)
    # CMake cannot see what a resource script includes.
    set(included ${CMAKE_BINARY_DIR}/generated/version.h ${icon})
    set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS "${included}")
    target_sources(${target} PRIVATE ${script})
    set_property(GLOBAL APPEND PROPERTY shipped_targets ${target})
endfunction()
