#include "encoding/johab.h"

#include "encoding/johab_special.h"
#include "encoding/johab_symbols.h"
#include "foundation/os_codepage.h"

namespace {

constexpr unsigned kSyllableBase = 0xAC00;
constexpr unsigned kLastSyllable = 0xD7A3;
constexpr int kMedials = 21;
constexpr int kFinals = 28;

constexpr bool IsSyllableLead(unsigned lead) {
  return lead >= 0x88 && lead <= 0xD3;
}
bool IsSymbolLead(unsigned lead) {
  return lead >= 0xD9 && lead <= 0xDE;
}

// Medial codes 3-7, 10-15, 18-23, 26-29 close up to 0-20 (two unused codes before each group);
// final codes 1-17, 19-29 to 0-27. Codes outside the groups give what the arithmetic gives.
constexpr int MedialIndex(int code) {
  return code - 3 - 2 * ((code - 2) / 8);
}
constexpr int FinalIndex(int code) {
  return code - 1 - (code >= 19 ? 1 : 0);
}
constexpr int MedialCode(int index) {
  return index + 3 + 2 * ((index >= 5) + (index >= 11) + (index >= 17));
}
constexpr int FinalCode(int index) {
  return index + 1 + (index >= 17 ? 1 : 0);
}

// A field code inside its groups: the inverse of closing the gaps gives it back.
bool IsMedialCode(int code) {
  int index = MedialIndex(code);
  return index >= 0 && index < kMedials && MedialCode(index) == code;
}
bool IsFinalCode(int code) {
  int index = FinalIndex(code);
  return index >= 0 && index < kFinals && FinalCode(index) == code;
}

constexpr char16_t SyllableFromJohab(unsigned code) {
  int initial = static_cast<int>((code >> 10) & 0x1F) - 2;
  int medial = MedialIndex(static_cast<int>((code >> 5) & 0x1F));
  int final = FinalIndex(static_cast<int>(code & 0x1F));
  return static_cast<char16_t>(kSyllableBase + (initial * kMedials + medial) * kFinals + final);
}

constexpr unsigned JohabFromSyllable(char16_t unit) {
  int index = unit - kSyllableBase;
  int initial = index / (kMedials * kFinals);
  int medial = index / kFinals % kMedials;
  int final = index % kFinals;
  return 0x8000u | static_cast<unsigned>(initial + 2) << 10 |
         static_cast<unsigned>(MedialCode(medial)) << 5 | static_cast<unsigned>(FinalCode(final));
}

constexpr JohabSyllableTables MakeSyllableTables() {
  JohabSyllableTables tables = {};
  for (unsigned i = 0; i < sizeof tables.units / sizeof tables.units[0]; ++i)
    tables.units[i] = SyllableFromJohab(kJohabFirstSyllableCode + i);
  for (unsigned i = 0; i < sizeof tables.codes / sizeof tables.codes[0]; ++i)
    tables.codes[i] =
        static_cast<unsigned short>(JohabFromSyllable(static_cast<char16_t>(kSyllableBase + i)));
  return tables;
}

template <typename Key, typename KeyOf>
const JohabSymbol* SearchSymbols(const JohabSymbol* table, Key key, KeyOf keyOf) {
  int low = 0;
  int high = kJohabSymbolCount - 1;
  while (low <= high) {
    int middle = (low + high) / 2;
    Key found = keyOf(table[middle]);
    if (found == key) return &table[middle];
    if (found < key) {
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return nullptr;
}

// A KS X 1001 code through the Korean code page: its one unit, or 0.
char16_t KsToUnit(unsigned ks) {
  const char bytes[2] = {static_cast<char>(ks >> 8), static_cast<char>(ks & 0xFF)};
  char16_t units[2];
  if (OsCodePageToWide(kCodePageKorean, bytes, 2, units, 2) != 1) return 0;
  return units[0];
}

// A unit through the Korean code page: its KS X 1001 code when it has two bytes, or 0.
unsigned UnitToKs(char16_t unit) {
  char bytes[4];
  if (OsWideToCodePage(kCodePageKorean, &unit, 1, bytes, sizeof bytes) != 2) return 0;
  return static_cast<unsigned char>(bytes[0]) << 8 | static_cast<unsigned char>(bytes[1]);
}

}  // namespace

constexpr JohabSyllableTables kJohabSyllables = MakeSyllableTables();

unsigned JohabToKsCode(unsigned code) {
  unsigned lead = code >> 8;
  unsigned trail = code & 0xFF;
  unsigned row;
  if (IsSymbolLead(lead)) {
    row = 0xA1 + 2 * (lead - 0xD9);
  } else if (lead >= 0xE0 && lead <= 0xF9) {
    row = 0xCA + 2 * (lead - 0xE0);
  } else {
    return 0;
  }
  // Each Johab lead holds two rows: the first at trails 0x31-0x7E and 0x91-0xA0, the second at
  // 0xA1-0xFE.
  if (trail >= 0x31 && trail <= 0x7E) return row << 8 | (trail + 0x70);
  if (trail >= 0x91 && trail <= 0xA0) return row << 8 | (trail + 0x5E);
  if (trail >= 0xA1 && trail <= 0xFE) return (row + 1) << 8 | trail;
  return 0;
}

unsigned KsToJohabCode(unsigned ks) {
  unsigned row = ks >> 8;
  unsigned cell = ks & 0xFF;
  if (cell < 0xA1 || cell > 0xFE) return 0;
  unsigned offset;
  unsigned lead;
  if (row >= 0xA1 && row <= 0xAC) {
    offset = row - 0xA1;
    lead = 0xD9 + offset / 2;
  } else if (row >= 0xCA && row <= 0xFD) {
    offset = row - 0xCA;
    lead = 0xE0 + offset / 2;
  } else {
    return 0;
  }
  if (offset % 2 == 1) return lead << 8 | cell;
  return lead << 8 | (cell <= 0xEE ? cell - 0x70 : cell - 0x5E);
}

bool IsJohabCode(unsigned code) {
  if (FindJohabSpecial(code)) return true;
  unsigned lead = code >> 8;
  if (IsSyllableLead(lead)) {
    return IsMedialCode(static_cast<int>((code >> 5) & 0x1F)) &&
           IsFinalCode(static_cast<int>(code & 0x1F));
  }
  return JohabToKsCode(code) != 0;
}

char16_t JohabToUnicode(unsigned code, char16_t fallback) {
  if (MayBeJohabSpecial(code)) {
    if (char16_t special = FindJohabSpecial(code)) return special;
  }
  unsigned lead = code >> 8;
  if (IsSyllableLead(lead)) return kJohabSyllables.units[code - kJohabFirstSyllableCode];
  if (IsSymbolLead(lead)) {
    const JohabSymbol* symbol = SearchSymbols(
        kJohabSymbolsByCode, code, [](const JohabSymbol& entry) -> unsigned { return entry.code; });
    return symbol ? symbol->unit : fallback;
  }
  unsigned ks = JohabToKsCode(code);
  char16_t unit = ks ? KsToUnit(ks) : 0;
  return unit ? unit : fallback;
}

unsigned UnicodeToJohab(char16_t unit, unsigned fallback) {
  if (unit >= kSyllableBase && unit <= kLastSyllable)
    return kJohabSyllables.codes[unit - kSyllableBase];
  if (unsigned letter = FindJohabLetterCode(unit)) return letter;
  const JohabSymbol* symbol = SearchSymbols(
      kJohabSymbolsByUnit, unit, [](const JohabSymbol& entry) -> char16_t { return entry.unit; });
  if (symbol) return symbol->code;
  unsigned ks = UnitToKs(unit);
  unsigned code = ks ? KsToJohabCode(ks) : 0;
  return code ? code : fallback;
}
