#include "foundation/os_lock.h"

#include <windows.h>

static_assert(sizeof(CRITICAL_SECTION) <= sizeof(OsLock::storage), "OsLock too small");

static CRITICAL_SECTION* Section(OsLock* lock) {
  return reinterpret_cast<CRITICAL_SECTION*>(lock->storage);
}

void OsCreateLock(OsLock* lock) {
  InitializeCriticalSection(Section(lock));
}
void OsDeleteLock(OsLock* lock) {
  DeleteCriticalSection(Section(lock));
}
void OsEnterLock(OsLock* lock) {
  EnterCriticalSection(Section(lock));
}
void OsLeaveLock(OsLock* lock) {
  LeaveCriticalSection(Section(lock));
}
