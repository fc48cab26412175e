// Files, folders and programs on POSIX, with the Windows error codes the program looks at.
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/path.h"

extern char** environ;

namespace {

constexpr int kOwnerFindState = 31;
thread_local unsigned t_lastError = 0;

unsigned WindowsError(int error) {
  switch (error) {
    case 0:
      return 0;
    case ENOENT:
      return kErrorFileNotFound;
    case ENOTDIR:
      return kErrorPathNotFound;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS:
      return kErrorAccessDenied;
    case ENOMEM:
      return kErrorNotEnoughMemory;
    case EEXIST:
      return kErrorAlreadyExists;
    case ENOTEMPTY:
      return 145;  // the folder is not empty
    case ENOSPC:
      return 112;  // the disk is full
    case ENAMETOOLONG:
      return 206;
    default:
      return 31;  // a device does not work
  }
}

bool Fail() {
  t_lastError = WindowsError(errno);
  return false;
}

bool Succeed() {
  t_lastError = 0;
  return true;
}

bool Check(int result) {
  return result == 0 ? Succeed() : Fail();
}

unsigned AttributesOf(const struct stat& info, bool link) {
  unsigned attributes = 0;
  if (S_ISDIR(info.st_mode))
    attributes |= kAttrDirectory;
  else
    attributes |= kAttrArchive;
  if (!(info.st_mode & S_IWUSR)) attributes |= kAttrReadOnly;
  if (link) attributes |= kAttrReparsePoint;
  return attributes;
}

// An open search: the folder and the name pattern of "folder/pattern".
struct FindState {
  DIR* folder;
  char directory[kPathSize];
  char pattern[260];
};

bool NextMatch(FindState* state, FindData* found) {
  while (struct dirent* entry = readdir(state->folder)) {
    if (fnmatch(state->pattern, entry->d_name, FNM_CASEFOLD) != 0) continue;
    snprintf(found->name, sizeof found->name, "%s", entry->d_name);
    char path[1100];
    snprintf(path, sizeof path, "%s%s", state->directory, entry->d_name);
    struct stat info;
    bool link = lstat(path, &info) == 0 && S_ISLNK(info.st_mode);
    if (stat(path, &info) != 0 && lstat(path, &info) != 0) memset(&info, 0, sizeof info);
    found->attributes = AttributesOf(info, link);
    found->size = S_ISREG(info.st_mode) ? static_cast<uint64_t>(info.st_size) : 0;
    return Succeed();
  }
  t_lastError = 18;  // no more files
  return false;
}

int Fd(FileHandle file) {
  return static_cast<int>(file);
}

pid_t Spawn(const char* commandLine) {
  const char* argv[] = {"/bin/sh", "-c", commandLine, nullptr};
  pid_t pid;
  int error = posix_spawn(&pid, "/bin/sh", nullptr, nullptr, const_cast<char**>(argv), environ);
  if (error != 0) {
    t_lastError = WindowsError(error);
    return -1;
  }
  return pid;
}

}  // namespace

bool FileCopy(const char* source, const char* target, bool failIfExists) {
  int in = open(source, O_RDONLY);
  if (in < 0) return Fail();
  int out = open(target, O_WRONLY | O_CREAT | (failIfExists ? O_EXCL : O_TRUNC), 0644);
  if (out < 0) {
    int error = errno;
    close(in);
    t_lastError = error == EEXIST ? kErrorFileExists : WindowsError(error);
    return false;
  }
  char buffer[65536];
  ssize_t n;
  bool ok = true;
  while ((n = read(in, buffer, sizeof buffer)) > 0) {
    if (write(out, buffer, static_cast<size_t>(n)) != n) {
      ok = false;
      break;
    }
  }
  ok = ok && n == 0;
  int error = errno;
  close(in);
  close(out);
  errno = error;
  return ok ? Succeed() : Fail();
}

bool FileMove(const char* source, const char* target) {
  if (access(target, F_OK) == 0) {
    t_lastError = kErrorAlreadyExists;
    return false;
  }
  return Check(rename(source, target));
}

bool FileDelete(const char* path) {
  struct stat info;
  if (stat(path, &info) == 0 && S_ISDIR(info.st_mode)) {
    t_lastError = kErrorAccessDenied;
    return false;
  }
  return Check(unlink(path));
}

bool FolderCreate(const char* path) {
  return Check(mkdir(path, 0755));
}

bool FolderRemove(const char* path) {
  return Check(rmdir(path));
}

