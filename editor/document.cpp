#include "editor/document.h"

#include <cstring>

#include "comm/terminal_session.h"
#include "editor/undo_record.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/os_path.h"

namespace {

// Never reset: a name once given is not given again while the program runs.
int g_untitledCounter = 0;

EditDocument* AllocDocument() {
  auto* document = static_cast<EditDocument*>(AllocMem(sizeof(EditDocument), kOwnerDocument));
  if (!document) return nullptr;
  memset(document, 0, sizeof *document);
  document->scrollScale = 1;
  document->commentFrom = kStatesClean;
  for (BookmarkPosition& mark : document->bookmarks)
    mark = {-1, -1};
  return document;
}

}  // namespace

EditDocument* NewDocument() {
  EditDocument* document = AllocDocument();
  if (!document) return nullptr;
  char folder[kPathSize];
  int length = OsCurrentFolder(folder, sizeof folder);
  if (length > 0 && folder[length - 1] != '/') FormatStr(folder + length, kPathSize - length, "/");
  ++g_untitledCounter;
  FormatStr(document->path, sizeof document->path, "%sNoName%02d.cpp", folder, g_untitledCounter);
  // The drive letter is upper case whatever the system reported.
  if (document->path[0] >= 'a' && document->path[0] <= 'z') document->path[0] -= 'a' - 'A';
  document->untitled = 1;
  return document;
}

EditDocument* NewDocumentFor(const char* path) {
  EditDocument* document = AllocDocument();
  if (!document) return nullptr;
  strncpy(document->path, path, kPathSize - 1);
  return document;
}

void ClearLines(EditDocument* document) {
  for (int i = 0; i < document->lineCount; ++i)
    FreeLine(document->lines[i]);
  document->lineCount = 0;
  document->commentFrom = kStatesClean;
  document->paintedFrom = document->paintedEnd = 0;
}

void NoteLinesChanged(EditDocument* document, int first, int count) {
  if (count <= 0) return;
  if (document->commentFrom == kStatesClean) {
    document->commentFrom = first;
    document->changedEnd = first + count;
    return;
  }
  if (first < document->commentFrom) document->commentFrom = first;
  if (first + count > document->changedEnd) document->changedEnd = first + count;
}

void FreeDocument(EditDocument* document) {
  if (!document) return;
  // A terminal's port goes with its document.
  CloseTerminal(document);
  ClearLines(document);
  FreeMem(document->lines);
  FreeUndoList(document->undoList);
  FreeUndoList(document->redoList);
  FreeMem(document);
}

bool GrowLineTable(EditDocument* document, int needed) {
  if (needed < 0) return false;
  if (static_cast<int64_t>(document->lineCount) + needed < document->lineCapacity) return true;
  int64_t capacity = static_cast<int64_t>(document->lineCapacity) + needed + 1000;
  if (capacity > 0x7FFFFFFF / static_cast<int64_t>(sizeof(LineRecord*))) return false;
  auto* table = static_cast<LineRecord**>(
      AllocMem(static_cast<size_t>(capacity) * sizeof(LineRecord*), kOwnerLineTable));
  if (!table) return false;
  if (document->lineCount)
    memcpy(table, document->lines, static_cast<size_t>(document->lineCount) * sizeof(LineRecord*));
  FreeMem(document->lines);
  document->lines = table;
  document->lineCapacity = static_cast<int32_t>(capacity);
  return true;
}

bool InsertLineSlots(EditDocument* document, int index, int count) {
  if (count <= 0) return true;
  if (index < 0 || index > document->lineCount || !GrowLineTable(document, count)) return false;
  memmove(document->lines + index + count, document->lines + index,
          static_cast<size_t>(document->lineCount - index) * sizeof(LineRecord*));
  for (int i = 0; i < count; ++i)
    document->lines[index + i] = nullptr;
  document->lineCount += count;
  // Ranges below the new lines move down with their lines.
  if (document->commentFrom != kStatesClean && document->changedEnd > index)
    document->changedEnd += count;
  if (document->paintedEnd > index) document->paintedEnd += count;
  NoteLinesChanged(document, index, count);
  return true;
}

void RemoveLines(EditDocument* document, int index, int count) {
  if (index < 0 || count <= 0 || index >= document->lineCount) return;
  if (count > document->lineCount - index) count = document->lineCount - index;
  for (int i = 0; i < count; ++i)
    FreeLine(document->lines[index + i]);
  memmove(document->lines + index, document->lines + index + count,
          static_cast<size_t>(document->lineCount - index - count) * sizeof(LineRecord*));
  document->lineCount -= count;
  // The line that moves up to `index` keeps its text but may start in another state.
  auto shrink = [index, count](int32_t* end) {
    if (*end > index) *end = *end - index > count ? *end - count : index;
  };
  if (document->commentFrom == kStatesClean) {
    document->commentFrom = document->changedEnd = index;
  } else {
    shrink(&document->changedEnd);
    if (index < document->commentFrom) document->commentFrom = index;
  }
  shrink(&document->paintedFrom);
  shrink(&document->paintedEnd);
}

LineRecord* DocumentLine(const EditDocument* document, int index) {
  if (!document || index < 0 || index >= document->lineCount) return nullptr;
  return document->lines[index];
}

void SetLine(EditDocument* document, int index, LineRecord* line) {
  if (index < 0 || index >= document->lineCount) {
    FreeLine(line);
    return;
  }
  if (document->lines[index] != line) FreeLine(document->lines[index]);
  document->lines[index] = line;
  NoteLinesChanged(document, index, 1);
}
