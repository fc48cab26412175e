#include "tools/project_zip.h"

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "tools/tool_owners.h"
#include "tools/zip_archive.h"

namespace {

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameTextNoCase(const char* a, const char* b, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

// Splits a path into the archive folder for its root ("" for a relative path) and its folders
// and name with "." and ".." worked out. False when a part does not fit.
bool NormalPath(const char* path, char* root, int rootSize, char* rest, int restSize) {
  root[0] = '\0';
  const char* p = path;
  if (((p[0] >= 'A' && p[0] <= 'Z') || (p[0] >= 'a' && p[0] <= 'z')) && p[1] == ':') {
    FormatStr(root, rootSize, "%c", p[0] >= 'a' ? p[0] - 'a' + 'A' : p[0]);
    p += 2;
  } else if ((p[0] == '/' || p[0] == '\\') && (p[1] == '/' || p[1] == '\\')) {
    FormatStr(root, rootSize, "UNC");
    p += 2;
  } else if (p[0] == '/' || p[0] == '\\') {
    FormatStr(root, rootSize, "ROOT");
  }
  int length = 0;
  rest[0] = '\0';
  while (*p) {
    while (*p == '/' || *p == '\\')
      ++p;
    const char* start = p;
    while (*p && *p != '/' && *p != '\\')
      ++p;
    int part = static_cast<int>(p - start);
    if (part == 0 || (part == 1 && start[0] == '.')) continue;
    if (part == 2 && start[0] == '.' && start[1] == '.') {
      while (length > 0 && rest[length - 1] != '/')
        --length;
      if (length > 0) --length;
      rest[length] = '\0';
      continue;
    }
    if (length + (length ? 1 : 0) + part + 1 > restSize) return false;
    if (length) rest[length++] = '/';
    memcpy(rest + length, start, static_cast<size_t>(part));
    length += part;
    rest[length] = '\0';
  }
  return true;
}

struct Collected {
  TextBuffer list;  // "full\0name\0" for each member
  int count;
};

bool Listed(const Collected* c, const char* name) {
  const char* p = TextOf(&c->list);
  for (int i = 0; i < c->count; ++i) {
    p += strlen(p) + 1;
    if (strlen(p) == strlen(name) && SameTextNoCase(p, name, strlen(name))) return true;
    p += strlen(p) + 1;
  }
  return false;
}

void Collect(Collected* c, const char* folder, const char* path, const char* archive) {
  char full[kPathSize], name[kPathSize];
  if (!JoinPath(folder, path, full, sizeof full) || SamePath(full, archive)) return;
  if (!ArchiveMemberName(folder, path, name, sizeof name) || Listed(c, name)) return;
  AppendText(&c->list, full, strlen(full) + 1);
  AppendText(&c->list, name, strlen(name) + 1);
  c->count++;
}

struct BlockProgress {
  const ProjectZipHost* host;
  int file, files;
  const char* name;
  uint64_t size;
};

bool ReportBlock(void* context, size_t done) {
  const BlockProgress* b = static_cast<const BlockProgress*>(context);
  return b->host->progress(b->host->context, b->file, b->files, b->name, done, b->size);
}

// The whole file in a block of its own; null (error set) when it cannot be opened or read.
uint8_t* ReadMember(const char* path, size_t* size, OsDateTime* time) {
  FileHandle file = FileOpen(path, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
  if (file == kInvalidFile) return nullptr;
  uint64_t length = FileGetSize(file);
  uint8_t* data = nullptr;
  bool ok = length < 0xFFFFFFF0u && FileLocalWriteTime(file, time);
  if (ok) data = static_cast<uint8_t*>(AllocMem(static_cast<size_t>(length) + 1, kOwnerZipInput));
  size_t at = 0;
  while (data && at < length) {
    unsigned piece = length - at > (1u << 30) ? 1u << 30 : static_cast<unsigned>(length - at);
    unsigned done = 0;
    if (!FileRead(file, data + at, piece, &done) || done == 0) {
      FreeMem(data);
      data = nullptr;
    }
    at += done;
  }
  FileClose(file);
  *size = static_cast<size_t>(length);
  return data;
}

}  // namespace

bool ProjectArchivePath(const char* projectPath, char* archive, int size) {
  const char* slash = strrchr(projectPath, '/');
  const char* dot = strrchr(projectPath, '.');
  size_t stem = dot && dot > (slash ? slash : projectPath) ? static_cast<size_t>(dot - projectPath)
                                                           : strlen(projectPath);
  if (stem + 5 > static_cast<size_t>(size)) return false;
  memcpy(archive, projectPath, stem);
  memcpy(archive + stem, ".zip", 5);
  return true;
}

bool ArchiveMemberName(const char* folder, const char* path, char* name, int size) {
  char full[kPathSize], root[kPathSize], rest[kPathSize], folderRoot[kPathSize],
      folderRest[kPathSize];
  if (!JoinPath(folder, path, full, sizeof full) ||
      !NormalPath(full, root, sizeof root, rest, sizeof rest) ||
      !NormalPath(folder, folderRoot, sizeof folderRoot, folderRest, sizeof folderRest) || !rest[0])
    return false;
  size_t inner = strlen(folderRest);
  bool sameRoot = strcmp(root, folderRoot) == 0;
  if (sameRoot && inner == 0) return FormatStr(name, size, "%s", rest) <= size;
  // The project folder itself is no member.
  if (sameRoot && strlen(rest) == inner && SameTextNoCase(rest, folderRest, inner)) return false;
  if (sameRoot && strlen(rest) > inner && rest[inner] == '/' &&
      SameTextNoCase(rest, folderRest, inner))
    return FormatStr(name, size, "%s", rest + inner + 1) <= size;
  // A relative path that climbs out of the project folder has no drive of its own.
  return FormatStr(name, size, "%s/%s", root[0] ? root : "ROOT", rest) <= size;
}

int CompressProject(const Project* project, const char* archive, const ProjectZipHost* host,
                    ProjectZipResult* result) {
  result->status = kZipOk;
  result->error = 0;
  result->members = result->skipped = 0;
  InitText(&result->skippedList, kOwnerZipList);
  char folder[kPathSize];
  if (ProjectFolder(project, folder, sizeof folder) < 0) return result->status = kZipNoMemory;
  Collected c = {};
  InitText(&c.list, kOwnerZipList);
  Collect(&c, folder, project->path, archive);
  for (const ProjectTarget* t = project->targets; t; t = t->next) {
    for (const ProjectFile* f = t->files; f; f = f->next)
      Collect(&c, folder, f->path, archive);
  }
  if (c.list.failed) {
    FreeText(&c.list);
    return result->status = kZipNoMemory;
  }
  ZipWriter zip;
  int status = ZipBegin(&zip, archive);
  const char* entry = TextOf(&c.list);
  for (int i = 0; status == kZipOk && i < c.count; ++i) {
    const char* full = entry;
    const char* name = full + strlen(full) + 1;
    entry = name + strlen(name) + 1;
    if (host && host->progress && !host->progress(host->context, i, c.count, name, 0, 0)) {
      status = kZipStopped;
      break;
    }
    size_t size = 0;
    OsDateTime time = {};
    uint8_t* data = ReadMember(full, &size, &time);
    if (!data) {
      AppendText(&result->skippedList, full);
      AppendChar(&result->skippedList, '\n');
      result->skipped++;
      continue;
    }
    BlockProgress block = {host, i, c.count, name, size};
    DeflateProgress progress = {ReportBlock, &block};
    status =
        ZipAddMember(&zip, name, data, size, time, host && host->progress ? &progress : nullptr);
    FreeMem(data);
    if (status == kZipOk) result->members++;
  }
  FreeText(&c.list);
  if (status == kZipOk) {
    status = ZipFinish(&zip);
  } else if (zip.file.buffer || zip.members) {
    ZipAbandon(&zip);
  }
  result->error = zip.error;
  return result->status = status;
}
