// Platform service: a lock that one thread may enter repeatedly (a critical section).
#pragma once

struct OsLock {
  alignas(16) unsigned char storage[64];
};

void OsCreateLock(OsLock* lock);
void OsDeleteLock(OsLock* lock);
void OsEnterLock(OsLock* lock);
void OsLeaveLock(OsLock* lock);

// Holds a lock for the rest of a scope.
class LockGuard {
 public:
  explicit LockGuard(OsLock* lock) : lock_(lock) { OsEnterLock(lock_); }
  ~LockGuard() { OsLeaveLock(lock_); }
  LockGuard(const LockGuard&) = delete;
  LockGuard& operator=(const LockGuard&) = delete;

 private:
  OsLock* lock_;
};
