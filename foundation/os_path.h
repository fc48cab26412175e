// Platform service: the program's own path and the system's form of paths.
#pragma once
#include <cstddef>

// The separator the system's calls expect: '\' on Windows, '/' on POSIX.
extern const char kOsPathSeparator;

// The running program's path in the internal form (UTF-8, '/'); the length, 0 on failure.
size_t OsGetModulePath(char* buffer, size_t size);

// The process's current folder in the internal form (UTF-8, '/' separators). Writes at most
// size - 1 bytes and a terminator; the length, 0 on failure ("" then).
int OsCurrentFolder(char* buffer, int size);

// Clears the read-only attribute of a file named in the system's form (nothing when missing).
void OsClearReadOnly(const char* systemPath);
