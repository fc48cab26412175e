#include "editor/safe_file.h"

#include <cstring>

#include "editor/line_record.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"

namespace {

constexpr unsigned kBufferSize = 64 * 1024;
// Windows' error for a read-only file or a folder in the way.
constexpr unsigned kErrorCannotCreate = kErrorAccessDenied;

void Flush(SafeFile* file) {
  if (file->used == 0 || file->error) {
    file->used = 0;
    return;
  }
  unsigned done = 0;
  if (!FileWrite(file->file, file->buffer, file->used, &done) || done != file->used) {
    file->error = FileLastError();
    // A short write without an error code is a full disk.
    if (file->error == 0) file->error = 112;
  }
  file->used = 0;
}

void Close(SafeFile* file) {
  if (file->file != kInvalidFile) FileClose(file->file);
  file->file = kInvalidFile;
  FreeMem(file->buffer);
  file->buffer = nullptr;
}

}  // namespace

bool SafeFileOpen(SafeFile* file, const char* target) {
  memset(file, 0, sizeof *file);
  file->file = kInvalidFile;
  if (FormatStr(file->target, sizeof file->target, "%s", target) >
          static_cast<int>(sizeof file->target) ||
      FormatStr(file->temporary, sizeof file->temporary, "%s.~qs", target) >
          static_cast<int>(sizeof file->temporary)) {
    file->error = 206;
    return false;
  }
  unsigned attributes = FileGetAttributes(target);
  if (attributes != kNoAttributes && (attributes & (kAttrReadOnly | kAttrDirectory))) {
    file->error = kErrorCannotCreate;
    return false;
  }
  file->buffer = static_cast<char*>(AllocMem(kBufferSize, kOwnerSaveBuffer));
  if (!file->buffer) {
    file->error = kErrorNotEnoughMemory;
    return false;
  }
  file->file = FileOpen(file->temporary, kFileWrite, 0, kCreateAlways, 0);
  if (file->file == kInvalidFile) {
    file->error = FileLastError();
    if (file->error == 0) file->error = kErrorCannotCreate;
    Close(file);
    return false;
  }
  return true;
}

void SafeFileWrite(SafeFile* file, const void* data, unsigned size) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0 && !file->error) {
    unsigned room = kBufferSize - file->used;
    unsigned piece = size < room ? size : room;
    memcpy(file->buffer + file->used, bytes, piece);
    file->used += piece;
    bytes += piece;
    size -= piece;
    if (file->used == kBufferSize) Flush(file);
  }
}

void SafeFileAbandon(SafeFile* file) {
  Close(file);
  FileDelete(file->temporary);
}

bool SafeFileCommit(SafeFile* file) {
  Flush(file);
  Close(file);
  if (file->error) {
    FileDelete(file->temporary);
    return false;
  }
  unsigned attributes = FileGetAttributes(file->target);
  if (attributes == kNoAttributes) {
    if (FileMove(file->temporary, file->target)) return true;
    file->error = FileLastError();
    FileDelete(file->temporary);
    return false;
  }
  // The old file steps aside under a backup name and comes back if the new one cannot take its
  // place; only then is it removed.
  char backup[820];
  FormatStr(backup, sizeof backup, "%s.~qb", file->target);
  FileDelete(backup);
  if (!FileMove(file->target, backup)) {
    file->error = FileLastError();
    FileDelete(file->temporary);
    return false;
  }
  if (!FileMove(file->temporary, file->target)) {
    file->error = FileLastError();
    FileMove(backup, file->target);
    FileDelete(file->temporary);
    return false;
  }
  FileSetAttributes(file->target, attributes);
  FileDelete(backup);
  return true;
}
