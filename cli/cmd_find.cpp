// quill-tool find: a search or a replacement in a file opened as the editor opens it, run from the
// top (from the end with --up) as the find and replace dialogs run it with "from the top"; a
// replaced file is saved as the editor saves it.
#include <cstdio>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_document.h"
#include "editor/document_io.h"
#include "editor/find_replace.h"
#include "editor/search_request.h"
#include "foundation/unicode.h"

namespace {

struct FindOptions {
  bool caseSensitive = false;
  bool wholeWord = false;
  bool all = false;
  bool up = false;
  const char* replacement = nullptr;
  const char* file = nullptr;
  const char* pattern = nullptr;
};

bool ParseOptions(int argc, char** argv, FindOptions* options) {
  int i = 0;
  for (; i < argc && strncmp(argv[i], "--", 2) == 0; ++i) {
    if (strcmp(argv[i], "--case") == 0)
      options->caseSensitive = true;
    else if (strcmp(argv[i], "--word") == 0)
      options->wholeWord = true;
    else if (strcmp(argv[i], "--all") == 0)
      options->all = true;
    else if (strcmp(argv[i], "--up") == 0)
      options->up = true;
    else if (strcmp(argv[i], "--replace") == 0 && i + 1 < argc)
      options->replacement = argv[++i];
    else
      return false;
  }
  if (argc - i != 2 || (options->all && !options->replacement) ||
      (options->up && options->replacement))
    return false;
  options->file = argv[i];
  options->pattern = argv[i + 1];
  return true;
}

// A dialog field: at most 259 units, one line. False for text the field could not hold.
bool SetField(char16_t* field, const char* text) {
  char16_t units[kSearchTextUnits * 4];
  int length = Utf8ToUtf16(text, static_cast<int>(strlen(text)), units, kSearchTextUnits * 4);
  if (length < 0) return false;
  for (int i = 0; i < length; ++i)
    if (units[i] == 10 || units[i] == 13) return false;
  SetSearchText(field, units, length);
  return true;
}

}  // namespace

int RunFindCommand(int argc, char** argv) {
  FindOptions options;
  if (!ParseOptions(argc, argv, &options) || !options.pattern[0]) return kExitUsage;
  SearchRequest request = {};
  request.direction = options.up ? 0 : 1;  // upward runs from the end of the text
  request.mode = options.replacement ? 1 : 0;
  request.caseSensitive = options.caseSensitive;
  request.wholeWord = options.wholeWord;
  request.origin = 1;
  request.replaceAll = options.all;
  if (!SetField(request.findText, options.pattern) ||
      (options.replacement && !SetField(request.replaceText, options.replacement))) {
    fprintf(stderr, "quill-tool: find: a text must be one line\n");
    return kExitUsage;
  }
  ToolDocument tool;
  int status = kExitFailed;
  if (OpenToolDocument(&tool, "find", options.file, 0, 0)) {
    EditorView* view = &tool.view;
    if (!options.replacement) {
      if (FindNext(view, &request, false)) {
        printf("Col %d, Ln %d\n", view->caretColumn + 1, view->caretLine + 1);
        status = kExitOk;
      }
    } else {
      int replaced = ReplaceAll(view, &request);
      if (replaced > 0) {
        if (SaveDocument(view, false)) {
          printf("%d\n", replaced);
          status = kExitOk;
        } else {
          fprintf(stderr, "quill-tool: find: cannot write %s\n", options.file);
        }
      }
    }
  }
  CloseToolDocument(&tool);
  return status;
}
