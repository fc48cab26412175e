// The conversion of binary to source and the OK step that leads to it.
#include "tools/bin2src.h"

#include <cstring>

#include "calc/math_number.h"
#include "foundation/diagnostics.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "foundation/text_builder.h"
#include "tools/bin2src_messages.h"

namespace {

constexpr int kOwnerReadBuffer = 7000;
constexpr int kOwnerLineBuffer = 7001;
// A line longer than this is written in pieces; the file is the same.
constexpr size_t kLineFlushSize = 1 << 16;
constexpr int kMessageSize = kPathSize + 128;

void ShowError(const Bin2SrcHost& host, int id, const char* argument) {
  char text[kMessageSize];
  FormatStr(text, sizeof text, Bin2SrcMessage(id), argument);
  host.showError(host.context, id, text);
}

// The output file and the text of the line being built.
struct Output {
  const Bin2SrcOptions& options;
  const char* path;
  const Bin2SrcHost& host;
  FileHandle file = kInvalidFile;
  TextBuffer line;  // the lines built since the last write
  bool failed = false;

  Output(const Bin2SrcOptions& o, const char* p, const Bin2SrcHost& h)
      : options(o), path(p), host(h) {
    InitText(&line, kOwnerLineBuffer);
  }
  ~Output() {
    FreeText(&line);
    if (file != kInvalidFile) FileClose(file);
  }

  void Append(const char* piece) {
    if (!AppendText(&line, piece)) failed = true;
  }

  void AppendElement(const char* format, uint32_t value) {
#define QUILL_ELEMENT value, value, value, value
    if (!AppendFormat(&line, format, QUILL_ELEMENT)) failed = true;
#undef QUILL_ELEMENT
  }

  // Writes what was built; a failed write shows its message once and ends the conversion.
  bool Flush() {
    if (failed) return false;
    unsigned done = 0;
    size_t length = line.length;
    if (!FileWrite(file, TextOf(&line), static_cast<unsigned>(length), &done)) {
      ShowError(host, kMsgFileNotWritten, path);
      failed = true;
    } else if (done < length) {
      // The drive letter is taken from the binary file's path; the program has always done so.
      char message[kMessageSize];
      FormatStr(message, sizeof message, Bin2SrcMessage(kMsgDiskFull), options.binFile[0]);
      host.showError(host.context, kMsgDiskFull, message);
      failed = true;
    }
    TruncateText(&line, 0);
    return !failed;
  }
};

// The file name without folder, cut at its first '.'.
void ArrayName(const char* path, char* name, size_t size) {
  const char* start = path;
  for (const char* p = path; *p; ++p) {
    if (*p == '/' || *p == '\\') start = p + 1;
  }
  size_t length = strcspn(start, ".");
  if (length > size - 1) length = size - 1;
  memcpy(name, start, length);
  name[length] = '\0';
}

void AppendHeader(Output& out) {
  const Bin2SrcOptions& options = out.options;
  static const char* const kCTypes[2][3] = {{"BYTE", "WORD", "DWORD"}, {"char", "short", "int"}};
  static const char* const kJavaTypes[3] = {"byte", "short", "int"};
  char name[kPathSize];
  ArrayName(options.binFile, name, sizeof name);
  char line[kPathSize + 64];
  if (options.type == kBin2SrcC) {
    FormatStr(line, sizeof line, "static CONST %s %s[]=\r\n    {\r\n",
              kCTypes[options.dataExp == kBin2SrcSigned][options.dataSize], name);
  } else {
    FormatStr(line, sizeof line, "static final %s %s[]=\r\n    {\r\n", kJavaTypes[options.dataSize],
              name);
  }
  out.Append(line);
}

// One element at `bytes`: little-endian or swapped, sign- or zero-extended.
uint32_t ElementValue(const unsigned char* bytes, int size, bool swap, bool isSigned) {
  uint32_t value = 0;
  for (int i = 0; i < size; ++i) {
    int shift = 8 * (swap ? size - 1 - i : i);
    value |= static_cast<uint32_t>(bytes[i]) << shift;
  }
  if (isSigned && size < 4) {
    uint32_t sign = 1u << (8 * size - 1);
    value = (value ^ sign) - sign;
  }
  return value;
}

const char* JavaCast(uint32_t value, int size) {
  if (size == 1) return value > 0x7F ? "(byte)" : "";
  if (size == 2) return value > 0x7FFF ? "(short)" : "";
  return value >= 0x80000000u ? "(int)" : "";
}

void AppendLine(Output& out, const unsigned char* chunk, unsigned count) {
  const Bin2SrcOptions& options = out.options;
  static const char* const kAsmPrefixes[3] = {"\tdb\t", "\tdw\t", "\tdd\t"};
  bool assembler = options.type == kBin2SrcAsm;
  out.Append(assembler ? kAsmPrefixes[options.dataSize] : "    ");
  int size = Bin2SrcElementBytes(options.dataSize);
  bool swap = options.endian == 1 && size > 1;
  bool isSigned = options.dataExp == kBin2SrcSigned;
  for (unsigned offset = 0; offset < count && !out.failed; offset += static_cast<unsigned>(size)) {
    uint32_t value = ElementValue(chunk + offset, size, swap, isSigned);
    if (options.type == kBin2SrcJava && !isSigned) out.Append(JavaCast(value, size));
    out.AppendElement(options.dataForm, value);
    bool last = offset + static_cast<unsigned>(size) >= count;
    if (!(assembler && last)) out.Append(",");
    if (out.line.length >= kLineFlushSize) out.Flush();
  }
  out.Append("\r\n");
}

bool HasValidIndexes(const Bin2SrcOptions& options) {
  Bin2SrcOptions normal = options;
  NormaliseBin2SrcOptions(&normal);
  return normal.type == options.type && normal.dataExp == options.dataExp &&
         normal.dataSize == options.dataSize && normal.endian == options.endian;
}

// Copies the chunks of `input` into `out`, one line each.
bool ConvertChunks(FileHandle input, Output& out) {
  const Bin2SrcOptions& options = out.options;
  // Room for the bytes an element reads past a line length that is not a multiple of its size.
  size_t bufferSize = options.lineLen + 4;
  unsigned char* chunk = static_cast<unsigned char*>(AllocMem(bufferSize, kOwnerReadBuffer));
  if (!chunk) return false;
  // The odd last element takes its missing bytes from the previous chunk; before the first chunk
  // there is none.
  memset(chunk, 0, bufferSize);
  bool ok = true;
  for (;;) {
    unsigned count = 0;
    if (!FileRead(input, chunk, options.lineLen, &count)) {
      ShowError(out.host, kMsgFileNotRead, options.binFile);
      ok = false;
      break;
    }
    if (count == 0) break;
    AppendLine(out, chunk, count);
    if (!out.Flush()) {
      ok = false;
      break;
    }
  }
  FreeMem(chunk);
  return ok;
}

}  // namespace

