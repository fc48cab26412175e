// The editor view's keys, mouse and scrolling in cells: where the caret goes, what is selected and
// which part of the text is in view. The window turns pixels into cells and messages into these
// calls, and paints what they leave in the view.
#pragma once

struct EditorView;
struct EditDocument;
struct LineRecord;

// The caret may not go further right than this column.
constexpr int kCaretColumnLimit = 4096;

// The start column of the character under `column`, so that the caret never stands on the right
// half of a wide character (a surrogate pair is one such character).
int OffWideHalf(const LineRecord* line, int column);
// The column of the character before / after the one at `column`; behind the end of the line
// every column is one blank cell.
int PreviousColumn(const LineRecord* line, int column);
int NextColumn(const LineRecord* line, int column);

// The text area in whole cells (each at least 1), as the window measured it.
void SetViewPage(EditorView* view, int lines, int columns);
// Whole lines in the text area, at least 1.
int ViewPageLines(const EditorView* view);

// The caret keys without Ctrl; `extend` is Shift. Page Up and Page Down move the view and the
// caret by a page.
enum ViewKey {
  kViewHome,
  kViewEnd,
  kViewLeft,
  kViewRight,
  kViewUp,
  kViewDown,
  kViewPageUp,
  kViewPageDown,
};
void ViewKeyMove(EditorView* view, ViewKey key, bool extend);

// Scrolls the least that brings the caret into view, keeping two cells right of it; true when
// the first line or column changed.
bool KeepCaretInView(EditorView* view);

// Makes `first` (clamped to the lines there are) the first visible line; the caret line follows
// into the view when it would leave it, onto the same column or the start of a wide character
// there. With `dropSelection` (keys) a caret that moves loses the selection. Returns how many
// lines the text moved down (negative: up), 0 when nothing changed.
int ScrollViewTo(EditorView* view, int first, bool dropSelection);

// After the text area changed size (restored, maximised, widened) or a file's saved place came
// back: the text is shown from column 0 whenever the caret fits there, else the caret is kept in
// view as usual. True when the view moved.
bool FitViewToWidth(EditorView* view);
// Makes `first` (0 ... the caret limit) the first visible column; the caret stays where it is.
// True when it changed.
bool ScrollViewToColumn(EditorView* view, int first);
// The columns the horizontal scroll bar spans: the widest line of the document (`widest`, kept by
// the window), the caret with two cells right of it, and what is in view.
int ViewColumnExtent(const EditorView* view, int widest);
// The widest line of a document in columns.
int WidestLine(const EditDocument* document);

// A wheel turned by `delta` (120 a notch; a fine wheel or a touchpad sends less): how many lines
// the view scrolls up (negative: down), `linesPerNotch` a notch and in proportion below that. The
// part of a line left over is kept in `*remainder` for the next turn in the same direction.
int WheelLines(int delta, int linesPerNotch, int* remainder);

// The cell at row `row` (from the first visible line) and visible column `column`, clamped to the
// document and the caret limit, never on the right half of a wide character.
void CellOfView(const EditorView* view, int row, int column, int* cellColumn, int* cellLine);

// A left click at a cell: the caret jumps there (with Shift the selection stretches instead);
// the bookmark standing there, if any, is shown in the status bar.
void ViewClick(EditorView* view, int column, int line, bool shift);
// A drag with the button held: the selection's end and the caret follow the pointer; true when
// they moved.
bool ViewDrag(EditorView* view, int column, int line);
// A drag held with the pointer at (row, column) of the text area, beyond its edge: the view
// moves one line (or column) that way and the selection's end follows to the cell at the edge.
// False when the pointer is inside the text area (nothing to do).
bool ViewDragBeyondEdge(EditorView* view, int row, int column);
// A double click: the word at the click selected, the caret at its end.
bool ViewSelectWord(EditorView* view);

// The number (1 ... 9) of the bookmark standing at the cell, or 0.
int BookmarkAt(const EditDocument* document, int column, int line);
// Whether any bookmark stands on the line.
bool LineHasBookmark(const EditDocument* document, int line);
// The selected columns [*from, *to) of a line, false when none of it is; behind a selected line
// end one cell shows that the line end is selected.
bool SelectedColumns(const EditorView* view, int line, int* from, int* to);
