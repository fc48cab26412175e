#include "tools/string_code.h"

#include <cstdint>

#include "encoding/johab.h"
#include "encoding/line_convert.h"
#include "encoding/text_encoding.h"
#include "encoding/unmappable.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/text_builder.h"
#include "foundation/unicode.h"

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

// One character of the input: one unit, or the two of a surrogate pair.
struct Character {
  int index;
  int units;
};

Character CharacterAt(const char16_t* units, int count, int index) {
  bool pair =
      index + 1 < count && IsHighSurrogate(units[index]) && IsLowSurrogate(units[index + 1]);
  return {index, pair ? 2 : 1};
}

bool IsHexDigit(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

int HexValue(char16_t c) {
  if (c <= u'9') return c - u'0';
  return (c | 0x20) - u'a' + 10;
}

void AppendHexByte(TextBuilder* out, unsigned byte) {
  out->Append(kHex[(byte >> 4) & 15]);
  out->Append(kHex[byte & 15]);
}

// The bytes of one character in a file encoding; 0 when the encoding cannot hold it.
int EncodeCharacter(const char16_t* units, Character c, int encoding, uint8_t* bytes) {
  int first = 0;
  if (encoding != UTF8 && CountUnmappable(units + c.index, c.units, encoding, &first) > 0) return 0;
  char target[8];
  int length = 0;
  if (encoding == UTF8) {
    if (c.units == 1 && units[c.index] >= 0xD800 && units[c.index] <= 0xDFFF) return 0;
    length = Utf16LineToUtf8(units + c.index, c.units, target, sizeof target);
  } else if (encoding == JOHAP) {
    length = Utf16LineToJohab(units + c.index, c.units, target, sizeof target);
  } else {
    length = Utf16LineToEucKr(units + c.index, c.units, target, sizeof target);
  }
  for (int i = 0; i < length; ++i)
    bytes[i] = static_cast<uint8_t>(target[i]);
  return length;
}

// "LABEL: B0 A1 41" with "--" for each character the encoding cannot hold; the count of those.
int AppendBytesLine(TextBuilder* out, const char* label, const char16_t* units, int count,
                    int encoding) {
  out->Append(label);
  out->Append(':');
  int missing = 0;
  for (int i = 0; i < count;) {
    Character c = CharacterAt(units, count, i);
    uint8_t bytes[8];
    int length = EncodeCharacter(units, c, encoding, bytes);
    if (length == 0) {
      out->Append(" --");
      ++missing;
    }
    for (int b = 0; b < length; ++b) {
      out->Append(' ');
      AppendHexByte(out, bytes[b]);
    }
    i += c.units;
  }
  if (missing) out->Format(GetStr(403), missing);
  out->Append("\r\n");
  return missing;
}

// A literal's character that needs no escape. A hexadecimal escape swallows every hex digit
// behind it, so a digit right after one closes the literal and opens the next ("\xA1" "B").
void AppendPlain(TextBuilder* out, char16_t unit, bool* afterHex) {
  if (*afterHex && IsHexDigit(unit)) out->Append("\" \"");
  *afterHex = false;
  switch (unit) {
    case u'"':
      out->Append("\\\"");
      return;
    case u'\\':
      out->Append("\\\\");
      return;
    case u'\t':
      out->Append("\\t");
      return;
    case u'\n':
      out->Append("\\n");
      return;
    case u'\r':
      out->Append("\\r");
      return;
  }
  if (unit < 0x20 || unit == 0x7F) {
    // Three octal digits end the escape whatever follows.
    out->Append('\\');
    out->Append(static_cast<char>('0' + (unit >> 6)));
    out->Append(static_cast<char>('0' + ((unit >> 3) & 7)));
    out->Append(static_cast<char>('0' + (unit & 7)));
    return;
  }
  out->Append(static_cast<char>(unit));
}

void AppendByteLiteral(TextBuilder* out, const char* prefix, const char16_t* units, int count,
                       int encoding) {
  out->Append(prefix);
  out->Append('"');
  bool afterHex = false;
  for (int i = 0; i < count;) {
    Character c = CharacterAt(units, count, i);
    i += c.units;
    if (units[c.index] < 0x80) {
      AppendPlain(out, units[c.index], &afterHex);
      continue;
    }
    uint8_t bytes[8];
    int length = EncodeCharacter(units, c, encoding, bytes);
    if (length == 0) {
      AppendPlain(out, u'?', &afterHex);
      continue;
    }
    for (int b = 0; b < length; ++b) {
      out->Append("\\x");
      AppendHexByte(out, bytes[b]);
    }
    afterHex = true;
  }
  out->Append("\"\r\n");
}

// L"...": \u for the basic plane, \U for a pair; a lone surrogate has no universal name, so it
// is a hexadecimal escape of the unit.
void AppendWideLiteral(TextBuilder* out, const char16_t* units, int count) {
  out->Append("L\"");
  bool afterHex = false;
  for (int i = 0; i < count;) {
    Character c = CharacterAt(units, count, i);
    i += c.units;
    char16_t unit = units[c.index];
    if (unit < 0x80) {
      AppendPlain(out, unit, &afterHex);
    } else if (c.units == 2) {
      uint32_t point = 0x10000 + ((unit - 0xD800u) << 10) + (units[c.index + 1] - 0xDC00u);
      out->Format("\\U%08X", point);
      afterHex = false;
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      out->Format("\\x%04X", static_cast<unsigned>(unit));
      afterHex = true;
    } else {
      out->Format("\\u%04X", static_cast<unsigned>(unit));
      afterHex = false;
    }
  }
  out->Append("\"\r\n");
}

void AppendCodes(TextBuilder* out, const char16_t* units, int count) {
  int characters = 0;
  for (int i = 0; i < count; i += CharacterAt(units, count, i).units)
    ++characters;
  out->Format(GetStr(400), characters);
  out->Append("\r\nUTF-16:");
  for (int i = 0; i < count; ++i)
    out->Format(" %04X", static_cast<unsigned>(units[i]));
  out->Append("\r\n");
  AppendBytesLine(out, "UTF-8", units, count, UTF8);
  AppendBytesLine(out, "EUC-KR", units, count, EUCKR);
  AppendBytesLine(out, GetStr(401), units, count, JOHAP);
  const char* literal = GetStr(402);
  out->Format("%s (EUC-KR): ", literal);
  AppendByteLiteral(out, "", units, count, EUCKR);
  out->Format("%s (%s): ", literal, GetStr(401));
  AppendByteLiteral(out, "", units, count, JOHAP);
  out->Format("%s (UTF-16): ", literal);
  AppendWideLiteral(out, units, count);
  out->Format("%s (UTF-8): ", literal);
  AppendByteLiteral(out, "u8", units, count, UTF8);
}

// ---- reading codes back ----

// What a pasted sequence holds: bytes (of some encoding) or code points, never both.
struct Codes {
  uint8_t* bytes;
  int byteCount;
  char16_t* units;
  int unitCount;
};

bool IsSeparator(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u',' || c == u'"' ||
         c == u'\'' || c == u';' || c == u'{' || c == u'}';
}

// A code of 1 or 2 hex digits is a byte, of more a code point (a unit below U+10000).
bool AddCode(Codes* codes, uint32_t value, int digits) {
  if (digits <= 2) {
    if (codes->unitCount) return false;
    codes->bytes[codes->byteCount++] = static_cast<uint8_t>(value);
    return true;
  }
  if (codes->byteCount || value > 0x10FFFF) return false;
  if (value >= 0x10000) {
    codes->units[codes->unitCount++] = static_cast<char16_t>(0xD7C0 + (value >> 10));
    codes->units[codes->unitCount++] = static_cast<char16_t>(0xDC00 | (value & 0x3FF));
  } else {
    codes->units[codes->unitCount++] = static_cast<char16_t>(value);
  }
  return true;
}

// Reads the whole input as codes; false when anything in it is not one.
bool ReadCodes(const char16_t* text, int count, Codes* codes) {
  bool sawBare = false;
  bool sawMarked = false;
  bool anyDigit = false;
  int i = 0;
  while (i < count) {
    char16_t c = text[i];
    char16_t next = i + 1 < count ? text[i + 1] : 0;
    if (IsSeparator(c)) {
      ++i;
      continue;
    }
    // The prefixes of a pasted literal.
    if ((c == u'L' || c == u'u' || c == u'U') && next == u'"') {
      ++i;
      continue;
    }
    if (c == u'u' && next == u'8' && i + 2 < count && text[i + 2] == u'"') {
      i += 2;
      continue;
    }
    bool bare = false;
    bool point = false;  // a code point whatever its length: \u, \U and U+
    int maxDigits = 4;   // 0x, \x and bare: 1 or 2 digits a byte, 3 or 4 a unit
    int exactDigits = 0;
    if ((c == u'\\' && (next == u'x' || next == u'X')) ||
        (c == u'0' && (next == u'x' || next == u'X'))) {
      i += 2;
    } else if (c == u'\\' && (next == u'u' || next == u'U')) {
      point = true;
      exactDigits = next == u'u' ? 4 : 8;
      i += 2;
    } else if ((c == u'U' || c == u'u') && next == u'+') {
      point = true;
      maxDigits = 6;
      i += 2;
    } else if (IsHexDigit(c)) {
      bare = true;
    } else {
      return false;
    }
    (bare ? sawBare : sawMarked) = true;
    uint32_t value = 0;
    int digits = 0;
    while (i < count && IsHexDigit(text[i]) && digits < 8) {
      if (text[i] <= u'9') anyDigit = true;
      value = value * 16 + static_cast<uint32_t>(HexValue(text[i]));
      ++digits;
      ++i;
    }
    if (digits == 0 || (exactDigits && digits != exactDigits) ||
        (!exactDigits && digits > maxDigits))
      return false;
    // A bare token is two or four digits standing alone.
    if (bare && ((digits != 2 && digits != 4) || (i < count && !IsSeparator(text[i]))))
      return false;
    if (!AddCode(codes, value, point ? 6 : digits)) return false;
  }
  // Bare hexadecimal only on its own, and with a digit in it: "BEEF" or "cafe" is a word.
  if (sawBare && (sawMarked || !anyDigit)) return false;
  return codes->byteCount + codes->unitCount > 0;
}

// Strict UTF-8: no overlong forms, no surrogates, nothing past U+10FFFF.
bool IsUtf8(const uint8_t* bytes, int count) {
  for (int i = 0; i < count;) {
    uint8_t b = bytes[i];
    int extra = 0;
    if (b >= 0xF0 && b < 0xF5)
      extra = 3;
    else if (b >= 0xE0 && b < 0xF0)
      extra = 2;
    else if (b >= 0xC2 && b < 0xE0)
      extra = 1;
    else if (b >= 0x80)
      return false;
    if (i + extra >= count + (extra ? 0 : 1)) return false;
    uint32_t value = extra == 0 ? b : b & (0x3Fu >> extra);
    for (int k = 1; k <= extra; ++k) {
      if ((bytes[i + k] & 0xC0) != 0x80) return false;
      value = value << 6 | (bytes[i + k] & 0x3Fu);
    }
    if ((extra == 2 && (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF))) ||
        (extra == 3 && (value < 0x10000 || value > 0x10FFFF)))
      return false;
    i += extra + 1;
  }
  return true;
}

