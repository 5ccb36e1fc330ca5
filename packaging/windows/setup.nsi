; The setup of Tracelyn: for one user without administrator's rights, or for all users.
;   setup.exe [/S] [/AllUsers | /CurrentUser] [/D=FOLDER]
; /S asks nothing. setup.sh calls makensis with VERSION, PROGRAMS, ICON, MANUAL and OUTPUT.

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

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\tracelyn.exe"
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

; Files that are in use cannot be replaced or removed: asks for the viewer to be closed, or gives up.
!macro RequireNoViewer
    ${Do}
        ${IfNot} ${FileExists} "$INSTDIR\tracelyn.exe"
            ${Break}
        ${EndIf}
        ClearErrors
        FileOpen $0 "$INSTDIR\tracelyn.exe" a
        ${IfNot} ${Errors}
            FileClose $0
            ${Break}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Tracelyn is open. Close it and try again." /SD IDCANCEL IDCANCEL`
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${Loop}
!macroend

; Removes a key that holds neither values nor keys.
!macro DeleteEmptyKey KEY
    ${If} $MultiUser.InstallMode == "AllUsers"
        System::Call 'shlwapi::SHDeleteEmptyKey(p 0x80000002, t "${KEY}")'
    ${Else}
        System::Call 'shlwapi::SHDeleteEmptyKey(p 0x80000001, t "${KEY}")'
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
    StrCpy $R9 $INSTDIR ; of /D
    !insertmacro MULTIUSER_INIT
    ${If} $R9 != ""
        StrCpy $INSTDIR $R9
    ${EndIf}
FunctionEnd

Function un.onInit
    SetRegView 64
    !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
    !insertmacro RequireNoViewer
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
    !insertmacro RequireNoViewer
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
    !insertmacro DeleteEmptyKey "${CLASSES}\.paf\OpenWithProgids"
    !insertmacro DeleteEmptyKey "${CLASSES}\.paf"
    !insertmacro DeleteEmptyKey "${CLASSES}\.xml\OpenWithProgids"
    !insertmacro DeleteEmptyKey "${CLASSES}\.xml"
    DeleteRegKey SHCTX "${CLASSES}\${TYPE}"
    DeleteRegKey SHCTX "${CLASSES}\Applications\tracelyn.exe"
    !insertmacro DeleteEmptyKey "${CLASSES}\Applications"
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ${If} $MultiUser.InstallMode == "CurrentUser"
        ; What a user who never installed anything does not have.
        RMDir "$LOCALAPPDATA\Programs" ; only when it is empty
        !insertmacro DeleteEmptyKey "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    ${EndIf}
    !insertmacro TellDesktop
SectionEnd
