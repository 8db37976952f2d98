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
  case CurStep of
    ssPostInstall: Report(1, 1, '', WizardForm.StatusLabel.Caption);
    ssDone: IsDone := True;
  end;
end;

procedure DeinitializeSetup;
begin
  WriteLastWords(CustomMessage('SetupIsDone'), CustomMessage('SetupHasFailed'));
end;
