#include "foundation/memory.h"

#include <atomic>
#include <cstdint>
#include <cstring>

#include "foundation/diagnostics.h"
#include "foundation/os_lock.h"
#include "foundation/os_memory.h"

namespace {

// Trailer: tag, requested size, owner (32-bit each), then the block start and the links to the
// next newer and next older trailers (pointer-sized). It follows the payload without padding, so
// its fields are read and written through memcpy.
constexpr size_t kTagAt = 0;
constexpr size_t kSizeAt = 4;
constexpr size_t kOwnerAt = 8;
constexpr size_t kStartAt = sizeof(void*) == 4 ? 12 : 16;
constexpr size_t kNewerAt = kStartAt + sizeof(void*);
constexpr size_t kOlderAt = kNewerAt + sizeof(void*);
constexpr size_t kTrailerSize = kOlderAt + sizeof(void*);
constexpr size_t kOffsetAt = sizeof(void*);  // the trailer offset, after the self address

// Larger requests cannot be recorded in the trailer's 32-bit size.
constexpr size_t kLargestRequest = 0x7FFFFF00;

using Byte = unsigned char;

bool g_ready = false;
Byte* g_newest = nullptr;
std::atomic<int> g_liveCount{0};
OsLock g_lock;

template <typename T>
T Load(const Byte* at) {
  T value;
  memcpy(&value, at, sizeof value);
  return value;
}

template <typename T>
void Store(Byte* at, T value) {
  memcpy(at, &value, sizeof value);
}

Byte* Newer(const Byte* trailer) {
  return Load<Byte*>(trailer + kNewerAt);
}
Byte* Older(const Byte* trailer) {
  return Load<Byte*>(trailer + kOlderAt);
}

// A pointer that is not ours may sit right after unmapped or freed memory; the check reads the
// word before it all the same, byte by byte, out of the sanitizer's sight.
#if defined(__clang__) || defined(__GNUC__)
__attribute__((no_sanitize("address")))
#endif
bool IsOwnBlock(const Byte* block) {
  uintptr_t self = 0;
  const volatile Byte* bytes = block;
  for (size_t i = 0; i < sizeof self; ++i)
    self |= static_cast<uintptr_t>(bytes[i]) << (8 * i);
  return self == reinterpret_cast<uintptr_t>(block);
}

// The list lock, taken only while the library is up (a block may be freed after shutdown).
class ListGuard {
 public:
  ListGuard() : locked_(g_ready) {
    if (locked_) OsEnterLock(&g_lock);
  }
  ~ListGuard() {
    if (locked_) OsLeaveLock(&g_lock);
  }
  ListGuard(const ListGuard&) = delete;
  ListGuard& operator=(const ListGuard&) = delete;

 private:
  bool locked_;
};

void Unlink(Byte* trailer) {
  ListGuard guard;
  Byte* newer = Newer(trailer);
  Byte* older = Older(trailer);
  if (newer) Store(newer + kOlderAt, older);
  if (older) Store(older + kNewerAt, newer);
  if (g_newest == trailer) g_newest = older;
}

}  // namespace

void StartMemoryManager() {
  OsCreateLock(&g_lock);
  g_ready = true;
}

void StopMemoryManager() {
  OsDeleteLock(&g_lock);
  g_ready = false;
}

bool IsMemoryManagerReady() {
  return g_ready;
}

void* AllocMem(size_t size, int owner) {
  if (!g_ready) {
    ScreenNote("First run InitKLib()");
    return nullptr;
  }
  size_t payload = MemPayloadSize(size);
  Byte* block = size <= kLargestRequest
                    ? static_cast<Byte*>(OsAllocBlock(kMemHeadSize + payload + kTrailerSize))
                    : nullptr;
  if (!block) {
    ScreenNote("Mem Alloc Error. Owner=%d, ReqSize=%d", owner, static_cast<int>(payload));
    return nullptr;
  }
  size_t trailerOffset = kMemHeadSize + payload;
  Byte* trailer = block + trailerOffset;
  Store(block, block);
  Store(block + kOffsetAt, static_cast<uint32_t>(trailerOffset));
  Store(trailer + kTagAt, static_cast<uint32_t>(kMemTag));
  Store(trailer + kSizeAt, static_cast<uint32_t>(size));
  Store(trailer + kOwnerAt, static_cast<int32_t>(owner));
  Store(trailer + kStartAt, block);
  Store(trailer + kNewerAt, static_cast<Byte*>(nullptr));
  {
    ListGuard guard;
    if (g_newest) Store(g_newest + kNewerAt, trailer);
    Store(trailer + kOlderAt, g_newest);
    g_newest = trailer;
  }
  ++g_liveCount;
  return block + kMemHeadSize;
}

void FreeMem(void* pointer) {
  if (!pointer) return;
  Byte* block = static_cast<Byte*>(pointer) - kMemHeadSize;
  if (!IsOwnBlock(block)) {
    DebugLog(sizeof(void*) == 4 ? ">>> FreeMem() Unknown Memory M=%Xh\r\n"
                                : ">>> FreeMem() Unknown Memory M=%I64Xh\r\n",
             pointer);
    DebugDump(block, 64);
    return;
  }
  Store(block, static_cast<Byte*>(nullptr));
  Byte* trailer = block + Load<uint32_t>(block + kOffsetAt);
  // Unlinked before the tag is looked at: a block with a broken trailer leaves the list too.
  Unlink(trailer);
  uint32_t size = Load<uint32_t>(trailer + kSizeAt);
  int32_t owner = Load<int32_t>(trailer + kOwnerAt);
  if (Load<uint32_t>(trailer + kTagAt) != kMemTag) {
    DebugLog(">>> Broken Memory, Size=%d, Owner=%d\r\n", size, owner);
    return;
  }
  Store(trailer + kTagAt, uint32_t{0});
  if (!OsFreeBlock(block)) {
    DebugLog(">>> LocalFree() ErrCode=%d, Size=%d, Owner=%d\r\n", OsLastError(), size, owner);
    return;
  }
  --g_liveCount;
}

int CheckMemLeak() {
  ListGuard guard;
  for (Byte* trailer = g_newest; trailer; trailer = Older(trailer)) {
    DebugLog(">>>Leaked Memory, Size=%d, Owner=%d\r\n", Load<uint32_t>(trailer + kSizeAt),
             Load<int32_t>(trailer + kOwnerAt));
  }
  return g_liveCount;
}
