#include "encoding/line_convert.h"

#include "encoding/johab.h"
#include "encoding/utf8_rules.h"
#include "foundation/memory.h"
#include "foundation/os_codepage.h"

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

// One UTF-8 sequence from data[*i]: the lead's bits and as many continuation bytes as it
// announces and the data holds. A byte that cannot lead stands for itself, and so does the lead
// of a sequence that spells an ASCII character the long way: read as one unit it could put a line
// end inside a line.
char16_t NextUtf8Unit(const unsigned char* data, int count, int* i) {
  int start = *i;
  unsigned char lead = data[(*i)++];
  int trail = Utf8TrailCount(lead);
  if (trail <= 0) return lead;
  unsigned value = lead & (0x3Fu >> trail);
  for (; trail > 0 && *i < count && IsUtf8Continuation(data[*i]); --trail) {
    value = value << 6 | (data[(*i)++] & 0x3Fu);
  }
  if (value < 0x80) {
    *i = start + 1;
    return lead;
  }
  return static_cast<char16_t>(value);
}

int Utf8Length(char16_t unit) {
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
      target[written++] = IsBlankOrTab(trail)
                              ? kJohabFallbackUnit
                              : JohabToUnicode(lead << 8 | trail, kJohabFallbackUnit);
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
  for (int i = 0; i < count; ++units)
    NextUtf8Unit(data, count, &i);
  return units;
}

int Utf8LineToUtf16(const char* bytes, int count, char16_t* target, int targetSize) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  int written = 0;
  for (int i = 0; i < count && written < targetSize;)
    target[written++] = NextUtf8Unit(data, count, &i);
  return written;
}

int Utf16LineToJohabCount(const char16_t* units, int count) {
  int bytes = 0;
  for (int i = 0; i < count; ++i)
    bytes += units[i] < 0x80 ? 1 : 2;
  return bytes;
}

int Utf16LineToJohab(const char16_t* units, int count, char* target, int targetSize) {
  int written = 0;
  for (int i = 0; i < count; ++i) {
    int room = targetSize - written;
    if (units[i] < 0x80) {
      if (room <= 1) break;
      target[written++] = static_cast<char>(units[i]);
    } else {
      if (room <= 2) break;
      unsigned code = UnicodeToJohab(units[i], kJohabFallbackCode);
      target[written++] = static_cast<char>(code >> 8);
      target[written++] = static_cast<char>(code & 0xFF);
    }
  }
  if (targetSize > 0) target[written] = '\0';
  return written;
}

int Utf16LineToEucKrCount(const char16_t* units, int count) {
  return count > 0 ? OsWideToCodePage(kCodePageKorean, units, count, nullptr, 0) : 0;
}

int Utf16LineToEucKr(const char16_t* units, int count, char* target, int targetSize) {
  return ConvertBounded(OsWideToCodePage, units, count, target, targetSize);
}

int Utf16LineToUtf8Count(const char16_t* units, int count) {
  int bytes = 0;
  for (int i = 0; i < count; ++i)
    bytes += Utf8Length(units[i]);
  return bytes;
}

int Utf16LineToUtf8(const char16_t* units, int count, char* target, int targetSize) {
  int written = 0;
  for (int i = 0; i < count; ++i) {
    char16_t unit = units[i];
    int length = Utf8Length(unit);
    if (length > targetSize - written) break;
    unsigned char* out = reinterpret_cast<unsigned char*>(target + written);
    if (length == 1) {
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
