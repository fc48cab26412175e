#include "editor/editing.h"

#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "foundation/host.h"
#include "foundation/memory.h"

namespace {

// A quick second Tab at an 8-column stop is swallowed.
constexpr unsigned kDoubleTabMs = 400;
constexpr int kTabKeyWidth = 4;

// A caret left inside a wide character (a shift or a column block moved the text under it)
// stands at that character's first column before an edit, so that the edit is recorded where it
// happens.
void SnapCaret(EditorView* view) {
  const LineRecord* line = DocumentLine(view->document, view->caretLine);
  if (view->caretColumn >= LineColumns(line)) return;
  int column = ColumnOfIndex(line, UnitIndexAtColumn(line, view->caretColumn));
  if (column != view->caretColumn) {
    view->caretColumn = column;
    if (!HasSelection(view)) CollapseSelection(view);
  }
}

int TextColumn(const EditDocument* document, TextPosition at) {
  const LineRecord* line = DocumentLine(document, at.line);
  return ColumnOfIndex(line, UnitIndexAtColumn(line, at.column));
}

// A '*' or '/' may open or close a comment that colours the lines below.
void RepaintForUnit(EditorView* view, char16_t unit) {
  if (unit == u'*' || unit == u'/')
    EditorRepaintAll(view);
  else
    EditorRepaintLine(view, view->caretLine);
}

int Indentation(const LineRecord* line) {
  int spaces = 0;
  while (spaces < LineLength(line) && line->text[spaces] == u' ')
    ++spaces;
  return spaces;
}

// Records the blanks from `from` to `to` that padding put behind the end of `line`.
void RecordPadding(EditorView* view, int from, int to, int line) {
  static constexpr char16_t kSpaces[16] = {u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' ',
                                           u' ', u' ', u' ', u' ', u' ', u' ', u' ', u' '};
  for (int column = from; column < to; column += 16) {
    int piece = to - column < 16 ? to - column : 16;
    PushUndo(view, kUndoInsert, column, line, kSpaces, piece);
    PushUndoMark(view, kUndoInsert, column + piece, line);
  }
}

// A column insert touches one line per piece of the text, from the caret down.
int PieceCount(const char16_t* units, int count) {
  int pieces = 1;
  for (int i = 0; i < count; ++i)
    if (units[i] == 13 || units[i] == 10) {
      if (units[i] == 13 && i + 1 < count && units[i + 1] == 10) ++i;
      ++pieces;
    }
  return pieces;
}

// Records and inserts at the caret; a column insert gets a record of its own.
bool InsertRecorded(EditorView* view, const char16_t* units, int count, int blockMode) {
  EditDocument* document = view->document;
  if (blockMode != 1) SnapCaret(view);
  TextPosition at = {view->caretColumn, view->caretLine};
  TextPosition end;
  if (blockMode != 1) {
    // Behind the end of the line the padding is part of the insertion, so that undo takes it
    // away again and redo finds the line as it was.
    int columns = LineColumns(DocumentLine(document, at.line));
    if (at.column > columns && at.line < document->lineCount) {
      int index = 0;
      if (!PadToColumn(document, at.line, at.column, &index)) return false;
      RecordPadding(view, columns, at.column, at.line);
    }
  }
  if (blockMode == 1) {
    LinesChange change;
    if (!BeginLinesChange(view, at.line, at.line + PieceCount(units, count) - 1, &change))
      return false;
    if (!InsertColumns(document, at, units, count, &end)) {
      FreeMem(change.oldText);
      return false;
    }
    SetCaret(view, end.column, end.line);
    EndLinesChange(&change);
  } else {
    if (!InsertStream(document, at, units, count, &end)) return false;
    PushUndo(view, kUndoInsert, at.column, at.line, units, count);
    PushUndoMark(view, kUndoInsert, end.column, end.line);
    SetCaret(view, end.column, end.line);
  }
  document->modified = 1;
  return true;
}

// Overwrite typing: the character under the caret (a surrogate pair whole) goes, recorded as a
// deletion in one undo group with the typed unit. False when there is nothing to replace (behind
// the end of the line, or the second half of a pair whose first half was just typed).
bool OverwriteCharacter(EditorView* view, char16_t unit) {
  SnapCaret(view);
  EditDocument* document = view->document;
  int line = view->caretLine;
  const LineRecord* record = DocumentLine(document, line);
  if (view->caretColumn >= LineColumns(record)) return false;
  int index = UnitIndexAtColumn(record, view->caretColumn);
  if (IsLowSurrogate(unit) && index > 0 && IsHighSurrogate(record->text[index - 1])) return false;
  int units = CharacterUnitsAt(record, index);
  char16_t old = record->text[index];
  BeginUndoGroup(document);
  PushUndo(view, kUndoDelete, view->caretColumn, line, record->text + index, units);
  ReplaceUnits(document, line, index, units, nullptr, 0);
  document->modified = 1;
  InsertRecorded(view, &unit, 1, 0);
  // The group ends without closing the typed record, so that the second half of a pair typed
  // next merges into it as in insert mode.
  document->undoGroup = 0;
  RepaintForUnit(view, old == u'*' || old == u'/' ? old : unit);
  return true;
}

}  // namespace

