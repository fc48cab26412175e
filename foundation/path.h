// Paths in the program's internal form (UTF-8, '/' separators) and how they are shown.
#pragma once

// Room for a path, terminator included, wherever the program keeps one.
constexpr int kPathSize = 780;

// `path` as the user sees it in titles and messages: still UTF-8, with the system's separator.
// Cut to size - 1; returns the length stored.
int ShownPath(const char* path, char* target, int size);
