// C sources with arbitrary contents through the preprocessor and the declaration scan: no crash,
// no hang, every block given back, and the table stays sorted.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "csource/parse_source.h"
#include "csource/show_definition.h"
#include "csource/symbol_table.h"
#include "foundation/library.h"
#include "foundation/text_builder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  static std::string path = "/tmp/quill_fuzz_pp_" + std::to_string(getpid()) + ".c";
  FILE* file = fopen(path.c_str(), "wb");
  if (!file) return 0;
  fwrite(data, 1, size, file);
  fclose(file);

  DefinitionCache cache;
  InitDefinitionCache(&cache);
  TextBuffer result;
  InitText(&result, 1);
  // The last line names the word to show.
  std::string word = "x";
  const char* nl = static_cast<const char*>(memchr(data, '\n', size));
  if (nl)
    word.assign(reinterpret_cast<const char*>(data),
                static_cast<size_t>(nl - reinterpret_cast<const char*>(data)) % 64);
  ShowDefinition(&cache, path.c_str(), word.c_str(), &result, nullptr);
  const SymbolTable& table = cache.table;
  for (int i = 1; i < table.count; ++i) {
    const char* a = table.records[i - 1]->name;
    if (CompareSymbolName(a, static_cast<int>(strlen(a)), table.records[i]->name) >= 0)
      __builtin_trap();
  }
  FreeText(&result);
  FreeDefinitionCache(&cache);
  return 0;
}
