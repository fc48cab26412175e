#include "editor/undo.h"

#include <cstring>

#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "foundation/memory.h"

namespace {

bool SavedSelection(const UndoRecord* record) {
  return record->selStartColumn != record->selEndColumn ||
         record->selStartLine != record->selEndLine;
}

// Grows the text to hold `extra` more units (doubling, so a long run stays linear).
bool ReserveText(UndoRecord* record, int extra) {
  int64_t needed = static_cast<int64_t>(record->textLength) + extra;
  if (needed <= record->textCapacity) return true;
  int64_t capacity = record->textCapacity ? record->textCapacity : 16;
  while (capacity < needed)
    capacity *= 2;
  if (capacity > 0x3FFFFFFF) return false;
  auto* text = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(capacity) * sizeof(char16_t), kOwnerUndo));
  if (!text) return false;
  if (record->textLength)
    memcpy(text, record->text, static_cast<size_t>(record->textLength) * sizeof(char16_t));
  FreeMem(record->text);
  record->text = text;
  record->textCapacity = static_cast<int32_t>(capacity);
  return true;
}

bool AddPosition(UndoRecord* record, int column, int line) {
  if (record->positionCount == record->positionCapacity) {
    int64_t capacity = record->positionCapacity ? record->positionCapacity * 2LL : 16;
    if (capacity > 0x0FFFFFFF) return false;
    auto* positions = static_cast<int32_t*>(
        AllocMem(static_cast<size_t>(capacity) * 2 * sizeof(int32_t), kOwnerUndo));
    if (!positions) return false;
    if (record->positionCount)
      memcpy(positions, record->positions,
             static_cast<size_t>(record->positionCount) * 2 * sizeof(int32_t));
    FreeMem(record->positions);
    record->positions = positions;
    record->positionCapacity = static_cast<int32_t>(capacity);
  }
  record->positions[record->positionCount * 2] = column;
  record->positions[record->positionCount * 2 + 1] = line;
  ++record->positionCount;
  return true;
}

void FreeRecord(UndoRecord* record) {
  FreeMem(record->text);
  FreeMem(record->positions);
  FreeMem(record);
}

// Length of the NUL-terminated string at `units` within `count`.
int PartLength(const char16_t* units, int count) {
  int length = 0;
  while (length < count && units[length])
    ++length;
  return length;
}

// Consecutive one-character case changes: "old\0new\0" + "old2\0new2\0" = "oldold2\0newnew2\0".
void MergeCaseChange(UndoRecord* head, const char16_t* units, int count) {
  int oldLength = PartLength(head->text, head->textLength);
  int newStart = oldLength < head->textLength ? oldLength + 1 : oldLength;
  int newLength = PartLength(head->text + newStart, head->textLength - newStart);
  int addOld = PartLength(units, count);
  int addNewStart = addOld < count ? addOld + 1 : addOld;
  int addNew = PartLength(units + addNewStart, count - addNewStart);
  int total = oldLength + addOld + 1 + newLength + addNew + 1;
  auto* text =
      static_cast<char16_t*>(AllocMem(static_cast<size_t>(total) * sizeof(char16_t), kOwnerUndo));
  if (!text) return;
  char16_t* out = text;
  auto put = [&out](const char16_t* from, int length) {
    if (length) memcpy(out, from, static_cast<size_t>(length) * sizeof(char16_t));
    out += length;
  };
  put(head->text, oldLength);
  put(units, addOld);
  *out++ = 0;
  put(head->text + newStart, newLength);
  put(units + addNewStart, addNew);
  *out++ = 0;
  FreeMem(head->text);
  head->text = text;
  head->textLength = total;
  head->textCapacity = total;
}

