// quill-tool commands of the support library: the formatter and the log's hex dump.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "foundation/diagnostics.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/settings.h"
#include "foundation/unicode.h"

namespace {

constexpr int kMaxFormatArgs = 16;

// Frees the wide strings made for the arguments of one format call.
struct WideArgs {
  char16_t* strings[kMaxFormatArgs] = {};
  int count = 0;
  ~WideArgs() {
    for (int i = 0; i < count; ++i)
      FreeMem(strings[i]);
  }
};

bool ParseFormatArg(const char* text, WideArgs& wide, uintptr_t* slot) {
  if (strncmp(text, "s:", 2) == 0) {
    *slot = reinterpret_cast<uintptr_t>(text + 2);
  } else if (strncmp(text, "c:", 2) == 0) {
    *slot = static_cast<unsigned char>(text[2]);
  } else if (strcmp(text, "null") == 0) {
    *slot = 0;
  } else if (strncmp(text, "w:", 2) == 0) {
    int units = Utf8ToUtf16(text + 2, -1, nullptr, 0);
    char16_t* string =
        static_cast<char16_t*>(AllocMem(static_cast<size_t>(units + 1) * 2, kOwnerTool));
    if (!string) return false;
    Utf8ToUtf16(text + 2, -1, string, units);
    string[units] = 0;
    wide.strings[wide.count++] = string;
    *slot = reinterpret_cast<uintptr_t>(string);
  } else {
    char* end;
    long long value = strtoll(text, &end, 0);
    if (end == text || *end) {
      // Large unsigned values (0xFFFFFFFFFFFFFFFF) are numbers too.
      value = static_cast<long long>(strtoull(text, &end, 0));
      if (end == text || *end) return false;
    }
    *slot = static_cast<uintptr_t>(value);
  }
  return true;
}

}  // namespace

int RunFormatCommand(int argc, char** argv) {
  int size = -1;
  int next = 0;
  if (argc >= 2 && strcmp(argv[0], "--size") == 0) {
    size = atoi(argv[1]);
    if (size < 0) return kExitUsage;
    next = 2;
  }
  if (next >= argc || argc - next - 1 > kMaxFormatArgs) return kExitUsage;
  const char* format = argv[next++];
  uintptr_t slots[kMaxFormatArgs] = {};
  WideArgs wide;
  for (int i = 0; next < argc; ++i, ++next) {
    if (!ParseFormatArg(argv[next], wide, &slots[i])) {
      fprintf(stderr, "quill-tool: not an argument: %s\n", argv[next]);
      return kExitUsage;
    }
  }
  // Every slot is passed; conversions take what they need, as in the program.
#define QUILL_SLOTS                                                                         \
  slots[0], slots[1], slots[2], slots[3], slots[4], slots[5], slots[6], slots[7], slots[8], \
      slots[9], slots[10], slots[11], slots[12], slots[13], slots[14], slots[15]
  int needed = FormatStr(nullptr, 0, format, QUILL_SLOTS);
  int bufferSize = size >= 0 ? size : needed;
  char* text = static_cast<char*>(AllocMem(static_cast<size_t>(bufferSize) + 1, kOwnerTool));
  if (!text) return kExitFailed;
  int result = FormatStr(bufferSize ? text : nullptr, bufferSize, format, QUILL_SLOTS);
#undef QUILL_SLOTS
  if (bufferSize == 0) text[0] = '\0';
  fputs(text, stdout);
  fputc('\n', stdout);
  if (size >= 0) printf("%d\n", result);
  FreeMem(text);
  return kExitOk;
}

int RunHexDumpCommand(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  FILE* file = fopen(argv[0], "rb");
  if (!file) {
    fprintf(stderr, "quill-tool: cannot open %s\n", argv[0]);
    return kExitFailed;
  }
  unsigned char bytes[16];
  unsigned offset = 0;
  size_t count;
  while ((count = fread(bytes, 1, sizeof bytes, file)) > 0) {
    char line[80];
    fwrite(line, 1,
           static_cast<size_t>(FormatDumpLine(bytes, static_cast<int>(count), offset, line)),
           stdout);
    offset += static_cast<unsigned>(count);
  }
  bool failed = ferror(file);
  fclose(file);
  return failed ? kExitFailed : kExitOk;
}

// ini get FILE SECTION KEY [DEFAULT] | ini int FILE SECTION KEY DEFAULT | ini set FILE SECTION KEY
// VALUE: the settings store's raw reading and writing, on any profile file.
int RunIniCommand(int argc, char** argv) {
  if (argc < 4 || !SetSettingsPath(argv[1])) return kExitUsage;
  const char* verb = argv[0];
  const char* section = argv[2];
  const char* key = argv[3];
  if (strcmp(verb, "get") == 0 && argc <= 5) {
    char value[4096];
    ReadStrDef(section, key, value, sizeof value, argc == 5 ? argv[4] : "");
    printf("%s\n", value);
    return kExitOk;
  }
  if (strcmp(verb, "int") == 0 && argc == 5) {
    printf("%d\n", ReadInt(section, key, atoi(argv[4])));
    return kExitOk;
  }
  if (strcmp(verb, "set") == 0 && argc == 5) {
    if (WriteStr(section, key, argv[4])) return kExitOk;
    fprintf(stderr, "quill-tool: cannot write %s\n", argv[1]);
    return kExitFailed;
  }
  return kExitUsage;
}

// lang FILE KEY: a language file's entry for a number or a name, as the program looks it up.
int RunLangCommand(int argc, char** argv) {
  if (argc != 2) return kExitUsage;
  LoadLanguageFile(argv[0]);
  const char* key = argv[1];
  bool number = *key && strspn(key, "0123456789") == strlen(key);
  printf("%s\n", number ? LanguageText(atoi(key)) : LanguageTextByName(key));
  UnloadLanguage();
  return kExitOk;
}

// str ID [LANGUAGE-FILE]: the text the program shows for string ID.
int RunStrCommand(int argc, char** argv) {
  if (argc < 1 || argc > 2) return kExitUsage;
  char* end;
  long id = strtol(argv[0], &end, 10);
  if (*end || end == argv[0]) return kExitUsage;
  if (argc == 2) LoadLanguageFile(argv[1]);
  printf("%s\n", GetStr(static_cast<int>(id)));
  UnloadLanguage();
  return kExitOk;
}
