#include "foundation/os_file.h"

#include <windows.h>

#include "foundation/os_codepage.h"

bool OsAppendToFile(const char* path, const void* data, size_t size) {
  wchar_t widePath[MAX_PATH];
  if (!OsUtf8PathToWide(path, widePath, MAX_PATH)) return false;
  HANDLE file = CreateFileW(widePath, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  SetFilePointer(file, 0, nullptr, FILE_END);
  DWORD written = 0;
  BOOL ok = WriteFile(file, data, static_cast<DWORD>(size), &written, nullptr);
  CloseHandle(file);
  return ok && written == size;
}

size_t OsGetTempFolder(char* buffer, size_t size) {
  // The program keeps the temporary path to 80 characters.
  wchar_t wide[81];
  DWORD length = GetTempPathW(81, wide);
  if (length == 0 || length > 80) return 0;
  int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(length), buffer,
                                  static_cast<int>(size) - 1, nullptr, nullptr);
  if (bytes <= 0) return 0;
  buffer[bytes] = '\0';
  for (int i = 0; i < bytes; ++i) {
    if (buffer[i] == '\\') buffer[i] = '/';
  }
  return static_cast<size_t>(bytes);
}
