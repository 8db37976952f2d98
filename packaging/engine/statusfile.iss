{ Tells the wizard how far setup is, in the small text file that /STATUSFILE= names: progress in percent,
  the file that is being worked on, and what is being done. The wizard reads it twenty times a second and
  may hold it open at any moment. Without the switch nothing of this happens. }

const
  { Time between two reports, and the patience with a reader who has the file open, in milliseconds. }
  ReportInterval = 40;
  ReaderPatience = 20;
  LastWordsPatience = 2000;
  RetryInterval = 5;

var
  StatusFile: String;
  IsCreated: Boolean;      { once it is, a missing file means that nobody reads it any more }
  IsDone: Boolean;
  LastReport: DWORD;
  Tenths: Integer;         { of a percent }
  CurrentStatus: String;
  Refusal: String;         { why setup ends before it has changed anything }

function GetTickCount: DWORD;
external 'GetTickCount@kernel32.dll stdcall';

procedure OpenStatusFile;
begin
  StatusFile := ExpandConstant('{param:STATUSFILE|}');
end;

{ Rewrites the file as a whole. A file that was there and is gone stays gone. }
procedure WriteStatus(const FileName: String; Patience: DWORD);
var
  Lines: TArrayOfString;
  Start: DWORD;
begin
  if StatusFile = '' then
    Exit;
  SetArrayLength(Lines, 4);
  Lines[0] := '[setup]';
  Lines[1] := Format('progress=%d.%d', [Tenths div 10, Tenths mod 10]);
  Lines[2] := 'file=' + FileName;
  Lines[3] := 'status=' + CurrentStatus;
  Start := GetTickCount;
  while not IsCreated or FileExists(StatusFile) do
  begin
    if SaveStringsToUTF8FileWithoutBOM(StatusFile, Lines, False) then
    begin
      IsCreated := True;
      Break;
    end;
    if GetTickCount - Start >= Patience then
      Break;
    Sleep(RetryInterval);
  end;
  LastReport := GetTickCount;
end;

{ Position and Range as setup counts: it neither begins at 0 nor ends at 100, and repeats itself. }
procedure Report(Position, Range: Extended; const FileName, Status: String);
var
  IsNews: Boolean;
begin
  if StatusFile = '' then
    Exit;
  if (Range > 0) and (Position <= Range) and (Round(Position / Range * 1000) > Tenths) then
    Tenths := Round(Position / Range * 1000);
  IsNews := (Status <> '') and (Status <> CurrentStatus);
  if IsNews then
    CurrentStatus := Status;
  if IsNews or (GetTickCount - LastReport >= ReportInterval) then
    WriteStatus(FileName, ReaderPatience);
end;

{ What stays when setup ends, however it ends. }
procedure WriteLastWords(const Success, Failure: String);
begin
  if IsDone then
  begin
    Tenths := 1000;
    CurrentStatus := Success;
  end
  else if Refusal <> '' then
    CurrentStatus := Refusal
  else
    CurrentStatus := Failure;
  if IsCreated then
    WriteStatus('', LastWordsPatience);
end;

#include "statusinstall.iss"
#include "statusuninstall.iss"
