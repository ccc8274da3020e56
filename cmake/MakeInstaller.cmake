# Makes OUTPUT/INSTALLER from what SETTINGS names.
include("${SETTINGS}")
include("${CMAKE_CURRENT_LIST_DIR}/StageProgram.cmake")
get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)

set(folder "${OUTPUT}/installer")
stage_program("${folder}/files")

# The same list for the installer and for the uninstaller, which removes these files and no others.
set(install)
set(each)
set(folders)
file(GLOB_RECURSE names LIST_DIRECTORIES true RELATIVE "${folder}/files" "${folder}/files/*")
foreach(name IN LISTS names)
    string(REPLACE "/" "\\" windows_name "${name}")
    if(IS_DIRECTORY "${folder}/files/${name}")
        # The inner ones first.
        string(PREPEND folders "    RMDir \"$INSTDIR\\${windows_name}\"\n")
    else()
        get_filename_component(directory "/${name}" DIRECTORY)
        string(REGEX REPLACE "/$" "" directory "${directory}")
        string(REPLACE "/" "\\" directory "${directory}")
        string(APPEND install "    SetOutPath \"$INSTDIR${directory}\"\n    File \"${folder}/files/${name}\"\n")
        string(APPEND each "    !insertmacro \${action} \"${windows_name}\"\n")
    endif()
endforeach()
file(
    WRITE "${folder}/files.nsh"
    "!macro InstallFiles
${install}!macroend
!macro ForEachFile action
${each}!macroend
!macro RemoveFolders
${folders}!macroend
"
)

execute_process(
    COMMAND
        "${MAKENSIS}" -V2 -WX -INPUTCHARSET UTF8 "-DVERSION=${VERSION}" "-DMAKER=${MAKER}"
        "-DPRODUCT_ICON=${root}/host/desktop/res/ScanHost.ico" "-DFILES=${folder}/files.nsh"
        "-DOUTPUT=${OUTPUT}/${INSTALLER}" "${root}/packaging/ScanHost.nsi"
    COMMAND_ERROR_IS_FATAL ANY
)
file(REMOVE_RECURSE "${folder}")