bool DeleteSelection(EditorView* view) {
  if (!HasSelection(view)) return false;
  EditDocument* document = view->document;
  Selection s = NormalisedSelection(view);
  TextPosition from = {s.startColumn, s.startLine};
  TextPosition to = {s.endColumn, s.endLine};
  if (view->blockMode == 1) {
    LinesChange change;
    if (!BeginLinesChange(view, from.line, to.line, &change)) return false;
    DeleteColumns(document, from, to);
    SetCaret(view, from.column, from.line);
    EndLinesChange(&change);
  } else {
    // A stream starts and ends on a character of the text: behind the end of a line it stands
    // at that end, inside a wide character at its first column.
    from.column = TextColumn(document, from);
    to.column = TextColumn(document, to);
    int count = CollectRange(document, from, to, 0, false, false, nullptr);
    auto* text = count ? static_cast<char16_t*>(AllocMem(
                             static_cast<size_t>(count) * sizeof(char16_t), kOwnerLineScratch))
                       : nullptr;
    if (text) CollectRange(document, from, to, 0, false, false, text);
    UndoRecord* record =
        PushUndoSelection(view, kUndoDelete, from.column, from.line, text, text ? count : 0);
    if (record) {
      record->endColumn = to.column;
      record->endLine = to.line;
    }
    FreeMem(text);
    DeleteStream(document, from, to);
    SetCaret(view, from.column, from.line);
  }
  document->modified = 1;
  EditorRepaintAll(view);
  return true;
}

bool InsertText(EditorView* view, const char16_t* units, int count, int blockMode) {
  if (count <= 0 || !view->document) return false;
  if (!InsertRecorded(view, units, count, blockMode)) return false;
  EditorRepaintAll(view);
  return true;
}

void DeleteRange(EditorView* view, int startColumn, int startLine, int endColumn, int endLine,
                 int blockMode) {
  EditorView range = *view;
  range.blockMode = blockMode;
  range.selStartColumn = startColumn;
  range.selStartLine = startLine;
  range.selEndColumn = endColumn;
  range.selEndLine = endLine;
  Selection s = NormalisedSelection(&range);
  if (blockMode == 1)
    DeleteColumns(view->document, {s.startColumn, s.startLine}, {s.endColumn, s.endLine});
  else
    DeleteStream(view->document, {s.startColumn, s.startLine}, {s.endColumn, s.endLine});
  EditorRepaintAll(view);
}

void TypeCharacter(EditorView* view, char16_t unit) {
  if (unit == 13) {
    KeyEnter(view);
    return;
  }
  if (unit == 8) {
    KeyBackspace(view);
    return;
  }
  if (unit < 32) return;
  bool replacedSelection = DeleteSelection(view);
  if (!replacedSelection && view->overwrite && OverwriteCharacter(view, unit)) return;
  if (InsertRecorded(view, &unit, 1, 0)) RepaintForUnit(view, unit);
}

