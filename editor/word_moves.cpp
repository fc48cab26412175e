#include "editor/word_moves.h"

#include "editor/char_class.h"
#include "editor/document_io.h"
#include "editor/editing.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/undo.h"
#include "foundation/memory.h"

namespace {

enum WordClass { kBlankClass, kIdentifierClass, kOtherWordClass, kSeparatorClass };

WordClass ClassOf(char16_t unit) {
  if (IsBlank(unit)) return kBlankClass;
  if (IsIdentifierChar(unit)) return kIdentifierClass;
  if (IsSeparator(unit)) return kSeparatorClass;
  return kOtherWordClass;
}

bool RunAround(const LineRecord* line, int index, bool (*member)(char16_t), int* start, int* end) {
  int length = LineLength(line);
  int at = index < length && member(line->text[index])                     ? index
           : index > 0 && index <= length && member(line->text[index - 1]) ? index - 1
                                                                           : -1;
  if (at < 0) return false;
  int from = at;
  int to = at + 1;
  while (from > 0 && member(line->text[from - 1]))
    --from;
  while (to < length && member(line->text[to]))
    ++to;
  *start = from;
  *end = to;
  return true;
}

// The caret as a unit index, a caret behind the end of its line taken as standing at the end.
int CaretIndex(const EditDocument* document, TextPosition at) {
  return UnitIndexAtColumn(DocumentLine(document, at.line), at.column);
}

}  // namespace

bool WordAt(const LineRecord* line, int index, int* start, int* end) {
  *start = *end = index;
  return RunAround(line, index, IsIdentifierChar, start, end) ||
         RunAround(line, index, IsWordChar, start, end);
}

bool WordAtCaret(const EditorView* view, int* start, int* end) {
  const LineRecord* line = DocumentLine(view->document, view->caretLine);
  return WordAt(line, UnitIndexAtColumn(line, view->caretColumn), start, end);
}

TextPosition PreviousWordStart(const EditDocument* document, TextPosition from) {
  if (from.line >= document->lineCount) {
    if (document->lineCount == 0) return {0, 0};
    from = {LineColumns(DocumentLine(document, document->lineCount - 1)), document->lineCount - 1};
  }
  int line = from.line;
  int index = CaretIndex(document, from);
  const LineRecord* record = DocumentLine(document, line);
  while (index > 0 && IsBlank(record->text[index - 1]))
    --index;
  if (index == 0) {
    // From the leading blanks to column 0 first; from column 0 into the line above.
    if (from.column > 0 || line == 0) return {0, line};
    record = DocumentLine(document, --line);
    index = LineLength(record);
    while (index > 0 && IsBlank(record->text[index - 1]))
      --index;
    if (index == 0) return {0, line};
  }
  WordClass kind = ClassOf(record->text[index - 1]);
  while (index > 0 && ClassOf(record->text[index - 1]) == kind)
    --index;
  return {ColumnOfIndex(record, index), line};
}

TextPosition NextWordStart(const EditDocument* document, TextPosition from) {
  if (document->lineCount == 0) return {0, 0};
  int last = document->lineCount - 1;
  if (from.line > last) return {LineColumns(DocumentLine(document, last)), last};
  const LineRecord* record = DocumentLine(document, from.line);
  int length = LineLength(record);
  int index = CaretIndex(document, from);
  if (index < length) {
    // Over the rest of this word and the blanks behind it; the end of the line is a stop too.
    WordClass kind = ClassOf(record->text[index]);
    while (index < length && ClassOf(record->text[index]) == kind)
      ++index;
    while (index < length && IsBlank(record->text[index]))
      ++index;
    return {ColumnOfIndex(record, index), from.line};
  }
  if (from.line == last) return from;
  record = DocumentLine(document, from.line + 1);
  length = LineLength(record);
  index = 0;
  while (index < length && IsBlank(record->text[index]))
    ++index;
  return {ColumnOfIndex(record, index), from.line + 1};
}

void CaretToPreviousWord(EditorView* view) {
  TextPosition to = PreviousWordStart(view->document, {view->caretColumn, view->caretLine});
  SetCaret(view, to.column, to.line);
}

void CaretToNextWord(EditorView* view) {
  TextPosition to = NextWordStart(view->document, {view->caretColumn, view->caretLine});
  SetCaret(view, to.column, to.line);
}

void DeletePreviousWord(EditorView* view) {
  EditDocument* document = view->document;
  if (DeleteSelection(view)) return;
  TextPosition to = {view->caretColumn, view->caretLine};
  if (to.line >= document->lineCount) {
    // Below the text there is nothing to delete: only the caret moves.
    TextPosition start = PreviousWordStart(document, to);
    SetCaret(view, start.column, start.line);
    return;
  }
  int lineEnd = LineColumns(DocumentLine(document, to.line));
  if (to.column > lineEnd) to.column = lineEnd;
  TextPosition from = PreviousWordStart(document, to);
  if (from.line == to.line && from.column == to.column) {
    SetCaret(view, from.column, from.line);
    return;
  }
  int count = CollectRange(document, from, to, 0, false, false, nullptr);
  auto* text = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(count) * sizeof(char16_t), kOwnerLineScratch));
  if (text) {
    CollectRange(document, from, to, 0, false, false, text);
    // As Backspace records: the mark where the caret stood, then the units it walked over.
    PushUndoMark(view, kUndoBackspace, to.column, to.line);
    PushUndo(view, kUndoBackspace, from.column, from.line, text, count);
    FreeMem(text);
  }
  DeleteStream(document, from, to);
  document->modified = 1;
  SetCaret(view, from.column, from.line);
  if (from.line != to.line)
    EditorRepaintAll(view);
  else
    EditorRepaintLine(view, from.line);
}
