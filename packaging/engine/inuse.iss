{ Whether the application runs: Windows keeps the programs and libraries of a running program from being
  written, and neither setup nor uninstaller can be trusted to notice. An update would end half-way, and a
  removal would leave them and still say that all is removed. So both look first, and change nothing then. }

const
  FILE_GENERIC_WRITE = $40000000;
  FILE_SHARE_ALL = 7;
  OPEN_EXISTING = 3;
  ERROR_SHARING_VIOLATION = 32;

function CreateFile(const FileName: String; Access, Share: DWORD; Security: Longint; Creation, Flags: DWORD; Template: Longint): THandle;
external 'CreateFileW@kernel32.dll stdcall';

function CloseHandle(Handle: THandle): BOOL;
external 'CloseHandle@kernel32.dll stdcall';

function IsInUse(const FileName: String): Boolean;
var
  Handle: THandle;
begin
  Handle := CreateFile(FileName, FILE_GENERIC_WRITE, FILE_SHARE_ALL, 0, OPEN_EXISTING, 0, 0);
  Result := (Handle = THandle(-1)) and (DLLGetLastError = ERROR_SHARING_VIOLATION);
  if Handle <> THandle(-1) then
    CloseHandle(Handle);
end;

{ The first program or library below the folder that is in use, or nothing. A name may be left out. }
function FileInUse(const Folder, LeftOut: String): String;
var
  Found: TFindRec;
  Path, Kind: String;
begin
  Result := '';
  if not FindFirst(Folder + '\*', Found) then
    Exit;
  try
    repeat
      Path := Folder + '\' + Found.Name;
      Kind := Lowercase(ExtractFileExt(Found.Name));
      if Found.Attributes and FILE_ATTRIBUTE_DIRECTORY = 0 then
      begin
        if ((Kind = '.exe') or (Kind = '.dll')) and (CompareText(Found.Name, LeftOut) <> 0) and IsInUse(Path) then
          Result := Path;
      end
      else if (Found.Name <> '.') and (Found.Name <> '..')
          and (Found.Attributes and FILE_ATTRIBUTE_REPARSE_POINT = 0) then
        Result := FileInUse(Path, LeftOut);
    until (Result <> '') or not FindNext(Found);
  finally
    FindClose(Found);
  end;
end;

{ Whether setup or removal has to end. Somebody who is asked may close the application first; without any
  window nobody can. }
function IsRefusedInUse(const LeftOut: String; IsSilent: Boolean): Boolean;
var
  FileName, Text: String;
begin
  Result := False;
  Text := CustomMessage('IsRunning');
  repeat
    FileName := FileInUse(RemoveBackslashUnlessRoot(ExpandConstant('{app}')), LeftOut);
    if FileName = '' then
      Exit;
    Log(Text + ' In use: ' + FileName);
  until IsSilent or (SuppressibleMsgBox(Text, mbError, MB_RETRYCANCEL, IDCANCEL) <> IDRETRY);
  Refusal := Text;
  Result := True;
end;

{ The install folder, asked for after Windows has asked the applications to close, and before the first
  file. Of all that setup calls then, only this can end it: what BeforeInstall raises is reported and forgotten.
  Where the application is not installed yet, other programs of the folder may run. }
function FolderUnlessInUse(Param: String): String;
begin
  Result := ExpandConstant('{app}');
  if FileExists(Result + '\{#AppExe}') and IsRefusedInUse('', HasSwitch('/VERYSILENT') and not HasSwitch('/SUPPRESSMSGBOXES')) then
    Abort;
end;

{ The uninstaller in the folder waits until its copy elsewhere, which runs this, has done the work. }
<event('CurUninstallStepChanged')>
procedure AbortRemovalIfInUse(CurUninstallStep: TUninstallStep);
begin
  if (CurUninstallStep = usUninstall) and IsRefusedInUse(ExtractFileName(ExpandConstant('{uninstallexe}')), UninstallSilent) then
    Abort;
end;
