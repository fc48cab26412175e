#include "foundation/diagnostics.h"

#include <cstdarg>
#include <cstring>

#include "foundation/formatter.h"
#include "foundation/os_file.h"
#include "foundation/os_screen.h"

#ifndef QUILL_DEBUG_LOG
#define QUILL_DEBUG_LOG 1
#endif

namespace {

constexpr int kLogLineSize = 1024;
constexpr int kNoteSize = 260;
constexpr int kNoteLineHeight = 16;
constexpr int kDumpTextColumn = 56;
const char kLogName[] = "DEBUG.TXT";

const ScreenSurface kScreen = {OsScreenHeight, OsDrawScreenText};
const ScreenSurface* g_surface = &kScreen;
int g_noteTop = 0;

void AppendToLog(const char* text, int length) {
  char path[128];
  if (length <= 0 || !GetDebugLogPath(path, sizeof path)) return;
  OsAppendToFile(path, text, static_cast<size_t>(length));
}

}  // namespace

bool GetDebugLogPath(char* path, int size) {
  size_t folder = OsGetTempFolder(path, static_cast<size_t>(size));
  if (folder == 0 || folder + sizeof kLogName > static_cast<size_t>(size)) return false;
  memcpy(path + folder, kLogName, sizeof kLogName);
  return true;
}

void DebugLog(const char* format, ...) {
  if (!QUILL_DEBUG_LOG) return;
  char line[kLogLineSize];
  va_list args;
  va_start(args, format);
  FormatText(line, sizeof line, format, args);
  va_end(args);
  AppendToLog(line, static_cast<int>(strlen(line)));
}

int FormatDumpLine(const unsigned char* bytes, int count, unsigned offset, char* line) {
  static const char kHex[] = "0123456789ABCDEF";
  int length = FormatStr(line, 8, "%04X:", offset & 0xFFFF) - 1;
  for (int i = 0; i < count; ++i) {
    line[length++] = i == 8 ? '-' : ' ';
    line[length++] = kHex[bytes[i] >> 4];
    line[length++] = kHex[bytes[i] & 0xF];
  }
  while (length < kDumpTextColumn)
    line[length++] = ' ';
  for (int i = 0; i < count; ++i) {
    line[length++] = (bytes[i] < 33 || bytes[i] > 127) ? ' ' : static_cast<char>(bytes[i]);
  }
  line[length++] = '\r';
  line[length++] = '\n';
  line[length] = '\0';
  return length;
}

// The dump shows whatever memory it is given, freed blocks included, so the sanitizer must not
// object to reading it.
#if defined(__clang__) || defined(__GNUC__)
__attribute__((no_sanitize("address")))
#endif
void DebugDump(const void* address, int count) {
  const volatile unsigned char* bytes = static_cast<const volatile unsigned char*>(address);
  for (int start = 0; start < count; start += 16) {
    unsigned char chunk[16];
    int n = count - start < 16 ? count - start : 16;
    for (int i = 0; i < n; ++i)
      chunk[i] = bytes[start + i];
    char line[80];
    AppendToLog(line, FormatDumpLine(chunk, n, static_cast<unsigned>(start), line));
  }
}

void ScreenNote(const char* format, ...) {
  char note[kNoteSize];
  va_list args;
  va_start(args, format);
  FormatText(note, sizeof note, format, args);
  va_end(args);
  g_surface->draw(0, g_noteTop, note);
  g_noteTop += kNoteLineHeight;
  if (g_noteTop >= g_surface->height()) g_noteTop = 0;
}

const ScreenSurface* SetScreenSurface(const ScreenSurface* surface) {
  const ScreenSurface* previous = g_surface;
  g_surface = surface ? surface : &kScreen;
  g_noteTop = 0;
  return previous == &kScreen ? nullptr : previous;
}
