// quill-tool make: a target's makefile and "C.BAT", written as Build, Rebuild or Build and Run
// would write them, without starting the batch file.
#include <cstdio>
#include <cstring>

#ifdef _WIN32
#include <direct.h>
#else
#include <unistd.h>
#endif

#include "cli/tool.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/unicode.h"
#include "project/make_target.h"
#include "project/project.h"
#include "project/project_file.h"
#include "project/project_host.h"

namespace {

// The program's messages go to stderr; questions get the cancelling answer.
int PrintMessage(void*, const char* text, unsigned flags) {
  fprintf(stderr, "quill-tool: %s\n", text);
  unsigned buttons = flags & 0xF;
  return buttons == kMbOk ? kIdOk : buttons == kMbYesNo ? kIdNo : kIdCancel;
}

bool NoEditors(void*) {
  return false;
}
void NothingToSave(void*) {}
// The batch file is left for the user to run.
bool DoNotStart(void*, const char*, int) {
  return true;
}
void NoFileList(void*) {}

// The project path made absolute, with '/' separators: the project's folders come from it.
bool AbsolutePath(const char* path, char* target, int size) {
  bool absolute = path[0] == '/' || path[0] == '\\' || (path[0] && path[1] == ':');
  char current[kProjectPathSize] = "";
  if (!absolute) {
#ifdef _WIN32
    wchar_t wide[kProjectPathSize];
    if (!_wgetcwd(wide, kProjectPathSize)) return false;
    int length = Utf16ToUtf8(reinterpret_cast<const char16_t*>(wide), -1, current,
                             kProjectPathSize - 1);
    current[length > 0 ? length : 0] = '\0';
#else
    if (!getcwd(current, sizeof current)) return false;
#endif
  }
  const char* separator = absolute || (current[0] && current[strlen(current) - 1] == '/') ? "" : "/";
  if (FormatStr(target, size, "%s%s%s", current, separator, path) > size) return false;
  for (char* p = target; *p; ++p) {
    if (*p == '\\') *p = '/';
  }
  return true;
}

}  // namespace

int RunMakeCommand(int argc, char** argv) {
  BuildMode mode = BuildMode::kBuild;
  const char* names[2] = {};
  int count = 0;
  for (int i = 0; i < argc; ++i) {
    if (strcmp(argv[i], "--rebuild") == 0) {
      mode = BuildMode::kRebuild;
    } else if (strcmp(argv[i], "--run") == 0) {
      mode = BuildMode::kRun;
    } else if (argv[i][0] == '-' && argv[i][1] == '-') {
      return kExitUsage;
    } else {
      if (count == 2) return kExitUsage;
      names[count++] = argv[i];
    }
  }
  if (count != 2) return kExitUsage;

  UiHost ui{PrintMessage, nullptr};
  const UiHost* previousUi = SetUiHost(&ui);
  ProjectHost host{nullptr, NoEditors, NothingToSave, DoNotStart, NoFileList};
  const ProjectHost* previousHost = SetProjectHost(&host);
  int status = kExitFailed;
  Project project{};
  char path[kProjectPathSize];
  if (!AbsolutePath(names[0], path, sizeof path)) {
    fprintf(stderr, "quill-tool: make: %s: path too long\n", names[0]);
  } else if (LoadProject(&project, path)) {
    ProjectTarget* target = FindTarget(&project, names[1]);
    if (!target) {
      fprintf(stderr, "quill-tool: make: no target '%s' in %s\n", names[1], path);
    } else if (MakeTarget(&project, target, mode)) {
      char folder[kProjectPathSize];
      ProjectFolder(&project, folder, sizeof folder);
      printf("%s/%s.mak\n%s/C.BAT\n", folder, target->name, folder);
      status = kExitOk;
    }
  }
  FreeProjectTargets(&project);
  SetProjectHost(previousHost);
  SetUiHost(previousUi);
  return status;
}
