#include "foundation/os_path.h"

#include <direct.h>
#include <windows.h>

#include "foundation/unicode.h"

extern const char kOsPathSeparator = '\\';

size_t OsGetModulePath(char* buffer, size_t size) {
  wchar_t wide[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, wide, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return 0;
  int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(length), buffer,
                                  static_cast<int>(size) - 1, nullptr, nullptr);
  if (bytes <= 0) return 0;
  buffer[bytes] = '\0';
  for (int i = 0; i < bytes; ++i) {
    if (buffer[i] == '\\') buffer[i] = '/';
  }
  return static_cast<size_t>(bytes);
}

void OsClearReadOnly(const char* systemPath) {
  DWORD attributes = GetFileAttributesA(systemPath);
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
    SetFileAttributesA(systemPath, attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
  }
}

int OsCurrentFolder(char* buffer, int size) {
  if (size <= 0) return 0;
  buffer[0] = 0;
  wchar_t wide[1024];
  if (!_wgetcwd(wide, 1024)) return 0;
  int length = Utf16ToUtf8(reinterpret_cast<const char16_t*>(wide), -1, buffer, size - 1);
  if (length <= 0 || length >= size) {
    buffer[0] = 0;
    return 0;
  }
  buffer[length] = 0;
  for (int i = 0; i < length; ++i)
    if (buffer[i] == '\\') buffer[i] = '/';
  return length;
}
