#include "project/project.h"

#include "foundation/fileutil.h"

#include <cstring>

#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/os_path.h"
#include "foundation/path.h"
#include "foundation/settings.h"

const char kProjectSection[] = "Project";

namespace {

struct TargetTypeInfo {
  const char* label;
  const char* extension;
  const char* makefileKind;
};

const TargetTypeInfo kTargetTypes[kTargetTypeCount] = {
    {"콘솔 응용프로그램 (&Console)", ".exe", "Console"},
    {"메인 창으로 시작 (&WIN32)", ".exe", "Windows"},
    {"대화상자로 시작 (WIN3&2)", ".exe", "Windows"},
    {"동적 라이브러리 (&DLL)", ".dll", "MakeDll"},
    {"정적 라이브러리 (&LIB)", ".lib", "MakeLib"},
    {"어셈블리어 (WIN32, EXE)", ".exe", "Windows"},
};

const TargetTypeInfo& TypeInfo(int type) {
  // An unknown type from a hand-edited file is built like a window program.
  return type >= 0 && type < kTargetTypeCount ? kTargetTypes[type] : kTargetTypes[kTargetWindow];
}

char ToLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool SameTextNoCase(const char* a, const char* b) {
  for (; *a && *b; ++a, ++b) {
    if (ToLowerAscii(*a) != ToLowerAscii(*b)) return false;
  }
  return *a == *b;
}

int CopyOut(const char* text, size_t length, char* buffer, int size) {
  if (size <= 0 || length >= static_cast<size_t>(size)) return -1;
  memcpy(buffer, text, length);
  buffer[length] = '\0';
  return static_cast<int>(length);
}

}  // namespace

const char* TargetTypeLabel(int type) {
  return type >= 0 && type < kTargetTypeCount ? kTargetTypes[type].label : "";
}

const char* TargetExtension(int type) {
  return TypeInfo(type).extension;
}

const char* TargetMakefileKind(int type) {
  return TypeInfo(type).makefileKind;
}

int FormatTargetLabel(const ProjectTarget* target, char* buffer, int size) {
  return FormatStr(buffer, size, "%s [%s]", target->name, TargetExtension(target->type)) - 1;
}

int FormatTargetOutput(const ProjectTarget* target, char* buffer, int size) {
  return FormatStr(buffer, size, "%s%s", target->name, TargetExtension(target->type)) - 1;
}

ProjectTarget* NewTarget() {
  ProjectTarget* target =
      static_cast<ProjectTarget*>(AllocMem(sizeof(ProjectTarget), kOwnerProjectTarget));
  if (!target) return nullptr;
  memset(target, 0, sizeof *target);
  strcpy(target->compiler, kDefaultCompiler);
  return target;
}

ProjectTarget* NewDefaultTarget() {
  ProjectTarget* target = NewTarget();
  if (!target) return nullptr;
  target->platform = ReadInt(kProjectSection, "DefPlatform", 0);
  target->type = ReadInt(kProjectSection, "DefTargetType", 1);
  target->useDefaultLib = ReadInt(kProjectSection, "DefUseDefLibFg", 1);
  target->useKLib = ReadInt(kProjectSection, "DefUseKLibFg", 0);
  ReadText(kProjectSection, "DefTargetName", target->name, kTargetNameSize, "");
  return target;
}

void StoreTargetDefaults(const ProjectTarget* target) {
  WriteNums(kProjectSection, "DefPlatform", target->platform);
  WriteNums(kProjectSection, "DefTargetType", target->type);
  WriteNums(kProjectSection, "DefUseDefLibFg", target->useDefaultLib);
  WriteNums(kProjectSection, "DefUseKLibFg", target->useKLib);
  WriteText(kProjectSection, "DefTargetName", target->name);
}

void FreeTarget(ProjectTarget* target) {
  if (!target) return;
  for (ProjectFile* file = target->files; file;) {
    ProjectFile* next = file->next;
    FreeMem(file->path);
    FreeMem(file);
    file = next;
  }
  char* texts[] = {target->makeStart, target->addCompile, target->cOption,
                   target->rcOption,  target->asmOption,  target->linkOption,
                   target->libraries, target->defines,    target->includes};
  for (char* text : texts)
    FreeMem(text);
  FreeMem(target);
}

void FreeProjectTargets(Project* project) {
  for (ProjectTarget* target = project->targets; target;) {
    ProjectTarget* next = target->next;
    FreeTarget(target);
    target = next;
  }
  project->targets = nullptr;
}

