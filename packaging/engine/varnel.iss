; The setup engine of Varnel Schematics: installs, updates and, as unins000.exe, removes it. The wizard
; runs it silently and shows what statusfile.iss reports; it also works on its own.
;
; tools/windows/compile-engine calls the compiler with these definitions:
;   AppName, AppVersion, AppPublisher, AppAddress, AppCopyright, AppExe, SetupExe, AppGuid, FileType
;                    who we are, from src/product/product.ini
;   OldestBuild      of Windows, from the same file
;   Payload          folder with everything that goes into the install folder
;   WebView2Setup    the WebView2 Runtime's bootstrapper; not defined: no such step
;   Wizard           the wizard, which is installed with the application; not defined: not at all
;   SignedUninstallers  folder with the signed uninstaller; not defined: it is packed unsigned
;   VcRuntimeSetup   the Visual C++ Runtime's installer; not defined: no such step

#if Ver < EncodeVer(6, 4, 1)
  #error The status file is written with SaveStringsToUTF8FileWithoutBOM, which came with 6.4.1.
#endif

[Setup]
AppId={{#AppGuid}
AppName={#AppName}
AppVersion={#AppVersion}
AppVerName={#AppName} {#AppVersion}
AppPublisher={#AppPublisher}
AppPublisherURL=https://{#AppAddress}
AppSupportURL=https://{#AppAddress}
AppCopyright={#AppCopyright}
VersionInfoVersion={#AppVersion}
VersionInfoDescription={#AppName} setup engine
VersionInfoProductName={#AppName}
LicenseFile=license.txt

DefaultDirName={autopf}\{#AppName}
DisableProgramGroupPage=yes
PrivilegesRequired=admin
ArchitecturesAllowed=x64compatible
ArchitecturesInstallIn64BitMode=x64compatible
; What the wizard's check page accepts.
MinVersion=10.0.{#OldestBuild}
ChangesAssociations=yes
; Asked for by name, so that a second engine, another user's too, ends at once instead of mixing its
; files with ours.
SetupMutex={{#AppGuid}-engine,Global\{{#AppGuid}-engine
; The application is closed by Windows' restart manager if it runs, or the run ends with a reason (inuse.iss).
CloseApplications=yes
RestartApplications=no
#ifdef SignedUninstallers
; So is the copy of setup that works in the temp folder, as both are the same program.
SignedUninstaller=yes
SignedUninstallerDir={#SignedUninstallers}
#endif
UninstallDisplayName={#AppName}
UninstallDisplayIcon={app}\{#AppExe}

Compression=lzma2
SolidCompression=yes
WizardStyle=modern
#ifdef SetupIcon
SetupIconFile={#SetupIcon}
#endif
OutputBaseFilename=VarnelEngine-{#AppVersion}

[Tasks]
Name: desktopicon; Description: "{cm:CreateDesktopIcon}"; GroupDescription: "{cm:AdditionalIcons}"

[Dirs]
; Setup makes the install folder anyway; the entry is there for what it calls.
Name: "{code:FolderUnlessInUse}"

[Files]
Source: "{#Payload}\*"; DestDir: "{app}"; Flags: ignoreversion recursesubdirs createallsubdirs; BeforeInstall: RememberFile
Source: "license.txt"; DestDir: "{app}"; DestName: "LICENSE.txt"; Flags: ignoreversion; BeforeInstall: RememberFile
#ifdef Wizard
Source: "{#Wizard}"; DestDir: "{app}"; DestName: "{#SetupExe}"; Flags: ignoreversion; BeforeInstall: RememberFile
#endif
#ifdef WebView2Setup
Source: "{#WebView2Setup}"; DestDir: "{tmp}"; DestName: "WebView2Setup.exe"; Flags: deleteafterinstall; Check: LacksWebView2; BeforeInstall: RememberFile
#endif
#ifdef VcRuntimeSetup
Source: "{#VcRuntimeSetup}"; DestDir: "{tmp}"; DestName: "VcRuntimeSetup.exe"; Flags: deleteafterinstall; Check: LacksVcRuntime; BeforeInstall: RememberFile; AfterInstall: InstallVcRuntime
#endif

[Icons]
Name: "{autoprograms}\{#AppName}"; Filename: "{app}\{#AppExe}"; WorkingDir: "{app}"
Name: "{autodesktop}\{#AppName}"; Filename: "{app}\{#AppExe}"; WorkingDir: "{app}"; Tasks: desktopicon

[Registry]
; The two file types. Windows offers us for them; what the user has chosen before stays chosen.
#define Kind "sch"
#define KindName "Schematic"
#include "filetype.iss"
#define Kind "pcb"
#define KindName "Printed circuit board"
#include "filetype.iss"
Root: HKA; Subkey: "Software\Classes\Applications\{#AppExe}"; ValueType: string; ValueName: "FriendlyAppName"; ValueData: "{#AppName}"; Flags: uninsdeletekey

#ifdef WebView2Setup
[Run]
Filename: "{tmp}\WebView2Setup.exe"; Parameters: "/silent /install"; StatusMsg: "{cm:InstallingWebView2}"; Flags: skipifdoesntexist; Check: LacksWebView2; BeforeInstall: ReportWebView2
#endif

[CustomMessages]
InstallingWebView2=Installing WebView2 Runtime...
InstallingVcRuntime=Installing Visual C++ Runtime...
SetupBegins=Preparing...
SetupIsDone={#AppName} is installed.
SetupHasFailed=Setup could not finish.
IsOlder={#AppName} %1 is installed, which is newer than {#AppVersion}. Remove it first, or start setup with /SILENT /ALLOWDOWNGRADE.
IsRunning={#AppName} is running. Close it and try again.
RemovingFiles=Removing files...
CleaningUp=Cleaning up...
RemovalIsDone={#AppName} is removed.
RemovalHasFailed=The removal could not finish.

[Code]
function HasSwitch(const Name: String): Boolean;
var
  I: Integer;
begin
  Result := False;
  for I := 1 to ParamCount do
    Result := Result or (CompareText(ParamStr(I), Name) = 0);
end;

#include "statusfile.iss"
#include "inuse.iss"
#include "webview2.iss"
#include "vcruntime.iss"
#include "downgrade.iss"
#include "handover.iss"