FileHandle FileOpen(const char* path, unsigned access, unsigned, unsigned disposition, unsigned) {
  int flags = (access & kFileRead) && (access & kFileWrite) ? O_RDWR
              : (access & kFileWrite)                       ? O_WRONLY
                                                            : O_RDONLY;
  switch (disposition) {
    case kCreateNew:
      flags |= O_CREAT | O_EXCL;
      break;
    case kCreateAlways:
      flags |= O_CREAT | O_TRUNC;
      break;
    case kOpenAlways:
      flags |= O_CREAT;
      break;
    case kTruncateExisting:
      flags |= O_TRUNC;
      break;
    default:
      break;
  }
  struct stat info;
  if (stat(path, &info) == 0 && S_ISDIR(info.st_mode)) {
    t_lastError = kErrorAccessDenied;
    return kInvalidFile;
  }
  int fd = open(path, flags, 0644);
  if (fd < 0) {
    t_lastError = errno == EEXIST ? kErrorFileExists : WindowsError(errno);
    return kInvalidFile;
  }
  Succeed();
  return fd;
}

void FileClose(FileHandle file) {
  if (file != kInvalidFile) close(Fd(file));
}

bool FileSetAttributes(const char* path, unsigned attributes) {
  struct stat info;
  if (stat(path, &info) != 0) return Fail();
  mode_t mode = info.st_mode & 07777;
  mode = (attributes & kAttrReadOnly) ? (mode & ~static_cast<mode_t>(0222)) : (mode | S_IWUSR);
  return Check(chmod(path, mode));
}

unsigned FileGetAttributes(const char* path) {
  struct stat info;
  if (lstat(path, &info) != 0) {
    Fail();
    return kNoAttributes;
  }
  bool link = S_ISLNK(info.st_mode);
  if (link && stat(path, &info) != 0) return kAttrReparsePoint;
  Succeed();
  return AttributesOf(info, link);
}

bool FileGetFacts(const char* path, FileFacts* facts) {
  struct stat info;
  if (stat(path, &info) != 0) return Fail();
  facts->regular = S_ISREG(info.st_mode);
  facts->links = static_cast<unsigned>(info.st_nlink);
  facts->attributes = AttributesOf(info, false);
  return Succeed();
}

bool FileResolveLinks(const char* path, char* resolved, int size) {
  char current[4096];
  if (snprintf(current, sizeof current, "%s", path) >= static_cast<int>(sizeof current)) {
    t_lastError = 206;
    return false;
  }
  // The system gives up on the same number of links.
  for (int depth = 0; depth < 40; ++depth) {
    struct stat info;
    if (lstat(current, &info) != 0 || !S_ISLNK(info.st_mode)) {
      if (snprintf(resolved, static_cast<size_t>(size), "%s", current) >= size) {
        t_lastError = 206;
        return false;
      }
      return Succeed();
    }
    char link[4096];
    ssize_t length = readlink(current, link, sizeof link - 1);
    if (length < 0) return Fail();
    link[length] = '\0';
    char next[4096];
    const char* slash = strrchr(current, '/');
    int folder = link[0] == '/' || !slash ? 0 : static_cast<int>(slash - current) + 1;
    if (snprintf(next, sizeof next, "%.*s%s", folder, current, link) >=
        static_cast<int>(sizeof next)) {
      t_lastError = 206;
      return false;
    }
    memcpy(current, next, sizeof current);
  }
  t_lastError = 1921;  // the name of the file cannot be resolved
  return false;
}

bool FileReplace(const char* target, const char* replacement) {
  struct stat info;
  if (stat(target, &info) != 0) return Fail();
  // The owner first: changing it may clear the set-id bits that the mode then puts back. Only
  // the superuser may give a file away; otherwise the group alone may still be ours to give, and
  // failing both the new file stays the saver's, as any new file would.
  int given = chown(replacement, info.st_uid, info.st_gid);
  if (given != 0) given = chown(replacement, static_cast<uid_t>(-1), info.st_gid);
  static_cast<void>(given);
  if (chmod(replacement, info.st_mode & 07777) != 0) return Fail();
  return Check(rename(replacement, target));
}

