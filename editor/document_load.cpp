// Opening a file: the size and text checks, the encoding, the tab width and the lines.
#include <cstdint>
#include <cstring>

#include "comm/terminal_text.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/undo.h"
#include "encoding/encoding_detect.h"
#include "encoding/encoding_settings.h"
#include "encoding/line_convert.h"
#include "encoding/text_encoding.h"
#include "foundation/fileutil.h"
#include "foundation/host.h"
#include "foundation/memory.h"
#include "foundation/settings.h"

namespace {

// Set while a load splits a long line, so that the user is told once per file.
bool g_splitLine = false;

// Appends expanded units, splitting a line that a record cannot hold. The units stay the
// caller's.
int AppendUnits(EditDocument* document, const char16_t* units, int count) {
  int pieces = count > kMaxLineUnits ? (count + kMaxLineUnits - 1) / kMaxLineUnits : 1;
  if (!GrowLineTable(document, pieces)) return 0;
  if (pieces > 1) g_splitLine = true;
  int appended = 0;
  for (int piece = 0; piece < pieces; ++piece) {
    int from = piece * kMaxLineUnits;
    int length = count - from < kMaxLineUnits ? count - from : kMaxLineUnits;
    LineRecord* line = length > 0 ? MakeFileLine(units + from, length) : nullptr;
    // A line whose record could not be made is left out.
    if (length > 0 && !line) continue;
    NoteLinesChanged(document, document->lineCount, 1);
    document->lines[document->lineCount++] = line;
    ++appended;
  }
  return appended;
}

bool HasTab(const char16_t* data, int count) {
  for (int i = 0; i < count; ++i)
    if (data[i] == u'\t') return true;
  return false;
}

bool HasTab(const char* data, int count) {
  return count > 0 && memchr(data, '\t', static_cast<size_t>(count)) != nullptr;
}

// The converted units of a line and their tab expansion: one pair of blocks for a whole load,
// grown to the longest line, instead of two allocations and a counting pass per line.
struct LineScratch {
  char16_t* units;
  int unitCapacity;
  char16_t* expanded;
  int expandedCapacity;
};

bool Reserve(char16_t** block, int* capacity, int needed) {
  if (needed <= *capacity) return true;
  auto* grown = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(needed) * sizeof(char16_t), kOwnerLineScratch));
  if (!grown) return false;
  FreeMem(*block);
  *block = grown;
  *capacity = needed;
  return true;
}

void FreeScratch(LineScratch* scratch) {
  FreeMem(scratch->units);
  FreeMem(scratch->expanded);
}

// Expands tabs of converted units and appends them.
int AppendExpanded(EditDocument* document, const char16_t* units, int count, LineScratch* scratch) {
  if (!HasTab(units, count)) return AppendUnits(document, units, count);
  int expanded = ExpandedLength(units, count, 0, document->tabSize);
  if (!Reserve(&scratch->expanded, &scratch->expandedCapacity, expanded)) return 0;
  ExpandTabs(units, count, 0, document->tabSize, scratch->expanded);
  return AppendUnits(document, scratch->expanded, expanded);
}

using ConvertFunction = int (*)(const char*, int, char16_t*, int);

// No byte of any of the byte encodings makes more than one unit, so the byte count sizes the
// conversion without counting first.
int AppendConverted(EditDocument* document, const char* bytes, int count, ConvertFunction convert,
                    LineScratch* scratch) {
  if (count <= 0) return AppendUnits(document, nullptr, 0);
  if (!Reserve(&scratch->units, &scratch->unitCapacity, count)) return 0;
  int length = convert(bytes, count, scratch->units, count);
  return AppendExpanded(document, scratch->units, length, scratch);
}

// The first unit from `i` on that is a CR, an LF or (when `stopAtZero`) a zero; count when none.
long long NextStop(const char16_t* data, long long i, long long count, bool stopAtZero) {
  while (i < count && data[i] != 13 && data[i] != 10 && (data[i] != 0 || !stopAtZero))
    ++i;
  return i;
}

