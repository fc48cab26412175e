#include "editor/line_continuation.h"

#include <cstring>

#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "foundation/memory.h"

namespace {

int TrimmedLength(const char16_t* units, int length) {
  while (length > 0 && units[length - 1] == u' ')
    --length;
  return length;
}

bool EndsWithBackslash(const LineRecord* line) {
  int length = line ? TrimmedLength(line->text, line->length) : 0;
  return length > 0 && line->text[length - 1] == u'\\';
}

UndoRecord* PushFresh(EditorView* view, int kind, TextPosition from, TextPosition to,
                      const char16_t* units, int count) {
  EditorView unselected = *view;
  unselected.selEndColumn = unselected.selStartColumn;
  unselected.selEndLine = unselected.selStartLine;
  unselected.blockMode = 0;  // the block is whole lines, whatever the view's mode
  UndoRecord* record = PushUndoSelection(&unselected, kind, from.column, from.line, units, count);
  if (record) {
    record->endColumn = to.column;
    record->endLine = to.line;
  }
  return record;
}

}  // namespace

bool ToggleContinuation(EditorView* view) {
  EditDocument* document = view->document;
  if (!document || !HasSelection(view)) return false;
  Selection s = NormalisedSelection(view);
  int first = s.startLine;
  int last = s.endLine;
  if (s.endColumn == 0 && last > first) --last;
  if (last >= document->lineCount) last = document->lineCount - 1;
  if (first > last) return false;
  bool remove = EndsWithBackslash(document->lines[first]);

  // The block's text before and after, lines joined by unit 13 as undo records hold them.
  int64_t oldCount = 0;
  for (int line = first; line <= last; ++line)
    oldCount += LineLength(document->lines[line]) + 1;
  int64_t capacity = oldCount + 2 * (last - first + 1);
  if (capacity > 0x3FFFFFFF) return false;
  auto* before = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(2 * capacity) * sizeof(char16_t), kOwnerLineScratch));
  if (!before) return false;
  char16_t* after = before + capacity;
  int beforeLength = 0;
  int afterLength = 0;
  int lastColumns = 0;
  for (int line = first; line <= last; ++line) {
    const LineRecord* record = document->lines[line];
    int length = LineLength(record);
    if (line > first) {
      before[beforeLength++] = 13;
      after[afterLength++] = 13;
    }
    if (length)
      memcpy(before + beforeLength, record->text, static_cast<size_t>(length) * sizeof(char16_t));
    beforeLength += length;
    int lineStart = afterLength;
    int kept = record ? TrimmedLength(record->text, length) : 0;
    if (remove) {
      if (kept > 0 && record->text[kept - 1] == u'\\') kept = TrimmedLength(record->text, kept - 1);
      if (kept)
        memcpy(after + afterLength, record->text, static_cast<size_t>(kept) * sizeof(char16_t));
      afterLength += kept;
    } else {
      if (kept)
        memcpy(after + afterLength, record->text, static_cast<size_t>(kept) * sizeof(char16_t));
      afterLength += kept;
      if (kept) after[afterLength++] = u' ';
      after[afterLength++] = u'\\';
    }
    if (line == last) lastColumns = RunColumns(after + lineStart, afterLength - lineStart);
  }
  TextPosition from = {0, first};
  TextPosition oldEnd = {LineColumns(document->lines[last]), last};
  TextPosition newEnd = {lastColumns, last};
  TextPosition end;
  DeleteStream(document, from, oldEnd);
  bool done = InsertStream(document, from, after, afterLength, &end);
  if (!done)
    InsertStream(document, from, before, beforeLength, &end);  // a line too long: as it was
  if (done) {
    PushFresh(view, kUndoDelete, from, oldEnd, before, beforeLength);
    PushFresh(view, kUndoInsert, from, newEnd, after, afterLength);
    document->modified = 1;
    EditorRepaintAll(view);
  }
  FreeMem(before);
  return done;
}
