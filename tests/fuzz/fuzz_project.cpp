// Project files with arbitrary contents: loading stays inside its buffers, every target it keeps
// is within its limits, and its makefile and batch file can be composed.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "foundation/host.h"
#include "foundation/library.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "project/make_target.h"
#include "project/project.h"
#include "project/project_file.h"
#include "project/project_tree.h"

namespace {

int Quiet(void*, const char*, unsigned) {
  return kIdCancel;
}

void CheckText(const char* text, size_t limit) {
  if (text && (!*text || strlen(text) > limit)) __builtin_trap();
}

int CountFiles(const Project* project) {
  int count = 0;
  for (const ProjectTarget* target = project->targets; target; target = target->next)
    count += CountTargetFiles(target);
  return count;
}

// Node `index` of the tree in its visible order (every target open), or none past the end.
bool NodeAt(const Project* project, int index, TreeNode* node) {
  for (ProjectTarget* target = project->targets; target; target = target->next) {
    if (index-- == 0) {
      *node = {target, nullptr};
      return true;
    }
    for (ProjectFile* file = target->files; file; file = file->next) {
      if (index-- == 0) {
        *node = {target, file};
        return true;
      }
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  static const UiHost quiet = {Quiet, nullptr};
  (void)started;
  SetUiHost(&quiet);
  static std::string path = "/tmp/quill_fuzz_project_" + std::to_string(getpid()) + ".prj";
  FILE* file = fopen(path.c_str(), "wb");
  if (!file) return 0;
  fwrite(data, 1, size, file);
  fclose(file);

  Project project{};
  if (LoadProject(&project, path.c_str())) {
    for (const ProjectTarget* target = project.targets; target; target = target->next) {
      if (strlen(target->name) >= kTargetNameSize) __builtin_trap();
      if (strlen(target->compiler) >= kCompilerNameSize) __builtin_trap();
      for (const char* text : {target->makeStart, target->addCompile, target->libraries,
                               target->defines, target->includes}) {
        CheckText(text, kProjectTextLimit - 1);
      }
      for (const char* text :
           {target->cOption, target->rcOption, target->asmOption, target->linkOption}) {
        CheckText(text, kProjectTextLimit);
      }
      for (const ProjectFile* entry = target->files; entry; entry = entry->next) {
        if (!*entry->path || strlen(entry->path) >= kPathSize) __builtin_trap();
      }
      FreeMem(ComposeMakefile(target));
      FreeMem(ComposeBatch(target, "C:/work", "C:/Quill", true));
    }
    // Drags between nodes picked by the input's last bytes never lose or duplicate anything.
    int targets = CountTargets(&project);
    int files = CountFiles(&project);
    for (size_t i = 0; i + 1 < size && i < 16; i += 2) {
      TreeNode dragged, dropped;
      if (!NodeAt(&project, data[size - 1 - i], &dragged)) continue;
      bool hasDrop = NodeAt(&project, data[size - 2 - i], &dropped);
      DropTreeNode(&project, dragged, hasDrop ? &dropped : nullptr);
      if (CountTargets(&project) != targets || CountFiles(&project) != files) __builtin_trap();
    }
  }
  FreeProjectTargets(&project);
  return 0;
}
