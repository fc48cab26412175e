#include "foundation/system_text.h"

#include <cstring>

#include "foundation/memory.h"
#include "foundation/os_codepage.h"
#include "foundation/os_path.h"
#include "foundation/unicode.h"

namespace {

constexpr int kOwnerSystemText = 11;

// A UTF-16 copy of a text, freed with the holder.
struct WideText {
  char16_t* units = nullptr;
  int length = 0;
  ~WideText() { FreeMem(units); }
};

}  // namespace

int ToSystemText(const char* internal, char* target, int size) {
  if (size <= 0) return -1;
  int length = static_cast<int>(strlen(internal));
  if (length == 0) {
    target[0] = '\0';
    return 0;
  }
  WideText wide;
  wide.length = Utf8ToUtf16(internal, length, nullptr, 0);
  wide.units =
      static_cast<char16_t*>(AllocMem(static_cast<size_t>(wide.length) * 2, kOwnerSystemText));
  if (!wide.units) return -1;
  Utf8ToUtf16(internal, length, wide.units, wide.length);
  int bytes = OsWideToCodePage(kCodePageSystem, wide.units, wide.length, nullptr, 0);
  if (bytes <= 0 || bytes >= size) return -1;
  OsWideToCodePage(kCodePageSystem, wide.units, wide.length, target, bytes);
  target[bytes] = '\0';
  return bytes;
}

int FromSystemText(const char* system, char* target, int size) {
  if (size <= 0) return -1;
  int length = static_cast<int>(strlen(system));
  if (length == 0) {
    target[0] = '\0';
    return 0;
  }
  WideText wide;
  wide.length = OsCodePageToWide(kCodePageSystem, system, length, nullptr, 0);
  if (wide.length <= 0) return -1;
  wide.units =
      static_cast<char16_t*>(AllocMem(static_cast<size_t>(wide.length) * 2, kOwnerSystemText));
  if (!wide.units) return -1;
  OsCodePageToWide(kCodePageSystem, system, length, wide.units, wide.length);
  int bytes = Utf16ToUtf8(wide.units, wide.length, nullptr, 0);
  if (bytes >= size) return -1;
  Utf16ToUtf8(wide.units, wide.length, target, bytes);
  target[bytes] = '\0';
  return bytes;
}

int ToSystemPath(const char* internal, char* target, int size) {
  int length = ToSystemText(internal, target, size);
  for (int i = 0; i < length; ++i) {
    if (target[i] == '/') target[i] = kOsPathSeparator;
  }
  return length;
}
