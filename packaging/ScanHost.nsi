; The installer for one user, who needs no other rights. MakeInstaller.cmake passes what is defined elsewhere:
;   VERSION, MAKER, PRODUCT_ICON, OUTPUT, and FILES, a script with the list of files
;
; What it writes is its folder, the entry by which the system uninstalls it and, when wanted, one in the "Send to" menu.
; An older version is removed first by its own uninstaller, so that nothing of it stays.
;
; Options, besides NSIS's own /S (no window) and /D=FOLDER (at the end, without quotes):
;   installer     /SENDTO    ticks the entry in the "Send to" menu; one that exists is kept without it
;   uninstaller   /SETTINGS  ticks that settings, log and temporary files go as well
;   both          /LANG=cs   another language than that of the system
; Exit codes: 0 done, 1 cancelled, 2 nothing was done or it could not be completed.
Unicode true
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID lzma
AllowSkipFiles off

!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh
!include MUI2.nsh
!include "${FILES}"

!define PRODUCT ScanHost
!define PROGRAM ScanHost.exe
!define UNINSTALLER Uninstall.exe
!define UNINSTALL_KEYS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL_KEY "${UNINSTALL_KEYS}\${PRODUCT}"
!define MAIL_CLIENT_KEY "Software\Clients\Mail\DraftMail"
; In the key above: the path of the entry in the "Send to" menu, whose name is in the language of the installation.
!define SENDTO_VALUE SendToEntry

Name "${PRODUCT}"
BrandingText "${PRODUCT} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" InstallLocation
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 CompanyName "${MAKER}"
VIAddVersionKey /LANG=0 FileDescription "Installs ${PRODUCT}"
VIAddVersionKey /LANG=0 FileVersion "${VERSION}"
VIAddVersionKey /LANG=0 LegalCopyright ""
VIAddVersionKey /LANG=0 ProductName "${PRODUCT}"
VIAddVersionKey /LANG=0 ProductVersion "${VERSION}"

!define MUI_ICON "${PRODUCT_ICON}"
!define MUI_UNICON "${PRODUCT_ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP side.bmp
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE RefuseTakenFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES

; The first is for people whose language is none of these.
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE Czech
!insertmacro MUI_LANGUAGE German
!insertmacro MUI_LANGUAGE French
!insertmacro MUI_LANGUAGE SpanishInternational
!insertmacro MUI_LANGUAGE Polish
!insertmacro MUI_LANGUAGE Slovak
!insertmacro MUI_LANGUAGE Italian
!include Texts.nsh

Var OlderFolder
Var MailClient

!macro ReadOptions
    ${GetParameters} $R0
    ${GetOptions} $R0 "/LANG=" $R1
    ${Select} $R1
    ${Case} "en"
        StrCpy $LANGUAGE ${LANG_ENGLISH}
    ${Case} "cs"
        StrCpy $LANGUAGE ${LANG_CZECH}
    ${Case} "de"
        StrCpy $LANGUAGE ${LANG_GERMAN}
    ${Case} "fr"
        StrCpy $LANGUAGE ${LANG_FRENCH}
    ${Case} "es"
        StrCpy $LANGUAGE ${LANG_SPANISHINTERNATIONAL}
    ${Case} "pl"
        StrCpy $LANGUAGE ${LANG_POLISH}
    ${Case} "sk"
        StrCpy $LANGUAGE ${LANG_SLOVAK}
    ${Case} "it"
        StrCpy $LANGUAGE ${LANG_ITALIAN}
    ${EndSelect}
!macroend

; The path of DraftMail as a mail client. It is the user's own; under Wine it is the computer's.
!macro ReadMailClient
    ReadRegStr $MailClient HKCU "${MAIL_CLIENT_KEY}" DLLPath
    ${If} $MailClient == ""
        ReadRegStr $MailClient HKLM "${MAIL_CLIENT_KEY}" DLLPath
    ${EndIf}
!macroend

!macro StopIfTaken file
    ${If} $R2 == ""
    ${AndIf} ${FileExists} "$INSTDIR\${file}"
        StrCpy $R2 "$INSTDIR\${file}"
    ${EndIf}
!macroend

; Whatever the uninstaller would remove must be the installer's.
Function RefuseTakenFolder
    StrCpy $R2 ""
    ${If} $INSTDIR != $OlderFolder
        !insertmacro ForEachFile StopIfTaken
        !insertmacro StopIfTaken "${UNINSTALLER}"
    ${EndIf}
    ${If} $R2 != ""
        MessageBox MB_OK|MB_ICONEXCLAMATION "$(FolderTaken)" /SD IDOK
        Abort
    ${EndIf}
FunctionEnd

; From a copy of its own, so that it can remove its file before it ends.
Function RemoveOlderVersion
    InitPluginsDir
    SetDetailsPrint none
    CopyFiles /SILENT "$OlderFolder\${UNINSTALLER}" "$PLUGINSDIR\Older.exe"
    ${Do}
        ExecWait '"$PLUGINSDIR\Older.exe" /S /UPGRADE _?=$OlderFolder' $R3
        ${If} $R3 == 0
            ${Break}
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(InUse)" /SD IDCANCEL IDRETRY +2
        Abort
    ${Loop}
    SetDetailsPrint lastused
FunctionEnd

