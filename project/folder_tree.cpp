#include "project/folder_tree.h"

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "project/project.h"

namespace {

constexpr int kWalkPathSize = 1024;

// The path buffer and the search record live in a block of each level, so that a deep tree does
// not use up the stack.
struct WalkLevel {
  char path[kWalkPathSize];
  FindData found;
};

bool DeleteContents(const char* folder) {
  WalkLevel* level = static_cast<WalkLevel*>(AllocMem(sizeof(WalkLevel), kOwnerProjectFolderWalk));
  if (!level) return false;
  bool ok = true;
  FormatStr(level->path, kWalkPathSize, "%s/*", folder);
  FileHandle search = FileFindFirst(level->path, &level->found);
  if (search != kInvalidFile) {
    do {
      const char* name = level->found.name;
      if (strcmp(name, ".") == 0 || strcmp(name, "..") == 0) continue;
      if (FormatStr(level->path, kWalkPathSize, "%s/%s", folder, name) > kWalkPathSize) {
        ok = false;
        continue;
      }
      unsigned attributes = level->found.attributes;
      if (attributes & kAttrDirectory) {
        // A linked folder is removed as a link; what it points to is not ours.
        if (!(attributes & kAttrReparsePoint) && !DeleteContents(level->path)) ok = false;
        if (!FolderRemove(level->path)) ok = false;
      } else {
        if (attributes & kAttrReadOnly) FileSetAttributes(level->path, kAttrNormal);
        if (!FileDelete(level->path)) ok = false;
      }
    } while (FileFindNext(search, &level->found));
    FileFindClose(search);
  }
  FreeMem(level);
  return ok;
}

}  // namespace

bool DeleteFolderTree(const char* path) {
  unsigned attributes = FileGetAttributes(path);
  if (attributes == kNoAttributes) return true;
  if (!(attributes & kAttrDirectory)) return false;
  bool ok = DeleteContents(path);
  return FolderRemove(path) && ok;
}