// Johab and EUC-KR pairs: every byte of 0x80 or more must lead a pair the encoding has.
bool IsKoreanText(const uint8_t* bytes, int count, int encoding) {
  for (int i = 0; i < count; ++i) {
    if (bytes[i] < 0x80) continue;
    if (i + 1 >= count) return false;
    unsigned code = static_cast<unsigned>(bytes[i]) << 8 | bytes[i + 1];
    if (encoding == JOHAP) {
      if (!IsJohabCode(code) || JohabToUnicode(code, 0) == 0) return false;
    } else {
      char16_t unit = 0;
      char pair[2] = {static_cast<char>(bytes[i]), static_cast<char>(bytes[i + 1])};
      if (EucKrLineToUtf16(pair, 2, &unit, 1) != 1) return false;
      uint8_t back[4];
      int first = 0;
      if (unit == 0xFFFD || unit == u'?' || CountUnmappable(&unit, 1, EUCKR, &first)) return false;
      if (Utf16LineToEucKr(&unit, 1, reinterpret_cast<char*>(back), sizeof back) != 2 ||
          back[0] != bytes[i] || back[1] != bytes[i + 1])
        return false;
    }
    ++i;
  }
  return true;
}

void AppendUnits(TextBuilder* out, const char16_t* units, int count) {
  char buffer[64];
  for (int i = 0; i < count;) {
    int take = count - i < 16 ? count - i : 16;
    if (take > 1 && IsHighSurrogate(units[i + take - 1])) --take;
    int length = Utf16LineToUtf8(units + i, take, buffer, sizeof buffer);
    out->Append(buffer, static_cast<size_t>(length));
    i += take;
  }
}

