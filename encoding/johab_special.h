// Johab codes that the arithmetic and the symbol tables do not cover.
#pragma once

struct JohabSpecial {
  unsigned short code;
  char16_t unit;
};

// The first kJohabBoxPairs entries are box-drawing codes of DOS screens, read but never written;
// the others are the lone letters U+3131 ... U+3163 in order, used both ways.
constexpr int kJohabSpecialCount = 64;
constexpr int kJohabBoxPairs = 13;
extern const JohabSpecial kJohabSpecials[kJohabSpecialCount];

// Special codes are doubled bytes (box pairs), 0x01 codes, or letters: fill initial (leads
// 0x84-0x87) or an initial with fill vowel and fill final (trail 0x41). Anything else skips the
// search, which matters because every character of a Johab file asks.
inline bool MayBeJohabSpecial(unsigned code) {
  unsigned lead = code >> 8;
  unsigned trail = code & 0xFF;
  if (lead == trail || lead == 0x01) return true;
  return (lead >= 0x84 && lead <= 0x87) || (lead >= 0x88 && lead <= 0xD0 && trail == 0x41);
}

// The unit of a special code, or 0.
char16_t FindJohabSpecial(unsigned code);
// The code of a lone letter, or 0.
unsigned FindJohabLetterCode(char16_t unit);
