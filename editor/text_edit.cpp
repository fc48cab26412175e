#include "editor/text_edit.h"

#include <cstring>

#include "foundation/memory.h"

namespace {

// Room left behind an edited line so that typing does not reallocate on every key.
constexpr int kEditSlack = 32;

bool IsBreak(char16_t unit) {
  return unit == 13 || unit == 10;
}

// The end of the piece that starts at `from` and the start of the next one (behind its break).
int PieceEnd(const char16_t* units, int count, int from, int* next) {
  int i = from;
  while (i < count && !IsBreak(units[i]))
    ++i;
  *next = i;
  if (i < count) {
    *next = i + 1;
    if (units[i] == 13 && i + 1 < count && units[i + 1] == 10) *next = i + 2;
  }
  return i;
}

// Unit index of `column` in the line and how many spaces padding would add to reach it.
int IndexForColumn(const LineRecord* line, int column, int* pad) {
  int columns = LineColumns(line);
  if (column > columns) {
    *pad = column - columns;
    return LineLength(line) + *pad;
  }
  *pad = 0;
  return UnitIndexAtColumn(line, column);
}

int ClampLine(const EditDocument* document, int line) {
  return line < document->lineCount ? line : document->lineCount - 1;
}

}  // namespace

bool ReplaceUnits(EditDocument* document, int line, int index, int removeCount,
                  const char16_t* units, int count) {
  if (line < 0 || line >= document->lineCount) return false;
  LineRecord* old = document->lines[line];
  int length = LineLength(old);
  if (index < 0 || removeCount < 0 || index + removeCount > length || count < 0) return false;
  int newLength = length - removeCount + count;
  if (newLength > kMaxLineUnits) return false;
  if (newLength == 0) {
    SetLine(document, line, nullptr);
    return true;
  }
  if (old && newLength <= old->capacity) {
    memmove(old->text + index + count, old->text + index + removeCount,
            static_cast<size_t>(length - index - removeCount) * sizeof(char16_t));
    if (count) memcpy(old->text + index, units, static_cast<size_t>(count) * sizeof(char16_t));
    old->length = static_cast<uint16_t>(newLength);
    NoteLinesChanged(document, line, 1);
    return true;
  }
  int capacity = count > 0 && newLength > length ? newLength + kEditSlack : newLength;
  LineRecord* made = MakeLine(nullptr, newLength, capacity);
  if (!made) return false;
  if (index) memcpy(made->text, old->text, static_cast<size_t>(index) * sizeof(char16_t));
  if (count) memcpy(made->text + index, units, static_cast<size_t>(count) * sizeof(char16_t));
  if (length - index - removeCount > 0) {
    memcpy(made->text + index + count, old->text + index + removeCount,
           static_cast<size_t>(length - index - removeCount) * sizeof(char16_t));
  }
  made->commentState = old ? old->commentState : 0;
  SetLine(document, line, made);
  return true;
}

bool EnsureLine(EditDocument* document, int line) {
  if (line < document->lineCount) return true;
  return InsertLineSlots(document, document->lineCount, line + 1 - document->lineCount);
}

bool PadToColumn(EditDocument* document, int line, int column, int* index) {
  if (!EnsureLine(document, line)) return false;
  int pad = 0;
  int at = IndexForColumn(document->lines[line], column, &pad);
  if (pad > 0) {
    if (LineLength(document->lines[line]) + pad > kMaxLineUnits) return false;
    char16_t spaces[64];
    for (char16_t& unit : spaces)
      unit = u' ';
    while (pad > 0) {
      int piece = pad < 64 ? pad : 64;
      if (!ReplaceUnits(document, line, LineLength(document->lines[line]), 0, spaces, piece))
        return false;
      pad -= piece;
    }
  }
  *index = at;
  return true;
}

