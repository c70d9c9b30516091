; The installer for Word on 64-bit Windows, for one user and without an administrator. packaging/windows.sh makes it:
;
;   makensis -DVERSION=… -DFILES=FOLDER -DOUTPUT=FILE windows.nsi
;
; Both DLLs are registered, whatever the width of Word. Files of a version that Word has loaded are put aside, and the
; running Word keeps them. They go with the next version, or when PLUVO is taken out.

Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true

!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh

Name "PLUVO ${VERSION}"
BrandingText "PLUVO ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\PLUVO"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "PLUVO"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs PLUVO for Microsoft Word"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "Licensed under the Apache License, Version 2.0"

!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\PLUVO"
!define SETTINGS "Software\PLUVO"

!define MUI_ABORTWARNING
!define MUI_WELCOMEPAGE_TITLE "PLUVO ${VERSION} for Microsoft Word"
!define MUI_WELCOMEPAGE_TEXT "PLUVO finds blocks of text in documents, and inserts, replaces, deletes or highlights them. \
It gets a button on the Home tab of Word.$\r$\n$\r$\nIt is installed for you alone, into$\r$\n$INSTDIR$\r$\n$\r$\nand \
needs no administrator. It works in 64-bit and in 32-bit Word."
!define MUI_FINISHPAGE_TITLE "PLUVO is installed"
!define MUI_FINISHPAGE_TEXT "Start Word. The PLUVO button is on the Home tab, at its right end.$\r$\n$\r$\nIf Word is \
open, close all its windows first: it looks for new buttons when it starts."
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\Instructions.doc"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Open the instructions"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!define MUI_UNCONFIRMPAGE_TEXT_TOP "PLUVO and its button in Word are taken out. What you saved as your options stays, \
and so do copies of originals."
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Says what is wrong, and ends. Nothing that matters has changed.
!macro Fail text
  SetErrorLevel 2
  MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
  Abort "${text}"
!macroend

!macro RemoveFiles
  Delete "$INSTDIR\*.old"
  Delete "$INSTDIR\*.new"
  Delete "$INSTDIR\pluvo64.dll"
  Delete "$INSTDIR\pluvo32.dll"
  Delete "$INSTDIR\Instructions.doc"
  Delete "$INSTDIR\Readme.txt"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath $TEMP
  RMDir $INSTDIR
!macroend

; The folder of the user's templates, as Word is told of it, into $0. PLUVO's data folder lies in it.
!macro FindTemplates
  StrCpy $0 ""
  ${ForEach} $1 12 16 + 1
    ClearErrors
    ReadRegStr $2 HKCU "Software\Microsoft\Office\$1.0\Common\General" "UserTemplates"
    ${IfNot} ${Errors}
    ${AndIf} $2 != ""
      ExpandEnvStrings $0 $2
    ${EndIf}
  ${Next}
  ${If} $0 == ""
    StrCpy $0 "$APPDATA\Microsoft\Templates"
  ${EndIf}
!macroend

; A new file lies beside the old one: they change places. A file that is loaded cannot go, but its name can.
!macro Replace name
  Delete "$INSTDIR\${name}"
  ${If} ${FileExists} "$INSTDIR\${name}"
    StrCpy $1 1
    ${While} ${FileExists} "$INSTDIR\${name}.$1.old"
      IntOp $1 $1 + 1
    ${EndWhile}
    Rename "$INSTDIR\${name}" "$INSTDIR\${name}.$1.old"
  ${EndIf}
  ClearErrors
  Rename "$INSTDIR\${name}.new" "$INSTDIR\${name}"
  ${If} ${Errors}
    Delete "$INSTDIR\*.new"
    !insertmacro Fail "$INSTDIR\${name} cannot be replaced. Close Word, and run this again."
  ${EndIf}
!macroend

Function .onInit
  ; A new version goes where the old one is.
  ReadRegStr $0 HKCU "${ENTRY}" "InstallLocation"
  ${If} $0 != ""
  ${AndIf} ${FileExists} "$0\pluvo64.dll"
    StrCpy $INSTDIR $0
  ${EndIf}
FunctionEnd

