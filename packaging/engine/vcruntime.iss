{ The Visual C++ Runtime, without which the application does not start. Its installer is not a [Run] entry,
  as these forget exit codes. }

const
  AnotherVersionIsInstalled = 1638;   { a newer one }
  RestartInitiated = 1641;
  RestartRequired = 3010;

{ The same two files as the wizard's check page looks for. }
function LacksVcRuntime: Boolean;
begin
  Result := not (FileExists(ExpandConstant('{sys}\vcruntime140.dll'))
    and FileExists(ExpandConstant('{sys}\vcruntime140_1.dll')));
end;

{ Whatever comes of it, the application gets installed. The lines of the log have none of the words by
  which the wizard finds the reason of a failed run. }
procedure InstallVcRuntime;
var
  Code: Integer;
begin
  Report(0, 1, '', CustomMessage('InstallingVcRuntime'));
  if not Exec(ExpandConstant(CurrentFileName), '/install /quiet /norestart', '', SW_HIDE, ewWaitUntilTerminated, Code) then
    Log(Format('Visual C++ Runtime: its setup could not be started, code %d.', [Code]))
  else
    case Code of
      0, AnotherVersionIsInstalled: Log(Format('Visual C++ Runtime: installed, code %d.', [Code]));
      RestartInitiated, RestartRequired: Log(Format('Visual C++ Runtime: installed, restart needed, code %d.', [Code]));
    else
      Log(Format('Visual C++ Runtime: not installed, its setup ended with code %d.', [Code]));
    end;
end;