// The same over bytes, eight at a time while none of the eight can stop the scan: the loader
// splits a file three times (the text check, the count of lines, the lines themselves).
long long NextStop(const char* data, long long i, long long count, bool stopAtZero) {
  constexpr uint64_t kOnes = 0x0101010101010101ull;
  constexpr uint64_t kHighs = 0x8080808080808080ull;
  auto hasZeroByte = [](uint64_t word) { return (word - kOnes) & ~word & kHighs; };
  for (; i + 8 <= count; i += 8) {
    uint64_t word;
    memcpy(&word, data + i, sizeof word);
    uint64_t stops = hasZeroByte(word ^ (kOnes * 13)) | hasZeroByte(word ^ (kOnes * 10));
    if (stopAtZero) stops |= hasZeroByte(word);
    if (stops) break;
  }
  while (i < count && data[i] != 13 && data[i] != 10 && (data[i] != 0 || !stopAtZero))
    ++i;
  return i;
}

// Splits at CR, LF, CR LF or LF CR; `visit(start, length)` for each line. Returns where the
// split stopped (the first zero unit when `stopAtZero`) and the longest line.
template <typename Unit, typename Visit>
long long SplitLines(const Unit* data, long long count, bool stopAtZero, long long* longest,
                     Visit visit) {
  long long start = 0;
  long long i = 0;
  *longest = 0;
  for (; i < count; ++i) {
    i = NextStop(data, i, count, stopAtZero);
    if (i == count) break;
    Unit unit = data[i];
    if (unit == 0 && stopAtZero) break;
    if (unit != 13 && unit != 10) continue;
    if (i - start > *longest) *longest = i - start;
    visit(start, i - start);
    if (i + 1 < count && (data[i + 1] == 13 || data[i + 1] == 10) && data[i + 1] != unit) ++i;
    start = i + 1;
  }
  if (i > start) {
    if (i - start > *longest) *longest = i - start;
    visit(start, i - start);
  }
  return i;
}

// 1 when the first line end is a bare LF or a CR without LF behind it.
template <typename Unit>
unsigned char FirstLineEndIsBare(const Unit* data, long long count) {
  for (long long i = 0; i < count; ++i) {
    if (data[i] == 10) return 1;
    if (data[i] == 13) return i + 1 < count && data[i + 1] == 10 ? 0 : 1;
  }
  return 0;
}

void ForgetEdits(EditDocument* document) {
  FreeUndoList(document->undoList);
  FreeUndoList(document->redoList);
  document->undoList = document->redoList = nullptr;
}

void AskTabSize(EditDocument* document) {
  int proposed = ReadInt(kConfigSection, "DefTabSize", 8);
  if (proposed < 2 || proposed > 16) proposed = 8;
  TabSizeAnswer answer = {proposed, true, true};
  if (!EditorAskTabSize(proposed, &answer)) return;
  if (answer.size < 2 || answer.size > 16) return;
  document->tabSize = static_cast<uint8_t>(answer.size);
  document->keepTabSize = answer.keep ? 1 : 0;
  if (answer.remember) WriteNums(kConfigSection, "DefTabSize", answer.size);
}

// What every successful load ends with.
void FinishLoad(EditorView* view) {
  EditDocument* document = view->document;
  if (!document->keepTabSize) document->tabSize = 0;
  MarkDocumentSaved(document);
  document->untitled = 0;
  view->caretColumn = view->caretLine = view->firstColumn = view->firstLine = 0;
  CollapseSelection(view);
  RestoreFileState(view);
  EditorDocumentLoaded(view);
  EditorCaretMoved(view);
  EditorRepaintAll(view);
}

