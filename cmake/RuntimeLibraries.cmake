# Puts the compiler's runtime DLLs beside the programs. They are never linked statically: exceptions that cross
# from one of our DLLs into another need a runtime that all of them share.
set(runtime_libraries)
foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(
        COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
        OUTPUT_VARIABLE file
        OUTPUT_STRIP_TRAILING_WHITESPACE
    )
    if(NOT IS_ABSOLUTE "${file}")
        # On Windows the runtime lies beside the compiler.
        get_filename_component(compiler_dir "${CMAKE_CXX_COMPILER}" DIRECTORY)
        set(file "${compiler_dir}/${name}")
    endif()
    if(NOT EXISTS "${file}")
        message(FATAL_ERROR "The compiler's ${name} was not found.")
    endif()
    configure_file("${file}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}" COPYONLY)
    list(APPEND runtime_libraries "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}")
endforeach()
