// quill-tool style: a C source converted to a coding style, as "open with a coding-style
// conversion" shows it.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/text_builder.h"
#include "tools/c_style.h"

int RunStyleCommand(int argc, char** argv) {
  CStyle style = {false, 4, false, true, true, false};
  const char* file = nullptr;
  for (int i = 0; i < argc; ++i) {
    const char* arg = argv[i];
    if (strcmp(arg, "--brace-next-line") == 0) {
      style.braceNextLine = true;
    } else if (strcmp(arg, "--brace-same-line") == 0) {
      style.braceNextLine = false;
    } else if (strcmp(arg, "--tabs") == 0) {
      style.useTabs = true;
    } else if (strcmp(arg, "--indent") == 0 && i + 1 < argc) {
      char* end;
      long width = strtol(argv[++i], &end, 10);
      if (*end || width < 1 || width > 16) return kExitUsage;
      style.indentWidth = static_cast<int>(width);
    } else if (strcmp(arg, "--no-keyword-blank") == 0) {
      style.blankAfterKeyword = false;
    } else if (strcmp(arg, "--no-operator-blanks") == 0) {
      style.blankAroundBinary = false;
    } else if (strcmp(arg, "--one-statement") == 0) {
      style.oneStatementPerLine = true;
    } else if (arg[0] == '-' && arg[1] == '-') {
      return kExitUsage;
    } else {
      if (file) return kExitUsage;
      file = arg;
    }
  }
  if (!file) return kExitUsage;
  size_t length = 0;
  char* text = ReadWholeFile(file, &length, kOwnerTool);
  if (!text) {
    fprintf(stderr, "quill-tool: style: %s: cannot be read\n", file);
    return kExitFailed;
  }
  TextBuffer out;
  InitText(&out, kOwnerTool);
  bool ok = ConvertCStyle(text, length, style, &out);
  FreeMem(text);
  if (ok) fwrite(TextOf(&out), 1, out.length, stdout);
  FreeText(&out);
  if (!ok) fprintf(stderr, "quill-tool: style: %s: not enough memory\n", file);
  return ok ? kExitOk : kExitFailed;
}
