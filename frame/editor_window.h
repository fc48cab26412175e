// The inside of one editor window (class "Quill"): its view record, and the painting, input and
// host pieces that its window procedure routes messages into.
#pragma once
#include <windows.h>

#include "editor/colour_runs.h"
#include "editor/editor_view.h"

struct EditDocument;

// Blocks of the editor windows (the frame's owner range).
constexpr int kOwnerEditorClipboard = 1017;  // the last clipboard text handed to the editor

struct EditorWindow {
  EditorView view;
  EditDocument* document;
  ColourRuns* runs;
  bool checkPending;  // command 112 is posted and not answered yet
  bool hasFocus;
  bool dragging;       // the mouse is captured by a left-button drag
  int shownFirstLine;  // where the window last scrolled to
  int shownFirstColumn;
  int widestColumns;   // the widest line seen, for the horizontal scroll bar
  int wheelRemainder;  // the part of a line a fine wheel has turned and not yet scrolled
  POINT dragPoint;     // where the pointer of a drag last was, for scrolling at the edges
};

EditorWindow* EditorWindowOf(HWND window);

// Installs the window side of the editor's host interfaces (once per process).
void InstallEditorHosts();
// Frees the last clipboard text handed to the editor (only valid until the next paste anyway).
void ReleaseEditorClipboardCopy();

// Cell metrics with a fallback while no font has been measured.
int CellWidth();
int CellHeight();

void PaintEditor(HWND window, EditorWindow* editor);
void RepaintEditorLine(EditorWindow* editor, int line);

// Size of the text area from the client rectangle, in pixels and in cells.
void SizeTextArea(EditorWindow* editor);
// Scroll-bar range and position from the document and the first visible line.
void UpdateScrollBar(EditorWindow* editor);
// Scrolls so that the caret is in view, repaints when the view moved (here or in the core), then
// puts the system caret and the status bar in step.
void CaretFollows(EditorWindow* editor);
// The system caret onto the view's caret cell.
void PositionCaret(EditorWindow* editor);
// Makes the system caret anew for the focused window: a bar when inserting, a block of one cell
// when overwriting, as high as a cell of the current font, at the caret cell.
void MakeCaret(EditorWindow* editor);
// The text area after a change of size or of the document: column 0 when the caret fits there.
void FitEditorView(EditorWindow* editor);
// After a font change: the text area in the new cells, and the caret made anew at its cell.
void EditorCellsChanged(EditorWindow* editor);
void ShowEditorStatus(EditorWindow* editor);

bool EditorKeyDown(EditorWindow* editor, int virtualKey);
void EditorCharacter(EditorWindow* editor, char16_t unit);
// An unfinished input-method character at the caret (0: the composition ended); the next one,
// or the finished character, first takes the previous one away.
void EditorComposition(EditorWindow* editor, char16_t unit);
void DropComposition(EditorWindow* editor);
void EditorMouseDown(EditorWindow* editor, int x, int y, bool shift);
void EditorMouseMove(EditorWindow* editor, int x, int y);
void EditorMouseUp(EditorWindow* editor);
void EditorDoubleClick(EditorWindow* editor);
// The drag timer: while the pointer is held beyond the text area's edge the view scrolls.
void EditorDragTimer(EditorWindow* editor);
constexpr UINT_PTR kDragScrollTimer = 1;
void EditorWheel(EditorWindow* editor, int delta);
void EditorVerticalScroll(EditorWindow* editor, int request);
void EditorHorizontalScroll(EditorWindow* editor, int request);