// Makes room for every line of the data at once: growing the table line by line would copy it
// over and over, which a file of a million lines cannot afford.
// `lines` is the count when the caller has it already (the text check splits the same bytes),
// else negative.
template <typename Unit>
void ReserveLines(EditDocument* document, const Unit* data, long long count, long long lines) {
  long long longest = 0;
  if (lines < 0) {
    lines = 0;
    SplitLines(data, count, false, &longest, [&](long long, long long) { ++lines; });
  }
  if (lines > 0 && lines < 0x7FFFFFFF - document->lineCapacity)
    GrowLineTable(document, static_cast<int>(lines));
}

void SplitInto(EditDocument* document, const char* data, long long size, long long byteLines) {
  long long longest = 0;
  LineScratch scratch = {};
  switch (document->encoding) {
    case UTF16: {
      const auto* units = reinterpret_cast<const char16_t*>(data);
      long long count = size / 2;
      ReserveLines(document, units, count, -1);
      document->lfOnly = FirstLineEndIsBare(units, count);
      SplitLines(units, count, false, &longest, [&](long long start, long long length) {
        AppendExpanded(document, units + start, static_cast<int>(length), &scratch);
      });
      break;
    }
    default: {
      ReserveLines(document, data, size, byteLines);
      document->lfOnly = FirstLineEndIsBare(data, size);
      ConvertFunction convert = document->encoding == JOHAP  ? JohabLineToUtf16
                                : document->encoding == UTF8 ? Utf8LineToUtf16
                                                             : EucKrLineToUtf16;
      SplitLines(data, size, false, &longest, [&](long long start, long long length) {
        AppendConverted(document, data + start, static_cast<int>(length), convert, &scratch);
      });
      break;
    }
  }
  FreeScratch(&scratch);
}

// A file that is there but was not read. What the window holds stays (a reload that fails keeps
// the text and its undo), and an empty document does not stand for the file: Save asks for a
// name instead of writing nothing over it.
bool LoadFailed(EditDocument* document) {
  if (document->lineCount == 0) document->untitled = 1;
  return false;
}

}  // namespace

LineRecord* GetLine(const EditorView* view, int index) {
  if (!view->document) return nullptr;
  return DocumentLine(view->document, index < 0 ? view->caretLine : index);
}

int AppendUtf16Line(EditDocument* document, const char16_t* units, int count) {
  LineScratch scratch = {};
  int appended = AppendExpanded(document, units, count, &scratch);
  FreeScratch(&scratch);
  return appended;
}

int AppendEucKrLine(EditDocument* document, const char* bytes, int count) {
  LineScratch scratch = {};
  int appended = AppendConverted(document, bytes, count, EucKrLineToUtf16, &scratch);
  FreeScratch(&scratch);
  return appended;
}

int AppendJohabLine(EditDocument* document, const char* bytes, int count) {
  LineScratch scratch = {};
  int appended = AppendConverted(document, bytes, count, JohabLineToUtf16, &scratch);
  FreeScratch(&scratch);
  return appended;
}

int AppendUtf8Line(EditDocument* document, const char* bytes, int count) {
  LineScratch scratch = {};
  int appended = AppendConverted(document, bytes, count, Utf8LineToUtf16, &scratch);
  FreeScratch(&scratch);
  return appended;
}

namespace {

// The text check; `*byteLines` gets the lines of the bytes when no zero byte stops their split,
// else -1.
bool CheckText(const char* data, long long size, long long* byteLines) {
  long long longest = 0;
  long long lines = 0;
  bool whole =
      SplitLines(data, size, true, &longest, [&](long long, long long) { ++lines; }) == size;
  *byteLines = whole ? lines : -1;
  if (whole && longest <= kMaxTextLine) return true;
  auto ignore = [](long long, long long) {};
  // Perhaps UTF-16, whose bytes are full of zeros.
  const auto* units = reinterpret_cast<const char16_t*>(data);
  long long count = size / 2;
  return SplitLines(units, count, true, &longest, ignore) == count && longest <= kMaxTextLine;
}

}  // namespace

bool LooksLikeText(const char* data, long long size) {
  long long byteLines;
  return CheckText(data, size, &byteLines);
}

