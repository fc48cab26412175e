// Makefiles with arbitrary contents (one that includes itself among them) through the makefile
// preprocessor and the compiler-option scan.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "csource/makefile_pp.h"
#include "csource/parse_source.h"
#include "csource/preprocessor.h"
#include "csource/symbol_table.h"
#include "foundation/library.h"
#include "foundation/memory.h"
#include "foundation/text_builder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  static std::string folder = "/tmp/quill_fuzz_mak_" + std::to_string(getpid());
  static bool made = (mkdir(folder.c_str(), 0700), true);
  (void)made;
  // The input is both the makefile and the compiler's make file it may include.
  for (const char* name : {"/t.mak", "/CONSOLE.mak"}) {
    FILE* file = fopen((folder + name).c_str(), "wb");
    if (!file) return 0;
    fwrite(data, 1, size, file);
    fclose(file);
  }
  TextBuffer sink;
  InitText(&sink, 1);
  char* options = ReadCompilerOptions(folder.c_str(), (folder + "/t.mak").c_str(), &sink);
  if (options) {
    SymbolTable table = {0, 0, nullptr};
    char includes[kIncludePathsSize] = "";
    ScanCompilerOptions(&table, options, folder.c_str(), includes, sizeof includes);
    if (strlen(includes) >= sizeof includes) __builtin_trap();
    FreeSymbolTable(&table);
    FreeMem(options);
  }
  FreeText(&sink);
  return 0;
}
