; What makes files of one kind ours. Kind is the end of their names, KindName what Explorer calls them.
Root: HKA; Subkey: "Software\Classes\{#FileType}.{#Kind}"; ValueType: string; ValueData: "{#KindName}"; Flags: uninsdeletekey
Root: HKA; Subkey: "Software\Classes\{#FileType}.{#Kind}\DefaultIcon"; ValueType: string; ValueData: "{app}\{#AppExe},0"
Root: HKA; Subkey: "Software\Classes\{#FileType}.{#Kind}\shell\open\command"; ValueType: string; ValueData: """{app}\{#AppExe}"" ""%1"""
Root: HKA; Subkey: "Software\Classes\.{#Kind}"; Flags: uninsdeletekeyifempty
Root: HKA; Subkey: "Software\Classes\.{#Kind}\OpenWithProgids"; ValueType: string; ValueName: "{#FileType}.{#Kind}"; ValueData: ""; Flags: uninsdeletevalue uninsdeletekeyifempty
Root: HKA; Subkey: "Software\Classes\Applications\{#AppExe}\SupportedTypes"; ValueType: string; ValueName: ".{#Kind}"; ValueData: ""
