// The options' defaults and the texts that depend on them: element formats, extensions.
#include <cstring>

#include "tools/bin2src.h"

namespace {

// Each element is passed in this many slots, so that a format with a few conversions shows the
// same number in each.
constexpr int kElementSlots = 4;

bool IsIndex(int value, int count) {
  return value >= 0 && value < count;
}

// Skips the flags, width, scale and size of one conversion as the formatter reads them; false
// when the size makes it a 64-bit conversion.
bool SkipConversionSpec(const char** cursor) {
  const char*& p = *cursor;
  bool wide = false;
  for (;;) {
    if (strchr("-,#0123456789.", *p) && *p) {
      ++p;
    } else if (p[0] == 'I' && p[1] == '6' && p[2] == '4') {
      wide = true, p += 3;
    } else if (p[0] == 'l' && p[1] == 'l') {
      wide = true, p += 2;
    } else {
      return !wide;
    }
  }
}

}  // namespace

void SetDefaultBin2SrcOptions(Bin2SrcOptions* options) {
  memset(options, 0, sizeof *options);
  options->type = kBin2SrcC;
  options->dataExp = kBin2SrcHex;
  options->lineLen = 16;
  options->openEditor = 1;
  strcpy(options->skipBytes, "0");
  RefreshBin2SrcFormat(options);
}

void NormaliseBin2SrcOptions(Bin2SrcOptions* options) {
  if (!IsIndex(options->type, 3)) options->type = kBin2SrcC;
  if (!IsIndex(options->dataExp, 3)) options->dataExp = kBin2SrcHex;
  if (!IsIndex(options->dataSize, 3)) options->dataSize = 0;
  if (!IsIndex(options->endian, 2)) options->endian = 0;
}

const char* DefaultBin2SrcFormat(int type, int dataExp, int dataSize) {
  if (dataExp == kBin2SrcSigned) return "%d";
  if (dataExp == kBin2SrcUnsigned) return "%u";
  static const char* const kHex[2][3] = {{"0x%02X", "0x%04X", "0x%08X"},
                                         {"%02Xh", "%04Xh", "%08Xh"}};
  return kHex[type == kBin2SrcAsm][IsIndex(dataSize, 3) ? dataSize : 0];
}

void RefreshBin2SrcFormat(Bin2SrcOptions* options) {
  if (options->dataForm[0]) return;
  const char* format = DefaultBin2SrcFormat(options->type, options->dataExp, options->dataSize);
  strcpy(options->dataForm, format);
}

bool IsUsableBin2SrcFormat(const char* format) {
  if (!*format) return false;
  int slots = 0;
  const char* p = format;
  while (*p) {
    if (*p++ != '%') continue;
    if (*p == '%') {
      ++p;
      continue;
    }
    const char* conversion = p;
    if (!SkipConversionSpec(&conversion)) return false;
    char c = *conversion;
    if (c == '\0') break;
    if (c == 's' || (c == 'w' && conversion[1] == 's') ||
        (c == 'U' && conversion[1] == '8' && conversion[2] == 's'))
      return false;
    if (++slots > kElementSlots) return false;
    // A known conversion ends here; anything else is printed and read again as ordinary text.
    if (strchr("cduxX", c)) p = conversion + 1;
  }
  return true;
}

const char* Bin2SrcExtension(int type) {
  return type == kBin2SrcAsm ? "asm" : type == kBin2SrcJava ? "java" : "c";
}

int Bin2SrcElementBytes(int dataSize) {
  return dataSize == 2 ? 4 : dataSize == 1 ? 2 : 1;
}

bool SetBin2SrcExtension(char* path, int size, int type) {
  size_t length = strlen(path);
  size_t name = length;
  while (name > 0 && path[name - 1] != '/' && path[name - 1] != '\\')
    --name;
  const char* dot = strrchr(path + name, '.');
  size_t stem = dot ? static_cast<size_t>(dot - path) : length;
  const char* extension = Bin2SrcExtension(type);
  if (stem + 1 + strlen(extension) + 1 > static_cast<size_t>(size)) return false;
  path[stem] = '.';
  strcpy(path + stem + 1, extension);
  return true;
}
