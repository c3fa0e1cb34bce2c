; The installer for Windows. Silent with /S; /D=FOLDER, last and without quotes, names the folder;
; /NIGHT registers the nightly task without a question. packaging/windows/make gives VERSION, TREE
; (the unpacked archive) and OUTPUT.

Target amd64-unicode  ; as the programs are, and as wine alone runs it on a 64-bit machine
!include MUI2.nsh
!include FileFunc.nsh
!include Sections.nsh

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quenbrook"
!define TASK "Quenbrook Nightly"

Name "Quenbrook ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "C:\Quenbrook"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Quenbrook"
VIAddVersionKey FileDescription "Quenbrook"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""

!define MUI_ICON "quenbrook.ico"
!define MUI_UNICON "quenbrook.ico"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Korean"

Section "프로그램" PROGRAM
  SectionIn RO
  SetOutPath "$INSTDIR"
  File "${TREE}\*.exe"
  File "${TREE}\quenbrook-nightly.cmd"
  File "${TREE}\config-sample.ini"
  SetOutPath "$INSTDIR\guide"
  File /r "${TREE}\guide\*"
  SetOutPath "$INSTDIR"
  CreateDirectory "$INSTDIR\AutoLoadData"
  IfFileExists "$INSTDIR\config.ini" +2
  CopyFiles /SILENT "$INSTDIR\config-sample.ini" "$INSTDIR\config.ini"
  ; Every user of the till may write here: S-1-5-32-545 is the group of all users in any language.
  nsExec::Exec 'icacls "$INSTDIR" /grant *S-1-5-32-545:(OI)(CI)M'
  Pop $0

  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${KEY}" "DisplayName" "Quenbrook"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "DisplayIcon" "$INSTDIR\quenbrook.exe"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
SectionEnd

Section "시작 메뉴" MENU
  SetShellVarContext all
  CreateDirectory "$SMPROGRAMS\Quenbrook"
  CreateShortCut "$SMPROGRAMS\Quenbrook\Quenbrook.lnk" "$INSTDIR\quenbrook.exe"
  CreateShortCut "$SMPROGRAMS\Quenbrook\운영 안내서.lnk" "$INSTDIR\guide\index.html"
SectionEnd

Section /o "야간 자동 전송 (매일 04:37)" NIGHT
  nsExec::Exec 'schtasks /create /f /tn "${TASK}" /sc daily /st 04:37 /ru SYSTEM /tr "\"$INSTDIR\quenbrook-nightly.cmd\""'
  Pop $0
  StrCmp $0 0 +2
  DetailPrint "schtasks: $0"
SectionEnd

Function .onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/NIGHT" $1
  IfErrors +2
  !insertmacro SelectSection ${NIGHT}
FunctionEnd

; Only what the installer brought: config.ini, the logs, AutoLoadData and the till's files stay.
Section "Uninstall"
  SetShellVarContext all
  nsExec::Exec 'schtasks /delete /f /tn "${TASK}"'
  Pop $0
  Delete "$SMPROGRAMS\Quenbrook\Quenbrook.lnk"
  Delete "$SMPROGRAMS\Quenbrook\운영 안내서.lnk"
  RMDir "$SMPROGRAMS\Quenbrook"
  Delete "$INSTDIR\quenbrook.exe"
  Delete "$INSTDIR\quenbrookctl.exe"
  Delete "$INSTDIR\jetsql.exe"
  Delete "$INSTDIR\jetcheck.exe"
  Delete "$INSTDIR\makeshop.exe"
  Delete "$INSTDIR\gzip.exe"
  Delete "$INSTDIR\Pellmorn.exe"
  Delete "$INSTDIR\quenbrook-nightly.cmd"
  Delete "$INSTDIR\config-sample.ini"
  Delete "$INSTDIR\uninstall.exe"
  RMDir /r "$INSTDIR\guide\pictures"
  Delete "$INSTDIR\guide\index.html"
  RMDir "$INSTDIR\guide"
  RMDir "$INSTDIR\AutoLoadData"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
