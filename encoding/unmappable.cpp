#include "encoding/unmappable.h"

#include <cstdint>
#include <cstring>

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

// Whether every unit of the line reads back as itself through the code page, in one conversion
// each way instead of two a character. Code page 949 writes each character as a whole byte
// sequence, so the line reads back unchanged exactly when each of its characters does. Lines
// with a surrogate, or too long for the buffers here, are not tried.
bool WholeLineRoundTrips(const char16_t* units, int count) {
  constexpr int kMostUnits = 1024;
  if (count > kMostUnits) return false;
  for (int i = 0; i < count; ++i) {
    if (IsSurrogate(units[i])) return false;
  }
  char bytes[2 * kMostUnits];
  char16_t back[kMostUnits];
  int length = OsWideToCodePage(kCodePageKorean, units, count, bytes, sizeof bytes);
  if (length <= 0) return false;
  if (OsCodePageToWide(kCodePageKorean, bytes, length, back, kMostUnits) != count) return false;
  for (int i = 0; i < count; ++i) {
    if (back[i] != units[i]) return false;
  }
  return true;
}

}  // namespace

int CountUnmappable(const char16_t* units, int count, int encoding, int* first) {
  *first = -1;
  if (encoding != JOHAP && encoding != EUCKR) return 0;
  // Most of a source line is ASCII, which every encoding holds: four units at a time.
  int wide = 0;
  for (; wide + 4 <= count; wide += 4) {
    uint64_t word;
    memcpy(&word, units + wide, sizeof word);
    if (word & 0xFF80FF80FF80FF80ull) break;
  }
  while (wide < count && units[wide] < 0x80)
    ++wide;
  if (wide == count) return 0;
  if (encoding == EUCKR && WholeLineRoundTrips(units + wide, count - wide)) return 0;
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