bool InsertStream(EditDocument* document, TextPosition at, const char16_t* units, int count,
                  TextPosition* end) {
  if (at.line < 0 || at.column < 0 || !EnsureLine(document, at.line)) return false;
  LineRecord* line = document->lines[at.line];
  int pad = 0;
  int index = IndexForColumn(line, at.column, &pad);
  int length = LineLength(line) + pad;
  int tail = length - index;
  // Check every line the text would make before changing anything.
  int pieces = 0;
  int next = 0;
  int secondStart = 0;
  int firstEnd = PieceEnd(units, count, 0, &secondStart);
  int lastStart = 0;
  bool fits = index + firstEnd <= kMaxLineUnits;
  for (int from = 0;;) {
    int pieceEnd = PieceEnd(units, count, from, &next);
    ++pieces;
    if (pieceEnd - from > kMaxLineUnits) fits = false;
    if (next == pieceEnd) {
      lastStart = from;
      break;
    }
    from = next;
    if (from == count) {  // the text ends with a break: an empty last piece
      lastStart = from;
      ++pieces;
      break;
    }
  }
  if (pieces == 1)
    fits = fits && length + count <= kMaxLineUnits;
  else
    fits = fits && (count - lastStart) + tail <= kMaxLineUnits;
  if (!fits) return false;

  int padded = 0;
  if (!PadToColumn(document, at.line, at.column, &padded)) return false;
  if (pieces == 1) {
    if (!ReplaceUnits(document, at.line, index, 0, units, count)) return false;
    *end = {ColumnOfIndex(document->lines[at.line], index + count), at.line};
    return true;
  }
  if (!InsertLineSlots(document, at.line + 1, pieces - 1)) return false;
  // The last piece with the old tail goes in first, while the tail is still in place.
  LineRecord* current = document->lines[at.line];
  int lastLength = count - lastStart;
  LineRecord* last = MakeLine(nullptr, lastLength + tail);
  if (lastLength + tail > 0 && !last) {
    RemoveLines(document, at.line + 1, pieces - 1);
    return false;
  }
  if (last) {
    memcpy(last->text, units + lastStart, static_cast<size_t>(lastLength) * sizeof(char16_t));
    if (tail)
      memcpy(last->text + lastLength, current->text + index,
             static_cast<size_t>(tail) * sizeof(char16_t));
  }
  int lastLine = at.line + pieces - 1;
  SetLine(document, lastLine, last);
  ReplaceUnits(document, at.line, index, tail, units, firstEnd);
  int from = secondStart;
  for (int middle = at.line + 1; middle < lastLine; ++middle) {
    int after = 0;
    int pieceEnd = PieceEnd(units, count, from, &after);
    SetLine(document, middle, MakeLine(units + from, pieceEnd - from));
    from = after;
  }
  *end = {RunColumns(units + lastStart, lastLength), lastLine};
  return true;
}

bool InsertColumns(EditDocument* document, TextPosition at, const char16_t* units, int count,
                   TextPosition* end) {
  if (at.line < 0 || at.column < 0) return false;
  int row = 0;
  int widest = 0;
  for (int from = 0, next = 0;; from = next, ++row) {
    int pieceEnd = PieceEnd(units, count, from, &next);
    const LineRecord* line = DocumentLine(document, at.line + row);
    int pad = 0;
    IndexForColumn(line, at.column, &pad);
    if (LineLength(line) + pad + (pieceEnd - from) > kMaxLineUnits) return false;
    int width = RunColumns(units + from, pieceEnd - from);
    if (width > widest) widest = width;
    if (next == pieceEnd || next == count) break;
  }
  if (!EnsureLine(document, at.line + row)) return false;
  for (int from = 0, next = 0, r = 0; r <= row; from = next, ++r) {
    int pieceEnd = PieceEnd(units, count, from, &next);
    int index = 0;
    if (pieceEnd > from && PadToColumn(document, at.line + r, at.column, &index))
      ReplaceUnits(document, at.line + r, index, 0, units + from, pieceEnd - from);
  }
  *end = {at.column + widest, at.line + row};
  return true;
}

