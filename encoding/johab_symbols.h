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
