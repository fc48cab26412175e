// quill-tool zip: the project archive as Compress Project writes it.
#include <cstdio>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_support.h"
#include "foundation/fileutil.h"
#include "foundation/host.h"
#include "foundation/path.h"
#include "project/project.h"
#include "project/project_file.h"
#include "project/project_host.h"
#include "tools/project_zip.h"
#include "tools/zip_archive.h"

namespace {

const char* ZipFailure(int status) {
  switch (status) {
    case kZipTooLarge:
      return "the archive would pass 4 GB or 65,535 members";
    case kZipNoMemory:
      return "not enough memory";
    case kZipStopped:
      return "stopped";
  }
  return "cannot be written";
}

}  // namespace

int RunZipCommand(int argc, char** argv) {
  const char* names[1] = {};
  const char* output = nullptr;
  bool force = false;
  int count = 0;
  for (int i = 0; i < argc; ++i) {
    if (strcmp(argv[i], "--force") == 0) {
      force = true;
    } else if (strcmp(argv[i], "--output") == 0 && i + 1 < argc) {
      output = argv[++i];
    } else if (argv[i][0] == '-' && argv[i][1] == '-') {
      return kExitUsage;
    } else {
      if (count == 1) return kExitUsage;
      names[count++] = argv[i];
    }
  }
  if (count != 1) return kExitUsage;

  UiHost ui{PrintToolMessage, nullptr};
  const UiHost* previousUi = SetUiHost(&ui);
  const ProjectHost* previousHost = SetProjectHost(&kToolProjectHost);
  int status = kExitFailed;
  Project project{};
  char path[kPathSize], archive[kPathSize];
  bool named = AbsoluteToolPath(names[0], path, sizeof path) &&
               (output ? AbsoluteToolPath(output, archive, sizeof archive)
                       : ProjectArchivePath(path, archive, sizeof archive));
  if (!named) {
    fprintf(stderr, "quill-tool: zip: %s: path too long\n", names[0]);
  } else if (!force && FileGetAttributes(archive) != kNoAttributes) {
    fprintf(stderr, "quill-tool: zip: %s exists; --force overwrites it\n", archive);
  } else if (LoadProject(&project, path)) {
    ProjectZipResult result;
    CompressProject(&project, archive, nullptr, &result);
    for (const char* p = TextOf(&result.skippedList); *p; p = strchr(p, '\n') + 1)
      fprintf(stderr, "quill-tool: zip: skipped %.*s (missing or unreadable)\n",
              static_cast<int>(strchr(p, '\n') - p), p);
    FreeText(&result.skippedList);
    if (result.status == kZipOk) {
      printf("%s\n%d files, %d skipped\n", archive, result.members, result.skipped);
      status = kExitOk;
    } else {
      fprintf(stderr, "quill-tool: zip: %s: %s (error %u)\n", archive, ZipFailure(result.status),
              result.error);
    }
  }
  FreeProjectTargets(&project);
  SetProjectHost(previousHost);
  SetUiHost(previousUi);
  return status;
}
