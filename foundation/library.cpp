#include "foundation/library.h"

#include "foundation/diagnostics.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/modeless.h"
#include "foundation/os_window.h"
#include "foundation/settings.h"

namespace {

void* g_instance = nullptr;
void* g_resourceInstance = nullptr;

}  // namespace

void InitKLib(void* instance, void* resourceInstance) {
  if (IsMemoryManagerReady()) return;
  g_instance = instance;
  g_resourceInstance = resourceInstance;
  StartStringCache();
  StartMemoryManager();
  InitSettingsPaths();
  DestroyModelessDialogs();
  OsAddLibraryAtoms();
}

int CloseKLib() {
  if (!IsMemoryManagerReady()) return 0;
  OsDeleteLibraryAtoms();
  DestroyModelessDialogs();
  StopStringCache();
  UnloadLanguage();
  int leaked = CheckMemLeak();
  if (leaked) ScreenNote("MemLeak=%d", leaked);
  StopMemoryManager();
  return leaked;
}

void* KLibInstance() {
  return g_instance;
}
void* KLibResourceInstance() {
  return g_resourceInstance;
}
