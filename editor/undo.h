// The undo and redo lists: every change of the text is recorded, runs of like changes merged
// into one record, so that Ctrl+Z takes back a typed word at once.
#pragma once
#include <cstdint>

#include "editor/document.h"
#include "editor/undo_record.h"

struct EditorView;

// Records a change (merging it into the newest record when that is of the same kind, saved no
// selection and ends where this change begins). A new record empties the redo list.
void PushUndo(EditorView* view, int kind, int column, int line, const char16_t* units, int count);
void PushUndoUnit(EditorView* view, int kind, int column, int line, char16_t unit);
// Moves the newest record's end to (column, line) (or starts a record with no text).
void PushUndoMark(EditorView* view, int kind, int column, int line);
// Always starts a new record, never merged into and never extended; it saves the view's
// selection and block mode. Null when memory ran out.
UndoRecord* PushUndoSelection(EditorView* view, int kind, int column, int line,
                              const char16_t* units, int count);
// The same, saving no selection: for changes made in place (a case change, a replacement) whose
// undoing leaves nothing selected.
UndoRecord* PushUndoUnselected(EditorView* view, int kind, int column, int line,
                               const char16_t* units, int count);

// A block shift: `applied` holds what each line from `first` to `last` was really shifted by (a
// line can give up fewer blanks than it was asked to). Merged into the newest record only when
// that shifted the same lines.
void PushUndoShift(EditorView* view, int first, int last, int amount, const int16_t* applied);
// Column-block edits put wide characters that straddle the block's edges where the column rule
// lets them fall, so they are recorded as the whole lines they touched. Before such an edit:
// BeginLinesChange keeps lines first ... last (those that exist); after it, EndLinesChange
// records them with the lines as they are now, saving the view's selection as it was before.
struct LinesChange {
  int first;
  int oldCount;
  int oldDocumentLines;
  char16_t* oldText;
  int oldLength;
  EditorView* view;
  int selStartColumn, selStartLine, selEndColumn, selEndLine, blockMode;
  int caretColumn, caretLine;
};
bool BeginLinesChange(EditorView* view, int first, int last, LinesChange* change);
void EndLinesChange(LinesChange* change);

// The newest record takes nothing more: the next edit starts a record of its own.
void CloseUndoRecord(EditDocument* document);
// Every record made until EndUndoGroup belongs to one group that a single Ctrl+Z takes back.
void BeginUndoGroup(EditDocument* document);
void EndUndoGroup(EditDocument* document);

// The document's text was just loaded or saved: Modified is cleared and follows from now on
// whether undo and redo lead back to this text.
void MarkDocumentSaved(EditDocument* document);

void Undo(EditorView* view);
void Redo(EditorView* view);
void ClearRedo(EditDocument* document);

// The newest record of the undo list, or null.
inline UndoRecord* UndoHead(const EditDocument* document) {
  return document->undoList;
}