int CollectRange(const EditDocument* document, TextPosition from, TextPosition to, int blockMode,
                 bool pad, bool crlf, char16_t* target) {
  int written = 0;
  auto put = [&](const char16_t* units, int count) {
    if (target && count > 0)
      memcpy(target + written, units, static_cast<size_t>(count) * sizeof(char16_t));
    written += count;
  };
  auto separator = [&]() {
    static const char16_t kCrLf[] = {13, 10};
    put(kCrLf, crlf ? 2 : 1);
  };
  auto spaces = [&](int count) {
    for (int i = 0; i < count; ++i) {
      if (target) target[written] = u' ';
      ++written;
    }
  };
  if (blockMode == 1) {
    for (int line = from.line; line <= to.line; ++line) {
      if (line > from.line) separator();
      const LineRecord* record = DocumentLine(document, line);
      int first = UnitIndexAtColumn(record, from.column);
      int last = UnitIndexAtColumn(record, to.column);
      if (last > first) put(record->text + first, last - first);
      if (pad) {
        int width = last > first ? RunColumns(record->text + first, last - first) : 0;
        if (to.column - from.column > width) spaces(to.column - from.column - width);
      }
    }
    return written;
  }
  for (int line = from.line; line <= to.line; ++line) {
    if (line > from.line) separator();
    const LineRecord* record = DocumentLine(document, line);
    int first = line == from.line ? UnitIndexAtColumn(record, from.column) : 0;
    int last = line == to.line ? UnitIndexAtColumn(record, to.column) : LineLength(record);
    if (last > first) put(record->text + first, last - first);
  }
  return written;
}

void DeleteStream(EditDocument* document, TextPosition from, TextPosition to) {
  if (from.line >= document->lineCount) return;
  int lastLine = ClampLine(document, to.line);
  if (lastLine < to.line) to = {LineColumns(document->lines[lastLine]), lastLine};
  LineRecord* first = document->lines[from.line];
  int start = UnitIndexAtColumn(first, from.column);
  if (from.line == to.line) {
    int stop = UnitIndexAtColumn(first, to.column);
    if (stop > start) ReplaceUnits(document, from.line, start, stop - start, nullptr, 0);
    return;
  }
  LineRecord* last = document->lines[to.line];
  int stop = UnitIndexAtColumn(last, to.column);
  int tail = LineLength(last) - stop;
  if (start + tail > kMaxLineUnits) return;
  if (!ReplaceUnits(document, from.line, start, LineLength(first) - start,
                    tail ? last->text + stop : nullptr, tail)) {
    return;
  }
  RemoveLines(document, from.line + 1, to.line - from.line);
}

void DeleteColumns(EditDocument* document, TextPosition from, TextPosition to) {
  for (int line = from.line; line <= to.line && line < document->lineCount; ++line) {
    LineRecord* record = document->lines[line];
    int first = UnitIndexAtColumn(record, from.column);
    int last = UnitIndexAtColumn(record, to.column);
    if (last > first) ReplaceUnits(document, line, first, last - first, nullptr, 0);
  }
}

bool SplitLine(EditDocument* document, int line, int index, int indent) {
  if (!EnsureLine(document, line)) return false;
  LineRecord* record = document->lines[line];
  int length = LineLength(record);
  if (index > length) index = length;
  int tail = length - index;
  if (indent + tail > kMaxLineUnits) return false;
  LineRecord* made = nullptr;
  if (indent + tail > 0) {
    made = MakeLine(nullptr, indent + tail);
    if (!made) return false;
    for (int i = 0; i < indent; ++i)
      made->text[i] = u' ';
    if (tail)
      memcpy(made->text + indent, record->text + index,
             static_cast<size_t>(tail) * sizeof(char16_t));
  }
  if (!InsertLineSlots(document, line + 1, 1)) {
    FreeLine(made);
    return false;
  }
  document->lines[line + 1] = made;
  ReplaceUnits(document, line, index, tail, nullptr, 0);
  return true;
}

