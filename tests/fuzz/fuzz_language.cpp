// Language-file lines with arbitrary bytes: decoding stays inside the line and never grows it, and
// a whole file of them loads and answers look-ups.
#include <unistd.h>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "foundation/language.h"
#include "foundation/library.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  std::string text(reinterpret_cast<const char*>(data), size);
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, std::min<size_t>(end - start, 4095));
    line = line.c_str();
    std::string buffer = line + '\0' + std::string(7, '#');
    if (DecodeLanguageLine(&buffer[0]) && strlen(buffer.c_str()) > line.size()) __builtin_trap();
    if (buffer.compare(line.size() + 1, 7, "#######") != 0) __builtin_trap();
    start = end + 1;
  }
  static std::string path = "/tmp/quill_fuzz_language_" + std::to_string(getpid()) + ".lng";
  if (FILE* file = fopen(path.c_str(), "wb")) {
    fwrite(data, 1, size, file);
    fclose(file);
    LoadLanguageFile(path.c_str());
    LanguageText(1);
    LanguageTextByName("Dlg");
    GetStr(80);
    UnloadLanguage();
  }
  return 0;
}
