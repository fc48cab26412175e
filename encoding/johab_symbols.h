// The KS X 1001 symbol rows in Johab (leads 0xD9-0xDE), generated from the published mapping.
#pragma once

struct JohabSymbol {
  unsigned short code;  // Johab code, lead byte high
  char16_t unit;
};

constexpr int kJohabSymbolCount = 986;

// The same pairs twice: sorted by Johab code and sorted by unit, for binary search.
extern const JohabSymbol kJohabSymbolsByCode[kJohabSymbolCount];
extern const JohabSymbol kJohabSymbolsByUnit[kJohabSymbolCount];

// The 2,350 syllables that KS X 1001 codes, one bit each from U+AC00 (bit i % 32 of word i / 32).
constexpr int kKsSyllableWords = (0xD7A4 - 0xAC00 + 31) / 32;
extern const unsigned kKsSyllableBits[kKsSyllableWords];
