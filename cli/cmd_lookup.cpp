// quill-tool lookup: the text the show-definition command puts into the parser window for a word
// at a caret in a source file: the preprocessor's messages, then what the word stands for.
#include <cstdio>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_support.h"
#include "csource/csource_owners.h"
#include "csource/parse_source.h"
#include "csource/preprocessor.h"
#include "csource/show_definition.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/path.h"
#include "foundation/text_builder.h"
#include "project/project.h"
#include "project/project_file.h"
#include "project/project_host.h"

namespace {

constexpr int kMaxDefines = 256;

}  // namespace

int RunLookupCommand(int argc, char** argv) {
  char includes[kIncludePathsSize] = "";
  const char* defines[kMaxDefines];
  int defineCount = 0;
  const char* projectPath = nullptr;
  const char* names[2] = {};
  int count = 0;
  for (int i = 0; i < argc; ++i) {
    const char* arg = argv[i];
    if (strcmp(arg, "-I") == 0 || strcmp(arg, "-D") == 0 || strcmp(arg, "--project") == 0) {
      if (i + 1 >= argc) return kExitUsage;
      const char* value = argv[++i];
      if (arg[1] == 'I') {
        size_t used = strlen(includes);
        if (used + strlen(value) + 2 > sizeof includes) {
          fprintf(stderr, "quill-tool: lookup: too many include folders\n");
          return kExitFailed;
        }
        if (used) includes[used++] = ';';
        strcpy(includes + used, value);
      } else if (arg[1] == 'D') {
        if (defineCount == kMaxDefines || !*value || *value == '=') return kExitUsage;
        defines[defineCount++] = value;
      } else {
        projectPath = value;
      }
    } else if (arg[0] == '-' && arg[1]) {
      return kExitUsage;
    } else {
      if (count == 2) return kExitUsage;
      names[count++] = arg;
    }
  }
  if (count != 2) return kExitUsage;

  char source[kPathSize];
  if (!AbsoluteToolPath(names[0], source, sizeof source)) {
    fprintf(stderr, "quill-tool: lookup: %s: path too long\n", names[0]);
    return kExitFailed;
  }
  if (!IsPlainFile(source)) {
    fprintf(stderr, "quill-tool: lookup: %s: no such file\n", names[0]);
    return kExitFailed;
  }

  UiHost ui{PrintToolMessage, nullptr};
  const UiHost* previousUi = SetUiHost(&ui);
  const ProjectHost* previousHost = SetProjectHost(&kToolProjectHost);
  int status = kExitFailed;
  Project project{};
  bool ready = true;
  if (projectPath) {
    char path[kPathSize];
    ready = AbsoluteToolPath(projectPath, path, sizeof path) && LoadProject(&project, path);
    if (!ready) fprintf(stderr, "quill-tool: lookup: %s: not a project\n", projectPath);
  }
  if (ready) {
    ParseOptions options = {projectPath ? &project : nullptr, includes, defines, defineCount};
    DefinitionCache cache;
    InitDefinitionCache(&cache);
    TextBuffer result;
    InitText(&result, kOwnerResultText);
    if (ShowDefinition(&cache, source, names[1], &result, &options)) {
      fwrite(TextOf(&result), 1, result.length, stdout);
      status = kExitOk;
    } else {
      fprintf(stderr, "quill-tool: lookup: out of memory\n");
    }
    FreeText(&result);
    FreeDefinitionCache(&cache);
  }
  FreeProjectTargets(&project);
  SetProjectHost(previousHost);
  SetUiHost(previousUi);
  return status;
}
