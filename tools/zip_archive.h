// Writing a zip archive: each member deflated (or stored when that does not pay), names in UTF-8
// with the archive's UTF-8 flag when they are not plain ASCII, local times in the DOS form. The
// archive is written through the safe save, so a failed or stopped archive leaves nothing behind
// and an older archive of that name as it was.
#pragma once
#include <cstddef>
#include <cstdint>

#include "editor/safe_file.h"
#include "foundation/os_time.h"
#include "images/deflate.h"

enum ZipStatus : int {
  kZipOk = 0,
  kZipWriteFailed,  // `error` holds the system's code
  kZipTooLarge,     // past 4 GB or 65,535 members: the plain format ends there
  kZipNoMemory,
  kZipStopped,  // the progress report asked to stop
};

struct ZipMemberRecord;

struct ZipWriter {
  SafeFile file;
  ZipMemberRecord* members;
  int count;
  int capacity;
  uint64_t offset;  // bytes written so far
  unsigned error;
};

// Date and time as the archive keeps them (years before 1980 become 1980-01-01).
uint16_t DosDate(const OsDateTime& time);
uint16_t DosTime(const OsDateTime& time);

// Starts an archive at `path`; an existing read-only file is refused (error 5).
int ZipBegin(ZipWriter* zip, const char* path);
// Adds a member named `name` ('/' separators, no leading '/') with the bytes `data`.
int ZipAddMember(ZipWriter* zip, const char* name, const uint8_t* data, size_t size,
                 const OsDateTime& time, const DeflateProgress* progress);
// Writes the central directory and puts the archive in place.
int ZipFinish(ZipWriter* zip);
// Drops the archive: nothing is left on disk, an older file of the name keeps its bytes.
void ZipAbandon(ZipWriter* zip);
