// Writing a document back: trailing blanks go, spaces become tabs again, each line in the file's
// encoding with its line end, the byte-order mark in front when the file had one.
#include <cstring>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/safe_file.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "encoding/encoding_settings.h"
#include "encoding/line_convert.h"
#include "encoding/text_encoding.h"
#include "encoding/unmappable.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/language.h"
#include "foundation/memory.h"

namespace {

// One line's bytes in the file's encoding; `bytes` is the caller's scratch, grown on demand.
struct LineWriter {
  SafeFile* file;
  int encoding;
  char* bytes;
  int capacity;
  char16_t* compressed;
  int compressedCapacity;
};

bool Reserve(void** block, int* capacity, int needed, int unitSize) {
  if (needed <= *capacity) return true;
  int size = needed + 256;
  void* grown =
      AllocMem(static_cast<size_t>(size) * static_cast<size_t>(unitSize), kOwnerLineScratch);
  if (!grown) return false;
  FreeMem(*block);
  *block = grown;
  *capacity = size;
  return true;
}

bool WriteUnits(LineWriter* writer, const char16_t* units, int count) {
  if (count <= 0) return true;
  if (writer->encoding == UTF16) {
    SafeFileWrite(writer->file, units, static_cast<unsigned>(count) * 2);
    return true;
  }
  // Bounds instead of counting passes: UTF-8 takes at most 3 bytes a unit (a pair 4 for its two
  // units), the Korean codes at most 2, and Johab room for the terminator it writes.
  int needed = writer->encoding == UTF8 ? 3 * count : 2 * count + 2;
  if (needed <= 0) return true;
  void* block = writer->bytes;
  if (!Reserve(&block, &writer->capacity, needed, 1)) return false;
  writer->bytes = static_cast<char*>(block);
  int written = 0;
  switch (writer->encoding) {
    case UTF8:
      written = Utf16LineToUtf8(units, count, writer->bytes, needed);
      break;
    case JOHAP:
      written = Utf16LineToJohab(units, count, writer->bytes, needed);
      break;
    default:
      written = Utf16LineToEucKr(units, count, writer->bytes, needed);
      break;
  }
  if (written > 0) SafeFileWrite(writer->file, writer->bytes, static_cast<unsigned>(written));
  return true;
}

void ShowWriteFailure(const char* path, unsigned error) {
  if (error == kErrorDiskFull)
    HostMessageIdNumber(84, kMbOk | kMbIconExclamation, static_cast<unsigned char>(path[0]));
  else
    HostMessagePath(5, kMbOk | kMbIconExclamation, path);
}

}  // namespace

int CompressTabs(const char16_t* units, int count, int tabSize, char16_t* target) {
  while (count > 0 && units[count - 1] < 33)
    --count;
  int written = 0;
  int column = 0;
  char16_t quote = 0;
  for (int i = 0; i < count;) {
    char16_t unit = units[i];
    char16_t previous = i > 0 ? units[i - 1] : 0;
    if (quote) {
      target[written++] = unit;
      column += UnitColumnsAfter(previous, unit);
      ++i;
      if (unit == u'\\' && i < count) {
        target[written++] = units[i];
        column += UnitColumns(units[i]);
        ++i;
      } else if (unit == quote) {
        quote = 0;
      }
      continue;
    }
    if (unit != u' ') {
      if (unit == u'"' || unit == u'\'') quote = unit;
      target[written++] = unit;
      column += UnitColumnsAfter(previous, unit);
      ++i;
      continue;
    }
    int run = 0;
    while (i + run < count && units[i + run] == u' ')
      ++run;
    i += run;
    while (run > 0) {
      int stop = (column / tabSize + 1) * tabSize;
      int needed = stop - column;
      if (run < needed || needed == 1) {
        // Short of the stop, or a single space just before it: spaces stay spaces.
        int spaces = run < needed ? run : 1;
        for (int k = 0; k < spaces; ++k)
          target[written++] = u' ';
        column += spaces;
        run -= spaces;
      } else {
        target[written++] = u'\t';
        column = stop;
        run -= needed;
      }
    }
  }
  return written;
}

