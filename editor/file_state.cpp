// The per-file memory of caret and bookmarks, kept in a settings section named by the CRC-32 of
// the file's path.
#include <cstdlib>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "foundation/formatter.h"
#include "foundation/settings.h"

namespace {

void SectionName(const char* path, char* section, int size) {
  int length = 0;
  while (path[length])
    ++length;
  FormatStr(section, size, "%08X", PathCrc32(path, length));
}

// Reads up to `count` integers from a blank-separated list; returns how many were there.
int ParseNumbers(const char* text, int* numbers, int count) {
  int found = 0;
  const char* at = text;
  while (found < count) {
    while (*at == ' ' || *at == '\t' || *at == ',')
      ++at;
    if (!*at) break;
    char* end = nullptr;
    long value = strtol(at, &end, 10);
    if (end == at) break;
    numbers[found++] = static_cast<int>(value);
    at = end;
  }
  return found;
}

}  // namespace

unsigned PathCrc32(const char* bytes, int count) {
  unsigned crc = 0;
  for (int i = 0; i < count; ++i) {
    crc ^= static_cast<unsigned char>(bytes[i]);
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return crc;
}

void SaveFileState(const EditorView* view) {
  const EditDocument* document = view->document;
  if (!document || document->untitled) return;
  char section[16];
  SectionName(document->path, section, sizeof section);
  WriteText(section, "File", document->path);
  int last = -1;
  for (int i = 0; i < kBookmarkCount; ++i)
    if (document->bookmarks[i].index >= 0) last = i;
  char marks[kBookmarkCount * 24 + 1] = "";
  int used = 0;
  for (int i = 0; i <= last; ++i) {
    const BookmarkPosition& mark = document->bookmarks[i];
    bool set = mark.index >= 0;
    used += FormatStr(marks + used, static_cast<int>(sizeof marks) - used, i ? " %d %d" : "%d %d",
                      set ? mark.index : -1, set ? mark.line : -1) -
            1;
  }
  WriteStr(section, "BookMark", marks);
  WriteNums(section, "Cursor", view->caretColumn, view->caretLine, view->firstColumn,
            view->firstLine);
}

void RestoreFileState(EditorView* view) {
  EditDocument* document = view->document;
  if (!document || document->untitled) return;
  char section[16];
  SectionName(document->path, section, sizeof section);
  char text[512];
  ReadStr(section, "BookMark", text, sizeof text);
  int numbers[kBookmarkCount * 2];
  int found = ParseNumbers(text, numbers, kBookmarkCount * 2);
  for (int i = 0; i < kBookmarkCount; ++i) {
    bool present = 2 * i + 1 < found && numbers[2 * i] >= 0;
    document->bookmarks[i] =
        present ? BookmarkPosition{numbers[2 * i], numbers[2 * i + 1]} : BookmarkPosition{-1, -1};
  }
  int cursor[4] = {0, 0, 0, 0};
  ReadStr(section, "Cursor", text, sizeof text);
  ParseNumbers(text, cursor, 4);
  if (cursor[1] >= document->lineCount) {
    view->caretColumn = view->caretLine = view->firstColumn = view->firstLine = 0;
  } else {
    view->caretColumn = cursor[0] < 0 ? 0 : cursor[0];
    view->caretLine = cursor[1] < 0 ? 0 : cursor[1];
    view->firstColumn = cursor[2] < 0 ? 0 : cursor[2];
    int top = cursor[3];
    if (top >= document->lineCount) top = document->lineCount - 1;
    view->firstLine = top < 0 ? 0 : top;
  }
  CollapseSelection(view);
}
