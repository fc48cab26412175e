#include "editor/view_input.h"

#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/pending_prefix.h"
#include "editor/view_commands.h"
#include "editor/word_moves.h"
#include "foundation/formatter.h"

namespace {

constexpr int kStatusMessagePart = 2;

int LastLine(const EditDocument* document) {
  return document->lineCount > 0 ? document->lineCount - 1 : 0;
}

int Clamp(int value, int low, int high) {
  if (value > high) value = high;
  return value < low ? low : value;
}

// The caret to (column, line) as a key moves it, then into view.
void KeyCaret(EditorView* view, int column, int line, bool extend) {
  bool repaint = PlaceCaret(view, column, line, extend);
  KeepCaretInView(view);
  EditorCaretMoved(view);
  if (repaint) EditorRepaintAll(view);
}

}  // namespace

int OffWideHalf(const LineRecord* line, int column) {
  return CharacterStartColumn(line, column);
}

int PreviousColumn(const LineRecord* line, int column) {
  return PreviousCharacterColumn(line, column);
}

int NextColumn(const LineRecord* line, int column) {
  if (column >= kCaretColumnLimit) return column;
  return NextCharacterColumn(line, column);
}

void SetViewPage(EditorView* view, int lines, int columns) {
  view->pageLines = lines > 0 ? lines : 1;
  view->pageColumns = columns > 0 ? columns : 1;
}

int ViewPageLines(const EditorView* view) {
  return view->pageLines > 0 ? view->pageLines : 1;
}

void ViewKeyMove(EditorView* view, ViewKey key, bool extend) {
  const EditDocument* document = view->document;
  const LineRecord* line = DocumentLine(document, view->caretLine);
  const int last = LastLine(document);
  switch (key) {
    case kViewHome:
      KeyCaret(view, 0, view->caretLine, extend);
      return;
    case kViewEnd:
      KeyCaret(view, LineColumns(line), view->caretLine, extend);
      return;
    case kViewLeft:
      if (view->caretColumn > 0)
        KeyCaret(view, PreviousColumn(line, view->caretColumn), view->caretLine, extend);
      return;
    case kViewRight:
      if (view->caretColumn < kCaretColumnLimit)
        KeyCaret(view, NextColumn(line, view->caretColumn), view->caretLine, extend);
      return;
    case kViewUp:
    case kViewDown: {
      int target = view->caretLine + (key == kViewUp ? -1 : 1);
      if (target < 0 || target > last) return;
      KeyCaret(view, OffWideHalf(DocumentLine(document, target), view->caretColumn), target,
               extend);
      return;
    }
    case kViewPageUp:
    case kViewPageDown: {
      int page = ViewPageLines(view);
      int step = key == kViewPageUp ? -page : page;
      int lastFirst = document->lineCount - page > 0 ? document->lineCount - page : 0;
      view->firstLine = Clamp(view->firstLine + step, 0, lastFirst);
      int target = Clamp(view->caretLine + step, 0, last);
      KeyCaret(view, OffWideHalf(DocumentLine(document, target), view->caretColumn), target,
               extend);
      EditorRepaintAll(view);
      return;
    }
  }
}

bool KeepCaretInView(EditorView* view) {
  int page = ViewPageLines(view);
  int first = view->firstLine;
  if (view->caretLine < first)
    first = view->caretLine;
  else if (view->caretLine >= first + page)
    first = view->caretLine - page + 1;
  int columns = view->pageColumns < 4 ? 4 : view->pageColumns;
  int firstColumn = view->firstColumn;
  if (view->caretColumn < firstColumn)
    firstColumn = view->caretColumn;
  else if (view->caretColumn + 2 > firstColumn + columns)
    firstColumn = view->caretColumn + 2 - columns;
  if (first == view->firstLine && firstColumn == view->firstColumn) return false;
  view->firstLine = first;
  view->firstColumn = firstColumn;
  return true;
}

int ScrollViewTo(EditorView* view, int first, bool dropSelection) {
  const EditDocument* document = view->document;
  int last = document->lineCount - 1;
  if (first > last) first = last;
  if (first < 0) first = 0;
  int delta = view->firstLine - first;
  if (delta == 0) return 0;
  view->firstLine = first;
  int line = Clamp(view->caretLine, first, first + ViewPageLines(view) - 1);
  if (line > last) line = last;
  if (line != view->caretLine) {
    view->caretLine = line;
    view->caretColumn = OffWideHalf(DocumentLine(document, line), view->caretColumn);
    if (dropSelection || !HasSelection(view)) CollapseSelection(view);
  }
  return delta;
}

bool FitViewToWidth(EditorView* view) {
  int columns = view->pageColumns < 4 ? 4 : view->pageColumns;
  bool moved = false;
  if (view->firstColumn > 0 && view->caretColumn + 2 <= columns) {
    view->firstColumn = 0;
    moved = true;
  }
  return KeepCaretInView(view) || moved;
}

bool ScrollViewToColumn(EditorView* view, int first) {
  first = Clamp(first, 0, kCaretColumnLimit);
  if (first == view->firstColumn) return false;
  view->firstColumn = first;
  return true;
}

