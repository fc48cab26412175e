// The undo and redo lists: every change of the text is recorded, runs of like changes merged
// into one record, so that Ctrl+Z takes back a typed word at once.
#pragma once
#include <cstdint>

#include "editor/document.h"

struct EditorView;

enum UndoKind : int {
  kUndoInsert = 0,     // text inserted; unit 13 stands for a line break
  kUndoDelete = 1,     // forward deletion (Delete, a deleted selection)
  kUndoBackspace = 2,  // backward deletion, the earliest unit first
  kUndoCaret = 3,      // caret moved from start to end
  kUndoShift = 5,      // block indented by the amount in text
  kUndoReplace = 6,    // "old\0new\0" at every position
  kUndoCaseChar = 8,   // one-character case change, stored as kind 6
  kUndoGroup = 9,      // group boundary, stored as a new caret mark
  kUndoFill = 10,      // column fill: the whole old lines of the block and the fill character
  kUndoLines = 11,     // a column-block change: the lines it touched, before and after
};

constexpr int kOwnerUndo = 5000;

struct UndoRecord {
  UndoRecord* next;  // the next older record of the same list
  int32_t kind;
  int32_t startColumn, startLine;
  int32_t endColumn, endLine;
  int32_t blockMode;
  int32_t selStartColumn, selStartLine, selEndColumn, selEndLine;
  int32_t textLength;
  char16_t* text;
  int32_t positionCount;
  int32_t* positions;  // (column, line) pairs
  char16_t fillCharacter;
  BookmarkPosition bookmarkSnapshot[kBookmarkCount];
  int32_t textCapacity;
  int32_t positionCapacity;
  uint32_t version;  // the text this record leads to; a new number whenever the record grows
  uint32_t group;    // records of one command share a nonzero group and are undone together
  uint8_t closed;    // nothing more merges into it
  int32_t oldLineCount;  // kind 10: the document's line count before the fill; kind 11: how
                         // many lines the old text holds
  int32_t newLineCount;  // kind 11: how many lines the new text holds
  int32_t oldTextLength;  // kind 11: the old lines come first in text, then the new ones
};

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
void FreeUndoList(UndoRecord* list);

// The newest record of the undo list, or null.
inline UndoRecord* UndoHead(const EditDocument* document) {
  return document->undoList;
}
