#include "foundation/formatter.h"

#include <cstdint>
#include <cstring>

#include "foundation/memory.h"
#include "foundation/os_codepage.h"
#include "foundation/unicode.h"

namespace {

constexpr int kMaxWidth = 1024;
constexpr int kMaxScale = 64;
constexpr int kOwnerWideConversion = 101;
constexpr int kOwnerCodePageConversion = 102;

const char kNull[] = "<null>";
const char kInternalError[] = "<InternalError>";

// The bounded destination: characters past its end are counted but not stored.
struct Output {
  char* dest;
  int size;
  int count = 0;

  void Put(char c) {
    if (count < size - 1) dest[count] = c;
    ++count;
  }
  void Put(const char* text, int length) {
    for (int i = 0; i < length; ++i)
      Put(text[i]);
  }
  void Repeat(char c, int times) {
    for (int i = 0; i < times; ++i)
      Put(c);
  }
  int Finish() {
    if (size >= 1) dest[count < size - 1 ? count : size - 1] = '\0';
    return count + 1;
  }
};

struct Spec {
  bool left = false;
  bool group = false;
  bool hexPrefix = false;
  bool zeroFill = false;
  bool wide64 = false;
  bool keepZeros = false;
  int width = 0;
  int scale = 0;
};

int ParseNumber(const char** cursor, int limit) {
  int value = 0;
  while (**cursor >= '0' && **cursor <= '9') {
    value = value * 10 + (**cursor - '0');
    if (value > limit) value = limit;
    ++*cursor;
  }
  return value;
}

// Reads flags, width, scale and size until a character that is none of them.
Spec ParseSpec(const char** cursor) {
  Spec spec;
  const char*& p = *cursor;
  for (;;) {
    char c = *p;
    if (c == '-') {
      spec.left = true, ++p;
    } else if (c == ',') {
      spec.group = true, ++p;
    } else if (c == '#') {
      spec.hexPrefix = true, ++p;
    } else if (c == '0') {
      spec.zeroFill = true, ++p;
    } else if (c >= '1' && c <= '9') {
      spec.width = ParseNumber(&p, kMaxWidth);
    } else if (c == '.') {
      ++p;
      spec.keepZeros = *p == '0';
      spec.scale = ParseNumber(&p, kMaxScale);
    } else if (c == 'I' && p[1] == '6' && p[2] == '4') {
      spec.wide64 = true, p += 3;
    } else if (c == 'l' && p[1] == 'l') {
      spec.wide64 = true, p += 2;
    } else {
      return spec;
    }
  }
}

void PutField(Output& out, const Spec& spec, const char* text, int length) {
  int pad = spec.width > length ? spec.width - length : 0;
  if (spec.left) {
    out.Put(text, length);
    out.Repeat(' ', pad);
  } else {
    // The fill goes left of everything, the sign included: %05d of -42 is "00-42".
    out.Repeat(spec.zeroFill ? '0' : ' ', pad);
    out.Put(text, length);
  }
}

// Appends `digits` (most significant first) to `text`, with `separator` between groups of
// `groupSize` counted from the right when `group` is set.
int PutGrouped(char* text, const char* digits, int count, bool group, int groupSize) {
  int length = 0;
  for (int i = 0; i < count; ++i) {
    if (group && i > 0 && (count - i) % groupSize == 0) text[length++] = ',';
    text[length++] = digits[i];
  }
  return length;
}

// 64 digits of scale, 20 of value, separators, sign and prefix all fit.
constexpr int kNumberText = 160;

int DecimalText(char* text, uint64_t magnitude, bool negative, const Spec& spec) {
  char digits[kMaxScale + 24];
  int count = 0;
  char reversed[24];
  do {
    reversed[count++] = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude);
  // Fewer digits than the scale: zeros up to the scale, and a "0" before the point.
  int total = count > spec.scale ? count : spec.scale;
  for (int i = 0; i < total - count; ++i)
    digits[i] = '0';
  for (int i = 0; i < count; ++i)
    digits[total - count + i] = reversed[count - 1 - i];

  int length = 0;
  if (negative) text[length++] = '-';
  int integerDigits = total - spec.scale;
  if (integerDigits == 0) {
    text[length++] = '0';
  } else {
    length += PutGrouped(text + length, digits, integerDigits, spec.group, 3);
  }
  int decimals = spec.scale;
  if (!spec.keepZeros) {
    while (decimals > 0 && digits[integerDigits + decimals - 1] == '0')
      --decimals;
  }
  if (decimals > 0) {
    text[length++] = '.';
    memcpy(text + length, digits + integerDigits, static_cast<size_t>(decimals));
    length += decimals;
  }
  return length;
}

int HexText(char* text, uint64_t value, bool upper, const Spec& spec) {
  const char* alphabet = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  char digits[16];
  int count = 0;
  char reversed[16];
  do {
    reversed[count++] = alphabet[value & 0xF];
    value >>= 4;
  } while (value);
  for (int i = 0; i < count; ++i)
    digits[i] = reversed[count - 1 - i];
  int length = 0;
  if (spec.hexPrefix) text[length++] = '0', text[length++] = 'x';
  return length + PutGrouped(text + length, digits, count, spec.group, 4);
}

void PutString(Output& out, const Spec& spec, const char* text) {
  if (!text) text = kNull;
  PutField(out, spec, text, static_cast<int>(strlen(text)));
}

// UTF-16 to the internal form, through a temporary block that is freed once copied.
void PutWideString(Output& out, const Spec& spec, const char16_t* text) {
  if (!text) return PutString(out, spec, kNull);
  int length = Utf16ToUtf8(text, -1, nullptr, 0);
  char* converted =
      static_cast<char*>(AllocMem(static_cast<size_t>(length) + 1, kOwnerWideConversion));
  if (!converted) return PutString(out, spec, kInternalError);
  Utf16ToUtf8(text, -1, converted, length);
  PutField(out, spec, converted, length);
  FreeMem(converted);
}

// The internal form to the system code page: UTF-8 to UTF-16 to the code page.
void PutCodePageString(Output& out, const Spec& spec, const char* text) {
  if (!text) return PutString(out, spec, kNull);
  int units = Utf8ToUtf16(text, -1, nullptr, 0);
  if (units == 0) return PutField(out, spec, "", 0);
  char16_t* wide =
      static_cast<char16_t*>(AllocMem(static_cast<size_t>(units) * 2, kOwnerCodePageConversion));
  if (!wide) return PutString(out, spec, kInternalError);
  Utf8ToUtf16(text, -1, wide, units);
  int bytes = OsWideToCodePage(kCodePageSystem, wide, units, nullptr, 0);
  char* converted =
      bytes > 0 ? static_cast<char*>(AllocMem(static_cast<size_t>(bytes), kOwnerCodePageConversion))
                : nullptr;
  if (converted && OsWideToCodePage(kCodePageSystem, wide, units, converted, bytes) == bytes) {
    PutField(out, spec, converted, bytes);
  } else {
    PutString(out, spec, kInternalError);
  }
  FreeMem(converted);
  FreeMem(wide);
}

}  // namespace

