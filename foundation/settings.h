// The settings store: one INI file beside the program (its module path with the extension "ini"),
// read and written key by key through the profile functions, with nothing cached. Section "Config"
// holds the options, "DlgPos" the placements; other parts of the program keep sections of their
// own.
//
// Values are bytes as they stand in the file ("raw") or text in the internal form (UTF-8), which is
// converted to and from the system code page around the profile call.
#pragma once

extern const char kConfigSection[];  // "Config"
extern const char kDlgPosSection[];  // "DlgPos"

// The profile's integer parse of the value, or `fallback` when the key is missing.
int ReadInt(const char* section, const char* key, int fallback);
// Raw value into `buffer` (terminated, at most size - 1 bytes); the length, 0 and "" when missing.
int ReadStr(const char* section, const char* key, char* buffer, int size);
int ReadStrDef(const char* section, const char* key, char* buffer, int size, const char* fallback);
// Value in the internal form; `fallback` (internal form, may be empty) when missing.
int ReadText(const char* section, const char* key, char* buffer, int size, const char* fallback);
// The key is the decimal index: "0", "1", ...
int ReadIndexed(const char* section, int index, char* buffer, int size);

bool WriteStr(const char* section, const char* key, const char* value);
bool WriteText(const char* section, const char* key, const char* value);
// Writes "%d %d %d %d"; trailing arguments equal to kOmitNum are left out.
constexpr int kOmitNum = 0x7FFFFFFF;
bool WriteNums(const char* section, const char* key, int a, int b = kOmitNum, int c = kOmitNum,
               int d = kOmitNum);

// The same store in another INI file (a project file); `file` and `value` in the internal form,
// a null value writes an empty string.
void WriteToFile(const char* file, const char* section, const char* key, const char* value);
int ReadFromFile(const char* file, const char* section, int index, char* buffer, int size);

// Derives the settings and log paths from the program's own path and clears the read-only
// attribute of the settings file; called by the library's start-up.
void InitSettingsPaths();
// The settings file and the log path in the system's form.
const char* SettingsPath();
const char* SettingsLogPath();
// Points the store at another file (internal form): quill-tool's --ini and the tests use it.
bool SetSettingsPath(const char* internalPath);

// `modulePath` (internal form) with its extension replaced by `extension`; a file name that is a
// valid 8.3 name is upper-cased. False when the result does not fit.
bool MakeProfilePath(const char* modulePath, const char* extension, char* target, int size);
