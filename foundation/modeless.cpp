#include "foundation/modeless.h"

#include "foundation/os_window.h"

namespace {
void* g_dialogs[kMaxModelessDialogs];
}

bool RegisterModelessDialog(void* window) {
  for (void*& place : g_dialogs) {
    if (!place) {
      place = window;
      return true;
    }
  }
  return false;
}

void RemoveModelessDialog(void* window) {
  for (void*& place : g_dialogs) {
    if (place == window) place = nullptr;
  }
}

void* ModelessDialogAt(int index) {
  return index >= 0 && index < kMaxModelessDialogs ? g_dialogs[index] : nullptr;
}

void DestroyModelessDialogs() {
  for (void*& place : g_dialogs) {
    if (place) OsDestroyWindow(place);
    place = nullptr;
  }
}