bool TryMerge(UndoRecord* head, int kind, int column, int line, const char16_t* units, int count) {
  int stored = kind == kUndoCaseChar ? kUndoReplace : kind;
  if (!head || head->kind != stored || SavedSelection(head)) return false;
  // Typing, deleting and backspacing merge only while they go on where the last one stopped: a
  // run elsewhere would be undone at the wrong place.
  bool contiguous = head->endColumn == column && head->endLine == line;
  switch (kind) {
    case kUndoInsert:
    case kUndoDelete:
      // Their units come at the caret before the change and the mark after it.
      if (!contiguous && count > 0) return false;
      if (count > 0) {
        if (!ReserveText(head, count)) return true;  // the edit happens; its record stays short
        memcpy(head->text + head->textLength, units, static_cast<size_t>(count) * sizeof(char16_t));
        head->textLength += count;
      }
      break;
    case kUndoBackspace:
      // Its mark comes at the caret first, then the units leftwards of it.
      if (!contiguous && count == 0) return false;
      if (count > 0) {
        if (!ReserveText(head, count)) return true;
        memmove(head->text + count, head->text,
                static_cast<size_t>(head->textLength) * sizeof(char16_t));
        memcpy(head->text, units, static_cast<size_t>(count) * sizeof(char16_t));
        head->textLength += count;
      }
      break;
    case kUndoCaret:
      break;
    case kUndoShift: {
      int amount = head->textLength ? static_cast<int16_t>(head->text[0]) : 0;
      int added = count ? static_cast<int16_t>(units[0]) : 0;
      if (head->textLength)
        head->text[0] = static_cast<char16_t>(static_cast<int16_t>(amount + added));
      break;
    }
    case kUndoReplace:
      if (head->positionCount == 0) AddPosition(head, head->startColumn, head->startLine);
      AddPosition(head, column, line);
      return true;  // the end stays at the first place
    case kUndoCaseChar:
      MergeCaseChange(head, units, count);
      break;
    default:
      return false;
  }
  head->endColumn = column;
  head->endLine = line;
  return true;
}

UndoRecord* NewRecord(EditDocument* document, int kind, int column, int line, const char16_t* units,
                      int count) {
  ClearRedo(document);
  auto* record = static_cast<UndoRecord*>(AllocMem(sizeof(UndoRecord), kOwnerUndo));
  if (!record) return nullptr;
  memset(record, 0, sizeof *record);
  record->kind = kind == kUndoCaseChar ? kUndoReplace : kind == kUndoGroup ? kUndoCaret : kind;
  record->startColumn = record->endColumn = column;
  record->startLine = record->endLine = line;
  for (BookmarkPosition& mark : record->bookmarkSnapshot)
    mark = {-1, -1};
  if (count > 0) {
    if (!ReserveText(record, count)) {
      FreeMem(record);
      return nullptr;
    }
    memcpy(record->text, units, static_cast<size_t>(count) * sizeof(char16_t));
    record->textLength = count;
  }
  record->next = document->undoList;
  document->undoList = record;
  return record;
}

void Unlink(UndoRecord** list, UndoRecord* record, UndoRecord** target) {
  *list = record->next;
  record->next = *target;
  *target = record;
}

void PlaceCaret(EditorView* view, int column, int line) {
  view->caretColumn = column;
  view->caretLine = line;
  CollapseSelection(view);
  EditorCaretMoved(view);
}

// The bookmarks the record saw, where it holds them; repaint when they change.
void RestoreBookmarks(EditorView* view, const UndoRecord* record) {
  EditDocument* document = view->document;
  bool changed = false;
  for (int i = 0; i < kBookmarkCount; ++i) {
    const BookmarkPosition& saved = record->bookmarkSnapshot[i];
    if (saved.index < 0) continue;
    if (document->bookmarks[i].index != saved.index || document->bookmarks[i].line != saved.line) {
      document->bookmarks[i] = saved;
      changed = true;
    }
  }
  if (changed) EditorRepaintAll(view);
}

// Visits the recorded places of a replacement; without a list the start is the one place.
template <typename Visit>
void ForEachPlace(const UndoRecord* record, bool backwards, Visit visit) {
  if (record->positionCount == 0) {
    visit(record->startColumn, record->startLine);
    return;
  }
  for (int k = 0; k < record->positionCount; ++k) {
    int i = backwards ? record->positionCount - 1 - k : k;
    visit(record->positions[2 * i], record->positions[2 * i + 1]);
  }
}

