{ Whether the WebView2 Runtime, in which the application shows its help and its part catalogue, has to be
  installed: its updater leaves its version in one of these places. }

const
  WebView2Client = 'Microsoft\EdgeUpdate\Clients\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}';

function HasWebView2Below(RootKey: Integer; const Parent: String): Boolean;
var
  Version: String;
begin
  Result := RegQueryStringValue(RootKey, Parent + WebView2Client, 'pv', Version)
    and (Version <> '') and (Version <> '0.0.0.0');
end;

function LacksWebView2: Boolean;
begin
  Result := not (HasWebView2Below(HKLM32, 'Software\') or HasWebView2Below(HKCU, 'Software\'));
end;