bool LoadDocument(EditorView* view) {
  EditDocument* document = view->document;
  if (!document) return false;
  if (IsPortSpecification(document->path)) return EditorOpenTerminal(document, document->path);

  const char* source = document->sourcePath[0] ? document->sourcePath : document->path;
  FileHandle file = FileOpen(source, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
  if (file == kInvalidFile) {
    unsigned error = FileLastError();
    if (error == kErrorFileNotFound || error == kErrorPathNotFound) {
      // The path names the file that Save will create.
      ClearLines(document);
      ForgetEdits(document);
      document->untitled = 0;
      document->fileStamp = kMissingFileStamp;
      return false;
    }
    HostMessagePath(2, kMbOk | kMbIconExclamation, document->path);
    return LoadFailed(document);
  }
  document->fileStamp = FileStamp(file);
  if (document->sourcePath[0]) {
    FileHandle named =
        FileOpen(document->path, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
    document->fileStamp = named == kInvalidFile ? kMissingFileStamp : FileStamp(named);
    FileClose(named);
  }
  uint64_t size = FileGetSize(file);
  if (size == ~0ull) {
    FileClose(file);
    HostMessagePath(4, kMbOk | kMbIconExclamation, document->path);
    return LoadFailed(document);
  }
  if (size < 1) {
    FileClose(file);
    ClearLines(document);
    ForgetEdits(document);
    document->hasBom = 0;
    FinishLoad(view);
    return true;
  }
  if (size >= static_cast<uint64_t>(kMaxFileSize)) {
    FileClose(file);
    HostMessagePath(132, kMbOk | kMbIconExclamation, document->path);
    return LoadFailed(document);
  }
  // Three zero bytes behind the data end it both as bytes and as UTF-16.
  auto* data = static_cast<char*>(AllocMem(static_cast<size_t>(size) + 3, kOwnerLoadBuffer));
  if (!data) {
    FileClose(file);
    return LoadFailed(document);
  }
  unsigned done = 0;
  bool read = FileRead(file, data, static_cast<unsigned>(size), &done) && done == size;
  FileClose(file);
  if (!read) {
    FreeMem(data);
    HostMessagePath(4, kMbOk | kMbIconExclamation, document->path);
    return LoadFailed(document);
  }
  data[size] = data[size + 1] = data[size + 2] = 0;
  long long length = static_cast<long long>(size);

  long long byteLines;
  if (!CheckText(data, length, &byteLines) &&
      HostMessagePath(131, kMbOkCancel | kMbIconQuestion | kMbDefButton2, document->path) !=
          kIdOk) {
    FreeMem(data);
    return LoadFailed(document);
  }

  ClearLines(document);
  ForgetEdits(document);

  int bom = 0;
  if (document->encoding == ENCODING_DETECT) {
    document->encoding = static_cast<uint8_t>(
        DetectTextEncoding(data, static_cast<int>(length), ReadUnrecognisedEncoding(), &bom));
  } else {
    // A preset encoding still does not take its own mark for text.
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    if (document->encoding == UTF16 && length >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) bom = 2;
    if (document->encoding == UTF8 && length >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB &&
        bytes[2] == 0xBF)
      bom = 3;
  }
  document->hasBom = bom > 0 ? 1 : 0;
  const char* text = data + bom;
  long long textLength = length - bom;

  if (document->tabSize == 0) {
    bool tabs = document->encoding == UTF16 ? HasTab(reinterpret_cast<const char16_t*>(text),
                                                     static_cast<int>(textLength / 2))
                                            : HasTab(text, static_cast<int>(textLength));
    if (tabs) AskTabSize(document);
  }

  g_splitLine = false;
  SplitInto(document, text, textLength, bom == 0 ? byteLines : -1);
  FreeMem(data);
  // Johab is read but written as EUC-KR.
  if (document->encoding == JOHAP) document->encoding = EUCKR;
  if (g_splitLine) HostMessagePath(160, kMbOk | kMbIconExclamation, document->path);
  FinishLoad(view);
  return true;
}
