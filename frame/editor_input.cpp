// Keyboard, mouse, wheel and scroll-bar input of an editor window, and keeping the caret, the view
// and the scroll bar in step.
#include "comm/terminal_session.h"
#include "editor/document.h"
#include "editor/editing.h"
#include "editor/pending_prefix.h"
#include "editor/view_input.h"
#include "editor/view_keys.h"
#include "frame/display_objects.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/status_bar.h"
#include "frame/status_text.h"

namespace {

constexpr int kScrollLimit = 65535;
// How often a drag held beyond the edge scrolls a line.
constexpr UINT kDragScrollMs = 50;

HWND WindowOf(const EditorWindow* editor) {
  return static_cast<HWND>(editor->view.window);
}

// The cell under a client point, clamped to the document.
void CellAt(const EditorWindow* editor, int x, int y, int* column, int* line) {
  int cellX = x - editor->view.leftMargin;
  CellOfView(&editor->view, y < 0 ? 0 : y / CellHeight(),
             cellX < 0 ? 0 : (cellX + CellWidth() / 2) / CellWidth(), column, line);
}

// Sets the first visible line, scrolling the window content and repainting only what was
// uncovered.
void ScrollToLine(EditorWindow* editor, int first) {
  EditorView* view = &editor->view;
  int delta = ScrollViewTo(view, first, false);
  if (delta == 0) return;
  HWND window = WindowOf(editor);
  if (delta * CellHeight() >= view->textHeight || -delta * CellHeight() >= view->textHeight) {
    InvalidateRect(window, nullptr, FALSE);
  } else {
    ScrollWindowEx(window, 0, delta * CellHeight(), nullptr, nullptr, nullptr, nullptr,
                   SW_INVALIDATE);
  }
  editor->shownFirstLine = view->firstLine;
  UpdateScrollBar(editor);
  PositionCaret(editor);
  ShowEditorStatus(editor);
}

}  // namespace

int CellWidth() {
  return g_display.cellWidth > 0 ? g_display.cellWidth : 8;
}

int CellHeight() {
  return g_display.cellHeight > 0 ? g_display.cellHeight : 16;
}

void SizeTextArea(EditorWindow* editor) {
  RECT client;
  GetClientRect(WindowOf(editor), &client);
  EditorView* view = &editor->view;
  view->textWidth = client.right > view->leftMargin ? client.right - view->leftMargin : 0;
  view->textHeight = client.bottom;
  SetViewPage(view, view->textHeight / CellHeight(), view->textWidth / CellWidth());
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
  // The horizontal bar shows only while the text is wider than the window: a page as large as
  // the range hides it.
  const EditorView* view = &editor->view;
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = ViewColumnExtent(view, editor->widestColumns) - 1;
  info.nPage = static_cast<UINT>(view->pageColumns);
  info.nPos = view->firstColumn;
  SetScrollInfo(window, SB_HORZ, &info, TRUE);
}

void PositionCaret(EditorWindow* editor) {
  if (!editor->hasFocus) return;
  const EditorView* view = &editor->view;
  SetCaretPos(view->leftMargin + (view->caretColumn - view->firstColumn) * CellWidth(),
              (view->caretLine - view->firstLine) * CellHeight());
}

void MakeCaret(EditorWindow* editor) {
  if (!editor->hasFocus) return;
  HWND window = WindowOf(editor);
  DestroyCaret();
  CreateCaret(window, nullptr, editor->view.overwrite ? CellWidth() : 2, CellHeight());
  PositionCaret(editor);
  ShowCaret(window);
}

void FitEditorView(EditorWindow* editor) {
  if (FitViewToWidth(&editor->view)) InvalidateRect(WindowOf(editor), nullptr, FALSE);
  // A new width may bring the horizontal bar or take it away.
  UpdateScrollBar(editor);
  CaretFollows(editor);
}

void EditorCellsChanged(EditorWindow* editor) {
  SizeTextArea(editor);
  MakeCaret(editor);
  FitEditorView(editor);
}

void ShowEditorStatus(EditorWindow* editor) {
  if (ActiveChild() != WindowOf(editor)) return;
  const EditDocument* document = editor->document;
  SetStatusCursor(editor->view.caretColumn, editor->view.caretLine, document->modified != 0);
  char format[64];
  FormatFileFormatStatus(document->encoding, document->hasBom != 0, document->lfOnly != 0, format,
                         sizeof format, editor->view.overwrite != 0);
  SetStatusFormat(format);
}

