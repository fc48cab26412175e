#include "editor/line_record.h"

#include <cstddef>
#include <cstring>

#include "foundation/memory.h"

namespace {

// The three header words are padded to 8 bytes by the text's alignment.
constexpr size_t kLineHeader = offsetof(LineRecord, text) + 2;

LineRecord* Allocate(int capacity) {
  auto* line = static_cast<LineRecord*>(
      AllocMem(kLineHeader + static_cast<size_t>(capacity) * sizeof(char16_t), kOwnerLine));
  if (!line) return nullptr;
  line->capacity = static_cast<uint16_t>(capacity);
  line->length = 0;
  line->commentState = 0;
  return line;
}

}  // namespace

LineRecord* MakeFileLine(const char16_t* units, int count) {
  if (count <= 0 || count > kMaxLineUnits) return nullptr;
  // A full-length line has no room for the spare unit; the capacity word cannot say more.
  LineRecord* line = Allocate(count < kMaxLineUnits ? count + 1 : count);
  if (!line) return nullptr;
  memcpy(line->text, units, static_cast<size_t>(count) * sizeof(char16_t));
  line->length = static_cast<uint16_t>(count);
  return line;
}

LineRecord* MakeLine(const char16_t* units, int count, int capacity) {
  if (count <= 0 || count > kMaxLineUnits) return nullptr;
  if (capacity < count) capacity = count;
  if (capacity > kMaxLineUnits) capacity = kMaxLineUnits;
  LineRecord* line = Allocate(capacity);
  if (!line) return nullptr;
  if (units) memcpy(line->text, units, static_cast<size_t>(count) * sizeof(char16_t));
  line->length = static_cast<uint16_t>(count);
  return line;
}

void FreeLine(LineRecord* line) {
  FreeMem(line);
}

int PreviousCharacterIndex(const LineRecord* line, int index) {
  if (index >= 2 && index <= LineLength(line) && IsLowSurrogate(line->text[index - 1]) &&
      IsHighSurrogate(line->text[index - 2]))
    return index - 2;
  return index > 0 ? index - 1 : 0;
}

int RunColumns(const char16_t* units, int count) {
  int columns = 0;
  for (int i = 0; i < count; ++i)
    columns += UnitColumnsAfter(i > 0 ? units[i - 1] : 0, units[i]);
  return columns;
}

int UnitIndexAtColumn(const LineRecord* line, int column) {
  int length = LineLength(line);
  int at = 0;
  for (int i = 0; i < length; i += CharacterUnits(line->text, length, i)) {
    int width = UnitColumns(line->text[i]);
    if (at + width > column) return i;
    at += width;
  }
  return length;
}

int ColumnOfIndex(const LineRecord* line, int index) {
  int length = LineLength(line);
  if (index > length) index = length;
  return line ? RunColumns(line->text, index) : 0;
}

int CharacterStartColumn(const LineRecord* line, int column) {
  int index = UnitIndexAtColumn(line, column);
  if (index >= LineLength(line)) return column;
  int start = ColumnOfIndex(line, index);
  return start < column ? start : column;
}

int PreviousCharacterColumn(const LineRecord* line, int column) {
  if (column <= 0) return 0;
  if (column > LineColumns(line)) return column - 1;
  int index = UnitIndexAtColumn(line, column);
  return index > 0 ? ColumnOfIndex(line, PreviousCharacterIndex(line, index)) : 0;
}

int NextCharacterColumn(const LineRecord* line, int column) {
  if (column >= LineColumns(line)) return column + 1;
  int index = UnitIndexAtColumn(line, column);
  return ColumnOfIndex(line, index) + UnitColumns(line->text[index]);
}

int NextTabStop(int column, int tabSize) {
  if (tabSize <= 0) tabSize = 8;
  return (column / tabSize + 1) * tabSize;
}

int ExpandedLength(const char16_t* units, int count, int startColumn, int tabSize) {
  int column = startColumn;
  int length = 0;
  for (int i = 0; i < count; ++i) {
    if (units[i] == u'\t') {
      int stop = NextTabStop(column, tabSize);
      length += stop - column;
      column = stop;
    } else {
      ++length;
      column += UnitColumnsAfter(i > 0 ? units[i - 1] : 0, units[i]);
    }
  }
  return length;
}

int ExpandTabs(const char16_t* units, int count, int startColumn, int tabSize, char16_t* target) {
  int column = startColumn;
  int length = 0;
  for (int i = 0; i < count; ++i) {
    if (units[i] == u'\t') {
      int stop = NextTabStop(column, tabSize);
      while (column < stop) {
        target[length++] = u' ';
        ++column;
      }
    } else {
      target[length++] = units[i];
      column += UnitColumnsAfter(i > 0 ? units[i - 1] : 0, units[i]);
    }
  }
  return length;
}