Section
  SetOutPath $INSTDIR
  Delete "$INSTDIR\*.old"
  ClearErrors
  SetOverwrite try
  File "/oname=pluvo64.dll.new" "${FILES}/pluvo64.dll"
  File "/oname=pluvo32.dll.new" "${FILES}/pluvo32.dll"
  File "/oname=Instructions.doc.new" "${FILES}/Instructions.doc"
  File "/oname=Readme.txt.new" "${FILES}/Readme.txt"
  ${If} ${Errors}
    Delete "$INSTDIR\*.new"
    RMDir $INSTDIR
    !insertmacro Fail "The files cannot be written into $INSTDIR. See that the disk is not full, and run this again."
  ${EndIf}
  !insertmacro Replace pluvo64.dll
  !insertmacro Replace pluvo32.dll
  !insertmacro Replace Instructions.doc
  !insertmacro Replace Readme.txt
  WriteUninstaller "$INSTDIR\uninstall.exe"

  ExecWait '"$SYSDIR\regsvr32.exe" /s /n /i:both "$INSTDIR\pluvo64.dll"' $0
  ${If} $0 != 0
    ReadRegStr $1 HKCU "${ENTRY}" "InstallLocation"
    ${If} $1 == ""
      !insertmacro RemoveFiles
    ${EndIf}
    !insertmacro Fail "PLUVO cannot be registered for Word: regsvr32 ended with $0. Programs that are not signed may be \
forbidden on this computer; ask its administrator."
  ${EndIf}

  ; Set unless the user has decided otherwise; taken back where it was set here.
  ClearErrors
  ReadRegDWORD $0 HKCU "${SETTINGS}" "Careful"
  ${If} ${Errors}
    WriteRegDWORD HKCU "${SETTINGS}" "Careful" 1
    WriteRegDWORD HKCU "${ENTRY}" "SetCareful" 1
  ${EndIf}

  ; Of the folders made here those go again that are left empty.
  !insertmacro FindTemplates
  ${IfNot} ${FileExists} "$0\PLUVO\*.*"
    StrCpy $1 $0
    StrCpy $2 1
    ${DoUntil} ${FileExists} "$1\*.*"
      IntOp $2 $2 + 1
      ${GetParent} $1 $1
      ${If} $1 == ""
        ${ExitDo}
      ${EndIf}
    ${Loop}
    CreateDirectory "$0\PLUVO"
    WriteRegStr HKCU "${ENTRY}" "DataFolder" "$0\PLUVO"
    WriteRegDWORD HKCU "${ENTRY}" "MadeFolders" $2
  ${EndIf}

  ${GetSize} $INSTDIR "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${ENTRY}" "EstimatedSize" $0
  WriteRegStr HKCU "${ENTRY}" "DisplayName" "PLUVO for Microsoft Word"
  WriteRegStr HKCU "${ENTRY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${ENTRY}" "Publisher" "PLUVO"
  WriteRegStr HKCU "${ENTRY}" "DisplayIcon" "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${ENTRY}" "InstallLocation" $INSTDIR
  WriteRegStr HKCU "${ENTRY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${ENTRY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${ENTRY}" "NoModify" 1
  WriteRegDWORD HKCU "${ENTRY}" "NoRepair" 1
SectionEnd

; Whether Word has one of the DLLs loaded, into $0: nobody may write into it then.
Function un.findLoaded
  StrCpy $0 ""
  FindFirst $1 $2 "$INSTDIR\pluvo*.dll*"
  ${DoWhile} $2 != ""
    ClearErrors
    FileOpen $3 "$INSTDIR\$2" a
    ${If} ${Errors}
      StrCpy $0 "$INSTDIR\$2"
    ${Else}
      FileClose $3
    ${EndIf}
    ClearErrors
    FindNext $1 $2
    ${If} ${Errors}
      StrCpy $2 ""
    ${EndIf}
  ${Loop}
  FindClose $1
FunctionEnd

Section Uninstall
  ${Do}
    Call un.findLoaded
    ${If} $0 == ""
      ${ExitDo}
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Word has PLUVO loaded. Close all windows of Word, and choose Retry.$\r$\n\
$\r$\n$0" /SD IDCANCEL IDRETRY again
    SetErrorLevel 3
    Abort "Word has PLUVO loaded. Nothing was taken out."
    again:
  ${Loop}

  ExecWait '"$SYSDIR\regsvr32.exe" /s /u /n /i:both "$INSTDIR\pluvo64.dll"' $0
  ${If} $0 != 0
    !insertmacro Fail "PLUVO's entries cannot be taken out of the registry: regsvr32 ended with $0."
  ${EndIf}
  !insertmacro RemoveFiles

  ; Logs are PLUVO's. Options and copies of originals are the user's, and keep the folder.
  ReadRegStr $0 HKCU "${ENTRY}" "DataFolder"
  ReadRegDWORD $1 HKCU "${ENTRY}" "MadeFolders"
  ${If} $0 == ""
    !insertmacro FindTemplates
    StrCpy $0 "$0\PLUVO"
    StrCpy $1 0
  ${EndIf}
  Delete "$0\errors.txt"
  Delete "$0\word.log"
  ${DoWhile} $1 > 0
    RMDir $0
    ${GetParent} $0 $0
    IntOp $1 $1 - 1
  ${Loop}

  ReadRegDWORD $0 HKCU "${ENTRY}" "SetCareful"
  ${If} $0 == 1
    DeleteRegValue HKCU "${SETTINGS}" "Careful"
  ${EndIf}
  DeleteRegKey /ifempty HKCU "${SETTINGS}"
  DeleteRegKey HKCU "${ENTRY}"
  DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
SectionEnd
