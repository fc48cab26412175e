#include "encoding/line_convert.h"

#include "encoding/johab.h"
#include "encoding/johab_special.h"
#include "encoding/utf8_rules.h"
#include "foundation/memory.h"
#include "foundation/os_codepage.h"
#include "foundation/unicode.h"

namespace {

constexpr int kOwnerConvertScratch = 71;

// Old Hangul screens used 0x01 as the lead of their box codes; both Johab and the EUC-KR count
// take it as a lead byte.
bool IsPairLead(unsigned char byte) {
  return byte == 0x01 || byte >= 0x80;
}

bool IsBlankOrTab(unsigned char byte) {
  return byte == ' ' || byte == '\t';
}

// Counts characters the way the Johab and EUC-KR readers step through bytes.
int CountPairedCharacters(const unsigned char* data, int count) {
  int units = 0;
  for (int i = 0; i < count; i += IsPairLead(data[i]) ? 2 : 1)
    ++units;
  return units;
}

// Runs a system conversion that fails as a whole when its target is short: straight into the
// target when it fits, else through scratch so that the target gets the first targetSize elements.
template <typename From, typename To>
int ConvertBounded(int (*convert)(unsigned, const From*, int, To*, int), const From* source,
                   int count, To* target, int targetSize) {
  if (count <= 0 || targetSize <= 0) return 0;
  int written = convert(kCodePageKorean, source, count, target, targetSize);
  if (written > 0) return written;
  int needed = convert(kCodePageKorean, source, count, nullptr, 0);
  if (needed <= targetSize) return 0;
  To* scratch =
      static_cast<To*>(AllocMem(sizeof(To) * static_cast<size_t>(needed), kOwnerConvertScratch));
  if (!scratch) return 0;
  written = convert(kCodePageKorean, source, count, scratch, needed);
  if (written > targetSize) written = targetSize;
  for (int i = 0; i < written; ++i)
    target[i] = scratch[i];
  FreeMem(scratch);
  return written;
}

// Where the next surrogate pair from units[i] starts, or count.
int RunWithoutPairs(const char16_t* units, int count, int i) {
  while (i < count && CharacterUnits(units, count, i) == 1)
    ++i;
  return i;
}

constexpr char16_t kReplacementUnit = 0xFFFD;
// What the Korean code page writes for a character it has no code for.
constexpr char kCodePageDefaultByte = '?';

// One UTF-8 sequence from data[*i] as 1 or 2 units (a character beyond the Basic Multilingual
// Plane as its surrogate pair); returns the number of units. A byte that cannot lead stands for
// itself, and so does the lead of a sequence that is cut short (by the end of the line or a byte
// that does not continue it; the bytes behind it are read afresh) or that spells an ASCII
// character the long way: read as one unit it could put a line end inside a line. A value beyond
// U+10FFFF (the old five- and six-byte forms) is one U+FFFD.
int NextUtf8Character(const unsigned char* data, int count, int* i, char16_t* out) {
  int start = *i;
  unsigned char lead = data[(*i)++];
  int trail = Utf8TrailCount(lead);
  out[0] = lead;
  if (trail <= 0) return 1;
  unsigned long value = lead & (0x3Fu >> trail);
  for (; trail > 0 && *i < count && IsUtf8Continuation(data[*i]); --trail) {
    value = value << 6 | (data[(*i)++] & 0x3Fu);
  }
  if (trail > 0 || value < 0x80) {
    *i = start + 1;
    return 1;
  }
  if (value > 0x10FFFF) {
    out[0] = kReplacementUnit;
  } else if (value > 0xFFFF) {
    value -= 0x10000;
    out[0] = static_cast<char16_t>(0xD800 | value >> 10);
    out[1] = static_cast<char16_t>(0xDC00 | (value & 0x3FF));
    return 2;
  } else {
    out[0] = static_cast<char16_t>(value);
  }
  return 1;
}

// Bytes of the character at units[i]: a pair is 4, a lone surrogate 3 like any unit from U+0800.
int Utf8Length(const char16_t* units, int count, int i) {
  if (CharacterUnits(units, count, i) == 2) return 4;
  char16_t unit = units[i];
  return unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
}

}  // namespace

int JohabLineToUtf16Count(const char* bytes, int count) {
  return CountPairedCharacters(reinterpret_cast<const unsigned char*>(bytes), count);
}

int JohabLineToUtf16(const char* bytes, int count, char16_t* target, int targetSize) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  int written = 0;
  for (int i = 0; i < count && written < targetSize;) {
    unsigned char lead = data[i++];
    if (!IsPairLead(lead)) {
      target[written++] = lead;
    } else if (i == count) {
      target[written++] = u' ';
    } else {
      unsigned char trail = data[i++];
      unsigned code = static_cast<unsigned>(lead) << 8 | trail;
      // Most pairs of a Johab file are syllables: their table is read here, without a call.
      if (IsBlankOrTab(trail))
        target[written++] = kJohabFallbackUnit;
      else if (lead >= 0x88 && lead <= 0xD3 && !MayBeJohabSpecial(code))
        target[written++] = kJohabSyllables.units[code - kJohabFirstSyllableCode];
      else
        target[written++] = JohabToUnicode(code, kJohabFallbackUnit);
    }
  }
  return written;
}

