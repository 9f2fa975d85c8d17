; Installs the program for one user, into a folder that the user may write to: the program keeps its data beside
; itself. Takes VERSION, NUMBERS, FOLDER, INSTALLED, ICON and TARGET from scripts/windows/build.
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
!include MUI2.nsh
!include LogicLib.nsh

!define NAME "Ledgerline - Tallyhand"
!define PROGRAM "ledgerline-tallyhand.exe"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\LedgerlineTallyhand"

Name "${NAME}"
OutFile "${TARGET}"
InstallDir "$LOCALAPPDATA\Programs\Ledgerline Tallyhand"
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
BrandingText "${NAME} ${VERSION}"

VIProductVersion "${NUMBERS}"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "CompanyName" "Fennbrook"
VIAddVersionKey "FileDescription" "${NAME} Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Fennbrook"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"
!define MUI_DIRECTORYPAGE_TEXT_TOP "The program keeps its data in this folder, so choose one that you may write to."
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE refuse_folder_without_rights
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; The mutex that the running program holds.
!macro ask_to_leave un
Function ${un}ask_to_leave
  again:
  System::Call 'kernel32::OpenMutexW(i 0x100000, i 0, w "Local\LedgerlineTallyhand-SingleInstance") p .r0'
  ${If} $0 P<> 0
    System::Call 'kernel32::CloseHandle(p r0)'
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${NAME} is running. Leave it (File, Exit) and try again." \
      /SD IDCANCEL IDRETRY again
    Abort
  ${EndIf}
FunctionEnd
!macroend
!insertmacro ask_to_leave ""
!insertmacro ask_to_leave "un."

Function .onInit
  Call ask_to_leave
FunctionEnd

Function un.onInit
  Call un.ask_to_leave
FunctionEnd

Function refuse_folder_without_rights
  CreateDirectory "$INSTDIR"
  ClearErrors
  FileOpen $0 "$INSTDIR\write-test.tmp" w
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "You may not write to $INSTDIR. Choose another folder."
    Abort
  ${EndIf}
  FileClose $0
  Delete "$INSTDIR\write-test.tmp"
FunctionEnd

Section
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateDirectory "$SMPROGRAMS\${NAME}"
  CreateShortcut "$SMPROGRAMS\${NAME}\${NAME}.lnk" "$INSTDIR\${PROGRAM}"
  CreateShortcut "$SMPROGRAMS\${NAME}\Uninstall ${NAME}.lnk" "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${KEY}" "Publisher" "Fennbrook"
  WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM}"
  WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegDWORD HKCU "${KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
SectionEnd

Section Uninstall
  !include "${INSTALLED}"
  Delete "$INSTDIR\uninstall.exe"
  Delete "$SMPROGRAMS\${NAME}\${NAME}.lnk"
  Delete "$SMPROGRAMS\${NAME}\Uninstall ${NAME}.lnk"
  RMDir "$SMPROGRAMS\${NAME}"
  DeleteRegKey HKCU "${KEY}"
  ; A silent uninstall keeps what was collected.
  ${If} ${FileExists} "$INSTDIR\data\*.*"
    MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 \
      "Remove the collected reports and settings in $INSTDIR\data too? They cannot be brought back." \
      /SD IDNO IDNO keep
    RMDir /r "$INSTDIR\data"
    keep:
  ${EndIf}
  RMDir "$INSTDIR"
SectionEnd