Section "${PRODUCT}" ProgramSection
    SectionIn RO
    Call RefuseTakenFolder
    ${If} $OlderFolder != ""
    ${AndIf} ${FileExists} "$OlderFolder\${UNINSTALLER}"
        Call RemoveOlderVersion
    ${EndIf}

    ; First, so that an installation which stops half-way can be uninstalled.
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\${UNINSTALLER}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" DisplayName "${PRODUCT}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" Publisher "${MAKER}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\${PROGRAM}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\${UNINSTALLER}"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\${UNINSTALLER}" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" NoModify 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" NoRepair 1
    SectionGetSize ${ProgramSection} $R4
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" EstimatedSize $R4

    !insertmacro InstallFiles

    ; The mail client goes with the folder.
    !insertmacro ReadMailClient
    ${If} $OlderFolder != ""
    ${AndIf} $MailClient == "$OlderFolder\DraftMail.dll"
        nsExec::Exec '"$INSTDIR\scanexport.exe" --register-draft-mail'
        Pop $R5
    ${EndIf}
SectionEnd

Section /o "$(SendToSection)" SendToSection
    SetOutPath "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" ${SENDTO_VALUE} "$SENDTO\$(SendToEntry).lnk"
    CreateShortcut "$SENDTO\$(SendToEntry).lnk" "$INSTDIR\${PROGRAM}"
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${ProgramSection} "$(ProgramDescription)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SendToSection} "$(SendToDescription)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
    !insertmacro ReadOptions
    ReadRegStr $OlderFolder HKCU "${UNINSTALL_KEY}" InstallLocation
    ReadRegStr $R2 HKCU "${UNINSTALL_KEY}" ${SENDTO_VALUE}
    ClearErrors
    ${GetOptions} $R0 "/SENDTO" $R1
    ${IfNot} ${Errors}
    ${OrIf} ${FileExists} "$R2"
        !insertmacro SelectSection ${SendToSection}
    ${EndIf}
FunctionEnd

; What runs, and what a program has loaded, cannot be opened for writing.
!macro StopIfUsed file
    ${If} $R2 == ""
    ${AndIf} ${FileExists} "$INSTDIR\${file}"
        ClearErrors
        FileOpen $R3 "$INSTDIR\${file}" a
        ${If} ${Errors}
            StrCpy $R2 "$INSTDIR\${file}"
        ${Else}
            FileClose $R3
        ${EndIf}
    ${EndIf}
!macroend

!macro DeleteFile file
    Delete "$INSTDIR\${file}"
!macroend

Section "un.${PRODUCT}" RemoveProgramSection
    SectionIn RO
    ${Do}
        StrCpy $R2 ""
        !insertmacro ForEachFile StopIfUsed
        ${If} $R2 == ""
            ${Break}
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(InUse)" /SD IDCANCEL IDRETRY +2
        Abort
    ${Loop}

    ; When a newer version takes the place of this one, its installer sees to the mail client.
    !insertmacro ReadMailClient
    ${GetParameters} $R0
    ClearErrors
    ${GetOptions} $R0 "/UPGRADE" $R1
    ${If} ${Errors}
    ${AndIf} $MailClient == "$INSTDIR\DraftMail.dll"
        nsExec::Exec '"$INSTDIR\scanexport.exe" --unregister-draft-mail'
        Pop $R5
    ${EndIf}

    ReadRegStr $R2 HKCU "${UNINSTALL_KEY}" ${SENDTO_VALUE}
    ${If} $R2 != ""
        Delete "$R2"
    ${EndIf}
    !insertmacro ForEachFile DeleteFile
    Delete "$INSTDIR\${UNINSTALLER}"
    ; Only empty folders and keys go: somebody else may have put something there.
    SetOutPath "$TEMP"
    !insertmacro RemoveFolders
    RMDir "$INSTDIR"
    RMDir "$TEMP\${MAKER}\${PRODUCT}"
    RMDir "$TEMP\${MAKER}"
    RMDir "$LOCALAPPDATA\Programs"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    DeleteRegKey /ifempty HKCU "${UNINSTALL_KEYS}"
SectionEnd

Section /o "un.$(SettingsSection)" RemoveSettingsSection
    DeleteRegKey HKCU "Software\${MAKER}\${PRODUCT}"
    DeleteRegKey /ifempty HKCU "Software\${MAKER}"
    Delete "$LOCALAPPDATA\${MAKER}\${PRODUCT}\${PRODUCT}.log"
    RMDir "$LOCALAPPDATA\${MAKER}\${PRODUCT}"
    RMDir "$LOCALAPPDATA\${MAKER}"
    RMDir /r "$TEMP\${MAKER}\${PRODUCT}"
    RMDir "$TEMP\${MAKER}"
    ; What stands in where mail programs could not read the name of the folder above. Those of other users stay, because
    ; nobody else has access to them.
    ReadEnvStr $R1 ProgramData
    FindFirst $R2 $R3 "$R1\${MAKER}-${PRODUCT}-*"
    ${DoWhile} $R3 != ""
        RMDir /r "$R1\$R3"
        FindNext $R2 $R3
    ${Loop}
    FindClose $R2
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${RemoveProgramSection} "$(ProgramDescription)"
    !insertmacro MUI_DESCRIPTION_TEXT ${RemoveSettingsSection} "$(SettingsDescription)"
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
    !insertmacro ReadOptions
    ClearErrors
    ${GetOptions} $R0 "/SETTINGS" $R1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${RemoveSettingsSection}
    ${EndIf}
FunctionEnd
