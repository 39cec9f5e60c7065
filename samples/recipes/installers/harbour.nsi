; A silent installer with an uninstaller, as makensis makes them. NAME, ARCH (x86, x64), OUT (its file) and CODE (what a
; success ends with) are defined by whoever makes it.
!if "${ARCH}" == "x64"
  Target amd64-unicode
!else
  Target x86-ansi ; the one that Windows 95, 98 and ME run, too
!endif
!define LIST "Software\Microsoft\Windows\CurrentVersion\Uninstall\${NAME}"
Name "Harbour ${NAME}"
OutFile "${OUT}"
InstallDir "C:\Program Files\Harbour ${NAME}" ; unless /D= says otherwise
RequestExecutionLevel admin
SetCompressor lzma

Section
  SetOutPath "$INSTDIR"
  ClearErrors
  File harbour.txt
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${LIST}" DisplayName "Harbour ${NAME}"
  WriteRegStr HKLM "${LIST}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${LIST}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
  IfErrors 0 +2
    Abort ; ends with 2
  SetErrorLevel ${CODE}
SectionEnd

Section Uninstall
  ; As one that waits for a program that is still in use.
  wait:
    IfFileExists "$INSTDIR\in-use.txt" 0 remove
    Sleep 200
    Goto wait
  remove:
  Delete "$INSTDIR\harbour.txt"
  Delete "$INSTDIR\uninstall.exe" ; not with _?=, because it runs from there
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${LIST}"
SectionEnd
