; The installer, for one user and without administrator rights. It lists every file that it installs
; (installed.nsh, written by scripts/windows), so that uninstalling removes only these.
;   makensis -DVERSION=1.0 -DTREE=FOLDER -DLISTS=FOLDER -DICON=velumar.ico -DOUTPUT=setup.exe velumar.nsi
Unicode true
Target amd64-unicode
!include MUI2.nsh
!include FileFunc.nsh

!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Velumar"

Name "Velumar"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Velumar"
InstallDirRegKey HKCU "${ENTRY}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
BrandingText "Velumar ${VERSION}"

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "Velumar"
VIAddVersionKey "CompanyName" "The Velumar developers"
VIAddVersionKey "LegalCopyright" "The Velumar developers, GPL-3.0"
VIAddVersionKey "FileDescription" "Installs Velumar"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_LICENSE "${TREE}/LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\velumar.exe"
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Your ledger, market data and settings are kept."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A running program can't be replaced or removed.
!macro RequireNotRunning un
  Function ${un}RequireNotRunning
    again:
      StrCpy $1 ""
      Push "$INSTDIR\velumar.exe"
      Call ${un}CheckRunning
      Push "$INSTDIR\velumar-cli.exe"
      Call ${un}CheckRunning
      Push "$INSTDIR\charthost\MSWIN.EXE"
      Call ${un}CheckRunning
      StrCmp $1 "" free
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$1 is running. Close it first." /SD IDCANCEL IDRETRY again
      SetErrorLevel 2
      Abort
    free:
  FunctionEnd

  Function ${un}CheckRunning
    Pop $2
    IfFileExists "$2" 0 done
    ClearErrors
    FileOpen $3 "$2" a
    IfErrors held
    FileClose $3
    Goto done
    held:
      StrCpy $1 "$2"
    done:
  FunctionEnd
!macroend
!insertmacro RequireNotRunning ""
!insertmacro RequireNotRunning "un."

Section
  Call RequireNotRunning
  ; The older version's own list removes files that this version no longer has.
  IfFileExists "$INSTDIR\uninstall.exe" 0 +2
    ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'

  !include "${LISTS}/installed.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortCut "$SMPROGRAMS\Velumar.lnk" "$INSTDIR\velumar.exe" "" "" "" "" "" "Practise trading on replayed price history"

  WriteRegStr HKCU "${ENTRY}" "DisplayName" "Velumar"
  WriteRegStr HKCU "${ENTRY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${ENTRY}" "Publisher" "The Velumar developers"
  WriteRegStr HKCU "${ENTRY}" "DisplayIcon" "$INSTDIR\velumar.exe"
  WriteRegStr HKCU "${ENTRY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${ENTRY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${ENTRY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${ENTRY}" "EstimatedSize" "$0"
  WriteRegDWORD HKCU "${ENTRY}" "NoModify" 1
  WriteRegDWORD HKCU "${ENTRY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  Call un.RequireNotRunning
  !include "${LISTS}/uninstalled.nsh"
  Delete "$SMPROGRAMS\Velumar.lnk"
  Delete "$INSTDIR\uninstall.exe"
  ; Fails if the user has files in it.
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${ENTRY}"
SectionEnd
