#include "editor/undo.h"

#include <cstring>

#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "foundation/memory.h"

namespace {

// Numbers the texts that records lead to; only grows, so a number is never met again.
uint32_t g_lastVersion = 0;

uint32_t g_lastGroup = 0;

uint32_t NextVersion() {
  return ++g_lastVersion;
}

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
  if (!head || head->kind != stored || head->closed || SavedSelection(head)) return false;
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
    case kUndoReplace:
      if (head->positionCount == 0) AddPosition(head, head->startColumn, head->startLine);
      AddPosition(head, column, line);
      head->version = NextVersion();
      return true;  // the end stays at the first place
    case kUndoCaseChar:
      MergeCaseChange(head, units, count);
      break;
    default:
      return false;
  }
  head->endColumn = column;
  head->endLine = line;
  if (count > 0 || kind == kUndoCaseChar) head->version = NextVersion();
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
  record->version = record->kind == kUndoCaret ? 0 : NextVersion();
  record->group = document->undoGroup;
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

// Puts back the lines a column fill changed: a fill edge inside a wide character moves that
// character, so the old lines are kept whole rather than the rectangle.
void RestoreFilledLines(EditDocument* document, const UndoRecord* record, int first) {
  if (document->lineCount > record->oldLineCount)
    RemoveLines(document, record->oldLineCount, document->lineCount - record->oldLineCount);
  int line = first;
  int start = 0;
  for (int i = 0; i <= record->textLength; ++i) {
    if (i < record->textLength && record->text[i] != 13) continue;
    if (line < document->lineCount)
      ReplaceUnits(document, line, 0, LineLength(document->lines[line]), record->text + start,
                   i - start);
    ++line;
    start = i + 1;
  }
}

// The units of `count` lines from `first`, joined by unit 13; the counting form with no target.
int CollectLines(const EditDocument* document, int first, int count, char16_t* target) {
  int written = 0;
  for (int i = 0; i < count; ++i) {
    if (i > 0) {
      if (target) target[written] = 13;
      ++written;
    }
    const LineRecord* line = DocumentLine(document, first + i);
    int length = LineLength(line);
    if (target && length)
      memcpy(target + written, line->text, static_cast<size_t>(length) * sizeof(char16_t));
    written += length;
  }
  return written;
}

// Puts the `count` lines of `text` (joined by unit 13) in place of `removeCount` lines.
void PutLines(EditDocument* document, int first, int removeCount, const char16_t* text, int length,
              int count) {
  RemoveLines(document, first, removeCount);
  if (!InsertLineSlots(document, first, count)) return;
  int line = first;
  int start = 0;
  for (int i = 0; i <= length && line < first + count; ++i) {
    if (i < length && text[i] != 13) continue;
    if (i > start) SetLine(document, line, MakeLine(text + start, i - start));
    ++line;
    start = i + 1;
  }
}

// The version of the text on screen: that of the newest record that changed it.
uint32_t TextVersion(const EditDocument* document) {
  for (const UndoRecord* record = document->undoList; record; record = record->next)
    if (record->kind != kUndoCaret) return record->version;
  return 0;
}

void FollowSavedState(EditDocument* document) {
  document->modified = TextVersion(document) != document->savedVersion;
}

const int16_t* ShiftAmounts(const UndoRecord* record) {
  return reinterpret_cast<const int16_t*>(record->text + 1);
}

int ShiftLineCount(const UndoRecord* record) {
  return record->textLength > 0 ? record->textLength - 1 : 0;
}

// A shift of the same lines as the newest record's adds its amounts to it.
bool MergeShift(UndoRecord* head, int first, int last, int amount, const int16_t* applied) {
  if (!head || head->kind != kUndoShift || head->closed || head->startLine != first ||
      head->endLine != last || ShiftLineCount(head) != last - first + 1)
    return false;
  auto* amounts = reinterpret_cast<int16_t*>(head->text + 1);
  for (int i = 0; i <= last - first; ++i)
    if (amounts[i] + applied[i] > 30000 || amounts[i] + applied[i] < -30000) return false;
  for (int i = 0; i <= last - first; ++i)
    amounts[i] = static_cast<int16_t>(amounts[i] + applied[i]);
  head->text[0] = static_cast<char16_t>(static_cast<int16_t>(head->text[0]) + amount);
  head->version = NextVersion();
  return true;
}