void ReplaceAtPlaces(EditDocument* document, const UndoRecord* record, bool toOld) {
  int oldLength = PartLength(record->text, record->textLength);
  int newStart = oldLength < record->textLength ? oldLength + 1 : oldLength;
  int newLength = PartLength(record->text + newStart, record->textLength - newStart);
  const char16_t* to = toOld ? record->text : record->text + newStart;
  int fromLength = toOld ? newLength : oldLength;
  int toLength = toOld ? oldLength : newLength;
  // Each place was recorded after the ones before it on its line had been replaced, so undo
  // walks back from the last and redo forward from the first.
  ForEachPlace(record, toOld, [&](int column, int line) {
    const LineRecord* text = DocumentLine(document, line);
    int index = UnitIndexAtColumn(text, column);
    int present = LineLength(text) - index;
    ReplaceUnits(document, line, index, fromLength < present ? fromLength : present, to, toLength);
  });
}

TextPosition StartOf(const UndoRecord* r) {
  return {r->startColumn, r->startLine};
}
TextPosition EndOf(const UndoRecord* r) {
  return {r->endColumn, r->endLine};
}

// The same range with its earlier corner first.
void Order(TextPosition* a, TextPosition* b, int blockMode) {
  if (blockMode == 1) {
    if (a->column > b->column) {
      int c = a->column;
      a->column = b->column;
      b->column = c;
    }
    if (a->line > b->line) {
      int l = a->line;
      a->line = b->line;
      b->line = l;
    }
  } else if (a->line > b->line || (a->line == b->line && a->column > b->column)) {
    TextPosition t = *a;
    *a = *b;
    *b = t;
  }
}

void DeleteBetween(EditDocument* document, TextPosition a, TextPosition b, int blockMode) {
  Order(&a, &b, blockMode);
  if (blockMode == 1)
    DeleteColumns(document, a, b);
  else
    DeleteStream(document, a, b);
}

void InsertAt(EditDocument* document, TextPosition at, const UndoRecord* record, int blockMode) {
  TextPosition end;
  if (blockMode == 1)
    InsertColumns(document, at, record->text, record->textLength, &end);
  else
    InsertStream(document, at, record->text, record->textLength, &end);
}

// Takes the fill characters out of the rectangle again (a wide fill may not cover it exactly).
void RemoveFill(EditDocument* document, TextPosition from, TextPosition to, char16_t fill) {
  int cells = (to.column - from.column) / UnitColumns(fill);
  for (int line = from.line; line <= to.line && line < document->lineCount; ++line) {
    const LineRecord* record = document->lines[line];
    int index = UnitIndexAtColumn(record, from.column);
    int count = 0;
    while (count < cells && index + count < LineLength(record) &&
           record->text[index + count] == fill)
      ++count;
    if (count) ReplaceUnits(document, line, index, count, nullptr, 0);
  }
}

bool OnlyCaretMarks(const UndoRecord* list) {
  for (; list; list = list->next)
    if (list->kind != kUndoCaret) return false;
  return true;
}

}  // namespace

void PushUndo(EditorView* view, int kind, int column, int line, const char16_t* units, int count) {
  EditDocument* document = view->document;
  if (!document) return;
  if (count < 0) count = 0;
  if (kind != kUndoGroup && TryMerge(document->undoList, kind, column, line, units, count)) return;
  NewRecord(document, kind, column, line, units, count);
}

void PushUndoUnit(EditorView* view, int kind, int column, int line, char16_t unit) {
  PushUndo(view, kind, column, line, &unit, 1);
}

void PushUndoMark(EditorView* view, int kind, int column, int line) {
  PushUndo(view, kind, column, line, nullptr, 0);
}

UndoRecord* PushUndoSelection(EditorView* view, int kind, int column, int line,
                              const char16_t* units, int count) {
  if (!view->document) return nullptr;
  UndoRecord* record = NewRecord(view->document, kind, column, line, units, count);
  if (!record) return nullptr;
  record->blockMode = view->blockMode;
  record->selStartColumn = view->selStartColumn;
  record->selStartLine = view->selStartLine;
  record->selEndColumn = view->selEndColumn;
  record->selEndLine = view->selEndLine;
  return record;
}

