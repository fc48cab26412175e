#include "foundation/os_codepage.h"

#include <iconv.h>

#include "foundation/os_codepage_korean.h"

static const char* CharsetName(unsigned codePage) {
  switch (codePage) {
    case kCodePageSystem:
    case kCodePageUtf8:
      return "UTF-8";
    case kCodePageKorean:
      return "CP949";
    default:
      return nullptr;
  }
}

// Converts with iconv; with no target it counts the bytes the target would need. Returns the
// number of bytes produced, or -1 on invalid input or a target that is too small.
static long Convert(const char* from, const char* to, const char* source, size_t sourceBytes,
                    char* target, size_t targetBytes) {
  if (!from || !to) return -1;
  iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1)) return -1;
  char* in = const_cast<char*>(source);
  size_t inLeft = sourceBytes;
  long produced = 0;
  char scratch[256];
  bool counting = target == nullptr;
  while (inLeft > 0) {
    char* out = counting ? scratch : target + produced;
    size_t outLeft = counting ? sizeof scratch : targetBytes - static_cast<size_t>(produced);
    size_t before = outLeft;
    size_t result = iconv(cd, &in, &inLeft, &out, &outLeft);
    produced += static_cast<long>(before - outLeft);
    if (result != static_cast<size_t>(-1)) break;
    if (!counting || before == outLeft) {  // invalid input, or no progress at all
      produced = -1;
      break;
    }
  }
  iconv_close(cd);
  return produced;
}

int OsWideToCodePage(unsigned codePage, const char16_t* source, int sourceLength, char* target,
                     int targetSize) {
  if (sourceLength <= 0) return 0;
  if (codePage == kCodePageKorean) return WideToKorean(source, sourceLength, target, targetSize);
  long bytes = Convert("UTF-16LE", CharsetName(codePage), reinterpret_cast<const char*>(source),
                       static_cast<size_t>(sourceLength) * 2, targetSize > 0 ? target : nullptr,
                       targetSize > 0 ? static_cast<size_t>(targetSize) : 0);
  return bytes < 0 ? 0 : static_cast<int>(bytes);
}

int OsCodePageToWide(unsigned codePage, const char* source, int sourceLength, char16_t* target,
                     int targetSize) {
  if (sourceLength <= 0) return 0;
  if (codePage == kCodePageKorean) return KoreanToWide(source, sourceLength, target, targetSize);
  long bytes = Convert(CharsetName(codePage), "UTF-16LE", source, static_cast<size_t>(sourceLength),
                       targetSize > 0 ? reinterpret_cast<char*>(target) : nullptr,
                       targetSize > 0 ? static_cast<size_t>(targetSize) * 2 : 0);
  return bytes < 0 ? 0 : static_cast<int>(bytes / 2);
}
