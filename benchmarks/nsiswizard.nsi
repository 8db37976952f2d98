; The same product's installation as an NSIS wizard (Modern UI), to compare start-up with. Payload is
; the folder with what it installs, License a text, Output the program to make.
Unicode true
!include "MUI2.nsh"

Name "Varnel Schematics"
OutFile "${Output}"
InstallDir "$PROGRAMFILES64\Varnel Schematics"
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${License}"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_LANGUAGE "English"

Section
  SetOutPath "$INSTDIR"
  File /r "${Payload}/*"
SectionEnd
