; The set-up of one word size. tools/make-installer runs makensis with
;   VERSION     1.0.0
;   WORD_SIZE   x86 or x64
;   BUILD       the folder with Orvanemcro1.dll and vantora-doctor.exe
;   OUTPUT      the set-up to write
Unicode true
ManifestDPIAware true
SetCompressor /SOLID lzma
RequestExecutionLevel admin

!include LogicLib.nsh

!if ${WORD_SIZE} == x64
  !define PROGRAMS $PROGRAMFILES64
  !define REGISTRY_VIEW 64
  !define BITS "64-bit"
!else
  !define PROGRAMS $PROGRAMFILES32
  !define REGISTRY_VIEW 32
  !define BITS "32-bit"
!endif
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Orvane Vantora"

; Exit codes; 1 is the user's "Cancel".
!define EXIT_FAILED 2
!define EXIT_IN_USE 3

Name "Vantora ${VERSION} (${BITS})"
OutFile "${OUTPUT}"
BrandingText "Orvane"
ShowInstDetails show
ShowUninstDetails show

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Vantora"
VIAddVersionKey CompanyName "Orvane"
VIAddVersionKey LegalCopyright ""
VIAddVersionKey FileDescription "Set-up of the Vantora macro engine for ${BITS} Excel"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"

Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

!macro Fail CODE TEXT
  DetailPrint "${TEXT}"
  MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
  SetErrorLevel ${CODE}
  Abort
!macroend

; A DLL that a program has loaded can't be opened for writing. Whether it can be deleted tells
; nothing: Windows may do that at the next start.
!macro RefuseWhileInUse FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${FILE}" a
    ${If} ${Errors}
      !insertmacro Fail ${EXIT_IN_USE} "$INSTDIR\${FILE} is in use. Close Excel and all programs \
        that use Vantora, and start this again. Nothing has been changed."
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; The folder is not for choice: the engine looks for its version there.
!macro SetUpPlaces
  SetRegView ${REGISTRY_VIEW}
  SetShellVarContext all
  StrCpy $INSTDIR "${PROGRAMS}\Orvane\Vantora"
!macroend

Function .onInit
  !insertmacro SetUpPlaces
FunctionEnd

Function un.onInit
  !insertmacro SetUpPlaces
FunctionEnd

Section
  !insertmacro RefuseWhileInUse Orvanemcro1.dll
  !insertmacro RefuseWhileInUse vantora-doctor.exe

  SetOutPath "$INSTDIR"
  SetOverwrite try
  ClearErrors
  File "${BUILD}\Orvanemcro1.dll"
  File "${BUILD}\vantora-doctor.exe"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayName "Vantora ${VERSION} (${BITS})"
  WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" Publisher "Orvane"
  WriteRegStr HKLM "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\vantora-doctor.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" NoRepair 1
  ${If} ${Errors}
    !insertmacro Fail ${EXIT_FAILED} "The files could not be written to $INSTDIR. Run this as \
      administrator, and check that the disk is not full."
  ${EndIf}

  ; $SYSDIR is the folder of this set-up's word size, so this is the regsvr32 for it.
  ClearErrors
  ExecWait '"$SYSDIR\regsvr32.exe" /s "$INSTDIR\Orvanemcro1.dll"' $0
  ${If} ${Errors}
  ${OrIf} $0 != 0
    !insertmacro Fail ${EXIT_FAILED} "The files are in $INSTDIR, but the component could not be \
      registered (regsvr32 ended with $0). Start this again as administrator."
  ${EndIf}
SectionEnd

Section Uninstall
  !insertmacro RefuseWhileInUse Orvanemcro1.dll
  !insertmacro RefuseWhileInUse vantora-doctor.exe

  ${If} ${FileExists} "$INSTDIR\Orvanemcro1.dll"
    ClearErrors
    ExecWait '"$SYSDIR\regsvr32.exe" /s /u "$INSTDIR\Orvanemcro1.dll"' $0
    ${If} ${Errors}
    ${OrIf} $0 != 0
      !insertmacro Fail ${EXIT_FAILED} "The component's registration could not be removed \
        (regsvr32 ended with $0). Start this again as administrator."
    ${EndIf}
  ${EndIf}

  SetOutPath "$TEMP"
  Delete "$INSTDIR\Orvanemcro1.dll"
  Delete "$INSTDIR\vantora-doctor.exe"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  ; Stays while something else of the publisher's is in it.
  RMDir "${PROGRAMS}\Orvane"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
SectionEnd
