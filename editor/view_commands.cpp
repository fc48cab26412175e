#include "editor/view_commands.h"

#include "editor/command_host.h"
#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/undo.h"
#include "editor/view_input.h"
#include "foundation/formatter.h"

namespace {

constexpr int kStatusMessagePart = 2;

void MoveCaretKeepingSelection(EditorView* view, int column, int line, bool extend) {
  PushUndoMark(view, kUndoCaret, view->caretColumn, view->caretLine);
  PushUndoMark(view, kUndoCaret, column, line);
  bool repaint = PlaceCaret(view, column, line, extend);
  EditorCaretMoved(view);
  if (repaint) EditorRepaintAll(view);
}

}  // namespace

void JumpCaret(EditorView* view, int column, int line) {
  MoveCaretKeepingSelection(view, column, line, false);
}

void ScrollByLine(EditorView* view, int direction) {
  int top = view->firstLine;
  if (direction < 0 ? top <= 0 : top + ViewPageLines(view) >= view->document->lineCount) return;
  ScrollViewTo(view, top + (direction < 0 ? -1 : 1), true);
  EditorCaretMoved(view);
  EditorRepaintAll(view);
}

int BookmarkIndex(const EditDocument* document, int column, int line) {
  const LineRecord* record = DocumentLine(document, line);
  int index = UnitIndexAtColumn(record, column);
  int lineColumns = LineColumns(record);
  return column > lineColumns ? index + column - lineColumns : index;
}

void SetBookmark(EditorView* view, int number) {
  if (number < 1 || number > kBookmarkCount) return;
  EditDocument* document = view->document;
  int index = BookmarkIndex(document, view->caretColumn, view->caretLine);
  document->bookmarks[number - 1] = {index, view->caretLine};
  char text[32];
  FormatStr(text, sizeof text, "Bookmark: %d", number);
  EditorStatusText(kStatusMessagePart, text);
  EditorRepaintAll(view);
}

bool JumpToBookmark(EditorView* view, int number) {
  if (number < 1 || number > kBookmarkCount) return false;
  const BookmarkPosition mark = view->document->bookmarks[number - 1];
  if (mark.index < 0) return false;
  const LineRecord* line = DocumentLine(view->document, mark.line);
  int column = ColumnOfIndex(line, mark.index) +
               (mark.index > LineLength(line) ? mark.index - LineLength(line) : 0);
  JumpCaret(view, column, mark.line);
  return true;
}

bool GoToLine(EditorView* view) {
  const EditDocument* document = view->document;
  if (document->lineCount == 0) return false;
  int number = 0;
  if (!CommandAskLineNumber(view, &number) || number < 0) return false;
  int line = number - 1;
  if (line < 0) line = 0;
  if (line >= document->lineCount) line = document->lineCount - 1;
  JumpCaret(view, 0, line);
  return true;
}

void SelectAll(EditorView* view) {
  const EditDocument* document = view->document;
  int last = document->lineCount > 0 ? document->lineCount - 1 : 0;
  int column = LineColumns(DocumentLine(document, last));
  view->selStartColumn = 0;
  view->selStartLine = 0;
  view->selEndColumn = column;
  view->selEndLine = last;
  view->caretColumn = column;
  view->caretLine = last;
  EditorCaretMoved(view);
  EditorRepaintAll(view);
}

void CaretToTextStart(EditorView* view, bool extend) {
  MoveCaretKeepingSelection(view, 0, 0, extend);
}

void CaretToTextEnd(EditorView* view, bool extend) {
  const EditDocument* document = view->document;
  int last = document->lineCount > 0 ? document->lineCount - 1 : 0;
  MoveCaretKeepingSelection(view, LineColumns(DocumentLine(document, last)), last, extend);
}
