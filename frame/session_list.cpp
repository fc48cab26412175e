#include "frame/session_list.h"

#include <cstring>

#include "foundation/formatter.h"
#include "foundation/path.h"
#include "foundation/settings.h"

const char kDocListSection[] = "DocList";
const char kProjectKey[] = "Project";
const char kFramePlaceKey[] = "FrameWnd";
const char kCommandLineFramePlaceKey[] = "CLFrameWnd";

namespace {

constexpr int kEntrySize = kPathSize + 80;

// One decimal number after blanks, in the profile's manner: an optional sign, then digits.
bool ReadNumber(const char** cursor, int* value) {
  const char* p = *cursor;
  while (*p == ' ' || *p == '\t')
    ++p;
  bool negative = false;
  if (*p == '-' || *p == '+') negative = *p++ == '-';
  if (*p < '0' || *p > '9') return false;
  long long number = 0;
  while (*p >= '0' && *p <= '9') {
    if (number < 0x7FFFFFFF) number = number * 10 + (*p - '0');
    ++p;
  }
  if (number > 0x7FFFFFFF) number = 0x7FFFFFFF;
  *value = static_cast<int>(negative ? -number : number);
  *cursor = p;
  return true;
}

}  // namespace

int FormatSessionEntry(const SessionEntry* entry, char* text, int size) {
  return FormatStr(text, size, "\"%s\" %d %d %d %d %d", entry->path, entry->left, entry->top,
                   entry->width, entry->height, entry->show);
}

bool ParseSessionEntry(const char* text, SessionEntry* entry) {
  const char* p = text;
  while (*p == ' ' || *p == '\t')
    ++p;
  int length = 0;
  if (*p == '"') {
    ++p;
    while (*p && *p != '"') {
      if (length >= kPathSize - 1) return false;
      entry->path[length++] = *p++;
    }
    if (*p != '"') return false;
    ++p;
  } else {
    while (static_cast<unsigned char>(*p) > ' ') {
      if (length >= kPathSize - 1) return false;
      entry->path[length++] = *p++;
    }
  }
  entry->path[length] = '\0';
  if (length == 0) return false;
  return ReadNumber(&p, &entry->left) && ReadNumber(&p, &entry->top) &&
         ReadNumber(&p, &entry->width) && ReadNumber(&p, &entry->height) &&
         ReadNumber(&p, &entry->show);
}

int SaveSessionList(const char* file, const SessionWindow* windows, int count) {
  if (count > kMaxSessionWindows) count = kMaxSessionWindows;
  char text[kEntrySize];
  char key[16];
  int index = 0;
  for (int i = 0; i < count; ++i) {
    const SessionWindow& window = windows[i];
    if (!window.path) {
      FormatStr(text, sizeof text, "%d %d %d %d %d", window.left, window.top, window.width,
                window.height, window.show);
      WriteToFile(file, kDocListSection, kProjectKey, text);
      continue;
    }
    if (window.untitled) continue;
    SessionEntry entry;
    strncpy(entry.path, window.path, kPathSize - 1);
    entry.path[kPathSize - 1] = '\0';
    entry.left = window.left;
    entry.top = window.top;
    entry.width = window.width;
    entry.height = window.height;
    entry.show = window.show;
    FormatSessionEntry(&entry, text, sizeof text);
    FormatStr(key, sizeof key, "%d", index++);
    WriteToFile(file, kDocListSection, key, text);
  }
  FormatStr(key, sizeof key, "%d", index);
  WriteToFile(file, kDocListSection, key, "");
  return index;
}

bool ReadSessionEntry(const char* file, int index, SessionEntry* entry) {
  char text[kEntrySize];
  if (ReadFromFile(file, kDocListSection, index, text, sizeof text) <= 0) return false;
  return ParseSessionEntry(text, entry);
}

int SessionListLength(const char* file) {
  char text[4];
  int index = 0;
  // The list cannot be longer than what is ever written; a hand-made file gets the same limit.
  while (index < 10000 && ReadFromFile(file, kDocListSection, index, text, sizeof text) > 0)
    ++index;
  return index;
}

bool ParseFramePlace(const char* text, FramePlace* place) {
  const char* p = text;
  return ReadNumber(&p, &place->left) && ReadNumber(&p, &place->top) &&
         ReadNumber(&p, &place->width) && ReadNumber(&p, &place->height);
}

void FitFramePlace(FramePlace* place, int screenWidth, int screenHeight, int captionHeight) {
  if (place->left >= screenWidth - captionHeight) place->left = 0;
  if (place->top >= screenHeight - captionHeight) place->top = 0;
}
