{ An installation: setup itself tells of every step. }

var
  FileAtWork: String;

procedure InitializeWizard;
begin
  OpenStatusFile;
  Report(0, 1, '', CustomMessage('SetupBegins'));
end;

{ Before each file. The label on setup's own page has its name too, but shortened to fit there. }
procedure RememberFile;
begin
  try
    FileAtWork := ExpandConstant(CurrentFileName);
  except
    { An exception here would be shown in a message box. }
    Log('The next file will not be told: ' + GetExceptionMessage);
  end;
end;

procedure CurInstallProgressChanged(CurProgress, MaxProgress: Integer);
var
  FileName: String;
begin
  { An exception here would be swallowed, and with it this and every later report of the step. }
  try
    if WizardForm.StatusLabel.Caption = SetupMessage(msgStatusExtractFiles) then
      FileName := FileAtWork;
    Report(CurProgress, MaxProgress, FileName, WizardForm.StatusLabel.Caption);
  except
    Log('No status was written: ' + GetExceptionMessage);
  end;
end;

procedure CurStepChanged(CurStep: TSetupStep);
begin
  if CurStep = ssDone then
    IsDone := True;
end;

{ Programs that setup runs report no progress, and this one fetches what it installs. }
procedure ReportWebView2;
begin
  Report(1, 1, '', CustomMessage('InstallingWebView2'));
end;

procedure DeinitializeSetup;
begin
  WriteLastWords(CustomMessage('SetupIsDone'), CustomMessage('SetupHasFailed'));
end;