int ViewColumnExtent(const EditorView* view, int widest) {
  int extent = widest;
  if (view->caretColumn + 2 > extent) extent = view->caretColumn + 2;
  if (view->firstColumn + view->pageColumns > extent && view->firstColumn > 0)
    extent = view->firstColumn + view->pageColumns;
  return extent;
}

int WidestLine(const EditDocument* document) {
  int widest = 0;
  for (int i = 0; i < document->lineCount; ++i) {
    const LineRecord* line = document->lines[i];
    // A line's columns are at most twice its units: most lines need no count.
    if (LineLength(line) * 2 <= widest) continue;
    int columns = LineColumns(line);
    if (columns > widest) widest = columns;
  }
  return widest;
}

int WheelLines(int delta, int linesPerNotch, int* remainder) {
  // A turn the other way starts afresh: what was left over belonged to the old direction.
  if ((delta > 0 && *remainder < 0) || (delta < 0 && *remainder > 0)) *remainder = 0;
  long long total = static_cast<long long>(delta) * linesPerNotch + *remainder;
  int lines = static_cast<int>(total / 120);
  *remainder = static_cast<int>(total % 120);
  return lines;
}

void CellOfView(const EditorView* view, int row, int column, int* cellColumn, int* cellLine) {
  int line = Clamp(view->firstLine + (row < 0 ? 0 : row), 0, LastLine(view->document));
  int target = view->firstColumn + (column < 0 ? 0 : column);
  if (target > kCaretColumnLimit) target = kCaretColumnLimit;
  *cellLine = line;
  *cellColumn = OffWideHalf(DocumentLine(view->document, line), target);
}

void ViewClick(EditorView* view, int column, int line, bool shift) {
  ResetPendingPrefix();
  if (shift) {
    KeyCaret(view, column, line, true);
    return;
  }
  JumpCaret(view, column, line);
  int number = BookmarkAt(view->document, column, line);
  char text[32] = "";
  if (number) FormatStr(text, sizeof text, "Bookmark: %d", number);
  EditorStatusText(kStatusMessagePart, text);
}

bool ViewDrag(EditorView* view, int column, int line) {
  if (column == view->caretColumn && line == view->caretLine) return false;
  view->caretColumn = view->selEndColumn = column;
  view->caretLine = view->selEndLine = line;
  KeepCaretInView(view);
  EditorCaretMoved(view);
  EditorRepaintAll(view);
  return true;
}

bool ViewDragBeyondEdge(EditorView* view, int row, int column) {
  int page = ViewPageLines(view);
  int columns = view->pageColumns > 0 ? view->pageColumns : 1;
  if (row >= 0 && row < page && column >= 0 && column < columns) return false;
  if (row < 0) ScrollViewTo(view, view->firstLine - 1, false);
  if (row >= page && view->firstLine + page < view->document->lineCount)
    ScrollViewTo(view, view->firstLine + 1, false);
  if (column < 0) ScrollViewToColumn(view, view->firstColumn - 1);
  // Rightwards the caret at the last cell takes the view along as it always does.
  int cellColumn, cellLine;
  CellOfView(view, Clamp(row, 0, page - 1), Clamp(column, 0, columns - 1), &cellColumn, &cellLine);
  view->caretColumn = view->selEndColumn = cellColumn;
  view->caretLine = view->selEndLine = cellLine;
  KeepCaretInView(view);
  EditorCaretMoved(view);
  EditorRepaintAll(view);
  return true;
}

bool ViewSelectWord(EditorView* view) {
  const LineRecord* line = DocumentLine(view->document, view->selStartLine);
  int start, end;
  if (!WordAt(line, UnitIndexAtColumn(line, view->selStartColumn), &start, &end)) return false;
  view->selStartColumn = ColumnOfIndex(line, start);
  view->selEndColumn = view->caretColumn = ColumnOfIndex(line, end);
  view->selEndLine = view->caretLine = view->selStartLine;
  KeepCaretInView(view);
  EditorCaretMoved(view);
  EditorRepaintAll(view);
  return true;
}

int BookmarkAt(const EditDocument* document, int column, int line) {
  int index = BookmarkIndex(document, column, line);
  for (int i = 0; i < kBookmarkCount; ++i) {
    const BookmarkPosition& mark = document->bookmarks[i];
    if (mark.index == index && mark.line == line) return i + 1;
  }
  return 0;
}

bool LineHasBookmark(const EditDocument* document, int line) {
  for (int i = 0; i < kBookmarkCount; ++i) {
    if (document->bookmarks[i].index >= 0 && document->bookmarks[i].line == line) return true;
  }
  return false;
}

bool SelectedColumns(const EditorView* view, int line, int* from, int* to) {
  if (!HasSelection(view)) return false;
  Selection selection = NormalisedSelection(view);
  if (line < selection.startLine || line > selection.endLine) return false;
  if (view->blockMode == 1) {
    *from = selection.startColumn;
    *to = selection.endColumn;
    return *to > *from;
  }
  *from = line == selection.startLine ? selection.startColumn : 0;
  if (line == selection.endLine) {
    *to = selection.endColumn;
  } else {
    int columns = LineColumns(DocumentLine(view->document, line));
    *to = (columns > *from ? columns : *from) + 1;
  }
  return *to > *from;
}