void KeyEnter(EditorView* view) {
  EditDocument* document = view->document;
  DeleteSelection(view);
  SnapCaret(view);
  int line = view->caretLine;
  if (!EnsureLine(document, line)) return;
  // Behind the end of the line the break goes at the end: nothing is padded, nothing recorded
  // beyond the text.
  int column = view->caretColumn;
  if (column > LineColumns(document->lines[line])) column = LineColumns(document->lines[line]);
  if (column == 0) {
    // An empty line above; the caret goes down with the line it stood on.
    if (!SplitLine(document, line, 0, 0)) return;
    PushUndoUnit(view, kUndoInsert, 0, line, 13);
    PushUndoMark(view, kUndoInsert, 0, line + 1);
    SetCaret(view, Indentation(document->lines[line + 1]), line + 1);
  } else {
    const LineRecord* record = document->lines[line];
    int indent = Indentation(record);
    if (!SplitLine(document, line, UnitIndexAtColumn(record, column), indent)) return;
    // The indentation belongs to the record too, so that redo brings it back.
    PushUndoUnit(view, kUndoInsert, column, line, 13);
    char16_t spaces[64];
    for (char16_t& unit : spaces)
      unit = u' ';
    for (int left = indent; left > 0; left -= 64)
      PushUndo(view, kUndoInsert, column, line, spaces, left < 64 ? left : 64);
    PushUndoMark(view, kUndoInsert, indent, line + 1);
    SetCaret(view, indent, line + 1);
  }
  // A line break ends the typing record: Ctrl+Z takes typing back a line at a time.
  CloseUndoRecord(document);
  document->modified = 1;
  EditorRepaintAll(view);
}

void KeyBackspace(EditorView* view) {
  if (DeleteSelection(view)) return;
  SnapCaret(view);
  EditDocument* document = view->document;
  int line = view->caretLine;
  int column = view->caretColumn;
  if (column == 0) {
    if (line == 0 || line >= document->lineCount) {
      if (line > 0) SetCaret(view, LineColumns(DocumentLine(document, line - 1)), line - 1);
      return;
    }
    int joinColumn = LineColumns(document->lines[line - 1]);
    if (!JoinNextLine(document, line - 1, joinColumn)) return;
    // As for any Backspace: the mark where the caret was, then the removed unit where it went.
    PushUndoMark(view, kUndoBackspace, 0, line);
    PushUndoUnit(view, kUndoBackspace, joinColumn, line - 1, 13);
    SetCaret(view, joinColumn, line - 1);
    document->modified = 1;
    EditorRepaintAll(view);
    return;
  }
  const LineRecord* record = DocumentLine(document, line);
  if (column > LineColumns(record)) {
    // Behind the end of the line there is nothing to remove: the caret only steps left.
    SetCaret(view, column - 1, line);
    return;
  }
  int index = UnitIndexAtColumn(record, column);
  if (index == 0) return;
  int start = PreviousCharacterIndex(record, index);  // a surrogate pair goes as one character
  char16_t unit = record->text[start];
  int newColumn = ColumnOfIndex(record, start);
  PushUndoMark(view, kUndoBackspace, column, line);
  PushUndo(view, kUndoBackspace, newColumn, line, record->text + start, index - start);
  ReplaceUnits(document, line, start, index - start, nullptr, 0);
  document->modified = 1;
  SetCaret(view, newColumn, line);
  RepaintForUnit(view, unit);
}

void KeyDelete(EditorView* view) {
  if (DeleteSelection(view)) return;
  SnapCaret(view);
  EditDocument* document = view->document;
  int line = view->caretLine;
  int column = view->caretColumn;
  const LineRecord* record = DocumentLine(document, line);
  if (column < LineColumns(record)) {
    int index = UnitIndexAtColumn(record, column);
    int units = CharacterUnitsAt(record, index);  // a surrogate pair goes as one character
    char16_t unit = record->text[index];
    PushUndo(view, kUndoDelete, column, line, record->text + index, units);
    ReplaceUnits(document, line, index, units, nullptr, 0);
    document->modified = 1;
    RepaintForUnit(view, unit);
    return;
  }
  if (line + 1 >= document->lineCount) return;
  int end = LineColumns(record);
  bool pads = column > end && LineLength(document->lines[line + 1]) > 0;
  if (!pads) column = end;
  if (!JoinNextLine(document, line, column)) return;
  if (pads) {
    // The next line comes in at the caret: the blanks before it are an insertion of their own,
    // taken back with the join by one Ctrl+Z.
    BeginUndoGroup(document);
    RecordPadding(view, end, column, line);
  }
  PushUndoUnit(view, kUndoDelete, column, line, 13);
  if (pads) EndUndoGroup(document);
  document->modified = 1;
  EditorRepaintAll(view);
}

