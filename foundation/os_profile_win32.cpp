#include "foundation/os_profile.h"

#include <windows.h>

int OsProfileGetString(const char* file, const char* section, const char* key, const char* fallback,
                       char* buffer, int size) {
  if (size <= 0) return 0;
  return static_cast<int>(GetPrivateProfileStringA(section, key, fallback ? fallback : "", buffer,
                                                   static_cast<DWORD>(size), file));
}

unsigned OsProfileGetInt(const char* file, const char* section, const char* key, int fallback) {
  return GetPrivateProfileIntA(section, key, fallback, file);
}

bool OsProfileWriteString(const char* file, const char* section, const char* key,
                          const char* value) {
  return WritePrivateProfileStringA(section, key, value, file) != FALSE;
}
