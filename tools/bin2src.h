// Binary to source: a binary file's bytes as an initialised array for C, assembler or Java.
#pragma once
#include <cstdint>

#include "foundation/path.h"

constexpr int kBin2SrcFormatSize = 80;
constexpr int kBin2SrcSkipSize = 40;
// A chunk of the file is held whole (the odd last element takes bytes of the previous one), so a
// line length beyond this is refused rather than allocated.
constexpr unsigned kBin2SrcMaxLineLen = 1u << 20;

enum : int { kBin2SrcC = 0, kBin2SrcAsm = 1, kBin2SrcJava = 2 };
enum : int { kBin2SrcHex = 0, kBin2SrcSigned = 1, kBin2SrcUnsigned = 2 };

// The dialog's options, as the settings keep them (radio groups as indexes).
struct Bin2SrcOptions {
  char binFile[kPathSize];            // Bin2SrcBinFile
  char saveFile[kPathSize];           // Bin2SrcToSaveFile
  int type;                           // Bin2SrcType: language
  int dataExp;                        // Bin2SrcDataExp: number form
  int dataSize;                       // Bin2SrcDataSize: 0, 1, 2 for 1, 2, 4 bytes
  int endian;                         // Bin2SrcEndian: 1 swaps the bytes of an element
  char dataForm[kBin2SrcFormatSize];  // Bin2SrcDataForm: format of one element
  char skipBytes[kBin2SrcSkipSize];   // Bin2SrcSkipBytes: a C integer
  unsigned lineLen;                   // Bin2Src1LineLen: bytes per output line
  int openEditor;                     // Bin2SrcOpenEditor
};

void SetDefaultBin2SrcOptions(Bin2SrcOptions* options);
// Radio indexes outside their groups go back to their defaults.
void NormaliseBin2SrcOptions(Bin2SrcOptions* options);

// The element format that the dialog proposes for a language, number form and size index.
const char* DefaultBin2SrcFormat(int type, int dataExp, int dataSize);
// Puts the default format in when the format is empty.
void RefreshBin2SrcFormat(Bin2SrcOptions* options);
// True when `format` is not empty and each of its conversions takes one 32-bit number (a string
// conversion would read the element as a pointer).
bool IsUsableBin2SrcFormat(const char* format);
// "c", "asm", "java".
const char* Bin2SrcExtension(int type);
int Bin2SrcElementBytes(int dataSize);
// `path` with its extension (or a new one) set to the language's; false when it does not fit.
bool SetBin2SrcExtension(char* path, int size, int type);

// What the conversion asks of its window: error messages and the overwrite question.
struct Bin2SrcHost {
  void* context;
  void (*showError)(void* context, int messageId, const char* text);
  // True only for the answer yes.
  bool (*askYesNo)(void* context, int messageId, const char* text);
};

// Writes `outputPath` from the options' binary file; false after the message (or the answer no).
bool ConvertBin2Src(const Bin2SrcOptions& options, const char* outputPath, const Bin2SrcHost& host);

enum class Bin2SrcResult { kNoBinaryFile, kNoFormat, kFailed, kDone };
// The dialog's OK after the options are read and saved: the format (message 125 when unusable),
// the output path (the binary path when empty, with the language's extension; written back into
// the options) and the conversion.
Bin2SrcResult RunBin2Src(Bin2SrcOptions* options, const Bin2SrcHost& host);
