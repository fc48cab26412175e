#include "encoding/unmappable.h"

#include "encoding/johab.h"
#include "encoding/text_encoding.h"
#include "foundation/os_codepage.h"

namespace {

bool IsSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

// The code page has a code for the unit when that code reads back as the unit itself: a
// substitute or a best-fit look-alike reads back as something else.
bool InKoreanCodePage(char16_t unit) {
  char bytes[4];
  int length = OsWideToCodePage(kCodePageKorean, &unit, 1, bytes, sizeof bytes);
  char16_t back[2] = {0, 0};
  return length > 0 && OsCodePageToWide(kCodePageKorean, bytes, length, back, 2) == 1 &&
         back[0] == unit;
}

bool Representable(char16_t unit, int encoding) {
  if (unit < 0x80) return true;
  if (IsSurrogate(unit)) return false;
  if (encoding == JOHAP) return UnicodeToJohab(unit, 0) != 0;
  return InKoreanCodePage(unit);
}

}  // namespace

int CountUnmappable(const char16_t* units, int count, int encoding, int* first) {
  *first = -1;
  if (encoding != JOHAP && encoding != EUCKR) return 0;
  int found = 0;
  for (int i = 0; i < count; ++i) {
    if (Representable(units[i], encoding)) continue;
    if (*first < 0) *first = i;
    ++found;
    // The two halves of a pair are one character.
    if (units[i] >= 0xD800 && units[i] <= 0xDBFF && i + 1 < count && units[i + 1] >= 0xDC00 &&
        units[i + 1] <= 0xDFFF)
      ++i;
  }
  return found;
}