bool SaveDocument(EditorView* view, bool asCopy) {
  EditDocument* document = view->document;
  if (!document) return false;
  if (document->untitled) {
    char path[kPathSize];
    FormatStr(path, sizeof path, "%s", document->path);
    if (!EditorAskSavePath(GetStr(83), path, sizeof path)) return false;
    char old[kPathSize];
    memcpy(old, document->path, sizeof old);
    FormatStr(document->path, sizeof document->path, "%s", path);
    document->untitled = 0;
    if (!SaveDocument(view, asCopy)) {
      memcpy(document->path, old, sizeof old);
      document->untitled = 1;
      return false;
    }
    EditorTitleChanged(view);
    return true;
  }

  SafeFile file;
  if (!SafeFileLocate(&file, document->path)) {
    HostMessagePath(3, kMbOk | kMbIconExclamation, document->path);
    return false;
  }
  if (file.attributes != kNoAttributes && (file.attributes & kAttrReadOnly) &&
      HostMessagePath(kMessageReadOnly, kMbYesNo | kMbIconQuestion, document->path) != kIdYes)
    return false;
  int encoding = document->encoding ? document->encoding : ReadUnrecognisedEncoding();
  UnmappableText unmappable = FindUnmappable(document, encoding);
  if (unmappable.count > 0) {
    int answer = EditorAskUnmappable(view, encoding, &unmappable);
    if (answer == kIdCancel) return false;
    if (answer == kIdYes) {
      encoding = UTF8;
      document->encoding = UTF8;
      document->hasBom = 0;
    }
  }
  if (!SafeFileOpen(&file)) {
    HostMessagePath(3, kMbOk | kMbIconExclamation, document->path);
    return false;
  }
  TrimTrailingBlanks(document);
  LineWriter writer = {&file, encoding, nullptr, 0, nullptr, 0};
  if (document->hasBom && encoding == UTF16) SafeFileWrite(&file, "\xFF\xFE", 2);
  if (document->hasBom && encoding == UTF8) SafeFileWrite(&file, "\xEF\xBB\xBF", 3);
  bool memory = true;
  for (int i = 0; i < document->lineCount && memory && !file.error; ++i) {
    const LineRecord* line = document->lines[i];
    if (line) {
      const char16_t* units = line->text;
      int count = line->length;
      if (document->tabSize > 0) {
        void* block = writer.compressed;
        memory = Reserve(&block, &writer.compressedCapacity, count, sizeof(char16_t));
        writer.compressed = static_cast<char16_t*>(block);
        if (!memory) break;
        count = CompressTabs(units, count, document->tabSize, writer.compressed);
        units = writer.compressed;
      }
      memory = WriteUnits(&writer, units, count);
    }
    if (encoding == UTF16) {
      if (document->lfOnly)
        SafeFileWrite(&file, "\n\0", 2);
      else
        SafeFileWrite(&file, "\r\0\n\0", 4);
    } else {
      if (document->lfOnly)
        SafeFileWrite(&file, "\n", 1);
      else
        SafeFileWrite(&file, "\r\n", 2);
    }
  }
  FreeMem(writer.bytes);
  FreeMem(writer.compressed);
  if (!memory) {
    // The allocator has already told the user.
    SafeFileAbandon(&file);
    return false;
  }
  if (!SafeFileCommit(&file)) {
    ShowWriteFailure(document->path, file.error);
    return false;
  }
  if (asCopy) return true;
  MarkDocumentSaved(document);
  document->untitled = 0;
  EditorTitleChanged(view);
  if (!file.plain) {
    // A device or a pipe has no time of its own to compare, and opening a pipe to look would
    // wait for a writer.
    document->fileStamp = kMissingFileStamp;
    document->noCheck = 1;
    return true;
  }
  FileHandle written =
      FileOpen(document->path, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
  document->fileStamp = written == kInvalidFile ? kMissingFileStamp : FileStamp(written);
  FileClose(written);
  return true;
}

UnmappableText FindUnmappable(const EditDocument* document, int encoding) {
  UnmappableText found = {0, 0, 0};
  for (int i = 0; i < document->lineCount; ++i) {
    const LineRecord* line = document->lines[i];
    if (!line) continue;
    int first;
    int count = CountUnmappable(line->text, line->length, encoding, &first);
    if (count == 0) continue;
    if (found.count == 0) {
      found.line = i + 1;
      found.column = ColumnOfIndex(line, first) + 1;
    }
    found.count += count;
  }
  return found;
}

bool SaveDocumentAs(EditorView* view) {
  EditDocument* document = view->document;
  if (!document) return false;
  char path[kPathSize];
  FormatStr(path, sizeof path, "%s", document->path);
  if (!EditorAskSavePath(GetStr(83), path, sizeof path)) return false;
  char old[kPathSize];
  memcpy(old, document->path, sizeof old);
  unsigned char wasUntitled = document->untitled;
  FormatStr(document->path, sizeof document->path, "%s", path);
  document->untitled = 0;
  EditorTitleChanged(view);
  if (!SaveDocument(view, false)) {
    memcpy(document->path, old, sizeof old);
    document->untitled = wasUntitled;
    EditorTitleChanged(view);
    return false;
  }
  return true;
}
