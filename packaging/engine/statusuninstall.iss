{ A removal: it knows no event for its progress. But it moves a progress bar, on a window that nobody
  sees, so we listen to what the bar is told. Names of files are found by looking which of ours have gone. }

const
  PBM_SETPOS = $0402;
  GWL_WNDPROC = -4;
  MostLooks = 200;   { at files, for one report }

var
  OurFiles: TStringList;
  NextFile: Integer;
  BarProcedure: Longint;

function CallWindowProc(Procedure_: Longint; Window: HWND; Message: UINT; W, L: Longint): Longint;
external 'CallWindowProcW@user32.dll stdcall';

function SetWindowLong(Window: HWND; Index: Integer; Value: Longint): Longint;
external 'SetWindowLongW@user32.dll stdcall';

procedure ListFiles(const Folder: String);
var
  Found: TFindRec;
begin
  if not FindFirst(Folder + '\*', Found) then
    Exit;
  try
    repeat
      if Found.Attributes and FILE_ATTRIBUTE_DIRECTORY = 0 then
        OurFiles.Add(Folder + '\' + Found.Name)
      else if (Found.Name <> '.') and (Found.Name <> '..')
          and (Found.Attributes and FILE_ATTRIBUTE_REPARSE_POINT = 0) then
        ListFiles(Folder + '\' + Found.Name);
    until not FindNext(Found);
  finally
    FindClose(Found);
  end;
end;

{ One of the files that have gone since the last time. Of many files only some are looked at each time, in
  turns, so that the removal need not wait for the looks. }
function RemovedFile: String;
var
  I, Looks: Integer;
begin
  Result := '';
  Looks := OurFiles.Count;
  if Looks > MostLooks then
    Looks := MostLooks;
  for I := 1 to Looks do
  begin
    if NextFile >= OurFiles.Count then
      NextFile := 0;
    if FileExists(OurFiles[NextFile]) then
      NextFile := NextFile + 1
    else
    begin
      Result := OurFiles[NextFile];
      OurFiles.Delete(NextFile);
    end;
  end;
end;

procedure OnBarMoved;
var
  FileName, Status: String;
begin
  if GetTickCount - LastReport < ReportInterval then
    Exit;
  FileName := RemovedFile;
  if FileName <> '' then
    Status := CustomMessage('RemovingFiles');
  with UninstallProgressForm.ProgressBar do
    Report(Position, Max, FileName, Status);
end;

function BarMessage(Window: HWND; Message: UINT; W, L: Longint): Longint;
begin
  Result := CallWindowProc(BarProcedure, Window, Message, W, L);
  if Message = PBM_SETPOS then
  try
    OnBarMoved;
  except
    Log('No status was written: ' + GetExceptionMessage);
  end;
end;

procedure InitializeUninstallProgressForm;
begin
  OpenStatusFile;
  if StatusFile = '' then
    Exit;
  Report(0, 1, '', UninstallProgressForm.StatusLabel.Caption);
  try
    OurFiles := TStringList.Create;
    ListFiles(ExpandConstant('{app}'));
    BarProcedure := SetWindowLong(UninstallProgressForm.ProgressBar.Handle, GWL_WNDPROC, CreateCallback(@BarMessage));
  except
    { A removal that nobody can follow is still one. }
    Log('No progress will be told: ' + GetExceptionMessage);
  end;
end;

procedure CurUninstallStepChanged(CurUninstallStep: TUninstallStep);
begin
  case CurUninstallStep of
    usPostUninstall: Report(1, 1, '', CustomMessage('CleaningUp'));
    usDone: IsDone := True;
  end;
end;

procedure DeinitializeUninstall;
begin
  WriteLastWords(CustomMessage('RemovalIsDone'), CustomMessage('RemovalHasFailed'));
end;
