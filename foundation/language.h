// Language files: "LANGUAGE/<name>.lng" beside the program replaces texts of the string table,
// the menu and the dialogs at run time. And GetStr, which every message goes through.
#pragma once

// Loads "LANGUAGE/<name>.lng" from the program's folder; a name that is not a language name loads
// nothing.
void LoadLanguage(const char* name);
// A name that "Config"/"Language" may hold: 1 to 32 characters, none of them '/', '\\' or ':',
// so that the files it names stay inside LANGUAGE.
bool IsLanguageName(const char* name);
// Calls `add` with the base name of every "LANGUAGE/*.lng" file of `folder` (internal form) whose
// name is a language name, in the order the folder gives them; returns how many.
int ListLanguageFiles(const char* folder, void (*add)(const char* name, void* context),
                      void* context);
// Loads a language file by its path (internal form); a missing file leaves the table empty.
void LoadLanguageFile(const char* path);
// Drops the table and its heap (library shutdown).
void UnloadLanguage();

// The first entry "<n>=" or "<name>=" of the table, or an empty text.
const char* LanguageText(int number);
const char* LanguageTextByName(const char* name);

// The text of string `id`: the language's entry 50000 + id, else the string table's text (cached),
// else "(<id>)". Never null.
const char* GetStr(int id);
// The cache of string-table texts and its lock: made when the library starts, freed when it
// stops.
void StartStringCache();
void StopStringCache();
// Empties the cache (texts are read again from the string table when asked for).
void FreeStringCache();

// Decodes one line of a language file in place: false for a comment or a line without a key.
bool DecodeLanguageLine(char* line);

constexpr int kLanguageStringBase = 50000;
// Room for a stored language name in the internal form: 32 characters of up to 3 bytes.
constexpr int kLanguageNameSize = 33 * 3;
