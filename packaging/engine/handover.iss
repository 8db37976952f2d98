{ The removal that somebody starts in Windows' list of programs. The wizard lies in the install folder, shows
  its own pages in place of the uninstaller's windows, and starts the uninstaller again, silently. For that
  the uninstaller has to end first: it holds its data alone, and its own program. }

function InitializeUninstall: Boolean;
var
  Wizard: String;
  Code: Integer;
begin
  Result := True;
  Wizard := ExpandConstant('{app}\{#SetupExe}');
  if UninstallSilent or not FileExists(Wizard) then
    Exit;
  if not Exec(Wizard, '--remove-with "' + ExpandConstant('{uninstallexe}') + '"', ExpandConstant('{sys}'), SW_SHOWNORMAL, ewWaitUntilTerminated, Code) then
    Log(Format('The wizard could not be started, code %d.', [Code]))
  else
  begin
    Log(Format('The wizard was asked to do the removal and ended with code %d.', [Code]));
    Result := Code <> 0;
  end;
end;
