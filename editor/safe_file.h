// Writing a file so that what was on disk survives a failed write: the bytes go to a temporary
// file beside the target, which replaces the target only when every byte is written and the
// file is closed. The target's attributes are kept, as the system's file-replacing call does.
#pragma once
#include "foundation/fileutil.h"

struct SafeFile {
  FileHandle file;
  char target[780];
  char temporary[800];
  char* buffer;  // writes are gathered here
  unsigned used;
  unsigned error;  // the first system error, 0 while all is well
};

// Creates the temporary file. False (error set) when the target cannot be written: a folder, a
// read-only file, or a temporary that cannot be created.
bool SafeFileOpen(SafeFile* file, const char* target);
void SafeFileWrite(SafeFile* file, const void* data, unsigned size);
// Flushes, closes and puts the file in place of the target. False (the target untouched, the
// temporary removed, error set) when anything failed.
bool SafeFileCommit(SafeFile* file);
// Closes and removes the temporary without touching the target.
void SafeFileAbandon(SafeFile* file);