void CaretFollows(EditorWindow* editor) {
  EditorView* view = &editor->view;
  KeepCaretInView(view);
  int columns = LineColumns(DocumentLine(editor->document, view->caretLine));
  bool wider = columns > editor->widestColumns;
  if (wider) editor->widestColumns = columns;
  // The core may have scrolled as well (a page, a line): the window shows where the view is now.
  if (view->firstLine != editor->shownFirstLine || view->firstColumn != editor->shownFirstColumn) {
    editor->shownFirstLine = view->firstLine;
    editor->shownFirstColumn = view->firstColumn;
    InvalidateRect(WindowOf(editor), nullptr, FALSE);
    UpdateScrollBar(editor);
  } else if (wider || view->caretColumn + 2 > editor->widestColumns) {
    UpdateScrollBar(editor);
  }
  PositionCaret(editor);
  ShowEditorStatus(editor);
}

bool EditorKeyDown(EditorWindow* editor, int virtualKey) {
  int modifiers = (GetKeyState(VK_SHIFT) < 0 ? kChordShift : 0) |
                  (GetKeyState(VK_CONTROL) < 0 ? kChordControl : 0);
  bool overwrite = editor->view.overwrite;
  if (!ViewKeyDown(&editor->view, virtualKey, modifiers)) return false;
  if (editor->view.overwrite != overwrite) MakeCaret(editor);
  ShowEditorStatus(editor);
  return true;
}

void EditorCharacter(EditorWindow* editor, char16_t unit) {
  bool typed = !PrefixKeyTaken && PendingPrefix == kPrefixNone;
  if (typed && editor->document->terminal) {
    // A terminal's keys go to the device, which echoes them if it wants them shown.
    TerminalTyped(editor->document, unit);
    return;
  }
  if (typed && unit != u'\t') DropComposition(editor);
  ViewCharacter(&editor->view, unit);
  ShowEditorStatus(editor);
}

void EditorMouseDown(EditorWindow* editor, int x, int y, bool shift) {
  int column, line;
  CellAt(editor, x, y, &column, &line);
  ViewClick(&editor->view, column, line, shift);
  if (shift) return;
  editor->dragging = true;
  SetCapture(WindowOf(editor));
}

void EditorMouseMove(EditorWindow* editor, int x, int y) {
  if (!editor->dragging) return;
  int column, line;
  CellAt(editor, x, y, &column, &line);
  ViewDrag(&editor->view, column, line);
  editor->dragPoint = {x, y};
  const EditorView* view = &editor->view;
  bool outside = x < view->leftMargin || x >= view->leftMargin + view->textWidth || y < 0 ||
                 y >= view->pageLines * CellHeight();
  if (outside)
    SetTimer(WindowOf(editor), kDragScrollTimer, kDragScrollMs, nullptr);
  else
    KillTimer(WindowOf(editor), kDragScrollTimer);
}

void EditorDragTimer(EditorWindow* editor) {
  HWND window = WindowOf(editor);
  if (!editor->dragging) {
    KillTimer(window, kDragScrollTimer);
    return;
  }
  int x = editor->dragPoint.x - editor->view.leftMargin;
  int y = editor->dragPoint.y;
  int row = y < 0 ? -1 : y / CellHeight();
  int column = x < 0 ? -1 : x / CellWidth();
  if (!ViewDragBeyondEdge(&editor->view, row, column)) KillTimer(window, kDragScrollTimer);
}

void EditorMouseUp(EditorWindow* editor) {
  if (!editor->dragging) return;
  editor->dragging = false;
  KillTimer(WindowOf(editor), kDragScrollTimer);
  ReleaseCapture();
}

void EditorDoubleClick(EditorWindow* editor) {
  ViewSelectWord(&editor->view);
}

void EditorWheel(EditorWindow* editor, int delta) {
  // Read with the other display settings at start-up and after the options sheet, not from
  // the settings file on every notch.
  int lines = WheelLines(delta, g_display.wheelLines, &editor->wheelRemainder);
  if (lines) ScrollToLine(editor, editor->view.firstLine - lines);
}

void EditorHorizontalScroll(EditorWindow* editor, int request) {
  EditorView* view = &editor->view;
  int first = view->firstColumn;
  switch (LOWORD(request)) {
    case SB_LINELEFT:
      --first;
      break;
    case SB_LINERIGHT:
      ++first;
      break;
    case SB_PAGELEFT:
      first -= view->pageColumns;
      break;
    case SB_PAGERIGHT:
      first += view->pageColumns;
      break;
    case SB_LEFT:
      first = 0;
      break;
    case SB_RIGHT:
      first = ViewColumnExtent(view, editor->widestColumns) - view->pageColumns;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      first = HIWORD(request);
      break;
    default:
      return;
  }
  if (!ScrollViewToColumn(view, first)) return;
  // The caret may leave the view sideways; the next key brings the view back to it.
  editor->shownFirstColumn = view->firstColumn;
  InvalidateRect(WindowOf(editor), nullptr, FALSE);
  UpdateScrollBar(editor);
  PositionCaret(editor);
}

void EditorVerticalScroll(EditorWindow* editor, int request) {
  EditorView* view = &editor->view;
  int page = ViewPageLines(view);
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