void KeyTab(EditorView* view, bool shift) {
  if (HasSelection(view)) {
    ShiftBlock(view, shift ? -kTabKeyWidth : kTabKeyWidth);
    return;
  }
  if (shift) return;
  unsigned now = EditorTickCount();
  unsigned previous = view->lastTabTick;
  view->lastTabTick = now;
  int column = view->caretColumn;
  if (previous != 0 && now - previous < kDoubleTabMs && column % 8 == 0) return;
  // Always 4-column stops: the document's tab width is for files, not for the key.
  int count = ((column + kTabKeyWidth) & ~(kTabKeyWidth - 1)) - column;
  char16_t spaces[kTabKeyWidth] = {u' ', u' ', u' ', u' '};
  if (InsertRecorded(view, spaces, count, 0)) EditorRepaintLine(view, view->caretLine);
}

void ShiftBlock(EditorView* view, int amount) {
  if (!HasSelection(view) || amount == 0) return;
  Selection s = NormalisedSelection(view);
  int last = s.endLine;
  // A line block that ends at column 0 does not take that line in.
  if (view->blockMode == 0 && s.endColumn == 0 && last > s.startLine) --last;
  EditDocument* document = view->document;
  if (last >= document->lineCount) last = document->lineCount - 1;
  if (last < s.startLine) return;
  int lines = last - s.startLine + 1;
  auto* applied = static_cast<int16_t*>(
      AllocMem(static_cast<size_t>(lines) * sizeof(int16_t), kOwnerLineScratch));
  if (!applied) return;
  ShiftLines(document, s.startLine, last, amount, applied);
  PushUndoShift(view, s.startLine, last, amount, applied);
  FreeMem(applied);
  view->document->modified = 1;
  EditorRepaintAll(view);
}

bool FillColumnBlock(EditorView* view, char16_t character) {
  if (view->blockMode != 1 || !HasSelection(view)) {
    HostMessageId(117, kMbOk | kMbIconExclamation, nullptr);
    return false;
  }
  if (character == 0) character = EditorAskFillCharacter();
  if (character == 0) return false;
  EditDocument* document = view->document;
  Selection s = NormalisedSelection(view);
  TextPosition from = {s.startColumn, s.startLine};
  TextPosition to = {s.endColumn, s.endLine};
  // The record keeps the whole lines: their text is what undo puts back.
  int lastLine = to.line < document->lineCount ? to.line : document->lineCount - 1;
  TextPosition lineEnd = {LineColumns(DocumentLine(document, lastLine)), lastLine};
  int count = lastLine >= from.line
                  ? CollectRange(document, {0, from.line}, lineEnd, 0, false, false, nullptr)
                  : 0;
  auto* text = count ? static_cast<char16_t*>(AllocMem(
                           static_cast<size_t>(count) * sizeof(char16_t), kOwnerLineScratch))
                     : nullptr;
  if (text) CollectRange(document, {0, from.line}, lineEnd, 0, false, false, text);
  int oldLineCount = document->lineCount;
  if (!FillColumns(document, from, to, character)) {
    FreeMem(text);
    return false;
  }
  UndoRecord* record =
      PushUndoSelection(view, kUndoFill, from.column, from.line, text, text ? count : 0);
  if (record) {
    record->endColumn = to.column;
    record->endLine = to.line;
    record->oldLineCount = oldLineCount;
    record->fillCharacter = character;
  }
  FreeMem(text);
  document->modified = 1;
  EditorRepaintAll(view);
  return true;
}