int EucKrLineToUtf16Count(const char* bytes, int count) {
  return CountPairedCharacters(reinterpret_cast<const unsigned char*>(bytes), count);
}

int EucKrLineToUtf16(const char* bytes, int count, char16_t* target, int targetSize) {
  return ConvertBounded(OsCodePageToWide, bytes, count, target, targetSize);
}

int Utf8LineToUtf16Count(const char* bytes, int count) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  int units = 0;
  char16_t character[2];
  for (int i = 0; i < count;)
    units += NextUtf8Character(data, count, &i, character);
  return units;
}

int Utf8LineToUtf16(const char* bytes, int count, char16_t* target, int targetSize) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  int written = 0;
  char16_t character[2];
  for (int i = 0; i < count;) {
    int units = NextUtf8Character(data, count, &i, character);
    // A pair that does not fit whole is left out, as the writers leave out a split character.
    if (units > targetSize - written) break;
    for (int k = 0; k < units; ++k)
      target[written++] = character[k];
  }
  return written;
}

int Utf16LineToJohabCount(const char16_t* units, int count) {
  int bytes = 0;
  for (int i = 0; i < count; i += CharacterUnits(units, count, i))
    bytes += units[i] < 0x80 ? 1 : 2;
  return bytes;
}

int Utf16LineToJohab(const char16_t* units, int count, char* target, int targetSize) {
  int written = 0;
  for (int i = 0; i < count; i += CharacterUnits(units, count, i)) {
    int room = targetSize - written;
    if (units[i] < 0x80) {
      if (room <= 1) break;
      target[written++] = static_cast<char>(units[i]);
    } else {
      if (room <= 2) break;
      // Johab has no character beyond the Basic Multilingual Plane: a pair is one fallback.
      char16_t unit = units[i];
      unsigned code = unit >= 0xAC00 && unit <= 0xD7A3 ? kJohabSyllables.codes[unit - 0xAC00]
                      : CharacterUnits(units, count, i) == 2
                          ? kJohabFallbackCode
                          : UnicodeToJohab(unit, kJohabFallbackCode);
      target[written++] = static_cast<char>(code >> 8);
      target[written++] = static_cast<char>(code & 0xFF);
    }
  }
  if (targetSize > 0) target[written] = '\0';
  return written;
}

// The code page sees the runs between surrogate pairs; each pair, which it has no character for,
// becomes one default character here, whatever the system would make of its two halves.
int Utf16LineToEucKrCount(const char16_t* units, int count) {
  int bytes = 0;
  for (int i = 0; i < count;) {
    int end = RunWithoutPairs(units, count, i);
    if (end > i) bytes += OsWideToCodePage(kCodePageKorean, units + i, end - i, nullptr, 0);
    if (end < count) ++bytes;
    i = end + 2;
  }
  return bytes;
}

int Utf16LineToEucKr(const char16_t* units, int count, char* target, int targetSize) {
  // Most lines hold no surrogate at all: one call for the whole line.
  unsigned surrogates = 0;
  for (int i = 0; i < count; ++i)
    surrogates |= (units[i] & 0xF800u) == 0xD800u;
  if (!surrogates) return ConvertBounded(OsWideToCodePage, units, count, target, targetSize);
  int written = 0;
  for (int i = 0; i < count;) {
    int end = RunWithoutPairs(units, count, i);
    if (end > i) {
      int done = ConvertBounded(OsWideToCodePage, units + i, end - i, target + written,
                                targetSize - written);
      written += done;
      if (end == count) break;
      if (done < OsWideToCodePage(kCodePageKorean, units + i, end - i, nullptr, 0)) break;
    }
    if (end == count || written >= targetSize) break;
    target[written++] = kCodePageDefaultByte;
    i = end + 2;
  }
  return written;
}

int Utf16LineToUtf8Count(const char16_t* units, int count) {
  int bytes = 0;
  for (int i = 0; i < count; i += CharacterUnits(units, count, i))
    bytes += Utf8Length(units, count, i);
  return bytes;
}

int Utf16LineToUtf8(const char16_t* units, int count, char* target, int targetSize) {
  int written = 0;
  for (int i = 0; i < count; i += CharacterUnits(units, count, i)) {
    char16_t unit = units[i];
    int length = Utf8Length(units, count, i);
    if (length > targetSize - written) break;
    unsigned char* out = reinterpret_cast<unsigned char*>(target + written);
    if (length == 4) {
      unsigned value = 0x10000 + ((unit - 0xD800u) << 10 | (units[i + 1] - 0xDC00u));
      out[0] = static_cast<unsigned char>(0xF0 | value >> 18);
      out[1] = static_cast<unsigned char>(0x80 | (value >> 12 & 0x3F));
      out[2] = static_cast<unsigned char>(0x80 | (value >> 6 & 0x3F));
      out[3] = static_cast<unsigned char>(0x80 | (value & 0x3F));
    } else if (length == 1) {
      out[0] = static_cast<unsigned char>(unit);
    } else if (length == 2) {
      out[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
      out[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    } else {
      out[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
      out[1] = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
      out[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    }
    written += length;
  }
  return written;
}
