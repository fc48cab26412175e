// One character between the Korean Johab code and UTF-16.
#pragma once

// Johab code (lead byte high) to a unit; codes without a character give `fallback`. Codes in the
// syllable area are computed without a range check, as the old files expect.
char16_t JohabToUnicode(unsigned code, char16_t fallback);
// A unit to its Johab code (lead byte high), or `fallback`.
unsigned UnicodeToJohab(char16_t unit, unsigned fallback);

// Whether Johab gives the code a place: a lone letter, a syllable whose medial and final are
// codes of their groups (any initial of the syllable leads is one), or a cell of the symbol and
// hanja rows. Says nothing of whether the code page has a character there.
bool IsJohabCode(unsigned code);

// The syllable area's arithmetic as tables: the unit of every code whose lead is 0x88 ... 0xD3
// (special codes aside: MayBeJohabSpecial first), and the code of every unit U+AC00 ... U+D7A3.
constexpr unsigned kJohabFirstSyllableCode = 0x8800;
struct JohabSyllableTables {
  char16_t units[(0xD3 - 0x88 + 1) * 256];
  unsigned short codes[0xD7A3 - 0xAC00 + 1];
};
extern const JohabSyllableTables kJohabSyllables;

// What the line conversions fall back to: the ideographic space and its Johab code.
constexpr char16_t kJohabFallbackUnit = 0x3000;
constexpr unsigned kJohabFallbackCode = 0xD931;

// The published relation between Johab's symbol and hanja areas and KS X 1001 (EUC bytes, lead
// byte high); 0 when the code has no counterpart.
unsigned JohabToKsCode(unsigned code);
unsigned KsToJohabCode(unsigned ks);
