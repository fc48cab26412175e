// The document record: the line table of one open file and what the editor knows about the file.
#pragma once
#include <cstdint>

#include "editor/line_record.h"
#include "foundation/path.h"

struct UndoRecord;
struct TerminalSession;

constexpr int kBookmarkCount = 9;

struct BookmarkPosition {
  int32_t index;  // unit index in the line; negative when unset
  int32_t line;
};

struct EditDocument {
  LineRecord** lines;
  int32_t lineCount;
  int32_t lineCapacity;
  int32_t scrollScale;
  uint8_t encoding;  // TextEncoding; 0 = detect on the next load
  uint8_t tabSize;   // 0 = not known: no compression on save
  uint8_t keepTabSize;
  uint8_t lfOnly;
  uint8_t hasBom;
  uint8_t composing;
  uint8_t modified;
  uint8_t untitled;
  uint8_t skipReloadCheck;
  uint8_t noCheck;
  BookmarkPosition bookmarks[kBookmarkCount];
  UndoRecord* undoList;
  UndoRecord* redoList;
  uint32_t savedVersion;  // the undo version of the text on disk (0: before any edit)
  uint32_t undoGroup;     // nonzero while one command's records are being made
  uint32_t fileStamp;     // 0xFFFFFFFF when the file is missing
  TerminalSession* terminal;
  // The comment states are brought up to date lazily, as far as a paint needs them: from line
  // commentFrom on a state may be stale (kStatesClean: none is), and the lines from commentFrom up
  // to changedEnd have new text, so no state there can be trusted as it stands.
  int32_t commentFrom;
  int32_t changedEnd;
  // Lines whose state painting took from the colour scan where the plain scan disagrees (a
  // preprocessor line); the next full repaint scans them again.
  int32_t paintedFrom;
  int32_t paintedEnd;
  char path[kPathSize];        // internal form
  char sourcePath[kPathSize];  // read from here instead of path when not empty
};

constexpr uint32_t kMissingFileStamp = 0xFFFFFFFFu;

// A zero-filled document named "<current folder>/NoName%02d.cpp" by a counter that only grows.
EditDocument* NewDocument();
// The same for a document that has a file: it takes no number, so untitled documents are
// numbered among themselves.
EditDocument* NewDocumentFor(const char* path);
// Frees the lines, the undo and redo lists and the record.
void FreeDocument(EditDocument* document);
// Frees every line; the table stays allocated.
void ClearLines(EditDocument* document);

// Makes room for `needed` more lines: a new table of lineCapacity + needed + 1000 slots when
// lineCount + needed reaches the capacity. False when the allocation failed.
bool GrowLineTable(EditDocument* document, int needed);
// Inserts `count` null lines before `index` (0 ... lineCount). False when there is no room.
bool InsertLineSlots(EditDocument* document, int index, int count);
// Frees and removes `count` lines from `index`.
void RemoveLines(EditDocument* document, int index, int count);
// The line at index, or null for an empty line or an index out of range.
LineRecord* DocumentLine(const EditDocument* document, int index);
// Replaces the record at index (freeing the old one).
void SetLine(EditDocument* document, int index, LineRecord* line);

constexpr int32_t kStatesClean = 0x7FFFFFFF;
// Lines [first, first + count) have new text: their comment states and those below are stale.
// Every change of the line table or of a line's text passes here.
void NoteLinesChanged(EditDocument* document, int first, int count);
