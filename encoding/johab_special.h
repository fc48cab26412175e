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

// The unit of a special code, or 0.
char16_t FindJohabSpecial(unsigned code);
// The code of a lone letter, or 0.
unsigned FindJohabLetterCode(char16_t unit);
