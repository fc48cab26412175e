#include <windows.h>

#include <cstring>

#include "foundation/os_errmsg.h"

int OsGetErrorText(unsigned code, char* buffer, int size) {
  if (size <= 0) return 0;
  buffer[0] = '\0';
  // Allocate-buffer, ignore-inserts and from-system; the user's default language.
  constexpr DWORD kFlags =
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
  static_assert(kFlags == 0x1300, "the lookup's flags");
  constexpr DWORD kLanguage = 0x400;
  char* text = nullptr;
  DWORD length =
      FormatMessageA(kFlags, nullptr, code, kLanguage, reinterpret_cast<char*>(&text), 0, nullptr);
  if (length == 0 || !text) return 0;
  size_t stored = length < static_cast<DWORD>(size) ? length : static_cast<size_t>(size) - 1;
  memcpy(buffer, text, stored);
  buffer[stored] = '\0';
  LocalFree(text);
  return static_cast<int>(stored);
}
