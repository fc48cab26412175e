// Binary to source with fuzzed options, element format, skip count and file bytes. A format the
// converter accepts must never make the formatter read the element as anything but a number, and
// an accepted conversion must finish with the closing line its language asks for.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "foundation/library.h"
#include "tools/bin2src.h"

namespace {

void Ignore(void*, int, const char*) {}
bool Yes(void*, int, const char*) {
  return true;
}

// Takes text up to the next zero byte (or the end) off the front of the input.
std::string TakeText(const uint8_t** data, size_t* size) {
  const uint8_t* end = static_cast<const uint8_t*>(memchr(*data, 0, *size));
  size_t length = end ? static_cast<size_t>(end - *data) : *size;
  std::string text(reinterpret_cast<const char*>(*data), length);
  size_t used = end ? length + 1 : length;
  *data += used;
  *size -= used;
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  static const std::string base = "/tmp/quill_fuzz_b2s_" + std::to_string(getpid());
  static const std::string input = base + ".bin";
  static const std::string output = base + ".out";

  Bin2SrcOptions options;
  SetDefaultBin2SrcOptions(&options);
  options.type = data[0] % 3;
  options.dataExp = (data[0] / 3) % 3;
  options.dataSize = (data[0] / 9) % 3;
  options.endian = (data[0] / 27) % 2;
  options.lineLen = data[1] % 40;
  data += 2, size -= 2;
  std::string format = TakeText(&data, &size).substr(0, kBin2SrcFormatSize - 1);
  std::string skip = TakeText(&data, &size).substr(0, kBin2SrcSkipSize - 1);
  strcpy(options.dataForm, format.c_str());
  strcpy(options.skipBytes, skip.c_str());
  snprintf(options.binFile, sizeof options.binFile, "%s", input.c_str());
  std::ofstream(input, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  RefreshBin2SrcFormat(&options);
  bool usable = IsUsableBin2SrcFormat(options.dataForm);
  bool converted = ConvertBin2Src(options, output.c_str(), {nullptr, Ignore, Yes});
  if (converted != usable) __builtin_trap();
  if (converted && options.type != kBin2SrcAsm) {
    std::ifstream file(output, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const char kClosing[] = "    };\r\n";
    if (text.size() < sizeof kClosing - 1 ||
        text.compare(text.size() - (sizeof kClosing - 1), std::string::npos, kClosing) != 0)
      __builtin_trap();
  }
  return 0;
}