bool ConvertBin2Src(const Bin2SrcOptions& options, const char* outputPath,
                    const Bin2SrcHost& host) {
  if (options.lineLen > kBin2SrcMaxLineLen) {
    // The user typed it: told, not only logged.
    char text[kMessageSize];
    FormatStr(text, sizeof text, Bin2SrcMessage(kMsgLineTooLong), kBin2SrcMaxLineLen);
    host.showError(host.context, kMsgLineTooLong, text);
    return false;
  }
  if (!HasValidIndexes(options) || !IsUsableBin2SrcFormat(options.dataForm)) {
    DebugLog("ConvertBin2Src(): bad options\r\n");
    return false;
  }
  FileHandle input = FileOpen(options.binFile, kFileRead, kShareRead, kOpenExisting, 0);
  if (input == kInvalidFile) {
    ShowError(host, kMsgFileNotOpened, options.binFile);
    return false;
  }
  int32_t skip = 0;
  ParseMathNumber(options.skipBytes, &skip);
  // A position the system refuses (a negative one) leaves the file at its start.
  FileSeek(input, skip, kSeekBegin, nullptr);

  bool ok = false;
  Output out{options, outputPath, host};
  char question[kMessageSize];
  FormatStr(question, sizeof question, Bin2SrcMessage(kMsgOverwrite), outputPath);
  if (FileGetAttributes(outputPath) != kNoAttributes &&
      !host.askYesNo(host.context, kMsgOverwrite, question)) {
    // The user said no: nothing more to say.
  } else if ((out.file = FileOpen(outputPath, kFileWrite, 0, kCreateAlways, kAttrNormal)) ==
             kInvalidFile) {
    ShowError(host, kMsgFileNotCreated, outputPath);
  } else {
    bool array = options.type != kBin2SrcAsm;
    if (array) AppendHeader(out);
    ok = out.Flush() && ConvertChunks(input, out);
    if (ok && array) {
      out.Append("    };\r\n");
      ok = out.Flush();
    }
  }
  FileClose(input);
  return ok;
}

Bin2SrcResult RunBin2Src(Bin2SrcOptions* options, const Bin2SrcHost& host) {
  if (!options->binFile[0]) return Bin2SrcResult::kNoBinaryFile;
  RefreshBin2SrcFormat(options);
  if (!IsUsableBin2SrcFormat(options->dataForm)) {
    host.showError(host.context, kMsgNeedDataFormat, Bin2SrcMessage(kMsgNeedDataFormat));
    return Bin2SrcResult::kNoFormat;
  }
  if (!options->saveFile[0]) strcpy(options->saveFile, options->binFile);
  if (!SetBin2SrcExtension(options->saveFile, kPathSize, options->type)) {
    ShowError(host, kMsgFileNotCreated, options->saveFile);
    return Bin2SrcResult::kFailed;
  }
  return ConvertBin2Src(*options, options->saveFile, host) ? Bin2SrcResult::kDone
                                                           : Bin2SrcResult::kFailed;
}
