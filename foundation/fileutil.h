// Files, folders and programs, named in the internal form (UTF-8, '/' separators). Each wrapper
// converts the path for the system and leaves the system's last-error code as the call set it
// (Windows codes in every build); a path that cannot be converted fails with error 14.
#pragma once
#include <cstddef>
#include <cstdint>

#include "foundation/os_time.h"
#include "foundation/path.h"

// Windows values, so that callers and settings speak one language in every build.
enum : unsigned {
  kFileRead = 0x80000000u,
  kFileWrite = 0x40000000u,
  kShareRead = 1,
  kShareWrite = 2,
  kCreateNew = 1,
  kCreateAlways = 2,
  kOpenExisting = 3,
  kOpenAlways = 4,
  kTruncateExisting = 5,
  kAttrReadOnly = 0x1,
  kAttrHidden = 0x2,
  kAttrSystem = 0x4,
  kAttrDirectory = 0x10,
  kAttrArchive = 0x20,
  kAttrNormal = 0x80,
  kAttrReparsePoint = 0x400,
  kNoAttributes = 0xFFFFFFFFu,
  kSeekBegin = 0,
  kSeekCurrent = 1,
  kSeekEnd = 2,
};
// Last-error codes the program looks at.
enum : unsigned {
  kErrorFileNotFound = 2,
  kErrorPathNotFound = 3,
  kErrorAccessDenied = 5,
  kErrorNotEnoughMemory = 14,
  kErrorFileExists = 80,
  kErrorDiskFull = 112,
  kErrorAlreadyExists = 183,
};

using FileHandle = intptr_t;
constexpr FileHandle kInvalidFile = -1;

bool FileCopy(const char* source, const char* target, bool failIfExists);
bool FileMove(const char* source, const char* target);
bool FileDelete(const char* path);
bool FolderCreate(const char* path);
bool FolderRemove(const char* path);
FileHandle FileOpen(const char* path, unsigned access, unsigned share, unsigned disposition,
                    unsigned flags);
void FileClose(FileHandle file);
bool FileSetAttributes(const char* path, unsigned attributes);
unsigned FileGetAttributes(const char* path);  // kNoAttributes when missing
// True when the path exists and is neither a folder nor a reparse point.
bool IsPlainFile(const char* path);

// What a save must know of an existing file, links followed: whether it is a plain file (not a
// folder, a device or a pipe), how many names it has (hard links) and its attributes. False,
// the last error set, when nothing is there.
struct FileFacts {
  bool regular;
  unsigned links;
  unsigned attributes;
};
bool FileGetFacts(const char* path, FileFacts* facts);
// `path` with its symbolic links (reparse points) followed to the file they name, which need not
// exist yet; a path that is no link comes back as it is. False when the result does not fit or
// the links go round in a circle.
bool FileResolveLinks(const char* path, char* resolved, int size);
// Puts the file `replacement` in the place of the existing `target` in one step, the new file
// taking over the old one's attributes and permissions (on Windows also its security and creation
// time). On failure both files are left as they were.
bool FileReplace(const char* target, const char* replacement);

struct FindData {
  char name[kPathSize];  // internal form
  unsigned attributes;
  uint64_t size;
};
// A search over a pattern such as "LANGUAGE/*.LNG" (names compared without case).
FileHandle FileFindFirst(const char* pattern, FindData* found);
bool FileFindNext(FileHandle search, FindData* found);
void FileFindClose(FileHandle search);

bool FileRead(FileHandle file, void* buffer, unsigned size, unsigned* done);
bool FileWrite(FileHandle file, const void* buffer, unsigned size, unsigned* done);
uint64_t FileGetSize(FileHandle file);  // all ones on failure
bool FileSeek(FileHandle file, int64_t offset, unsigned origin, uint64_t* position);

// The folder of the running program (internal form, no closing '/'): its length, 0 when unknown
// or when it does not fit.
int ProgramFolder(char* buffer, int size);

// The whole file in a block of `owner` with one extra terminating zero byte; null on any failure.
char* ReadWholeFile(const char* path, size_t* length, int owner);

// Seconds since 2000-01-01 00:00:00 UTC of the file's last write, low 32 bits. Only equality of
// two stamps means anything.
unsigned FileStamp(FileHandle file);
// The same from a system file time (100-nanosecond units since 1601).
unsigned StampFromFileTime(uint64_t fileTime);
// The file's last write in local time (archives keep it so); false when the system has none.
bool FileLocalWriteTime(FileHandle file, OsDateTime* time);

unsigned FileLastError();

// Starts a program (the first word of the line; its '/' become '\') without waiting.
bool StartProgram(const char* commandLine, int show);
// Starts a program and waits for it: its exit code, or -1 when it did not end within
// `timeoutMs` (it keeps running) or could not be started.
int StartProgramAndWait(const char* commandLine, int show, unsigned timeoutMs);
// Opens a file with the shell's verb ("open", ...).
bool ShellOpen(void* owner, const char* verb, const char* file, const char* parameters,
               const char* folder, int show);