int FormatText(char* dest, int size, const char* format, va_list args) {
  Output out{dest, (dest && size > 0) ? size : 0};
  if (!format) return out.Finish();
  va_list ap;
  va_copy(ap, args);
  const char* p = format;
  while (*p) {
    if (*p != '%') {
      out.Put(*p++);
      continue;
    }
    if (p[1] == '%') {
      out.Put('%');
      p += 2;
      continue;
    }
    const char* afterPercent = p + 1;
    const char* cursor = afterPercent;
    Spec spec = ParseSpec(&cursor);
    char text[kNumberText];
    char c = *cursor;
    if (c == 'd') {
      int64_t value = spec.wide64 ? va_arg(ap, long long) : va_arg(ap, int);
      uint64_t magnitude =
          value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
      PutField(out, spec, text, DecimalText(text, magnitude, value < 0, spec));
      p = cursor + 1;
    } else if (c == 'u') {
      uint64_t value = spec.wide64 ? va_arg(ap, unsigned long long) : va_arg(ap, unsigned);
      PutField(out, spec, text, DecimalText(text, value, false, spec));
      p = cursor + 1;
    } else if (c == 'x' || c == 'X') {
      uint64_t value = spec.wide64 ? va_arg(ap, unsigned long long) : va_arg(ap, unsigned);
      PutField(out, spec, text, HexText(text, value, c == 'X', spec));
      p = cursor + 1;
    } else if (c == 'c') {
      text[0] = static_cast<char>(va_arg(ap, int) & 0xFF);
      PutField(out, spec, text, text[0] ? 1 : 0);
      p = cursor + 1;
    } else if (c == 's') {
      PutString(out, spec, va_arg(ap, const char*));
      p = cursor + 1;
    } else if (c == 'w' && cursor[1] == 's') {
      PutWideString(out, spec, va_arg(ap, const char16_t*));
      p = cursor + 2;
    } else if (c == 'U' && cursor[1] == '8' && cursor[2] == 's') {
      PutCodePageString(out, spec, va_arg(ap, const char*));
      p = cursor + 3;
    } else {
      // Not a conversion: the '%' is printed and what follows it is ordinary text again. The
      // argument slot is used up all the same, unless the format simply ended.
      if (c) (void)va_arg(ap, int);
      out.Put('%');
      p = afterPercent;
    }
  }
  va_end(ap);
  return out.Finish();
}

int FormatStr(char* dest, int size, const char* format, ...) {
  va_list args;
  va_start(args, format);
  int result = FormatText(dest, size, format, args);
  va_end(args);
  return result;
}
