// The low-level changes of a document's text, without undo records or repaints: the editing keys,
// the clipboard, undo and redo are all made of these. Positions are display columns; a column
// behind the end of a line is reached by padding the line with spaces. A change that would make a
// line longer than a record can hold is refused and changes nothing.
#pragma once
#include <cstdint>

#include "editor/document.h"

struct TextPosition {
  int column;
  int line;
};

// Replaces `removeCount` units at unit `index` of `line` with `units`. False (and no change) when
// the result is too long or memory ran out.
bool ReplaceUnits(EditDocument* document, int line, int index, int removeCount,
                  const char16_t* units, int count);
// Makes sure lines 0 ... line exist (appending empty ones).
bool EnsureLine(EditDocument* document, int line);
// Pads `line` with spaces so that it reaches `column`; the unit index of that column.
bool PadToColumn(EditDocument* document, int line, int column, int* index);

// Inserts text at (column, line); CR, LF and CR LF break lines. *end is where the text ends.
bool InsertStream(EditDocument* document, TextPosition at, const char16_t* units, int count,
                  TextPosition* end);
// Inserts each line of the text into the next document line at the same column. *end is the
// lower right corner: the widest piece's right edge on the last line.
bool InsertColumns(EditDocument* document, TextPosition at, const char16_t* units, int count,
                   TextPosition* end);

// Units of a range in text form (lines joined by `separator`: 13 for undo records, or CR LF
// when `crlf`); a column block's rows are padded to the rectangle when `pad`. Counting form with
// a null target. Returns the number of units.
int CollectRange(const EditDocument* document, TextPosition from, TextPosition to, int blockMode,
                 bool pad, bool crlf, char16_t* target);
// Deletes a stream range (joining lines) or a column block.
void DeleteStream(EditDocument* document, TextPosition from, TextPosition to);
void DeleteColumns(EditDocument* document, TextPosition from, TextPosition to);

// Splits `line` at unit `index`; the tail becomes the next line, preceded by `indent` spaces.
bool SplitLine(EditDocument* document, int line, int index, int indent);
// Joins line + 1 onto `line`, first padding `line` to `column`.
bool JoinNextLine(EditDocument* document, int line, int column);
// Removes spaces at the end of every line.
void TrimTrailingBlanks(EditDocument* document);

// Shifts lines first ... last right by `amount` spaces (left when negative, removing at most the
// leading spaces there are). Empty lines, and lines that would grow too long, stay as they are.
// `applied`, when given, receives what each line was really shifted by.
void ShiftLines(EditDocument* document, int first, int last, int amount, int16_t* applied);
// Shifts `count` lines from `first` by exactly sign × amounts[i] each (empty lines too): the
// way back, and forth again, of a recorded shift.
void ShiftLinesBy(EditDocument* document, int first, const int16_t* amounts, int count, int sign);
// Overwrites every cell of the rectangle with `fill` (lines are padded to reach it).
bool FillColumns(EditDocument* document, TextPosition from, TextPosition to, char16_t fill);
// Deletes `count` units forward from (column, line); a line end counts as one unit.
void DeleteForward(EditDocument* document, TextPosition at, int count);