// Undoes or redoes the newest record of `from` and every record of the same group behind it.
template <typename Step>
void StepGroup(EditorView* view, UndoRecord** from, Step step) {
  UndoRecord* record = *from;
  if (!record) return;
  uint32_t group = record->group;
  do {
    step(view, record);
    record = *from;
  } while (group && record && record->group == group);
}

}  // namespace

void PushUndo(EditorView* view, int kind, int column, int line, const char16_t* units, int count) {
  EditDocument* document = view->document;
  if (!document) return;
  if (count < 0) count = 0;
  // After an undo nothing merges: the change must empty the redo list, whose records no longer
  // fit the text.
  if (kind != kUndoGroup && !document->redoList &&
      TryMerge(document->undoList, kind, column, line, units, count))
    return;
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

namespace {

void UndoRecordOf(EditorView* view, UndoRecord* record) {
  EditDocument* document = view->document;
  switch (record->kind) {
    case kUndoInsert:
      DeleteBetween(document, StartOf(record), EndOf(record), record->blockMode);
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoDelete:
      InsertAt(document, StartOf(record), record, record->blockMode);
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoBackspace:
      InsertAt(document, EndOf(record), record, 0);
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoCaret:
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoShift:
      ShiftLinesBy(document, record->startLine, ShiftAmounts(record), ShiftLineCount(record), -1);
      break;
    case kUndoReplace:
      ReplaceAtPlaces(document, record, true);
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoFill: {
      TextPosition a = StartOf(record), b = EndOf(record);
      Order(&a, &b, 1);
      RestoreFilledLines(document, record, a.line);
      SetCaret(view, a.column, a.line);
      break;
    }
    case kUndoLines:
      PutLines(document, record->startLine, record->newLineCount, record->text,
               record->oldTextLength, record->oldLineCount);
      SetCaret(view, record->startColumn, record->startLine);
      break;
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
}

void RedoRecordOf(EditorView* view, UndoRecord* record) {
  EditDocument* document = view->document;
  switch (record->kind) {
    case kUndoInsert: {
      TextPosition end;
      TextPosition at = StartOf(record);
      if (record->blockMode == 1)
        InsertColumns(document, at, record->text, record->textLength, &end);
      else
        InsertStream(document, at, record->text, record->textLength, &end);
      SetCaret(view, end.column, end.line);
      break;
    }
    case kUndoDelete:
      if (record->startColumn != record->endColumn || record->startLine != record->endLine)
        DeleteBetween(document, StartOf(record), EndOf(record), record->blockMode);
      else
        DeleteForward(document, StartOf(record), record->textLength);
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoBackspace:
      DeleteBetween(document, EndOf(record), StartOf(record), 0);
      SetCaret(view, record->endColumn, record->endLine);
      break;
    case kUndoCaret:
      SetCaret(view, record->endColumn, record->endLine);
      break;
    case kUndoShift:
      ShiftLinesBy(document, record->startLine, ShiftAmounts(record), ShiftLineCount(record), 1);
      break;
    case kUndoReplace:
      ReplaceAtPlaces(document, record, false);
      SetCaret(view, record->startColumn, record->startLine);
      break;
    case kUndoFill: {
      TextPosition a = StartOf(record), b = EndOf(record);
      Order(&a, &b, 1);
      FillColumns(document, a, b, record->fillCharacter);
      SetCaret(view, a.column, a.line);
      break;
    }
    case kUndoLines:
      PutLines(document, record->startLine, record->oldLineCount,
               record->text + record->oldTextLength, record->textLength - record->oldTextLength,
               record->newLineCount);
      SetCaret(view, record->endColumn, record->endLine);
      break;
    default:
      break;
  }
  Unlink(&document->redoList, record, &document->undoList);
}

}  // namespace

namespace {

// Takes the newest record (or group) of `from` back or forward; Modified is then set exactly when
// the text differs from the one on disk.
void Step(EditorView* view, bool undo) {
  EditDocument* document = view->document;
  if (!document) return;
  UndoRecord** from = undo ? &document->undoList : &document->redoList;
  if (!*from) return;
  StepGroup(view, from, undo ? UndoRecordOf : RedoRecordOf);
  FollowSavedState(document);
  EditorRepaintAll(view);
}

}  // namespace

void Undo(EditorView* view) {
  Step(view, true);
}

void Redo(EditorView* view) {
  Step(view, false);
}

void PushUndoShift(EditorView* view, int first, int last, int amount, const int16_t* applied) {
  EditDocument* document = view->document;
  if (!document || last < first) return;
  if (!document->redoList && MergeShift(document->undoList, first, last, amount, applied)) return;
  int lines = last - first + 1;
  if (lines > 0x3FFFFFF0) return;
  auto* units = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(lines + 1) * sizeof(char16_t), kOwnerUndo));
  if (!units) return;
  units[0] = static_cast<char16_t>(static_cast<int16_t>(amount));
  memcpy(units + 1, applied, static_cast<size_t>(lines) * sizeof(int16_t));
  UndoRecord* record = NewRecord(document, kUndoShift, 0, first, units, lines + 1);
  if (record) record->endLine = last;
  FreeMem(units);
}

