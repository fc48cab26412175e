// UTF-8 and UTF-16 conversions of the internal strings. Invalid input (a stray byte, a lone
// surrogate) becomes U+FFFD, as the system converter does.
#pragma once

// Lengths are in units without terminator; a length of -1 means "up to the terminator". With no
// target (or a target size of 0) the functions return the length the result needs; otherwise they
// write at most `targetSize` units and return the number written.
int Utf16ToUtf8(const char16_t* source, int sourceLength, char* target, int targetSize);
int Utf8ToUtf16(const char* source, int sourceLength, char16_t* target, int targetSize);

// Length of a terminated UTF-16 string.
int Utf16Length(const char16_t* text);

inline bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
inline bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}
// Units of the character that starts at units[index]: 2 for a surrogate pair, else 1. A pair is
// one character everywhere: in the columns, the caret's moves, and every conversion.
inline int CharacterUnits(const char16_t* units, int count, int index) {
  bool pair =
      index + 1 < count && IsHighSurrogate(units[index]) && IsLowSurrogate(units[index + 1]);
  return pair ? 2 : 1;
}
