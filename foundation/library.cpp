#include "foundation/library.h"

#include "foundation/diagnostics.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/modeless.h"
#include "foundation/os_lock.h"
#include "foundation/os_window.h"
#include "foundation/settings.h"

namespace {

void* g_instance = nullptr;
void* g_resourceInstance = nullptr;
// The resource-string cache lock, and a third lock that only lives as long as the library.
OsLock g_stringCacheLock;
OsLock g_spareLock;

}  // namespace

void InitKLib(void* instance, void* resourceInstance) {
  if (IsMemoryManagerReady()) return;
  g_instance = instance;
  g_resourceInstance = resourceInstance;
  OsCreateLock(&g_stringCacheLock);
  OsCreateLock(&g_spareLock);
  StartMemoryManager();
  InitSettingsPaths();
  DestroyModelessDialogs();
  OsAddLibraryAtoms();
}

int CloseKLib() {
  if (!IsMemoryManagerReady()) return 0;
  OsDeleteLibraryAtoms();
  DestroyModelessDialogs();
  {
    LockGuard guard(&g_stringCacheLock);
    FreeStringCache();
  }
  OsDeleteLock(&g_stringCacheLock);
  UnloadLanguage();
  int leaked = CheckMemLeak();
  if (leaked) ScreenNote("MemLeak=%d", leaked);
  StopMemoryManager();
  OsDeleteLock(&g_spareLock);
  return leaked;
}

void* KLibInstance() {
  return g_instance;
}
void* KLibResourceInstance() {
  return g_resourceInstance;
}

OsLock* StringCacheLock() {
  return &g_stringCacheLock;
}