bool JoinNextLine(EditDocument* document, int line, int column) {
  if (line < 0 || line + 1 >= document->lineCount) return false;
  int pad = 0;
  IndexForColumn(document->lines[line], column, &pad);
  LineRecord* next = document->lines[line + 1];
  if (LineLength(document->lines[line]) + pad + LineLength(next) > kMaxLineUnits) return false;
  int index = 0;
  if (LineLength(next) > 0 && !PadToColumn(document, line, column, &index)) return false;
  if (next &&
      !ReplaceUnits(document, line, LineLength(document->lines[line]), 0, next->text, next->length))
    return false;
  RemoveLines(document, line + 1, 1);
  return true;
}

void TrimTrailingBlanks(EditDocument* document) {
  for (int i = 0; i < document->lineCount; ++i) {
    LineRecord* line = document->lines[i];
    int length = LineLength(line);
    int kept = length;
    while (kept > 0 && line->text[kept - 1] == u' ')
      --kept;
    if (kept < length) ReplaceUnits(document, i, kept, length - kept, nullptr, 0);
  }
}

namespace {

// Puts `count` spaces in front of `line`, or takes `-count` leading spaces away.
bool ShiftLine(EditDocument* document, int line, int count) {
  static constexpr char16_t kSpaces[64] = {
      u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ',
      u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ',
      u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ',
      u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ',
      u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' '};
  if (count < 0) return ReplaceUnits(document, line, 0, -count, nullptr, 0);
  for (int left = count; left > 0; left -= 64)
    if (!ReplaceUnits(document, line, 0, 0, kSpaces, left < 64 ? left : 64)) return false;
  return true;
}

}  // namespace

void ShiftLines(EditDocument* document, int first, int last, int amount, int16_t* applied) {
  if (first < 0) first = 0;
  for (int line = first; line <= last; ++line) {
    int shift = 0;
    const LineRecord* record = DocumentLine(document, line);
    if (record && record->length > 0) {
      if (amount > 0) {
        if (record->length + amount <= kMaxLineUnits) shift = amount;
      } else {
        while (shift < record->length && shift < -amount && record->text[shift] == u' ')
          ++shift;
        shift = -shift;
      }
      if (shift && !ShiftLine(document, line, shift)) shift = 0;
    }
    if (applied) applied[line - first] = static_cast<int16_t>(shift);
  }
}

void ShiftLinesBy(EditDocument* document, int first, const int16_t* amounts, int count, int sign) {
  for (int i = 0; i < count && first + i < document->lineCount; ++i)
    if (amounts[i]) ShiftLine(document, first + i, sign * amounts[i]);
}

bool FillColumns(EditDocument* document, TextPosition from, TextPosition to, char16_t fill) {
  int cells = (to.column - from.column) / UnitColumns(fill);
  if (cells <= 0 || cells > kMaxLineUnits) return false;
  auto* row = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(cells) * sizeof(char16_t), kOwnerLineScratch));
  if (!row) return false;
  for (int i = 0; i < cells; ++i)
    row[i] = fill;
  // A line that cannot take the fill (too long) is left as it is.
  for (int line = from.line; line <= to.line; ++line) {
    int first = 0;
    if (!PadToColumn(document, line, from.column, &first)) continue;
    int last = UnitIndexAtColumn(document->lines[line], to.column);
    ReplaceUnits(document, line, first, last - first, row, cells);
  }
  FreeMem(row);
  return true;
}

void DeleteForward(EditDocument* document, TextPosition at, int count) {
  while (count > 0 && at.line < document->lineCount) {
    LineRecord* record = document->lines[at.line];
    int index = UnitIndexAtColumn(record, at.column);
    int available = LineLength(record) - index;
    if (available > 0) {
      int take = available < count ? available : count;
      ReplaceUnits(document, at.line, index, take, nullptr, 0);
      count -= take;
    } else {
      if (!JoinNextLine(document, at.line, at.column)) return;
      --count;
    }
  }
}
