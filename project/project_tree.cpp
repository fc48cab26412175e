#include "project/project_tree.h"

#include <cstring>

#include "project/project.h"

namespace {

bool SameNoCase(const char* a, const char* b) {
  for (;; ++a, ++b) {
    char x = *a >= 'A' && *a <= 'Z' ? static_cast<char>(*a + 32) : *a;
    char y = *b >= 'A' && *b <= 'Z' ? static_cast<char>(*b + 32) : *b;
    if (x != y) return false;
    if (!x) return true;
  }
}

// Unlinks `file` from whichever target holds it; false when none does.
bool UnlinkFile(Project* project, ProjectFile* file) {
  for (ProjectTarget* target = project->targets; target; target = target->next) {
    for (ProjectFile** link = &target->files; *link; link = &(*link)->next) {
      if (*link == file) {
        *link = file->next;
        file->next = nullptr;
        return true;
      }
    }
  }
  return false;
}

bool UnlinkTarget(Project* project, ProjectTarget* target) {
  for (ProjectTarget** link = &project->targets; *link; link = &(*link)->next) {
    if (*link == target) {
      *link = target->next;
      target->next = nullptr;
      return true;
    }
  }
  return false;
}

}  // namespace

ProjectTarget* CommandTarget(const TreeNode* selected) {
  return selected ? selected->target : nullptr;
}

TreeDrop PlanTreeDrop(const TreeNode& dragged, const TreeNode* dropped) {
  if (!dropped || !dropped->target || !dragged.target) return TreeDrop::kNothing;
  if (dragged.target == dropped->target && dragged.file == dropped->file) return TreeDrop::kNothing;
  bool draggedFile = dragged.file != nullptr;
  bool droppedFile = dropped->file != nullptr;
  if (draggedFile == droppedFile) return TreeDrop::kAfter;
  if (draggedFile) return TreeDrop::kInto;
  return TreeDrop::kBeep;
}

TreeDrop DropTreeNode(Project* project, const TreeNode& dragged, const TreeNode* dropped) {
  TreeDrop plan = PlanTreeDrop(dragged, dropped);
  if (plan == TreeDrop::kNothing || plan == TreeDrop::kBeep) return plan;
  if (!dragged.file) {
    // A target after another target.
    if (!UnlinkTarget(project, dragged.target)) return TreeDrop::kNothing;
    dragged.target->next = dropped->target->next;
    dropped->target->next = dragged.target;
  } else {
    if (!UnlinkFile(project, dragged.file)) return TreeDrop::kNothing;
    ProjectFile** link = &dropped->target->files;
    if (plan == TreeDrop::kAfter) {
      link = &dropped->file->next;
    } else {
      while (*link)
        link = &(*link)->next;
    }
    dragged.file->next = *link;
    *link = dragged.file;
  }
  project->modified = true;
  return plan;
}

int ProjectFileImage(const char* path) {
  const char* dot = strrchr(path, '.');
  if (!dot || strchr(dot, '/')) return kImageOther;
  const char* extension = dot + 1;
  struct Kind {
    const char* extension;
    int image;
  };
  static constexpr Kind kKinds[] = {
      {"c", kImageC},         {"cpp", kImageCpp},      {"cxx", kImageCpp},
      {"cc", kImageCpp},      {"h", kImageHeader},     {"hpp", kImageHeader},
      {"rh", kImageHeader},   {"asm", kImageAsm},      {"inc", kImageAsm},
      {"rc", kImageResource}, {"ico", kImageResource}, {"bmp", kImageResource}};
  for (const Kind& kind : kKinds) {
    if (SameNoCase(extension, kind.extension)) return kind.image;
  }
  return kImageOther;
}
