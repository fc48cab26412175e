#include "project/target_templates.h"

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/path.h"
#include "project/project.h"

namespace {

struct TemplateFile {
  int type;            // target type, or -1 for every type that gets the in-house library
  const char* target;  // the name in the project folder
  const char* plain;   // the template without the in-house library
  const char* klib;    // ... and with it
  bool listed;         // added to the target's files
};

const TemplateFile kTemplates[] = {
    {kTargetConsole, "CONSOLE.CPP", "CONSOLE.CPP", "CONSOLEK.CPP", true},
    {kTargetWindow, "WINDOW.CPP", "WINDOW.CPP", "WINDOWK.CPP", true},
    {kTargetDialog, "DIALOG.CPP", "DIALOG.CPP", "DIALOGK.CPP", true},
    {kTargetDialog, "RESOURCE.H", "RESOURCE.H", "RESOURCK.H", true},
    {kTargetDialog, "RESOURCE.RC", "RESOURCE.RC", "RESOURCE.RC", true},
    {kTargetDll, "DLLMAIN.CPP", "DLLMAIN.CPP", "DLLMAINK.CPP", true},
    {kTargetAsm, "MASM.ASM", "MASM.ASM", "MASM.ASM", true},
};

// What a target of types 0 to 3 with the in-house library gets besides.
const TemplateFile kLibraryFiles[] = {
    {-1, "KLIB.H", "KLIB.H", "KLIB.H", true},
    {-1, "KLIB.CPP", "KLIB.CPP", "KLIB.CPP", true},
    {-1, "KLIB.RH", "KLIB.RH", "KLIB.RH", false},
    {-1, "KLIB_KR.RC", "KLIB_KR.RC", "KLIB_KR.RC", false},
    {-1, "UNDEFAPI.H", "UNDEFAPI.H", "UNDEFAPI.H", false},
};
// The dialog target has its own resource header already.
const TemplateFile kLibraryResource = {-1, "RESOURCE.H", "RESOURCK.H", "RESOURCK.H", false};

struct Copier {
  Project* project;
  ProjectTarget* target;
  const char* templateFolder;
  char projectFolder[kPathSize];
  ProjectFile* lastListed;
  int copied;

  void Copy(const TemplateFile& file) {
    char source[kPathSize];
    char destination[kPathSize];
    const char* name = target->useKLib ? file.klib : file.plain;
    if (FormatStr(source, sizeof source, "%s/%s", templateFolder, name) > kPathSize ||
        FormatStr(destination, sizeof destination, "%s/%s", projectFolder, file.target) >
            kPathSize) {
      return;
    }
    if (!FileCopy(source, destination, true)) return;
    ++copied;
    if (!file.listed) return;
    ProjectFile* node = nullptr;
    if (AddProjectFile(project, target, destination, &node) != AddFileResult::kFailed) {
      lastListed = node;
    }
  }
};

}  // namespace

int CopyTargetTemplates(Project* project, ProjectTarget* target, const char* templateFolder,
                        ProjectFile** lastListed) {
  Copier copier{project, target, templateFolder, {}, nullptr, 0};
  if (lastListed) *lastListed = nullptr;
  if (ProjectFolder(project, copier.projectFolder, sizeof copier.projectFolder) < 0) return 0;
  for (const TemplateFile& file : kTemplates) {
    if (file.type == target->type) copier.Copy(file);
  }
  if (target->useKLib && target->type >= kTargetConsole && target->type <= kTargetDll) {
    for (const TemplateFile& file : kLibraryFiles)
      copier.Copy(file);
    if (target->type != kTargetDialog) copier.Copy(kLibraryResource);
  }
  if (lastListed) *lastListed = copier.lastListed;
  return copier.copied;
}

int CopyTargetTemplates(Project* project, ProjectTarget* target, ProjectFile** lastListed) {
  char program[kPathSize];
  char folder[kPathSize];
  if (ProgramFolder(program, sizeof program) == 0) return 0;
  FormatStr(folder, sizeof folder, "%s/TEMPLATE", program);
  return CopyTargetTemplates(project, target, folder, lastListed);
}
