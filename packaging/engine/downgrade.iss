{ An older version over a newer one is a mistake more often than not: a deployment that was forgotten, or an
  old download. It takes /ALLOWDOWNGRADE, with /SILENT, as the wizard hands on no switches. }

function PrepareToInstall(var NeedsRestart: Boolean): String;
var
  Installed: String;
  Theirs, Ours: Int64;
begin
  Result := '';
  if not RegQueryStringValue(HKA, 'Software\Microsoft\Windows\CurrentVersion\Uninstall\{#AppGuid}_is1', 'DisplayVersion', Installed)
      or not StrToVersion(Installed, Theirs) or not StrToVersion('{#AppVersion}', Ours)
      or (ComparePackedVersion(Theirs, Ours) <= 0) then
    Exit;
  if HasSwitch('/ALLOWDOWNGRADE') then
    Log('The older version takes the place of ' + Installed + '.')
  else
  begin
    Result := FmtMessage(CustomMessage('IsOlder'), [Installed]);
    Refusal := Result;
  end;
end;
