; The installer for Windows. Silent with /S; /D=FOLDER, last and without quotes, names the folder;
; /NIGHT registers the nightly task without a question. Exit status: 0 all done, 1 cancelled, or no
; nightly task, 2 a program of the folder is running and nothing was changed. packaging/windows/make
; gives VERSION, TREE (the unpacked archive) and OUTPUT.

Target amd64-unicode  ; as the programs are, and as wine alone runs it on a 64-bit machine
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include WordFunc.nsh

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

; A running program can be neither replaced nor deleted: nothing is changed then.
!macro EndIfRunning PROGRAM
  ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${PROGRAM}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "${PROGRAM}: 실행 중입니다. 끝난 다음에 다시 하십시오." /SD IDOK
      Abort
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section "프로그램" PROGRAM
  SectionIn RO
  !insertmacro EndIfRunning quenbrook.exe
  !insertmacro EndIfRunning quenbrookctl.exe
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

; The task as XML, since the options of schtasks do not say all of it: every shop at a moment of its
; own, made up for where the till was off, on batteries, too, and ended after three hours.
!macro TaskLine TEXT
  FileWriteUTF16LE $2 `${TEXT}$\r$\n`
!macroend

Section /o "야간 자동 전송 (매일 04:30 - 05:15)" NIGHT
  ${WordReplace} "$INSTDIR" "&" "&amp;" "+" $1
  InitPluginsDir
  FileOpen $2 "$PLUGINSDIR\task.xml" w
  FileWriteUTF16LE /BOM $2 `<?xml version="1.0" encoding="UTF-16"?>$\r$\n`
  !insertmacro TaskLine `<Task version="1.2"`
  !insertmacro TaskLine `  xmlns="http://schemas.microsoft.com/windows/2004/02/mit/task">`
  !insertmacro TaskLine `  <Triggers><CalendarTrigger>`
  !insertmacro TaskLine `    <StartBoundary>2013-01-01T04:30:00</StartBoundary>`
  !insertmacro TaskLine `    <RandomDelay>PT45M</RandomDelay>`
  !insertmacro TaskLine `    <ScheduleByDay><DaysInterval>1</DaysInterval></ScheduleByDay>`
  !insertmacro TaskLine `  </CalendarTrigger></Triggers>`
  !insertmacro TaskLine `  <Principals><Principal id="Author">`  ; S-1-5-18: the system's account
  !insertmacro TaskLine `    <UserId>S-1-5-18</UserId><RunLevel>HighestAvailable</RunLevel>`
  !insertmacro TaskLine `  </Principal></Principals>`
  !insertmacro TaskLine `  <Settings>`
  !insertmacro TaskLine `    <StartWhenAvailable>true</StartWhenAvailable>`
  !insertmacro TaskLine `    <DisallowStartIfOnBatteries>false</DisallowStartIfOnBatteries>`
  !insertmacro TaskLine `    <StopIfGoingOnBatteries>false</StopIfGoingOnBatteries>`
  !insertmacro TaskLine `    <ExecutionTimeLimit>PT3H</ExecutionTimeLimit>`
  !insertmacro TaskLine `  </Settings>`
  !insertmacro TaskLine `  <Actions Context="Author"><Exec>`
  !insertmacro TaskLine `    <Command>"$1\quenbrook-nightly.cmd"</Command>`
  !insertmacro TaskLine `  </Exec></Actions>`
  !insertmacro TaskLine `</Task>`
  FileClose $2
  nsExec::Exec 'schtasks /create /f /tn "${TASK}" /xml "$PLUGINSDIR\task.xml"'
  Pop $0
  ${If} $0 != 0
    MessageBox MB_OK|MB_ICONEXCLAMATION "야간 자동 전송을 등록하지 못했습니다 (schtasks: $0)." /SD IDOK
    SetErrorLevel 1
  ${EndIf}
SectionEnd

Function .onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/NIGHT" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${NIGHT}
  ${EndIf}
FunctionEnd

; Only what the installer brought: config.ini, the logs, AutoLoadData and the till's files stay.
Section "Uninstall"
  !insertmacro EndIfRunning quenbrook.exe
  !insertmacro EndIfRunning quenbrookctl.exe
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
