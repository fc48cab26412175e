#include "frame/command_line.h"
#include "foundation/path.h"

#include <cstring>

namespace {

const char* SkipProgramName(const char* p) {
  if (*p == '"') {
    ++p;
    while (*p && *p != '"')
      ++p;
    if (*p) ++p;
    return p;
  }
  while (static_cast<unsigned char>(*p) > 32)
    ++p;
  return p;
}

}  // namespace

bool IsProjectPath(const char* path) {
  const char* dot = strrchr(path, '.');
  if (!dot || strchr(dot, '/') || strchr(dot, '\\')) return false;
  const char* ext = dot + 1;
  const char kPrj[] = "prj";
  for (int i = 0; i < 3; ++i) {
    char c = ext[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    if (c != kPrj[i]) return false;
  }
  return ext[3] == '\0';
}

bool ParseCommandLine(const char* line, char* path) {
  path[0] = '\0';
  if (!line) return false;
  const char* p = SkipProgramName(line);
  while (*p && static_cast<unsigned char>(*p) < 33)
    ++p;
  char quote = (*p == '"' || *p == '\'') ? *p : '\0';
  if (quote) ++p;
  int length = 0;
  for (; *p && length < kPathSize - 1; ++p) {
    unsigned char c = static_cast<unsigned char>(*p);
    if (quote ? c == static_cast<unsigned char>(quote) : c < 33) break;
    path[length++] = c == '\\' ? '/' : static_cast<char>(c);
  }
  // A cut in the middle of a UTF-8 sequence would leave a broken name: drop the partial tail.
  if (length == kPathSize - 1 && *p) {
    int lead = length;
    while (lead > 0 && (static_cast<unsigned char>(path[lead - 1]) & 0xC0) == 0x80)
      --lead;
    if (lead > 0) {
      unsigned char c = static_cast<unsigned char>(path[lead - 1]);
      int needed = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
      if (lead - 1 + needed > length) length = lead - 1;
    }
  }
  path[length] = '\0';
  return length > 0 && !IsProjectPath(path);
}
