// The project file: a profile (INI) file read and written one key at a time. Section "Head" holds
// the header; "Target00", "Target01", ... one target each, the first with an empty "Info" ending
// the list. Stale sections of an earlier, longer save stay in the file, hidden by the terminators.
#pragma once

struct Project;

extern const char kProjectHeader[];        // "Quill Project File 1.00"
extern const char kProjectHeaderPrefix[];  // "Quill Project File ": the version is not checked
constexpr int kProjectTextLimit = 4096;    // bytes of a multi-line text, characters of an option
constexpr int kProjectLineLimit = 779;     // characters of one line of a multi-line text
// Every key is a profile call that reads the whole file; beyond this many targets a load would
// take minutes, so the rest is left out after string 199.
constexpr int kProjectTargetLimit = 1000;

// Writes the project to its path and clears the modified flag; false after string 3.
bool SaveProject(Project* project);
// Reads `path` into the project (its targets are replaced) and clears the modified flag. False
// after string 2 (can't be opened) or 96 (not a project file), the project left as it was.
bool LoadProject(Project* project, const char* path);
