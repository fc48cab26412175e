#include "editor/safe_file.h"

#include <cstring>

#include "editor/line_record.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"

namespace {

constexpr unsigned kBufferSize = 64 * 1024;
// A short write without an error code is a full disk.
constexpr unsigned kErrorShortWrite = kErrorDiskFull;
constexpr unsigned kErrorNameTooLong = 206;

void Flush(SafeFile* file) {
  // A write may take less than it was given (a pipe, a file at its size limit); the rest goes in
  // the next call, which then reports what stopped it.
  for (unsigned at = 0; at < file->used && !file->error;) {
    unsigned done = 0;
    if (!FileWrite(file->file, file->buffer + at, file->used - at, &done)) {
      file->error = FileLastError();
      if (file->error == 0) file->error = kErrorShortWrite;
    } else if (done == 0) {
      file->error = kErrorShortWrite;
    }
    at += done;
  }
  file->used = 0;
}

void Close(SafeFile* file) {
  if (file->file != kInvalidFile) FileClose(file->file);
  file->file = kInvalidFile;
  FreeMem(file->buffer);
  file->buffer = nullptr;
}

bool ReadOnly(const SafeFile* file) {
  return file->attributes != kNoAttributes && (file->attributes & kAttrReadOnly);
}

constexpr unsigned kAttrGuarded = kAttrReadOnly | kAttrHidden | kAttrSystem;

// Read-only goes while the file is written in place (the user agreed to write it), hidden and
// system while its old bytes are copied back (the system copies onto no such file); all come
// back afterwards.
void RestoreAttributes(SafeFile* file) {
  if (file->attributes != kNoAttributes && (file->attributes & kAttrGuarded))
    FileSetAttributes(file->target, file->attributes);
}

// In place: the old bytes go back where they were, and their copy away.
void PutOldBytesBack(SafeFile* file) {
  if (file->keptCopy) {
    if (file->attributes & (kAttrHidden | kAttrSystem))
      FileSetAttributes(file->target, file->attributes & ~kAttrGuarded);
    FileCopy(file->temporary, file->target, false);
    FileDelete(file->temporary);
    file->keptCopy = false;
  }
  RestoreAttributes(file);
}

bool Fail(SafeFile* file, unsigned error) {
  file->error = error ? error : kErrorAccessDenied;
  return false;
}

bool OpenInPlace(SafeFile* file) {
  if (file->keptCopy) {
    if (!FileCopy(file->target, file->temporary, false)) {
      unsigned error = FileLastError();
      FileDelete(file->temporary);
      file->keptCopy = false;
      return Fail(file, error);
    }
    // The copy may have taken the read-only attribute with it.
    FileSetAttributes(file->temporary, kAttrNormal);
  }
  if (ReadOnly(file)) FileSetAttributes(file->target, file->attributes & ~kAttrReadOnly);
  // A device or a pipe is opened as it is; a plain file loses its old length.
  unsigned disposition = file->keptCopy ? kTruncateExisting : kOpenExisting;
  file->file = FileOpen(file->target, kFileWrite, 0, disposition,
                        file->attributes & (kAttrHidden | kAttrSystem));
  if (file->file == kInvalidFile) {
    unsigned error = FileLastError();
    PutOldBytesBack(file);
    return Fail(file, error);
  }
  return true;
}

}  // namespace

bool SafeFileLocate(SafeFile* file, const char* target) {
  memset(file, 0, sizeof *file);
  file->file = kInvalidFile;
  file->attributes = kNoAttributes;
  file->plain = true;
  if (!FileResolveLinks(target, file->target, sizeof file->target))
    return Fail(file, FileLastError());
  FileFacts facts;
  if (FileGetFacts(file->target, &facts)) {
    if (facts.attributes & kAttrDirectory) return Fail(file, kErrorAccessDenied);
    file->attributes = facts.attributes;
    file->plain = facts.regular;
    file->inPlace = !facts.regular || facts.links > 1;
    file->keptCopy = file->inPlace && facts.regular;
  }
  const char* suffix = file->inPlace ? ".~qb" : ".~qs";
  if (FormatStr(file->temporary, sizeof file->temporary, "%s%s", file->target, suffix) >=
      static_cast<int>(sizeof file->temporary))
    return Fail(file, kErrorNameTooLong);
  return true;
}

bool SafeFileOpen(SafeFile* file) {
  file->buffer = static_cast<char*>(AllocMem(kBufferSize, kOwnerSaveBuffer));
  if (!file->buffer) return Fail(file, kErrorNotEnoughMemory);
  bool opened;
  if (file->inPlace) {
    opened = OpenInPlace(file);
  } else {
    file->file = FileOpen(file->temporary, kFileWrite, 0, kCreateAlways, 0);
    opened = file->file != kInvalidFile || Fail(file, FileLastError());
  }
  if (!opened) Close(file);
  return opened;
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
  if (file->inPlace)
    PutOldBytesBack(file);
  else
    FileDelete(file->temporary);
}

bool SafeFileCommit(SafeFile* file) {
  Flush(file);
  Close(file);
  if (file->error) {
    SafeFileAbandon(file);
    return false;
  }
  if (file->inPlace) {
    if (file->keptCopy) FileDelete(file->temporary);
    file->keptCopy = false;
    RestoreAttributes(file);
    return true;
  }
  bool placed;
  if (file->attributes == kNoAttributes) {
    placed = FileMove(file->temporary, file->target);
  } else {
    placed = FileReplace(file->target, file->temporary);
    // Not every implementation of the replacement carries hidden and system over.
    if (placed && (file->attributes & (kAttrHidden | kAttrSystem)))
      FileSetAttributes(file->target, file->attributes);
    // Windows will not replace a read-only file: the attribute steps aside for the replacement,
    // which then carries it again.
    if (!placed && ReadOnly(file) &&
        FileSetAttributes(file->target, file->attributes & ~kAttrReadOnly)) {
      placed = FileReplace(file->target, file->temporary);
      RestoreAttributes(file);
    }
  }
  if (!placed) {
    file->error = FileLastError();
    if (file->error == 0) file->error = kErrorAccessDenied;
    FileDelete(file->temporary);
  }
  return placed;
}
