// Language files: "LANGUAGE/<name>.lng" beside the program replaces texts of the string table,
// the menu and the dialogs at run time. And GetStr, which every message goes through.
#pragma once

// Loads "LANGUAGE/<name>.lng" from the program's folder (an empty name loads nothing).
void LoadLanguage(const char* name);
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
