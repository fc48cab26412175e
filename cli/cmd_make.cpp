// quill-tool make: a target's makefile and "C.BAT", written as Build, Rebuild or Build and Run
// would write them, without starting the batch file.
#include <cstdio>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_support.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/path.h"
#include "project/make_target.h"
#include "project/project.h"
#include "project/project_file.h"
#include "project/project_host.h"

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

  UiHost ui{PrintToolMessage, nullptr};
  const UiHost* previousUi = SetUiHost(&ui);
  const ProjectHost* previousHost = SetProjectHost(&kToolProjectHost);
  int status = kExitFailed;
  Project project{};
  char path[kPathSize];
  if (!AbsoluteToolPath(names[0], path, sizeof path)) {
    fprintf(stderr, "quill-tool: make: %s: path too long\n", names[0]);
  } else if (LoadProject(&project, path)) {
    ProjectTarget* target = FindTarget(&project, names[1]);
    if (!target) {
      fprintf(stderr, "quill-tool: make: no target '%s' in %s\n", names[1], path);
    } else if (MakeTarget(&project, target, mode)) {
      char folder[kPathSize];
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
