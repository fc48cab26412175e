#include "foundation/os_window.h"

#include <windows.h>

void OsDestroyWindow(void* window) {
  DestroyWindow(static_cast<HWND>(window));
}

namespace {
ATOM g_atoms[2];
}

void OsAddLibraryAtoms() {
  g_atoms[0] = GlobalAddAtomW(L"CurrWndSize");
  g_atoms[1] = GlobalAddAtomW(L"UserPrm1");
}

void OsDeleteLibraryAtoms() {
  for (ATOM& atom : g_atoms) {
    if (atom) GlobalDeleteAtom(atom);
    atom = 0;
  }
}