FileHandle FileFindFirst(const char* pattern, FindData* found) {
  auto* state = static_cast<FindState*>(AllocMem(sizeof(FindState), kOwnerFindState));
  if (!state) {
    t_lastError = kErrorNotEnoughMemory;
    return kInvalidFile;
  }
  const char* slash = strrchr(pattern, '/');
  size_t directory = slash ? static_cast<size_t>(slash - pattern) + 1 : 0;
  if (directory >= sizeof state->directory ||
      strlen(pattern + directory) >= sizeof state->pattern) {
    FreeMem(state);
    t_lastError = 206;
    return kInvalidFile;
  }
  memcpy(state->directory, pattern, directory);
  state->directory[directory] = '\0';
  // "*.*" means every name, as on Windows.
  snprintf(state->pattern, sizeof state->pattern, "%s",
           strcmp(pattern + directory, "*.*") == 0 ? "*" : pattern + directory);
  state->folder = opendir(directory ? state->directory : ".");
  if (!state->folder) {
    Fail();
    FreeMem(state);
    return kInvalidFile;
  }
  if (!NextMatch(state, found)) {
    closedir(state->folder);
    FreeMem(state);
    t_lastError = kErrorFileNotFound;
    return kInvalidFile;
  }
  return reinterpret_cast<FileHandle>(state);
}

bool FileFindNext(FileHandle search, FindData* found) {
  return NextMatch(reinterpret_cast<FindState*>(search), found);
}

void FileFindClose(FileHandle search) {
  if (search == kInvalidFile) return;
  auto* state = reinterpret_cast<FindState*>(search);
  closedir(state->folder);
  FreeMem(state);
}

bool FileRead(FileHandle file, void* buffer, unsigned size, unsigned* done) {
  *done = 0;
  while (*done < size) {
    ssize_t n = read(Fd(file), static_cast<char*>(buffer) + *done, size - *done);
    if (n < 0) return Fail();
    if (n == 0) break;
    *done += static_cast<unsigned>(n);
  }
  return Succeed();
}

bool FileWrite(FileHandle file, const void* buffer, unsigned size, unsigned* done) {
  ssize_t n = write(Fd(file), buffer, size);
  *done = n > 0 ? static_cast<unsigned>(n) : 0;
  return n >= 0 ? Succeed() : Fail();
}

uint64_t FileGetSize(FileHandle file) {
  struct stat info;
  if (fstat(Fd(file), &info) != 0) {
    Fail();
    return ~0ull;
  }
  return static_cast<uint64_t>(info.st_size);
}

bool FileSeek(FileHandle file, int64_t offset, unsigned origin, uint64_t* position) {
  int whence = origin == kSeekBegin ? SEEK_SET : origin == kSeekCurrent ? SEEK_CUR : SEEK_END;
  off_t result = lseek(Fd(file), static_cast<off_t>(offset), whence);
  if (result < 0) return Fail();
  if (position) *position = static_cast<uint64_t>(result);
  return Succeed();
}

unsigned FileStamp(FileHandle file) {
  struct stat info;
  if (fstat(Fd(file), &info) != 0) return 0;
  // Seconds from 1601 to 1970, then 100-nanosecond units.
  uint64_t fileTime = (static_cast<uint64_t>(info.st_mtim.tv_sec) + 11644473600ull) * 10000000ull +
                      static_cast<uint64_t>(info.st_mtim.tv_nsec) / 100;
  return StampFromFileTime(fileTime);
}

bool FileLocalWriteTime(FileHandle file, OsDateTime* time) {
  struct stat info;
  struct tm local;
  if (fstat(Fd(file), &info) != 0 || !localtime_r(&info.st_mtime, &local)) return Fail();
  *time = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
           local.tm_hour,        local.tm_min,     local.tm_sec};
  return Succeed();
}

unsigned FileLastError() {
  return t_lastError;
}

// On POSIX the command line is handed to the shell.
bool StartProgram(const char* commandLine, int) {
  return Spawn(commandLine) > 0;
}

int StartProgramAndWait(const char* commandLine, int, unsigned timeoutMs) {
  pid_t pid = Spawn(commandLine);
  if (pid <= 0) return -1;
  struct timespec start;
  clock_gettime(CLOCK_MONOTONIC, &start);
  for (;;) {
    int status;
    if (waitpid(pid, &status, WNOHANG) == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    long long elapsed =
        (now.tv_sec - start.tv_sec) * 1000LL + (now.tv_nsec - start.tv_nsec) / 1000000;
    if (elapsed >= timeoutMs) return -1;
    struct timespec pause = {0, 2000000};
    nanosleep(&pause, nullptr);
  }
}

bool ShellOpen(void*, const char* verb, const char* file, const char*, const char*, int) {
  // The desktop's opener stands in for the shell's "open"; other verbs have no equivalent.
  if (verb && strcmp(verb, "open") != 0) return false;
  pid_t pid;
  const char* argv[] = {"xdg-open", file, nullptr};
  return posix_spawnp(&pid, "xdg-open", nullptr, nullptr, const_cast<char**>(argv), environ) == 0;
}
