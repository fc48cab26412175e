// Writing a file so that what was on disk survives a failed write. A plain file with one name
// gets its bytes in a temporary file beside it, which takes its place only when every byte is
// written and the file is closed; the file keeps its attributes and permissions. A file with
// several names (hard links), a device or a pipe cannot be replaced without cutting it off from
// the rest: it is written where it is, and a plain file's old bytes are copied aside first and
// written back when the write fails. A symbolic link is followed, so the link stays a link.
#pragma once
#include "foundation/fileutil.h"
#include "foundation/path.h"

struct SafeFile {
  FileHandle file;
  char target[kPathSize];  // the file that is written, links followed
  // The new bytes on their way (replacing), or the old bytes kept aside (in place).
  char temporary[800];
  char* buffer;  // writes are gathered here
  unsigned used;
  unsigned error;       // the first system error, 0 while all is well
  unsigned attributes;  // the target's, kNoAttributes when it does not exist yet
  bool plain;           // a plain file, or none yet; not a device or a pipe
  bool inPlace;
  bool keptCopy;  // in place: `temporary` holds the old bytes
};

// Finds the file a save of `target` writes and what it is; nothing is created. False (error set)
// when it cannot be written at all: a folder, or a name that does not resolve.
bool SafeFileLocate(SafeFile* file, const char* target);
// Creates the temporary, or copies the old bytes aside and opens the target. False (error set,
// nothing changed on disk) when that fails.
bool SafeFileOpen(SafeFile* file);
void SafeFileWrite(SafeFile* file, const void* data, unsigned size);
// Flushes, closes and puts the new bytes in place. False (the target's bytes as they were, the
// temporary removed, error set) when anything failed.
bool SafeFileCommit(SafeFile* file);
// Stops without changing the target: it gets its old bytes back when it was written in place.
void SafeFileAbandon(SafeFile* file);
