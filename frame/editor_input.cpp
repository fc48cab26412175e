// Keyboard, mouse, wheel and scroll-bar input of an editor window, and keeping the caret, the view
// and the scroll bar in step.
#include "editor/document.h"
#include "editor/editing.h"
#include "editor/pending_prefix.h"
#include "editor/view_commands.h"
#include "editor/word_moves.h"
#include "foundation/formatter.h"
#include "frame/display_objects.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/status_bar.h"
#include "frame/status_text.h"

namespace {

constexpr int kScrollLimit = 65535;

HWND WindowOf(const EditorWindow* editor) {
  return static_cast<HWND>(editor->view.window);
}

// Moves the caret; with `extend` the selection stretches from where it was to the new place,
// otherwise it goes. Repaints when the selection changed.
void MoveCaret(EditorWindow* editor, int column, int line, bool extend) {
  if (PlaceCaret(&editor->view, column, line, extend))
    InvalidateRect(WindowOf(editor), nullptr, FALSE);
  CaretFollows(editor);
}

// The start column of the character under `column`, so that the caret never stands on the
// right half of a wide character.
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

// The cell under a client point, clamped to the document.
void CellAt(const EditorWindow* editor, int x, int y, int* column, int* line) {
  const EditorView* view = &editor->view;
  int row = y < 0 ? 0 : y / CellHeight();
  int target = view->firstLine + row;
  int last = editor->document->lineCount - 1;
  if (target > last) target = last;
  if (target < 0) target = 0;
  int cellX = x - view->leftMargin;
  int col = view->firstColumn + (cellX < 0 ? 0 : (cellX + CellWidth() / 2) / CellWidth());
  if (col > kCaretColumnLimit) col = kCaretColumnLimit;
  *line = target;
  *column = OffWideHalf(DocumentLine(editor->document, target), col);
}

// Sets the first visible line, scrolling the window content and repainting only what was
// uncovered.
void ScrollToLine(EditorWindow* editor, int first) {
  EditorView* view = &editor->view;
  int last = editor->document->lineCount - 1;
  if (first > last) first = last;
  if (first < 0) first = 0;
  int delta = view->firstLine - first;
  if (delta == 0) return;
  view->firstLine = first;
  HWND window = WindowOf(editor);
  if (delta * CellHeight() >= view->textHeight || -delta * CellHeight() >= view->textHeight) {
    InvalidateRect(window, nullptr, FALSE);
  } else {
    ScrollWindowEx(window, 0, delta * CellHeight(), nullptr, nullptr, nullptr, nullptr,
                   SW_INVALIDATE);
  }
  UpdateScrollBar(editor);
  // The caret follows the view when it would leave it.
  int page = PageLines(view);
  int line = view->caretLine;
  if (line < first) line = first;
  if (line > first + page - 1) line = first + page - 1;
  if (line > last) line = last;
  if (line != view->caretLine) {
    view->caretLine = line;
    view->caretColumn = OffWideHalf(DocumentLine(editor->document, line), view->caretColumn);
    if (!HasSelection(view)) CollapseSelection(view);
  }
  PlaceCaret(editor);
  ShowEditorStatus(editor);
}

}  // namespace

int CellWidth() {
  return g_display.cellWidth > 0 ? g_display.cellWidth : 8;
}

int CellHeight() {
  return g_display.cellHeight > 0 ? g_display.cellHeight : 16;
}

int PageLines(const EditorView* view) {
  int page = view->textHeight / CellHeight();
  return page > 0 ? page : 1;
}

void SizeTextArea(EditorWindow* editor) {
  RECT client;
  GetClientRect(WindowOf(editor), &client);
  EditorView* view = &editor->view;
  view->textWidth = client.right > view->leftMargin ? client.right - view->leftMargin : 0;
  view->textHeight = client.bottom;
}

void UpdateScrollBar(EditorWindow* editor) {
  EditDocument* document = editor->document;
  int range = document->lineCount > 0 ? document->lineCount - 1 : 0;
  int scale = 1;
  while (range / scale > kScrollLimit)
    scale *= 10;
  document->scrollScale = scale;
  HWND window = WindowOf(editor);
  SetScrollRange(window, SB_VERT, 0, range / scale, FALSE);
  SetScrollPos(window, SB_VERT, editor->view.firstLine / scale, TRUE);
}