void CloseUndoRecord(EditDocument* document) {
  if (document && document->undoList) document->undoList->closed = 1;
}

void BeginUndoGroup(EditDocument* document) {
  document->undoGroup = ++g_lastGroup;
  CloseUndoRecord(document);
}

void EndUndoGroup(EditDocument* document) {
  CloseUndoRecord(document);
  document->undoGroup = 0;
}

void MarkDocumentSaved(EditDocument* document) {
  document->modified = 0;
  document->savedVersion = TextVersion(document);
}

void ClearRedo(EditDocument* document) {
  FreeUndoList(document->redoList);
  document->redoList = nullptr;
}

bool BeginLinesChange(EditorView* view, int first, int last, LinesChange* change) {
  EditDocument* document = view->document;
  *change = {};
  change->view = view;
  change->first = first < 0 ? 0 : first;
  if (last >= document->lineCount) last = document->lineCount - 1;
  change->oldCount = last >= change->first ? last - change->first + 1 : 0;
  change->oldDocumentLines = document->lineCount;
  change->oldLength = CollectLines(document, change->first, change->oldCount, nullptr);
  if (change->oldLength) {
    change->oldText = static_cast<char16_t*>(
        AllocMem(static_cast<size_t>(change->oldLength) * sizeof(char16_t), kOwnerUndo));
    if (!change->oldText) return false;
    CollectLines(document, change->first, change->oldCount, change->oldText);
  }
  change->selStartColumn = view->selStartColumn;
  change->selStartLine = view->selStartLine;
  change->selEndColumn = view->selEndColumn;
  change->selEndLine = view->selEndLine;
  change->blockMode = view->blockMode;
  change->caretColumn = view->caretColumn;
  change->caretLine = view->caretLine;
  return true;
}

void EndLinesChange(LinesChange* change) {
  EditorView* view = change->view;
  EditDocument* document = view->document;
  int newCount = change->oldCount + document->lineCount - change->oldDocumentLines;
  if (newCount < 0) newCount = 0;
  int newLength = CollectLines(document, change->first, newCount, nullptr);
  int64_t total = static_cast<int64_t>(change->oldLength) + newLength;
  char16_t* text = nullptr;
  if (total > 0 && total < 0x3FFFFFFF) {
    text =
        static_cast<char16_t*>(AllocMem(static_cast<size_t>(total) * sizeof(char16_t), kOwnerUndo));
    if (text) {
      if (change->oldLength)
        memcpy(text, change->oldText, static_cast<size_t>(change->oldLength) * sizeof(char16_t));
      CollectLines(document, change->first, newCount, text + change->oldLength);
    }
  }
  FreeMem(change->oldText);
  change->oldText = nullptr;
  if (total > 0 && !text) return;
  UndoRecord* record = NewRecord(document, kUndoLines, change->caretColumn, change->first, text,
                                 static_cast<int>(total));
  FreeMem(text);
  if (!record) return;
  record->startLine = change->first;
  record->startColumn = change->caretColumn;
  record->endColumn = view->caretColumn;
  record->endLine = view->caretLine;
  record->oldLineCount = change->oldCount;
  record->newLineCount = newCount;
  record->oldTextLength = change->oldLength;
  record->blockMode = change->blockMode;
  record->selStartColumn = change->selStartColumn;
  record->selStartLine = change->selStartLine;
  record->selEndColumn = change->selEndColumn;
  record->selEndLine = change->selEndLine;
  record->closed = 1;
}
