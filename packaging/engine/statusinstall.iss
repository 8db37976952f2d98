{ An installation: setup itself tells of every step. }

procedure InitializeWizard;
begin
  OpenStatusFile;
  Report(0, 1, '', CustomMessage('SetupBegins'));
end;

procedure CurInstallProgressChanged(CurProgress, MaxProgress: Integer);
begin
  { An exception here would be swallowed, and with it this and every later report of the step. }
  try
    Report(CurProgress, MaxProgress, WizardForm.FilenameLabel.Caption, WizardForm.StatusLabel.Caption);
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
