// The caret and view commands of the key map: scrolling by a line, bookmarks, go to line, select
// all, and the jumps to the ends of the text.
#pragma once

struct EditorView;
struct EditDocument;

// Commands 30 and 31: the view one line up (-1) or down (+1). Nothing at the top, or going down
// when the last line is already in view; the caret line stays in view.
void ScrollByLine(EditorView* view, int direction);
// The unit index that a bookmark at (column, line) records: behind the end of the line every
// column counts as a blank cell.
int BookmarkIndex(const EditDocument* document, int column, int line);
// Commands 50 ... 58: bookmark `number` (1 ... 9) at the caret; "Bookmark: %d" in the status bar.
void SetBookmark(EditorView* view, int number);
// Commands 60 ... 68: to bookmark `number` when it is set, with caret marks on the undo list.
bool JumpToBookmark(EditorView* view, int number);
// Command 76: the dialog's line number (as the status bar counts, from 1) to column 0 of that
// line, clamped to the last one. Nothing in an empty document or on Cancel.
bool GoToLine(EditorView* view);
// Command 74: the whole text selected, the caret at its end.
void SelectAll(EditorView* view);
// Commands 92 ... 95: the caret to column 0 of line 0 or to the end of the last line, with
// caret marks; `extend` (Shift) stretches the selection to it.
void CaretToTextStart(EditorView* view, bool extend);
void CaretToTextEnd(EditorView* view, bool extend);
// Puts the caret at (column, line) as a jump: the selection goes and the old and new places are
// recorded as caret marks.
void JumpCaret(EditorView* view, int column, int line);
