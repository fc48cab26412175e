#include "foundation/os_case.h"

#include <windows.h>

void OsUpperCase(char16_t* units, int count) {
  if (count > 0) CharUpperBuffW(reinterpret_cast<wchar_t*>(units), static_cast<DWORD>(count));
}

void OsLowerCase(char16_t* units, int count) {
  if (count > 0) CharLowerBuffW(reinterpret_cast<wchar_t*>(units), static_cast<DWORD>(count));
}