void PlaceCaret(EditorWindow* editor) {
  if (!editor->hasFocus) return;
  const EditorView* view = &editor->view;
  SetCaretPos(view->leftMargin + (view->caretColumn - view->firstColumn) * CellWidth(),
              (view->caretLine - view->firstLine) * CellHeight());
}

void ShowEditorStatus(EditorWindow* editor) {
  if (ActiveChild() != WindowOf(editor)) return;
  const EditDocument* document = editor->document;
  SetStatusCursor(editor->view.caretColumn, editor->view.caretLine, document->modified != 0);
  char format[40];
  FormatFileFormatStatus(document->encoding, document->hasBom != 0, document->lfOnly != 0, format,
                         sizeof format);
  SetStatusFormat(format);
}

void CaretFollows(EditorWindow* editor) {
  EditorView* view = &editor->view;
  int page = PageLines(view);
  int first = view->firstLine;
  if (view->caretLine < first)
    first = view->caretLine;
  else if (view->caretLine >= first + page)
    first = view->caretLine - page + 1;
  int columns = view->textWidth / CellWidth();
  if (columns < 4) columns = 4;
  int firstColumn = view->firstColumn;
  if (view->caretColumn < firstColumn)
    firstColumn = view->caretColumn;
  else if (view->caretColumn + 2 > firstColumn + columns)
    firstColumn = view->caretColumn + 2 - columns;
  if (first != view->firstLine || firstColumn != view->firstColumn) {
    view->firstLine = first;
    view->firstColumn = firstColumn;
    InvalidateRect(WindowOf(editor), nullptr, FALSE);
    UpdateScrollBar(editor);
  }
  PlaceCaret(editor);
  ShowEditorStatus(editor);
}

bool EditorKeyDown(EditorWindow* editor, int virtualKey) {
  EditorView* view = &editor->view;
  if (PendingPrefix != kPrefixNone && PrefixKeyDown(view, virtualKey)) {
    ShowEditorStatus(editor);
    return true;
  }
  bool shift = GetKeyState(VK_SHIFT) < 0;
  if (GetKeyState(VK_CONTROL) < 0 && virtualKey != VK_DELETE) return false;
  const EditDocument* document = editor->document;
  const LineRecord* line = DocumentLine(document, view->caretLine);
  int last = document->lineCount > 0 ? document->lineCount - 1 : 0;
  int page = PageLines(view);
  switch (virtualKey) {
    case VK_HOME:
      MoveCaret(editor, 0, view->caretLine, shift);
      return true;
    case VK_END:
      MoveCaret(editor, LineColumns(line), view->caretLine, shift);
      return true;
    case VK_LEFT:
      if (view->caretColumn > 0)
        MoveCaret(editor, PreviousColumn(line, view->caretColumn), view->caretLine, shift);
      return true;
    case VK_RIGHT:
      if (view->caretColumn < kCaretColumnLimit)
        MoveCaret(editor, NextColumn(line, view->caretColumn), view->caretLine, shift);
      return true;
    case VK_UP:
    case VK_DOWN: {
      int target = view->caretLine + (virtualKey == VK_UP ? -1 : 1);
      if (target < 0 || target > last) return true;
      MoveCaret(editor, OffWideHalf(DocumentLine(document, target), view->caretColumn), target,
                shift);
      return true;
    }
    case VK_PRIOR:
    case VK_NEXT: {
      int step = virtualKey == VK_PRIOR ? -page : page;
      int first = view->firstLine + step;
      int target = view->caretLine + step;
      int lastFirst = document->lineCount - page > 0 ? document->lineCount - page : 0;
      if (first > lastFirst) first = lastFirst;
      if (first < 0) first = 0;
      if (target > last) target = last;
      if (target < 0) target = 0;
      view->firstLine = first;
      UpdateScrollBar(editor);
      InvalidateRect(WindowOf(editor), nullptr, FALSE);
      MoveCaret(editor, OffWideHalf(DocumentLine(document, target), view->caretColumn), target,
                shift);
      return true;
    }
    case VK_DELETE:
      KeyDelete(view);
      ShowEditorStatus(editor);
      return true;
    case VK_TAB:
      KeyTab(view, shift);
      ShowEditorStatus(editor);
      return true;
  }
  return false;
}

