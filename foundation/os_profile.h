// Platform service: the private-profile calls. `file` is in the system's form (the system code
// page, and '\' separators on Windows); section, key and values are bytes as they stand.
#pragma once

// GetPrivateProfileStringA: the value (quotes around it removed) or `fallback` (trailing blanks
// removed) into `buffer`, cut to size - 1 bytes; returns the number of bytes stored.
int OsProfileGetString(const char* file, const char* section, const char* key, const char* fallback,
                       char* buffer, int size);
// GetPrivateProfileIntA.
unsigned OsProfileGetInt(const char* file, const char* section, const char* key, int fallback);
// WritePrivateProfileStringA: creates the file, section or key as needed.
bool OsProfileWriteString(const char* file, const char* section, const char* key,
                          const char* value);
