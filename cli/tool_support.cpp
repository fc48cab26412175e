#include "cli/tool_support.h"

#include <cstdio>
#include <cstring>

#include "foundation/formatter.h"
#include "foundation/os_path.h"

namespace {

constexpr int kFolderSize = 1024;

bool NoEditors(void*) {
  return false;
}
void NothingToSave(void*) {}
bool DoNotStart(void*, const char*, int) {
  return true;
}
void NoFileList(void*) {}

}  // namespace

const ProjectHost kToolProjectHost = {nullptr, NoEditors, NothingToSave, DoNotStart, NoFileList};

int PrintToolMessage(void* command, const char* text, unsigned flags) {
  if (command) {
    fprintf(stderr, "quill-tool: %s: %s\n", static_cast<const char*>(command), text);
  } else {
    fprintf(stderr, "quill-tool: %s\n", text);
  }
  unsigned buttons = flags & 0xF;
  return buttons == kMbOk ? kIdOk : buttons == kMbYesNo ? kIdNo : kIdCancel;
}

bool AbsoluteToolPath(const char* path, char* target, int size) {
  bool absolute = path[0] == '/' || path[0] == '\\' || (path[0] && path[1] == ':');
  char current[kFolderSize] = "";
  if (!absolute && OsCurrentFolder(current, sizeof current) == 0) return false;
  size_t length = strlen(current);
  const char* separator = absolute || (length && current[length - 1] == '/') ? "" : "/";
  if (FormatStr(target, size, "%s%s%s", current, separator, path) > size) return false;
  for (char* p = target; *p; ++p) {
    if (*p == '\\') *p = '/';
  }
  return true;
}
