// Conversion between the internal text form (UTF-8, '/' separators) and the system's form (the
// system code page, and the system's separator for paths).
#pragma once

// Both return the length stored (terminated, cut to size - 1), or -1 when the text cannot be
// converted or does not fit.
int ToSystemText(const char* internal, char* target, int size);
int FromSystemText(const char* system, char* target, int size);
int ToSystemPath(const char* internal, char* target, int size);
