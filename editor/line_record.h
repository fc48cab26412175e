// One line of a document: UTF-16 units without tabs or line ends, in one allocation. An empty
// line has no record at all (a null pointer), and every reader accepts null as length 0.
#pragma once
#include <cstdint>

#include "foundation/unicode.h"

struct LineRecord {
  uint16_t capacity;      // units the record can hold
  uint16_t length;        // units in use
  uint16_t commentState;  // 1 when the line ends inside an open block comment
  char16_t text[1];       // `capacity` units, not terminated
};

// A line holds at most this many units: its length is 16 bits wide.
constexpr int kMaxLineUnits = 0xFFFF;

// Owner numbers of the document's blocks.
constexpr int kOwnerDocument = 2000;
constexpr int kOwnerLineTable = 2001;
constexpr int kOwnerLine = 2002;
constexpr int kOwnerLoadBuffer = 2003;
constexpr int kOwnerSaveBuffer = 2004;
constexpr int kOwnerLineScratch = 2005;
constexpr int kOwnerClipboardText = 2006;

// A record made from file data: room for one unit more than it holds. Null for count 0, more
// than kMaxLineUnits, or when the allocation fails.
LineRecord* MakeFileLine(const char16_t* units, int count);
// A record made from a copied run: room for exactly `count` units (at least `capacity`).
LineRecord* MakeLine(const char16_t* units, int count, int capacity = 0);
void FreeLine(LineRecord* line);

inline int LineLength(const LineRecord* line) {
  return line ? line->length : 0;
}

// Display width of a unit: 256 and above take two columns.
inline int UnitColumns(char16_t unit) {
  return unit >= 256 ? 2 : 1;
}
// The same for a unit behind `previous`: a surrogate pair is one two-column character, so its
// second unit takes none. (A lone surrogate is two columns like any unit of 256 or more.)
inline int UnitColumnsAfter(char16_t previous, char16_t unit) {
  return IsHighSurrogate(previous) && IsLowSurrogate(unit) ? 0 : UnitColumns(unit);
}
inline int CharacterUnitsAt(const LineRecord* line, int index) {
  return line ? CharacterUnits(line->text, line->length, index) : 1;
}
// Where the character before unit `index` starts: index - 2 behind a surrogate pair.
int PreviousCharacterIndex(const LineRecord* line, int index);

// Display columns of a run of units.
int RunColumns(const char16_t* units, int count);
inline int LineColumns(const LineRecord* line) {
  return line ? RunColumns(line->text, line->length) : 0;
}
// The index of the first character that starts at or right of `column` (the length when the line
// ends before it). A column inside a wide character gives that character's index, so the index
// never falls between the two units of a surrogate pair.
int UnitIndexAtColumn(const LineRecord* line, int column);
// The display column where unit `index` starts.
int ColumnOfIndex(const LineRecord* line, int index);

// The caret's steps. The start column of the character under `column` (the column itself behind
// the end of the line); the column one character to the left or right, a wide character and a
// surrogate pair being one step, the cells behind the end of the line one column each.
int CharacterStartColumn(const LineRecord* line, int column);
int PreviousCharacterColumn(const LineRecord* line, int column);
int NextCharacterColumn(const LineRecord* line, int column);

// The next tab stop after `column` for the loader's tab width (0 and 8 both mean 8).
int NextTabStop(int column, int tabSize);
// Expanded length of a run whose first unit stands at `startColumn`; tabs go to the next stop.
int ExpandedLength(const char16_t* units, int count, int startColumn, int tabSize);
// Writes the expansion into `target` (ExpandedLength units) and returns its length.
int ExpandTabs(const char16_t* units, int count, int startColumn, int tabSize, char16_t* target);
