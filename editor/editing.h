// The editing operations of a view: the keys, blocks, the clipboard, the date. Each one changes
// the text through text_edit, records itself on the undo list, marks the document modified and
// asks for the repaint it needs.
#pragma once

struct EditorView;

// Typed characters: below 32 only CR (Enter) and Backspace do anything.
void TypeCharacter(EditorView* view, char16_t unit);
void KeyEnter(EditorView* view);
void KeyBackspace(EditorView* view);
void KeyDelete(EditorView* view);
// Tab and Shift+Tab.
void KeyTab(EditorView* view, bool shift);

// False when there was no selection.
bool DeleteSelection(EditorView* view);
// Inserts at the caret as one undo record; the caret goes behind the text. False (nothing
// changed) when a line would grow beyond what a record holds.
bool InsertText(EditorView* view, const char16_t* units, int count, int blockMode);
// Deletes a range without recording it (undo and redo are made of this).
void DeleteRange(EditorView* view, int startColumn, int startLine, int endColumn, int endLine,
                 int blockMode);
// Shifts every line of the selection by `amount` columns.
void ShiftBlock(EditorView* view, int amount);
// Fills the column block with `character` (0 asks for it). Outside a column block selection
// message 117 is shown and nothing changes.
bool FillColumnBlock(EditorView* view, char16_t character);
// String 88 with the local date and time, inserted at the caret.
bool InsertDateTime(EditorView* view);

// The clipboard: lines joined by CR LF, column blocks padded to the rectangle.
bool CopySelection(EditorView* view);
bool CutSelection(EditorView* view);
bool Paste(EditorView* view);
