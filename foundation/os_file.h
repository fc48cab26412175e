// Platform service: the few file operations the support library needs.
// Paths are in the internal form: UTF-8 with '/' separators.
#pragma once
#include <cstddef>

// Appends `size` bytes to the file at `path`, creating it when absent. False when the file can
// be neither opened nor created, or the write fails.
bool OsAppendToFile(const char* path, const void* data, size_t size);

// The system's temporary folder with a trailing '/', at most `size` - 1 bytes. Returns the length,
// or 0 when the folder is unknown or does not fit.
size_t OsGetTempFolder(char* buffer, size_t size);