void EditorCharacter(EditorWindow* editor, char16_t unit) {
  if (PrefixKeyTaken) {
    PrefixKeyTaken = false;
    return;
  }
  if (PendingPrefix != kPrefixNone) return;
  if (unit == u'\t') return;  // the key-down handler has indented already
  DropComposition(editor);
  TypeCharacter(&editor->view, unit);
  ShowEditorStatus(editor);
}

void EditorMouseDown(EditorWindow* editor, int x, int y, bool shift) {
  ResetPendingPrefix();
  EditorView* view = &editor->view;
  int column, line;
  CellAt(editor, x, y, &column, &line);
  if (shift) {
    MoveCaret(editor, column, line, true);
    return;
  }
  bool had = HasSelection(view);
  JumpCaret(view, column, line);
  editor->dragging = true;
  SetCapture(WindowOf(editor));
  // The bookmark standing at the caret, if any.
  const LineRecord* record = DocumentLine(editor->document, line);
  int index = UnitIndexAtColumn(record, column);
  SetStatusMessage(nullptr);
  for (int i = 0; i < kBookmarkCount; ++i) {
    const BookmarkPosition& mark = editor->document->bookmarks[i];
    if (mark.index == index && mark.line == line) {
      char text[32];
      FormatStr(text, sizeof text, "Bookmark: %d", i + 1);
      SetStatusMessage(text);
      break;
    }
  }
  if (had) InvalidateRect(WindowOf(editor), nullptr, FALSE);
  CaretFollows(editor);
}

void EditorMouseMove(EditorWindow* editor, int x, int y) {
  if (!editor->dragging) return;
  EditorView* view = &editor->view;
  int column, line;
  CellAt(editor, x, y, &column, &line);
  if (column == view->caretColumn && line == view->caretLine) return;
  view->caretColumn = view->selEndColumn = column;
  view->caretLine = view->selEndLine = line;
  InvalidateRect(WindowOf(editor), nullptr, FALSE);
  CaretFollows(editor);
}

void EditorMouseUp(EditorWindow* editor) {
  if (!editor->dragging) return;
  editor->dragging = false;
  ReleaseCapture();
}

void EditorDoubleClick(EditorWindow* editor) {
  EditorView* view = &editor->view;
  const LineRecord* line = DocumentLine(editor->document, view->selStartLine);
  int start, end;
  if (!WordAt(line, UnitIndexAtColumn(line, view->selStartColumn), &start, &end)) return;
  view->selStartColumn = ColumnOfIndex(line, start);
  view->selEndColumn = view->caretColumn = ColumnOfIndex(line, end);
  view->selEndLine = view->caretLine = view->selStartLine;
  InvalidateRect(WindowOf(editor), nullptr, FALSE);
  CaretFollows(editor);
}

void EditorWheel(EditorWindow* editor, int delta) {
  // Read with the other display settings at start-up and after the options sheet, not from
  // the settings file on every notch.
  int lines = g_display.wheelLines;
  int notches = delta / 120;
  if (notches == 0) notches = delta > 0 ? 1 : -1;
  ScrollToLine(editor, editor->view.firstLine - notches * lines);
}

void EditorVerticalScroll(EditorWindow* editor, int request) {
  EditorView* view = &editor->view;
  int page = PageLines(view);
  int scale = editor->document->scrollScale > 0 ? editor->document->scrollScale : 1;
  switch (LOWORD(request)) {
    case SB_LINEUP:
      ScrollToLine(editor, view->firstLine - 1);
      return;
    case SB_LINEDOWN:
      ScrollToLine(editor, view->firstLine + 1);
      return;
    case SB_PAGEUP:
      ScrollToLine(editor, view->firstLine - page);
      return;
    case SB_PAGEDOWN:
      ScrollToLine(editor, view->firstLine + page);
      return;
    case SB_TOP:
      ScrollToLine(editor, 0);
      return;
    case SB_BOTTOM:
      ScrollToLine(editor, editor->document->lineCount - page);
      return;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      // The scale keeps every position within the message's 16 bits.
      ScrollToLine(editor, HIWORD(request) * scale);
      return;
  }
}
