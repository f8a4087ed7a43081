; Installer of the ZEL File Creator, for all users of the machine or for the current one.
;
;   makensis -DVERSION=… -DSTAGE=folder -DFILES=list -DOUTPUT=setup.exe -DICON=file.ico installer.nsi
;
; The installer takes /S (silent), /AllUsers or /CurrentUser, and, last, /D=folder.
; It ends with 0 when all is done and with 2 when the program is still running.

Target amd64-unicode
Unicode true
ManifestDPIAware true
ManifestSupportedOS all
SetCompressor /SOLID lzma

!define NAME "ZEL File Creator"
!define PROGRAM "ZelFileCreator.exe"
!define PROG_ID "HalvornDrives.ZelFile"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZelFileCreator"

!define MULTIUSER_MUI
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR "${NAME}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh

Name "${NAME}"
OutFile "${OUTPUT}"
BrandingText "${NAME} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "${NAME} Setup"
VIAddVersionKey CompanyName "Halvorn Drives"
VIAddVersionKey LegalCopyright ""

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Ends the run when the program in $INSTDIR is open, for then its file cannot be written.
!macro StopWhileRunning
    ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${PROGRAM}" a
        ${If} ${Errors}
            MessageBox MB_OK|MB_ICONEXCLAMATION "${NAME} is open. Close it and try again." /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend

Function .onInit
    ; A folder given with /D stands over the usual one.
    StrCpy $R9 $INSTDIR
    !insertmacro MULTIUSER_INIT
    ${If} $R9 != ""
        StrCpy $INSTDIR $R9
    ${EndIf}
FunctionEnd

Function un.onInit
    !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
    !insertmacro StopWhileRunning
    SetOutPath $INSTDIR
    File /r "${STAGE}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"

    CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\${PROGRAM}"

    ; The files: who had them before gets them back when this program goes.
    ReadRegStr $0 SHCTX "Software\Classes\.zel" ""
    ${If} $0 != ""
    ${AndIf} $0 != "${PROG_ID}"
        WriteRegStr SHCTX "${UNINSTALL_KEY}" "PreviousProgId" "$0"
    ${EndIf}
    WriteRegStr SHCTX "Software\Classes\.zel" "" "${PROG_ID}"
    WriteRegNone SHCTX "Software\Classes\.zel\OpenWithProgids" "${PROG_ID}"
    WriteRegStr SHCTX "Software\Classes\${PROG_ID}" "" "ZEL firmware-update package"
    WriteRegStr SHCTX "Software\Classes\${PROG_ID}\DefaultIcon" "" '"$INSTDIR\${PROGRAM}",1'
    WriteRegStr SHCTX "Software\Classes\${PROG_ID}\shell" "" "open"
    WriteRegStr SHCTX "Software\Classes\${PROG_ID}\shell\open" "" "&Open"
    WriteRegStr SHCTX "Software\Classes\${PROG_ID}\shell\open\command" "" '"$INSTDIR\${PROGRAM}" "%1"'
    WriteRegStr SHCTX "Software\Classes\Applications\${PROGRAM}" "FriendlyAppName" "${NAME}"
    WriteRegStr SHCTX "Software\Classes\Applications\${PROGRAM}\SupportedTypes" ".zel" ""
    WriteRegStr SHCTX "Software\Classes\Applications\${PROGRAM}\shell\open\command" "" '"$INSTDIR\${PROGRAM}" "%1"'

    ; The entry under "Apps & features".
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "Halvorn Drives"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0

    ${RefreshShellIcons}
SectionEnd

; The user's settings stay: they belong to the user, not to the program.
Section Uninstall
    !insertmacro StopWhileRunning
    !include "${FILES}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    ; The folder of the user's programs, which the installer may have made: goes only when empty.
    ${GetParent} "$INSTDIR" $0
    ${If} $0 == "$LOCALAPPDATA\Programs"
        RMDir "$0"
    ${EndIf}
    ; What was unpacked from packages. SetShellVarContext has no say in the temporary folder.
    RMDir /r "$TEMP\Halvorn Drives\ZEL File Creator"
    RMDir "$TEMP\Halvorn Drives"

    Delete "$SMPROGRAMS\${NAME}.lnk"

    ReadRegStr $0 SHCTX "Software\Classes\.zel" ""
    ${If} $0 == "${PROG_ID}"
        ReadRegStr $1 SHCTX "${UNINSTALL_KEY}" "PreviousProgId"
        ${If} $1 == ""
            DeleteRegValue SHCTX "Software\Classes\.zel" ""
        ${Else}
            WriteRegStr SHCTX "Software\Classes\.zel" "" "$1"
        ${EndIf}
    ${EndIf}
    DeleteRegValue SHCTX "Software\Classes\.zel\OpenWithProgids" "${PROG_ID}"
    DeleteRegKey /ifempty SHCTX "Software\Classes\.zel\OpenWithProgids"
    ReadRegStr $0 SHCTX "Software\Classes\.zel" ""
    ${If} $0 == ""
        DeleteRegKey /ifempty SHCTX "Software\Classes\.zel"
    ${EndIf}
    DeleteRegKey SHCTX "Software\Classes\${PROG_ID}"
    DeleteRegKey SHCTX "Software\Classes\Applications\${PROGRAM}"
    ${RefreshShellIcons}
    ; Last, for whoever waits for the end watches this key.
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd
