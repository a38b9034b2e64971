; The setup and the uninstaller. Built by tools/packaging.sh, which defines
;
;   VERSION, NAME, PUBLISHER   of the release
;   OUT                        the file that it makes
;   FILES                      a script with a File line for each file that gets installed
;   BYTES                      how much that is, in KB
;   ART                        the folder with the pictures
;   MANUAL                     when there is one
;   SIGN                       when there is a certificate: the command that signs the uninstaller
;
; What it does is described in docs/manual/deployment.md. Nothing is written over: files that are there
; are moved aside, which works while a program runs them, and come back when a later step fails.
Unicode true
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestSupportedOS all
; It needs no administrator. For all users it starts itself anew, elevated.
RequestExecutionLevel user
ShowInstDetails nevershow
ShowUninstDetails nevershow

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WordFunc.nsh
!include x64.nsh

!define DLL "${NAME}.dll"
!define PROGRAMS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL "${PROGRAMS}\${NAME}"
!define RUN_ONCE "Software\Microsoft\Windows\CurrentVersion\RunOnce"

; Exit codes; 1 is the system's for a user who has cancelled.
!define FAILED 2
!define NEWER_IS_THERE 3
!define NOT_ELEVATED 4
!define WRONG_SWITCHES 5
!define RUNS_ALREADY 6

Name "${NAME} ${VERSION}"
BrandingText "${NAME} ${VERSION}"
OutFile "${OUT}"
; Empty unless /D= names one.
InstallDir ""
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Setup of ${NAME}"
VIAddVersionKey CompanyName "${PUBLISHER}"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 ${PUBLISHER}"
!ifdef SIGN
  !uninstfinalize '${SIGN} "%1"'
!endif

Var AllUsers   ; 1 or 0
Var ScopeGiven ; by the command line
Var Installed  ; the version that is there, or ""
Var Old        ; the folder for what gets replaced
Var List       ; MoveListed's arguments
Var From
Var To
Var Failed     ; its answer
Var Skip       ; a file that it leaves
Var AllButton
Var GivenFolder ; by /D=
Var FinishText
Var Mutex

; ---- Pages ----

!define MUI_ICON "${ART}\icon.ico"
!define MUI_UNICON "${ART}\icon.ico"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${ART}\header.bmp"
!define MUI_HEADERIMAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_HEADERIMAGE_UNBITMAP "${ART}\header.bmp"
!define MUI_HEADERIMAGE_UNBITMAP_STRETCH AspectFitHeight
!define MUI_WELCOMEFINISHPAGE_BITMAP "${ART}\side.bmp"
!define MUI_WELCOMEFINISHPAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_ABORTWARNING

!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipWhenScopeGiven
!define MUI_WELCOMEPAGE_TITLE "${NAME} ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "This installs the library through which your \
manufacturing application works with the accounts product.$\r$\n$\r$\nThe library comes twice: for \
programs of 64 bits and for those of 32 bits. Both are installed, and each program gets the one it \
needs.$\r$\n$\r$\nPrograms that use the library may go on running. They get this version when they \
are started the next time."
!insertmacro MUI_PAGE_WELCOME
Page custom ScopePage ScopePageLeave
!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipWhenInstalled
!define MUI_DIRECTORYPAGE_TEXT_TOP "The library and what goes with it are put into this folder."
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE "${NAME} ${VERSION} is installed"
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_TEXT "$FinishText"
!define MUI_PAGE_CUSTOMFUNCTION_PRE WriteFinishText
!ifdef MANUAL
  !define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\manual\index.html"
  !define MUI_FINISHPAGE_SHOWREADME_TEXT "Show the manual"
  !define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!endif
!insertmacro MUI_PAGE_FINISH

!define MUI_UNCONFIRMPAGE_TEXT_TOP "The library is removed from this folder, and programs do not find \
it any more. Its settings below Software\${NAME} in the registry are yours, and stay."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; ---- What setup and uninstaller share ----

; Ends with an exit code, and says why unless it is silent.
!macro Refuse CODE TEXT
  MessageBox MB_ICONSTOP|MB_OK "${TEXT}" /SD IDOK
  SetErrorLevel ${CODE}
  Quit
!macroend

; The library of one architecture, if it is there: "" for SWITCH registers it, "/u" undoes that. Each
; is registered by the system's program of its own architecture. $0 is 0 when that has worked.
!macro RegisterOne SWITCH ARCH PROGRAM
  ${If} $0 = 0
  ${AndIf} ${FileExists} "$INSTDIR\${ARCH}\${DLL}"
    ${If} $AllUsers = 1
      ExecWait '"${PROGRAM}" /s ${SWITCH} "$INSTDIR\${ARCH}\${DLL}"' $0
    ${Else}
      ExecWait '"${PROGRAM}" /s ${SWITCH} /n /i:user "$INSTDIR\${ARCH}\${DLL}"' $0
    ${EndIf}
    ${If} ${Errors}
      StrCpy $0 1
    ${EndIf}
  ${EndIf}
!macroend

!macro Register SWITCH
  ClearErrors
  StrCpy $0 0
  ${If} ${RunningX64}
    !insertmacro RegisterOne "${SWITCH}" x64 "$WINDIR\sysnative\regsvr32.exe"
  ${EndIf}
  !insertmacro RegisterOne "${SWITCH}" x86 "$SYSDIR\regsvr32.exe"
!macroend

!macro UseScope
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  ${If} $AllUsers = 1
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
!macroend

; What is left to be run where an uninstaller could not delete itself.
!define LATER '"${NAME} 2 $INSTDIR"'
!define DELETE_REST 'cmd /c del "$INSTDIR\uninstall.exe" & rmdir "$INSTDIR" "$LOCALAPPDATA\Programs"'

; As far as it is empty; and the one that holds a user's programs, which may have been made for this one.
!macro RemoveFolder
  RMDir "$INSTDIR"
  RMDir "$LOCALAPPDATA\Programs"
!macroend

!macro MoveListed LIST FROM TO
  StrCpy $List "${LIST}"
  StrCpy $From "${FROM}"
  StrCpy $To "${TO}"
  Call ${UN}MoveListed
!macroend

!macro Shared UN

; Moves those files that the list names and that are there. $Failed becomes 1 when one could not be moved;
; then the rest stays.
Function ${UN}MoveListed
  Push $0
  Push $1
  Push $2
  ClearErrors
  FileOpen $0 "$List" r
  ${If} ${Errors}
    ClearErrors  ; nothing to move
    Goto done
  ${EndIf}
  next:
    FileRead $0 $1
    ${If} ${Errors}
      ClearErrors
      Goto close
    ${EndIf}
    StrCpy $1 $1 -2  ; the end of the line
    ${IfNot} ${FileExists} "$From\$1"
    ${OrIf} $1 == $Skip
      Goto next
    ${EndIf}
    ${GetParent} "$To\$1" $2
    CreateDirectory "$2"
    ClearErrors
    Rename "$From\$1" "$To\$1"
    IfErrors 0 next
    StrCpy $Failed 1
  close:
    FileClose $0
  done:
  Pop $2
  Pop $1
  Pop $0
FunctionEnd

; Removes the folders of the listed files as far as they are empty.
Function ${UN}RemoveEmptyFolders
  Push $0
  Push $1
  ClearErrors
  FileOpen $0 "$List" r
  ${Unless} ${Errors}
    ${Do}
      ClearErrors
      FileRead $0 $1
      ${If} ${Errors}
        ${Break}
      ${EndIf}
      StrCpy $1 "$From\$1" -2
      ${Do}
        ${GetParent} "$1" $1
        ${If} $1 == $From
          ${Break}
        ${EndIf}
        RMDir "$1"
      ${Loop}
    ${Loop}
    FileClose $0
  ${EndUnless}
  ClearErrors
  Pop $1
  Pop $0
FunctionEnd

; Deletes what has been moved aside, now and at earlier times. What a program still runs goes with the
; next start of the system or, of a user who may not ask for that, with the next logon. (The names of what
; is to be run then have an order: the folder itself comes last.)
Function ${UN}DeleteOld
  Push $0
  Push $1
  ClearErrors
  FindFirst $0 $1 "$INSTDIR\old-*"
  ${DoUntil} ${Errors}
    ${IfNot} ${FileExists} "$INSTDIR\$1\undo"
      RMDir /r "$INSTDIR\$1"
      ${If} ${FileExists} "$INSTDIR\$1\*"
        ${If} $AllUsers = 1
          RMDir /r /REBOOTOK "$INSTDIR\$1"
        ${Else}
          WriteRegStr HKCU "${RUN_ONCE}" "${NAME} 1 $1" \
            'cmd /c rmdir /s /q "$INSTDIR\$1"'
        ${EndIf}
      ${EndIf}
    ${EndIf}
    ClearErrors
    FindNext $0 $1
  ${Loop}
  FindClose $0
  ClearErrors
  Pop $1
  Pop $0
FunctionEnd

; A folder for what is moved aside that is not there yet.
Function ${UN}ChooseOld
  Push $0
  StrCpy $0 1
  ${While} ${FileExists} "$INSTDIR\old-$0\*"
    IntOp $0 $0 + 1
  ${EndWhile}
  StrCpy $Old "$INSTDIR\old-$0"
  CreateDirectory "$Old"
  Pop $0
FunctionEnd

; Only one changes anything at a time; it may show its last page for longer.
Function ${UN}OnlyOne
  System::Call 'kernel32::CreateMutexW(p 0, i 0, w "${NAME} setup") p .s ?e'
  Pop $0
  Pop $Mutex
  ${If} $0 = 183  ; it exists
    !insertmacro Refuse ${RUNS_ALREADY} "Another setup of ${NAME} is at work."
  ${EndIf}
FunctionEnd

Function ${UN}Ready
  System::Call 'kernel32::CloseHandle(p $Mutex)'
  SetDetailsPrint textonly
FunctionEnd

; Goes on only as an administrator. Others are asked to become one; this program then ends, unless
; they would rather not: that sets the error flag.
Function ${UN}MustBeElevated
  UserInfo::GetAccountType
  Pop $0
  ClearErrors
  ${If} $0 == "Admin"
    Return
  ${EndIf}
  ${If} ${Silent}
    SetErrorLevel ${NOT_ELEVATED}
    Quit
  ${EndIf}
  !if "${UN}" == ""
    ${GetParameters} $0
    ${If} $GivenFolder != ""
      StrCpy $0 "$0 /D=$GivenFolder"
    ${EndIf}
    ExecShell runas "$EXEPATH" "/AllUsers $0"
  !else
    ExecShell runas "$INSTDIR\uninstall.exe"
  !endif
  ${IfNot} ${Errors}
    Quit
  ${EndIf}
FunctionEnd

!macroend

!define UN ""
!insertmacro Shared ""
!undef UN
!define UN "un."
!insertmacro Shared "un."
!undef UN
!define UN ""

; ---- Setup ----

; The version that is installed in the scope that $AllUsers says, and where; both may be "".
!macro ReadInstalled VERSION FOLDER
  ${If} $AllUsers = 1
    ReadRegStr ${VERSION} HKLM "${UNINSTALL}" DisplayVersion
    ReadRegStr ${FOLDER} HKLM "${UNINSTALL}" InstallLocation
  ${Else}
    ReadRegStr ${VERSION} HKCU "${UNINSTALL}" DisplayVersion
    ReadRegStr ${FOLDER} HKCU "${UNINSTALL}" InstallLocation
  ${EndIf}
!macroend

Function .onInit
  StrCpy $GivenFolder $INSTDIR
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  ${GetParameters} $0
  StrCpy $ScopeGiven 0
  ClearErrors
  ${GetOptions} $0 "/AllUsers" $1
  ${IfNot} ${Errors}
    StrCpy $AllUsers 1
    StrCpy $ScopeGiven 1
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/CurrentUser" $1
  ${IfNot} ${Errors}
    ${If} $ScopeGiven = 1
      !insertmacro Refuse ${WRONG_SWITCHES} "Either /AllUsers or /CurrentUser, not both."
    ${EndIf}
    StrCpy $AllUsers 0
    StrCpy $ScopeGiven 1
  ${EndIf}

  ; Where it is installed already, or for the user alone.
  ${If} $ScopeGiven = 0
    StrCpy $AllUsers 0
    !insertmacro ReadInstalled $Installed $1
    ${If} $Installed == ""
      StrCpy $AllUsers 1
      !insertmacro ReadInstalled $Installed $1
      ${If} $Installed == ""
        StrCpy $AllUsers 0
      ${EndIf}
    ${EndIf}
  ${EndIf}
  ; In quotes it is none of the switches, and would be passed over.
  ClearErrors
  ${WordFind} $0 '"/D=' "E*" $1
  ${IfNot} ${Errors}
    !insertmacro Refuse ${WRONG_SWITCHES} "/D= has no quotes around it, and comes last."
  ${EndIf}
  ${If} ${Silent}
    Call UseChosenScope
  ${ElseIf} $ScopeGiven = 1
    Call UseChosenScope
  ${EndIf}
FunctionEnd

; The user has chosen, or the command line has.
Function UseChosenScope
  ${If} $AllUsers = 1
    Call MustBeElevated
    ${If} ${Errors}
      SetErrorLevel 1
      Abort
    ${EndIf}
  ${EndIf}
  SetErrorLevel -1
  !insertmacro UseScope
  !insertmacro ReadInstalled $Installed $0
  ${If} $Installed == ""
    StrCpy $INSTDIR $GivenFolder
    ${If} $INSTDIR != ""
      Return
    ${ElseIf} $AllUsers = 0
      StrCpy $INSTDIR "$LOCALAPPDATA\Programs\${NAME}"
    ${ElseIf} ${RunningX64}
      StrCpy $INSTDIR "$PROGRAMFILES64\${NAME}"
    ${Else}
      StrCpy $INSTDIR "$PROGRAMFILES32\${NAME}"
    ${EndIf}
    Return
  ${EndIf}

  ${If} $GivenFolder != ""
  ${AndIf} $GivenFolder != $0
    !insertmacro Refuse ${WRONG_SWITCHES} "${NAME} $Installed is installed in $0. It can be replaced \
there, or removed first."
  ${EndIf}
  StrCpy $INSTDIR $0
  ${VersionCompare} "$Installed" "${VERSION}" $1
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/Downgrade" $0
  ${If} ${Errors}
  ${AndIf} $1 = 1
    !insertmacro Refuse ${NEWER_IS_THERE} "${NAME} $Installed is installed, which is newer. It stays; \
the switch /Downgrade replaces it all the same."
  ${EndIf}
FunctionEnd

Function SkipWhenScopeGiven
  ${If} $ScopeGiven = 1
    Abort
  ${EndIf}
FunctionEnd

Function SkipWhenInstalled
  ${If} $Installed != ""
    Abort
  ${EndIf}
FunctionEnd

!macro WhatIsInstalled ROOT TEXT
  ReadRegStr ${TEXT} ${ROOT} "${UNINSTALL}" DisplayVersion
  ${If} ${TEXT} != ""
    StrCpy ${TEXT} " (version ${TEXT} is installed)"
  ${EndIf}
!macroend

Function ScopePage
  ${If} $ScopeGiven = 1
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "For whom" "Who is to use the library on this computer?"
  !insertmacro WhatIsInstalled HKCU $2
  !insertmacro WhatIsInstalled HKLM $3
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 8u 100% 12u "&Just me$2"
  Pop $1
  ${NSD_CreateLabel} 12u 21u 95% 20u "No administrator is needed. Programs that run as another user, \
or as a service, do not find the library."
  Pop $0
  ${NSD_CreateRadioButton} 0 50u 100% 12u "&All users of this computer$3"
  Pop $AllButton
  ${NSD_CreateLabel} 12u 63u 95% 20u "Needs an administrator: Windows asks for one."
  Pop $0
  ${If} $AllUsers = 1
    ${NSD_Check} $AllButton
  ${Else}
    ${NSD_Check} $1
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function ScopePageLeave
  ${NSD_GetState} $AllButton $AllUsers
  Call UseChosenScope
FunctionEnd

Function WriteFinishText
  StrCpy $FinishText "Your programs find the library from now on. Both are there: programs of 64 bits \
get the one of 64 bits, programs of 32 bits the other.$\r$\n$\r$\nThe accounts engine has to have the \
bits of the program that uses it. Where the engine comes for 32 bits only, that program has to be one \
of 32 bits, too."
  ${IfNot} ${RunningX64}
    StrCpy $FinishText "Your programs find the library from now on. On this Windows of 32 bits, that \
is the one for programs of 32 bits."
  ${EndIf}
FunctionEnd

; All is put back that has been done so far, which the state of the disk says: "undo" is there until all
; is well, "moved" once what was there is out of the way. $Failed becomes 1 when something cannot be put
; back; then all stays as it is, for the next setup.
Function RollBack
  StrCpy $Failed 0
  ${If} ${FileExists} "$Old\moved"
    !insertmacro Register /u
    !insertmacro MoveListed "$Old\new.txt" "$INSTDIR" "$Old\new"
  ${EndIf}
  !insertmacro MoveListed "$Old\old.txt" "$Old" "$INSTDIR"
  !insertmacro MoveListed "$Old\new.txt" "$Old" "$INSTDIR"
  ${If} $Failed = 1
    Return
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\files.txt"
    !insertmacro Register ""
  ${EndIf}
  RMDir /r "$INSTDIR\new"
  StrCpy $From "$INSTDIR"
  StrCpy $List "$Old\new.txt"
  Call RemoveEmptyFolders
  Delete "$Old\undo"
  Call DeleteOld
  SetOutPath "$TEMP"
  !insertmacro RemoveFolder
FunctionEnd

!define CANNOT_UNDO "What was there before could not be put back: perhaps a program has one of the files \
open. Close it, and start the setup once more."

; What went wrong is in $1.
Function RollBackAndEnd
  Call RollBack
  Call Ready
  StrCpy $2 "What was there before is there again."
  ${If} $Failed = 1
    StrCpy $2 "${CANNOT_UNDO}"
  ${EndIf}
  MessageBox MB_ICONSTOP|MB_OK "$1$\r$\n$\r$\n$2" /SD IDOK
  SetErrorLevel ${FAILED}
  Abort "$1"
FunctionEnd

; The disk is full, for one.
Function .onInstFailed
  ${If} ${FileExists} "$Old\undo"
    Call RollBack
    SetErrorLevel ${FAILED}
  ${EndIf}
FunctionEnd

; Whether the folder has files of another program where ours would be: $1 names one, or is "".
Function FindForeign
  FileOpen $0 "$INSTDIR\new\files.txt" r
  ${Do}
    ClearErrors
    FileRead $0 $1
    StrCpy $1 $1 -2  ; the end of the line
    ${If} ${Errors}
    ${OrIf} ${FileExists} "$INSTDIR\$1"
      ${Break}
    ${EndIf}
  ${Loop}
  FileClose $0
FunctionEnd

; A setup that was killed in the middle.
Function UndoUnfinished
  ClearErrors
  FindFirst $0 $1 "$INSTDIR\old-*"
  ${DoUntil} ${Errors}
    ${If} ${FileExists} "$INSTDIR\$1\undo"
      StrCpy $Old "$INSTDIR\$1"
      Push $0
      Call RollBack
      ${If} $Failed = 1
        !insertmacro Refuse ${FAILED} "${CANNOT_UNDO}"
      ${EndIf}
      Pop $0
    ${EndIf}
    ClearErrors
    FindNext $0 $1
  ${Loop}
  FindClose $0
  ClearErrors
FunctionEnd

Section
  SetDetailsPrint none
  Call OnlyOne
  Call UndoUnfinished
  Call DeleteOld
  ${If} $Installed == ""
  ${AndIf} ${FileExists} "$INSTDIR\files.txt"
    !insertmacro Refuse ${WRONG_SWITCHES} "$INSTDIR has another installation of ${NAME} in it."
  ${EndIf}

  ; The rest of an uninstaller goes now, before there is a new one that would be taken for it.
  ReadRegStr $0 SHCTX "${RUN_ONCE}" ${LATER}
  ${If} $0 != ""
    Delete "$INSTDIR\uninstall.exe"
    DeleteRegValue SHCTX "${RUN_ONCE}" ${LATER}
  ${EndIf}

  ; Beside what is there: nothing has changed yet.
  CreateDirectory "$INSTDIR"
  Call ChooseOld
  FileOpen $0 "$Old\undo" w
  FileClose $0
  CopyFiles /SILENT "$INSTDIR\files.txt" "$Old\old.txt"
  ClearErrors
  !include "${FILES}"
  WriteUninstaller "$INSTDIR\new\uninstall.exe"
  WriteINIStr "$INSTDIR\new\setup.ini" Setup AllUsers $AllUsers
  SetOutPath "$INSTDIR"
  CopyFiles /SILENT "$INSTDIR\new\files.txt" "$Old\new.txt"
  ${If} ${Errors}
    StrCpy $1 "The files could not be written into $INSTDIR."
    Call RollBackAndEnd
  ${EndIf}
  ${If} $Installed == ""
    Call FindForeign
    ${If} $1 != ""
      StrCpy $1 "$INSTDIR has another program's $1 in it."
      Call RollBackAndEnd
    ${EndIf}
  ${EndIf}

  ; The exchange.
  StrCpy $Failed 0
  !insertmacro MoveListed "$Old\old.txt" "$INSTDIR" "$Old"
  !insertmacro MoveListed "$Old\new.txt" "$INSTDIR" "$Old"
  ${If} $Failed = 1
    StrCpy $1 "A file in $INSTDIR could not be replaced. Perhaps a program has it open."
    Call RollBackAndEnd
  ${EndIf}
  FileOpen $0 "$Old\moved" w
  FileClose $0
  !insertmacro MoveListed "$Old\new.txt" "$INSTDIR\new" "$INSTDIR"
  ${If} $Failed = 1
    StrCpy $1 "The files could not be put into $INSTDIR."
    Call RollBackAndEnd
  ${EndIf}
  !insertmacro Register ""
  ${If} $0 <> 0
    StrCpy $1 "The library could not be registered (regsvr32 ended with $0)."
    Call RollBackAndEnd
  ${EndIf}
  Delete "$Old\undo"
  RMDir /r "$INSTDIR\new"
  StrCpy $From "$INSTDIR"
  StrCpy $List "$Old\old.txt"
  Call RemoveEmptyFolders
  Call DeleteOld

  ; Start menu.
  CreateDirectory "$SMPROGRAMS\${NAME}"
  !ifdef MANUAL
    CreateShortcut "$SMPROGRAMS\${NAME}\Manual.lnk" "$INSTDIR\manual\index.html"
  !endif
  CreateShortcut "$SMPROGRAMS\${NAME}\Trace report.lnk" "$SYSDIR\cmd.exe" \
    '/k ""$INSTDIR\trace_report.exe" --help"' "$INSTDIR\uninstall.exe" 0 SW_SHOWNORMAL "" \
    "Sums a trace file of the library up"

  ; Apps & features.
  WriteRegStr SHCTX "${UNINSTALL}" DisplayName "${NAME}"
  WriteRegStr SHCTX "${UNINSTALL}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL}" Publisher "${PUBLISHER}"
  WriteRegStr SHCTX "${UNINSTALL}" DisplayIcon "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${UNINSTALL}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL}" EstimatedSize ${BYTES}
  WriteRegDWORD SHCTX "${UNINSTALL}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL}" NoRepair 1
  Call Ready
  DetailPrint "Done."
SectionEnd

; ---- Uninstaller ----

Function un.onInit
  StrCpy $0 $INSTDIR "" -1
  ${If} $0 == "\"
    StrCpy $INSTDIR $INSTDIR -1
  ${EndIf}
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  ReadINIStr $AllUsers "$INSTDIR\setup.ini" Setup AllUsers
  ${If} $AllUsers = 1
    Call un.MustBeElevated
    ${If} ${Errors}
      SetErrorLevel 1
      Abort
    ${EndIf}
  ${EndIf}
  !insertmacro UseScope
FunctionEnd

!undef UN
!define UN "un."
Section un.Uninstall
  SetDetailsPrint none
  Call un.OnlyOne
  Call un.ChooseOld
  CopyFiles /SILENT "$INSTDIR\files.txt" "$Old\old.txt"
  !insertmacro Register /u
  ${If} $0 = 0
    ; This very program, unless it runs as a copy.
    StrCpy $Skip uninstall.exe
    StrCpy $Failed 0
    !insertmacro MoveListed "$Old\old.txt" "$INSTDIR" "$Old"
    ${If} $Failed = 1
      !insertmacro MoveListed "$Old\old.txt" "$Old" "$INSTDIR"
      StrCpy $0 1
    ${EndIf}
  ${EndIf}
  ${If} $0 <> 0
    !insertmacro Register ""
    Call un.DeleteOld
    Call un.Ready
    StrCpy $1 "Perhaps a program has one of the files open. Everything is left as it was."
    MessageBox MB_ICONSTOP|MB_OK "$1" /SD IDOK
    SetErrorLevel ${FAILED}
    Abort "$1"
  ${EndIf}

  Delete "$SMPROGRAMS\${NAME}\Manual.lnk"
  Delete "$SMPROGRAMS\${NAME}\Trace report.lnk"
  RMDir "$SMPROGRAMS\${NAME}"
  DeleteRegKey SHCTX "${UNINSTALL}"
  ${If} $AllUsers <> 1
    DeleteRegKey /ifempty HKCU "${PROGRAMS}"
  ${EndIf}
  StrCpy $From "$INSTDIR"
  StrCpy $List "$Old\old.txt"
  Call un.RemoveEmptyFolders
  SetOutPath "$TEMP"
  Call un.DeleteOld
  Delete "$INSTDIR\uninstall.exe"
  !insertmacro RemoveFolder
  ; This program, or the copy as which it runs, and the folder, if something in it is still in use.
  ${If} $AllUsers = 1
    RMDir /REBOOTOK "$EXEDIR"
  ${Else}
    StrLen $0 "$TEMP\"
    StrCpy $0 "$EXEDIR" $0
    ${If} $0 == "$TEMP\"
      WriteRegStr HKCU "${RUN_ONCE}" "${NAME} 2 copy" 'cmd /c del "$EXEPATH" & rmdir "$EXEDIR"'
    ${EndIf}
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\*"
    WriteRegStr SHCTX "${RUN_ONCE}" ${LATER} '${DELETE_REST}'
  ${EndIf}
  Call un.Ready
  DetailPrint "Done."
SectionEnd