void AppendReading(TextBuilder* out, const char* name, const Codes& codes, int encoding) {
  char label[64];
  FormatStr(label, sizeof label, GetStr(405), name);
  out->Append(label);
  out->Append(": ");
  const char* bytes = reinterpret_cast<const char*>(codes.bytes);
  bool valid = encoding == UTF8 ? IsUtf8(codes.bytes, codes.byteCount)
                                : IsKoreanText(codes.bytes, codes.byteCount, encoding);
  if (!valid) {
    out->Append(GetStr(406));
    out->Append("\r\n");
    return;
  }
  int size = codes.byteCount + 1;
  auto* units = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(size) * sizeof(char16_t), kOwnerStringCode));
  if (!units) return;
  int length = encoding == UTF8    ? Utf8LineToUtf16(bytes, codes.byteCount, units, size)
               : encoding == JOHAP ? JohabLineToUtf16(bytes, codes.byteCount, units, size)
                                   : EucKrLineToUtf16(bytes, codes.byteCount, units, size);
  AppendUnits(out, units, length);
  FreeMem(units);
  out->Append("\r\n");
}

}  // namespace

char* StringCodeText(const char16_t* units, int count) {
  TextBuilder out(kOwnerStringCode);
  if (count <= 0) {
    out.Append(GetStr(407));
    out.Append("\r\n");
    return out.Release();
  }
  // Every code takes at least one unit of the input, and gives at most two units.
  size_t size = static_cast<size_t>(count) * (2 * sizeof(char16_t) + 1);
  auto* block = static_cast<char16_t*>(AllocMem(size, kOwnerStringCode));
  if (!block) return nullptr;
  Codes codes = {reinterpret_cast<uint8_t*>(block + 2 * count), 0, block, 0};
  if (ReadCodes(units, count, &codes)) {
    if (codes.unitCount) {
      out.Format("%s: ", GetStr(404));
      AppendUnits(&out, codes.units, codes.unitCount);
      out.Append("\r\n");
      AppendCodes(&out, codes.units, codes.unitCount);
    } else {
      AppendReading(&out, "EUC-KR", codes, EUCKR);
      AppendReading(&out, GetStr(401), codes, JOHAP);
      AppendReading(&out, "UTF-8", codes, UTF8);
    }
  } else {
    AppendCodes(&out, units, count);
  }
  FreeMem(block);
  return out.Release();
}