bool SetTargetText(char** field, const char* text) {
  char* copy = nullptr;
  if (text && *text) {
    size_t length = strlen(text);
    copy = static_cast<char*>(AllocMem(length + 1, kOwnerProjectText));
    if (!copy) return false;
    memcpy(copy, text, length + 1);
  }
  FreeMem(*field);
  *field = copy;
  return true;
}

void AppendTarget(Project* project, ProjectTarget* target) {
  target->next = nullptr;
  ProjectTarget** link = &project->targets;
  while (*link)
    link = &(*link)->next;
  *link = target;
  project->modified = true;
}

bool RemoveTarget(Project* project, ProjectTarget* target) {
  for (ProjectTarget** link = &project->targets; *link; link = &(*link)->next) {
    if (*link != target) continue;
    *link = target->next;
    FreeTarget(target);
    project->modified = true;
    return true;
  }
  return false;
}

int CountTargets(const Project* project) {
  int count = 0;
  for (const ProjectTarget* target = project->targets; target; target = target->next)
    ++count;
  return count;
}

ProjectTarget* FindTarget(const Project* project, const char* name) {
  for (ProjectTarget* target = project->targets; target; target = target->next) {
    if (strcmp(target->name, name) == 0) return target;
  }
  return nullptr;
}

int ProjectFolder(const Project* project, char* buffer, int size) {
  const char* slash = strrchr(project->path, '/');
  size_t length = slash ? static_cast<size_t>(slash - project->path) : 0;
  return CopyOut(project->path, length, buffer, size);
}

int MakeProjectRelative(const char* projectPath, const char* path, char* buffer, int size) {
  const char* slash = strrchr(projectPath, '/');
  size_t folder = slash ? static_cast<size_t>(slash - projectPath) + 1 : 0;
  bool inside = folder > 0 && strlen(path) > folder;
  for (size_t i = 0; inside && i < folder; ++i) {
    // Windows paths: the folder may be spelt in another case.
    if (ToLowerAscii(path[i]) != ToLowerAscii(projectPath[i])) inside = false;
  }
  const char* relative = inside ? path + folder : path;
  return CopyOut(relative, strlen(relative), buffer, size);
}

bool AppendTargetFile(ProjectTarget* target, const char* path) {
  ProjectFile* file = static_cast<ProjectFile*>(AllocMem(sizeof(ProjectFile), kOwnerProjectFile));
  if (!file) return false;
  size_t length = strlen(path);
  file->path = static_cast<char*>(AllocMem(length + 1, kOwnerProjectFile));
  if (!file->path) {
    FreeMem(file);
    return false;
  }
  memcpy(file->path, path, length + 1);
  file->next = nullptr;
  ProjectFile** link = &target->files;
  while (*link)
    link = &(*link)->next;
  *link = file;
  return true;
}

AddFileResult AddProjectFile(Project* project, ProjectTarget* target, const char* path,
                             ProjectFile** node) {
  char relative[kPathSize];
  if (MakeProjectRelative(project->path, path, relative, sizeof relative) < 0) {
    return AddFileResult::kFailed;
  }
  ProjectFile* last = nullptr;
  for (ProjectFile* file = target->files; file; file = file->next) {
    if (SameTextNoCase(file->path, relative)) {
      if (node) *node = file;
      return AddFileResult::kAlreadyListed;
    }
    last = file;
  }
  if (!AppendTargetFile(target, relative)) return AddFileResult::kFailed;
  if (node) *node = last ? last->next : target->files;
  project->modified = true;
  return AddFileResult::kAdded;
}

bool RemoveProjectFile(Project* project, ProjectTarget* target, ProjectFile* file) {
  for (ProjectFile** link = &target->files; *link; link = &(*link)->next) {
    if (*link != file) continue;
    *link = file->next;
    FreeMem(file->path);
    FreeMem(file);
    project->modified = true;
    return true;
  }
  return false;
}

int CountTargetFiles(const ProjectTarget* target) {
  int count = 0;
  for (const ProjectFile* file = target->files; file; file = file->next)
    ++count;
  return count;
}

int DefaultProjectPath(char* buffer, int size) {
  char folder[kPathSize];
  int length = ReadText(kProjectSection, "DefPrjFolder", folder, sizeof folder, "");
  if (length == 0) length = ProgramFolder(folder, sizeof folder);
  // The remembered folder may be stored with or without its closing separator.
  const char* separator = length > 0 && folder[length - 1] != '/' ? "/" : "";
  int total = FormatStr(buffer, size, "%s%sNoName/NoName.prj", folder, separator) - 1;
  if (total >= size) return -1;
  if (buffer[0] >= 'a' && buffer[0] <= 'z') buffer[0] = static_cast<char>(buffer[0] - 32);
  return total;
}
