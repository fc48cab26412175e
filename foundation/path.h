// Paths in the program's internal form (UTF-8, '/' separators) and how they are shown.
#pragma once

// Room for a path, terminator included, wherever the program keeps one.
constexpr int kPathSize = 780;

// `path` as the user sees it in titles and messages: still UTF-8, with the system's separator.
// Cut to size - 1; returns the length stored.
int ShownPath(const char* path, char* target, int size);

// True for "/x", "\\x" and "C:...": a path that does not hang from a folder.
bool IsAbsolutePath(const char* path);
// The same file name as the system compares them: ASCII letters without case, '\\' as '/'.
bool SamePath(const char* a, const char* b);
// `folder` + '/' + `name` into `out` (`name` alone when it is absolute or the folder is empty;
// no second '/' when the folder ends in one). False when it does not fit.
bool JoinPath(const char* folder, const char* name, char* out, int size);