UndoRecord* PushUndoUnselected(EditorView* view, int kind, int column, int line,
                               const char16_t* units, int count) {
  EditorView unselected = *view;
  unselected.selEndColumn = unselected.selStartColumn;
  unselected.selEndLine = unselected.selStartLine;
  return PushUndoSelection(&unselected, kind, column, line, units, count);
}

void Undo(EditorView* view) {
  EditDocument* document = view->document;
  UndoRecord* record = document ? document->undoList : nullptr;
  if (!record) return;
  switch (record->kind) {
    case kUndoInsert:
      DeleteBetween(document, StartOf(record), EndOf(record), record->blockMode);
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoDelete:
      InsertAt(document, StartOf(record), record, record->blockMode);
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoBackspace:
      InsertAt(document, EndOf(record), record, 0);
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoCaret:
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoShift:
      ShiftLines(document, record->startLine, record->endLine,
                 record->textLength ? -static_cast<int16_t>(record->text[0]) : 0);
      break;
    case kUndoReplace:
      ReplaceAtPlaces(document, record, true);
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoFill: {
      TextPosition a = StartOf(record), b = EndOf(record);
      Order(&a, &b, 1);
      RemoveFill(document, a, b, record->fillCharacter);
      InsertAt(document, a, record, 1);
      PlaceCaret(view, a.column, a.line);
      break;
    }
    default:
      break;
  }
  RestoreBookmarks(view, record);
  if (SavedSelection(record)) {
    view->blockMode = record->blockMode;
    view->selStartColumn = record->selStartColumn;
    view->selStartLine = record->selStartLine;
    view->selEndColumn = record->selEndColumn;
    view->selEndLine = record->selEndLine;
  }
  Unlink(&document->undoList, record, &document->redoList);
  if (record->kind != kUndoCaret) document->modified = 1;
  // Back at the text as it was loaded: only caret marks are left to undo.
  if (OnlyCaretMarks(document->undoList)) document->modified = 0;
  EditorRepaintAll(view);
}

void Redo(EditorView* view) {
  EditDocument* document = view->document;
  UndoRecord* record = document ? document->redoList : nullptr;
  if (!record) return;
  switch (record->kind) {
    case kUndoInsert: {
      TextPosition end;
      TextPosition at = StartOf(record);
      if (record->blockMode == 1)
        InsertColumns(document, at, record->text, record->textLength, &end);
      else
        InsertStream(document, at, record->text, record->textLength, &end);
      PlaceCaret(view, end.column, end.line);
      break;
    }
    case kUndoDelete:
      if (record->startColumn != record->endColumn || record->startLine != record->endLine)
        DeleteBetween(document, StartOf(record), EndOf(record), record->blockMode);
      else
        DeleteForward(document, StartOf(record), record->textLength);
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoBackspace:
      DeleteBetween(document, EndOf(record), StartOf(record), 0);
      PlaceCaret(view, record->endColumn, record->endLine);
      break;
    case kUndoCaret:
      PlaceCaret(view, record->endColumn, record->endLine);
      break;
    case kUndoShift:
      ShiftLines(document, record->startLine, record->endLine,
                 record->textLength ? static_cast<int16_t>(record->text[0]) : 0);
      break;
    case kUndoReplace:
      ReplaceAtPlaces(document, record, false);
      PlaceCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoFill: {
      TextPosition a = StartOf(record), b = EndOf(record);
      Order(&a, &b, 1);
      FillColumns(document, a, b, record->fillCharacter);
      PlaceCaret(view, a.column, a.line);
      break;
    }
    default:
      break;
  }
  Unlink(&document->redoList, record, &document->undoList);
  if (record->kind != kUndoCaret) document->modified = 1;
  EditorRepaintAll(view);
}

void ClearRedo(EditDocument* document) {
  FreeUndoList(document->redoList);
  document->redoList = nullptr;
}

void FreeUndoList(UndoRecord* list) {
  while (list) {
    UndoRecord* next = list->next;
    FreeRecord(list);
    list = next;
  }
}
