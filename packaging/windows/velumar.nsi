; The installer: for one user, without an administrator. It knows by name each file that it lays down
; (installed.nsh, written by scripts/windows), so that taking it away spares all that came later.
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
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Your ledger, your market data and your settings stay where they are."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs can't be replaced or taken away.
!macro NotWhileItRuns un
  Function ${un}NotWhileItRuns
    again:
      StrCpy $1 ""
      Push "$INSTDIR\velumar.exe"
      Call ${un}IsHeld
      Push "$INSTDIR\velumar-cli.exe"
      Call ${un}IsHeld
      Push "$INSTDIR\charthost\MSWIN.EXE"
      Call ${un}IsHeld
      StrCmp $1 "" free
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$1 is running. Close it first." /SD IDCANCEL IDRETRY again
      SetErrorLevel 2
      Abort
    free:
  FunctionEnd

  Function ${un}IsHeld
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
!insertmacro NotWhileItRuns ""
!insertmacro NotWhileItRuns "un."

Section
  Call NotWhileItRuns
  ; What an older version had and this one hasn't goes with that version's own list.
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
  Call un.NotWhileItRuns
  !include "${LISTS}/uninstalled.nsh"
  Delete "$SMPROGRAMS\Velumar.lnk"
  Delete "$INSTDIR\uninstall.exe"
  ; Only where nothing of the user's is left in it.
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${ENTRY}"
SectionEnd
