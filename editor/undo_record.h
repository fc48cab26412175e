// The undo record and its lists as data: what a change saved, and freeing a list. The document
// owns two lists; the operations on them are in undo.h.
#pragma once
#include <cstdint>

#include "editor/document.h"

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
  uint32_t version;       // the text this record leads to; a new number whenever the record grows
  uint32_t group;         // records of one command share a nonzero group and are undone together
  uint8_t closed;         // nothing more merges into it
  int32_t oldLineCount;   // kind 10: the document's line count before the fill; kind 11: how
                          // many lines the old text holds
  int32_t newLineCount;   // kind 11: how many lines the new text holds
  int32_t oldTextLength;  // kind 11: the old lines come first in text, then the new ones
};

// Frees every record of a list.
void FreeUndoList(UndoRecord* list);
