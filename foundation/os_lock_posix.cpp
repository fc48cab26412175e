#include "foundation/os_lock.h"

#include <pthread.h>

static_assert(sizeof(pthread_mutex_t) <= sizeof(OsLock::storage), "OsLock too small");

static pthread_mutex_t* Mutex(OsLock* lock) {
  return reinterpret_cast<pthread_mutex_t*>(lock->storage);
}

void OsCreateLock(OsLock* lock) {
  // Critical sections are recursive; so is this.
  pthread_mutexattr_t attr;
  pthread_mutexattr_init(&attr);
  pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(Mutex(lock), &attr);
  pthread_mutexattr_destroy(&attr);
}
void OsDeleteLock(OsLock* lock) {
  pthread_mutex_destroy(Mutex(lock));
}
void OsEnterLock(OsLock* lock) {
  pthread_mutex_lock(Mutex(lock));
}
void OsLeaveLock(OsLock* lock) {
  pthread_mutex_unlock(Mutex(lock));
}
