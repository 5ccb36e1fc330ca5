; The setup of Tracelyn: for one user without administrator's rights, or for all users.
;   setup.exe [/S] [/AllUsers | /CurrentUser] [/D=FOLDER]
; /S asks nothing; /D counts with it alone. setup.sh calls makensis with VERSION, PROGRAMS, ICON, MANUAL and OUTPUT.

Target amd64-unicode
SetCompressor /SOLID lzma
Name "Tracelyn ${VERSION}"
OutFile "${OUTPUT}"
BrandingText " "
ManifestDPIAware true

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR "Tracelyn"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tracelyn"
; Where a later setup, and the uninstaller, find for whom and where Tracelyn is installed.
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "UninstallString"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include x64.nsh
!include WinVer.nsh
!include FileFunc.nsh

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
; Through the desktop, which has the user's own rights and drives; the setup may have an administrator's.
!define MUI_FINISHPAGE_RUN "$WINDIR\explorer.exe"
!define MUI_FINISHPAGE_RUN_PARAMETERS "$\"$INSTDIR\tracelyn.exe$\""
!define MUI_FINISHPAGE_RUN_TEXT "Run Tracelyn"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Tracelyn"
VIAddVersionKey CompanyName "Brannik"
VIAddVersionKey FileDescription "Setup of Tracelyn"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""

!define CLASSES "Software\Classes"
!define TYPE "Tracelyn.Recording"
; What a double click on .paf opened before Tracelyn came.
!define PREVIOUS "Tracelyn.Previous"

; Files that are in use cannot be replaced or removed: asks for the program to be closed, or gives up.
!macro RequireUnused PROGRAM
    StrCpy $1 0
    ${Do}
        ${IfNot} ${FileExists} "$INSTDIR\${PROGRAM}.exe"
            ${Break}
        ${EndIf}
        ClearErrors
        FileOpen $0 "$INSTDIR\${PROGRAM}.exe" a
        ${IfNot} ${Errors}
            FileClose $0
            ${Break}
        ${EndIf}
        ; A program that has just been closed needs a moment to end.
        ${If} $1 < 10
            IntOp $1 $1 + 1
            Sleep 500
            ${Continue}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${PROGRAM} is in use, or you may not change it. Close it and try again." /SD IDCANCEL IDCANCEL`
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${Loop}
!macroend

; With /AllUsers asks for an administrator, who may be somebody else; silently it gives up.
!macro RequireRights PROGRAM
    ${GetParameters} $R8
    ClearErrors
    ${GetOptions} "$R8" "/AllUsers" $R7
    ${IfNot} ${Errors}
        UserInfo::GetAccountType
        Pop $R7
        ${If} $R7 != "Admin"
            ${If} ${Silent}
                SetErrorLevel 2
                Quit
            ${EndIf}
            ExecShell "runas" "${PROGRAM}" "$R8"
            Quit
        ${EndIf}
    ${EndIf}
!macroend

; Tells the desktop that icons and programs of file types have changed.
!macro TellDesktop
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

Function .onInit
    ${IfNot} ${RunningX64}
    ${OrIfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "Tracelyn needs Windows 10 or later, 64 bits." /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    SetRegView 64
    !insertmacro RequireRights "$EXEPATH"
    StrCpy $R9 $INSTDIR ; of /D
    !insertmacro MULTIUSER_INIT
    ${If} $R9 != ""
        StrCpy $INSTDIR $R9
    ${EndIf}
FunctionEnd

Function un.onInit
    SetRegView 64
    !insertmacro RequireRights "$INSTDIR\uninstall.exe"
    !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
    !insertmacro RequireUnused "tracelyn"
    !insertmacro RequireUnused "tracelyn-cli"
    SetOutPath "$INSTDIR"
    File "${PROGRAMS}/tracelyn.exe"
    File "${PROGRAMS}/tracelyn-cli.exe"
    File "/oname=manual.txt" "${MANUAL}"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Tracelyn.lnk" "$INSTDIR\tracelyn.exe"

    WriteRegStr SHCTX "${CLASSES}\${TYPE}" "" "Press-brake recording"
    WriteRegStr SHCTX "${CLASSES}\${TYPE}\DefaultIcon" "" "$INSTDIR\tracelyn.exe,0"
    WriteRegStr SHCTX "${CLASSES}\${TYPE}\shell\open\command" "" '"$INSTDIR\tracelyn.exe" "%1"'
    ReadRegStr $0 SHCTX "${CLASSES}\.paf" ""
    ${If} $0 != "${TYPE}"
        ${If} $0 != ""
            WriteRegStr SHCTX "${CLASSES}\.paf" "${PREVIOUS}" "$0"
        ${EndIf}
        WriteRegStr SHCTX "${CLASSES}\.paf" "" "${TYPE}"
    ${EndIf}
    ; .xml stays what it was; "Open with" offers Tracelyn.
    WriteRegStr SHCTX "${CLASSES}\.paf\OpenWithProgids" "${TYPE}" ""
    WriteRegStr SHCTX "${CLASSES}\.xml\OpenWithProgids" "${TYPE}" ""
    WriteRegStr SHCTX "${CLASSES}\Applications\tracelyn.exe" "FriendlyAppName" "Tracelyn"
    WriteRegStr SHCTX "${CLASSES}\Applications\tracelyn.exe\shell\open\command" "" '"$INSTDIR\tracelyn.exe" "%1"'
    WriteRegStr SHCTX "${CLASSES}\Applications\tracelyn.exe\SupportedTypes" ".paf" ""
    WriteRegStr SHCTX "${CLASSES}\Applications\tracelyn.exe\SupportedTypes" ".xml" ""

    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Tracelyn"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "Brannik"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\tracelyn.exe,0"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
    SectionGetSize 0 $0
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0
    !insertmacro TellDesktop
SectionEnd

Section "Uninstall"
    !insertmacro RequireUnused "tracelyn"
    !insertmacro RequireUnused "tracelyn-cli"
    Delete "$SMPROGRAMS\Tracelyn.lnk"
    Delete "$INSTDIR\tracelyn.exe"
    Delete "$INSTDIR\tracelyn-cli.exe"
    Delete "$INSTDIR\manual.txt"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"

    ReadRegStr $0 SHCTX "${CLASSES}\.paf" ""
    ${If} $0 == "${TYPE}"
        ReadRegStr $1 SHCTX "${CLASSES}\.paf" "${PREVIOUS}"
        ${If} $1 == ""
            DeleteRegValue SHCTX "${CLASSES}\.paf" ""
        ${Else}
            WriteRegStr SHCTX "${CLASSES}\.paf" "" "$1"
        ${EndIf}
    ${EndIf}
    DeleteRegValue SHCTX "${CLASSES}\.paf" "${PREVIOUS}"
    DeleteRegValue SHCTX "${CLASSES}\.paf\OpenWithProgids" "${TYPE}"
    DeleteRegValue SHCTX "${CLASSES}\.xml\OpenWithProgids" "${TYPE}"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\.paf\OpenWithProgids"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\.paf"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\.xml\OpenWithProgids"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\.xml"
    DeleteRegKey SHCTX "${CLASSES}\${TYPE}"
    DeleteRegKey SHCTX "${CLASSES}\Applications\tracelyn.exe"
    DeleteRegKey /ifempty SHCTX "${CLASSES}\Applications"
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ${If} $MultiUser.InstallMode == "CurrentUser"
        ; What a user who never installed anything does not have.
        RMDir "$LOCALAPPDATA\Programs" ; only when it is empty
        DeleteRegKey /ifempty SHCTX "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    ${EndIf}
    !insertmacro TellDesktop
SectionEnd
