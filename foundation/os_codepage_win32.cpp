#include "foundation/os_codepage.h"

#include <windows.h>

static_assert(sizeof(wchar_t) == sizeof(char16_t), "UTF-16 units are wchar_t on Windows");

int OsWideToCodePage(unsigned codePage, const char16_t* source, int sourceLength, char* target,
                     int targetSize) {
  if (sourceLength <= 0) return 0;
  return WideCharToMultiByte(codePage == kCodePageSystem ? CP_ACP : codePage, 0,
                             reinterpret_cast<const wchar_t*>(source), sourceLength, target,
                             targetSize, nullptr, nullptr);
}

int OsCodePageToWide(unsigned codePage, const char* source, int sourceLength, char16_t* target,
                     int targetSize) {
  if (sourceLength <= 0) return 0;
  return MultiByteToWideChar(codePage == kCodePageSystem ? CP_ACP : codePage, 0, source,
                             sourceLength, reinterpret_cast<wchar_t*>(target), targetSize);
}

bool OsUtf8PathToWide(const char* path, wchar_t* target, int targetSize) {
  int length = MultiByteToWideChar(CP_UTF8, 0, path, -1, target, targetSize);
  if (length <= 0) return false;
  for (int i = 0; i < length; ++i) {
    if (target[i] == L'/') target[i] = L'\\';
  }
  return true;
}
