#include "foundation/unicode.h"

#include <cstring>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Collects output units, counting past the end of the target so callers learn the size needed.
template <typename Unit>
struct Sink {
  Unit* target;
  int size;
  int count = 0;
  void Put(Unit unit) {
    if (target && size > 0 && count < size) target[count] = unit;
    ++count;
  }
  int Result() const { return (target && size > 0 && count > size) ? size : count; }
};

void PutUtf8(Sink<char>& sink, char32_t code) {
  if (code < 0x80) {
    sink.Put(static_cast<char>(code));
  } else if (code < 0x800) {
    sink.Put(static_cast<char>(0xC0 | (code >> 6)));
    sink.Put(static_cast<char>(0x80 | (code & 0x3F)));
  } else if (code < 0x10000) {
    sink.Put(static_cast<char>(0xE0 | (code >> 12)));
    sink.Put(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
    sink.Put(static_cast<char>(0x80 | (code & 0x3F)));
  } else {
    sink.Put(static_cast<char>(0xF0 | (code >> 18)));
    sink.Put(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
    sink.Put(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
    sink.Put(static_cast<char>(0x80 | (code & 0x3F)));
  }
}

// Decodes one UTF-8 sequence at `text`, returning the code point (U+FFFD when malformed) and the
// number of bytes it took (a malformed sequence takes its lead byte only).
char32_t DecodeUtf8(const unsigned char* text, int left, int* used) {
  unsigned char lead = text[0];
  *used = 1;
  if (lead < 0x80) return lead;
  int extra;
  char32_t code;
  char32_t minimum;
  if (lead >= 0xC2 && lead <= 0xDF) {
    extra = 1, code = lead & 0x1F, minimum = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    extra = 2, code = lead & 0x0F, minimum = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    extra = 3, code = lead & 0x07, minimum = 0x10000;
  } else {
    return kReplacement;
  }
  if (left < extra + 1) return kReplacement;
  for (int i = 1; i <= extra; ++i) {
    if ((text[i] & 0xC0) != 0x80) return kReplacement;
    code = (code << 6) | (text[i] & 0x3F);
  }
  if (code < minimum || code > 0x10FFFF || IsHighSurrogate(code) || IsLowSurrogate(code)) {
    return kReplacement;
  }
  *used = extra + 1;
  return code;
}

}  // namespace

int Utf16Length(const char16_t* text) {
  int length = 0;
  while (text[length])
    ++length;
  return length;
}

int Utf16ToUtf8(const char16_t* source, int sourceLength, char* target, int targetSize) {
  if (sourceLength < 0) sourceLength = Utf16Length(source);
  Sink<char> sink{target, targetSize};
  for (int i = 0; i < sourceLength; ++i) {
    char32_t unit = source[i];
    if (IsHighSurrogate(unit) && i + 1 < sourceLength && IsLowSurrogate(source[i + 1])) {
      char32_t low = source[++i];
      PutUtf8(sink, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
    } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
      PutUtf8(sink, kReplacement);
    } else {
      PutUtf8(sink, unit);
    }
  }
  return sink.Result();
}

int Utf8ToUtf16(const char* source, int sourceLength, char16_t* target, int targetSize) {
  if (sourceLength < 0) sourceLength = static_cast<int>(strlen(source));
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(source);
  Sink<char16_t> sink{target, targetSize};
  for (int i = 0; i < sourceLength;) {
    int used;
    char32_t code = DecodeUtf8(bytes + i, sourceLength - i, &used);
    i += used;
    if (code >= 0x10000) {
      sink.Put(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
      sink.Put(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    } else {
      sink.Put(static_cast<char16_t>(code));
    }
  }
  return sink.Result();
}
