// Profile files on POSIX, behaving like the Windows calls for everything the program does with
// them. Each call reads the file afresh; nothing is cached.
#include "foundation/os_profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "foundation/memory.h"
#include "foundation/profile_text.h"

namespace {

constexpr int kOwnerProfileText = 10;

// The whole file in a block of its own, or an empty text when the file cannot be read.
struct FileText {
  char* text = nullptr;
  size_t length = 0;
  ~FileText() { FreeMem(text); }
};

bool ReadFileText(const char* file, FileText* out) {
  int fd = open(file, O_RDONLY);
  if (fd < 0) return false;
  struct stat info;
  bool ok = fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
  size_t size = ok ? static_cast<size_t>(info.st_size) : 0;
  out->text = ok ? static_cast<char*>(AllocMem(size + 1, kOwnerProfileText)) : nullptr;
  size_t got = 0;
  while (out->text && got < size) {
    ssize_t n = read(fd, out->text + got, size - got);
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  close(fd);
  out->length = got;
  return out->text != nullptr;
}

int CopyOut(ProfileSpan value, char* buffer, int size) {
  size_t count =
      value.length < static_cast<size_t>(size - 1) ? value.length : static_cast<size_t>(size - 1);
  memcpy(buffer, value.text, count);
  buffer[count] = '\0';
  return static_cast<int>(count);
}

}  // namespace

int OsProfileGetString(const char* file, const char* section, const char* key, const char* fallback,
                       char* buffer, int size) {
  if (size <= 0) return 0;
  FileText text;
  ProfileSpan value;
  if (ReadFileText(file, &text) && ProfileFindValue(text.text, text.length, section, key, &value)) {
    return CopyOut(ProfileStripQuotes(value), buffer, size);
  }
  if (!fallback) fallback = "";
  size_t length = strlen(fallback);
  while (length > 0 && fallback[length - 1] == ' ')
    --length;
  return CopyOut({fallback, length}, buffer, size);
}

unsigned OsProfileGetInt(const char* file, const char* section, const char* key, int fallback) {
  char value[30];
  if (OsProfileGetString(file, section, key, "", value, sizeof value) == 0) {
    return static_cast<unsigned>(fallback);
  }
  return ProfileParseInt({value, strlen(value)});
}

bool OsProfileWriteString(const char* file, const char* section, const char* key,
                          const char* value) {
  if (!section || !key) return false;
  if (!value) value = "";
  FileText old;
  ReadFileText(file, &old);
  size_t length = ProfileSetValue(old.text, old.length, section, key, value, nullptr, 0);
  char* text = static_cast<char*>(AllocMem(length, kOwnerProfileText));
  if (!text) return false;
  ProfileSetValue(old.text, old.length, section, key, value, text, length);
  int fd = open(file, O_WRONLY | O_CREAT | O_TRUNC, 0644);
  bool ok = fd >= 0 && write(fd, text, length) == static_cast<ssize_t>(length);
  if (fd >= 0) close(fd);
  FreeMem(text);
  return ok;
}
