#include "foundation/fileutil.h"

#include <cstring>

#include "foundation/memory.h"
#include "foundation/os_path.h"

namespace {
// 2000-01-01 00:00:00 UTC in 100-nanosecond units since 1601.
constexpr uint64_t kStampEpoch = 125911584000000000ull;
constexpr uint64_t kTicksPerSecond = 10000000ull;
}  // namespace

unsigned StampFromFileTime(uint64_t fileTime) {
  return static_cast<unsigned>((fileTime - kStampEpoch) / kTicksPerSecond);
}

bool IsPlainFile(const char* path) {
  unsigned attributes = FileGetAttributes(path);
  return attributes != kNoAttributes && !(attributes & (kAttrDirectory | kAttrReparsePoint));
}

char* ReadWholeFile(const char* path, size_t* length, int owner) {
  FileHandle file = FileOpen(path, kFileRead, kShareRead, kOpenExisting, 0);
  if (file == kInvalidFile) return nullptr;
  uint64_t size = FileGetSize(file);
  char* block = nullptr;
  if (size < 0x7FFFFF00u)
    block = static_cast<char*>(AllocMem(static_cast<size_t>(size) + 1, owner));
  unsigned done = 0;
  if (block && FileRead(file, block, static_cast<unsigned>(size), &done) && done == size) {
    block[size] = '\0';
    *length = static_cast<size_t>(size);
  } else {
    FreeMem(block);
    block = nullptr;
  }
  FileClose(file);
  return block;
}

int ProgramFolder(char* buffer, int size) {
  char module[1024];  // a module path is at most MAX_PATH units, 3 bytes each in UTF-8
  if (OsGetModulePath(module, sizeof module) == 0) return 0;
  const char* slash = strrchr(module, '/');
  if (!slash) return 0;
  size_t length = static_cast<size_t>(slash - module);
  if (size <= 0 || length >= static_cast<size_t>(size)) return 0;
  memcpy(buffer, module, length);
  buffer[length] = '\0';
  return static_cast<int>(length);
}
