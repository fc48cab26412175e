#include "foundation/os_resource.h"

#include <windows.h>

#include "foundation/library.h"

int OsLoadString(unsigned id, char16_t* buffer, int size) {
  HINSTANCE instance = static_cast<HINSTANCE>(KLibResourceInstance());
  if (!instance) instance = GetModuleHandleW(nullptr);
  return LoadStringW(instance, id, reinterpret_cast<wchar_t*>(buffer), size);
}
