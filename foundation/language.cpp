#include "foundation/language.h"

#include <cstdio>
#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/os_heap.h"
#include "foundation/os_lock.h"
#include "foundation/os_path.h"
#include "foundation/os_resource.h"
#include "foundation/system_text.h"
#include "foundation/unicode.h"

namespace {

constexpr int kLineSize = 4096;
constexpr int kOwnerStringCache = 63;
constexpr int kOwnerLanguageLoad = 64;
constexpr int kResourceStringSize = 4096;
constexpr int kLanguageNameCharacters = 32;

// The table: the decoded lines in file order, all in the language heap.
OsHeap* g_heap = nullptr;
char** g_lines = nullptr;
int g_lineCount = 0;
int g_lineCapacity = 0;

// Cached string-table texts, newest first.
struct CachedString {
  CachedString* next;
  int id;
  char text[1];
};
CachedString* g_cache = nullptr;
// Guards the cache: GetStr may be called from the serial port's thread too.
OsLock g_stringCacheLock;

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Decodes the escapes of a line in place; a '\' at the very end ends the line.
void DecodeEscapes(char* line) {
  char* out = line;
  for (const char* in = line; *in;) {
    if (*in != '\\') {
      *out++ = *in++;
      continue;
    }
    char c = in[1];
    if (c == '\0') break;
    in += 2;
    switch (c) {
      case 'a':
        *out++ = 7;
        break;
      case 'b':
        *out++ = 8;
        break;
      case 'n':
        *out++ = 10;
        break;
      case 'r':
        *out++ = 13;
        break;
      case 't':
        *out++ = 9;
        break;
      case 'x':
        if (HexValue(in[0]) >= 0 && HexValue(in[1]) >= 0) {
          *out++ = static_cast<char>(HexValue(in[0]) * 16 + HexValue(in[1]));
          in += 2;
        } else {
          *out++ = 'x';
        }
        break;
      default:
        if (c >= '0' && c <= '3' && in[0] >= '0' && in[0] <= '7' && in[1] >= '0' && in[1] <= '7') {
          *out++ = static_cast<char>((c - '0') * 64 + (in[0] - '0') * 8 + (in[1] - '0'));
          in += 2;
        } else {
          *out++ = c;
        }
    }
  }
  *out = '\0';
}

bool AppendLine(const char* line) {
  if (g_lineCount == g_lineCapacity) {
    int capacity = g_lineCapacity ? g_lineCapacity * 2 : 256;
    char** lines =
        static_cast<char**>(OsHeapAlloc(g_heap, sizeof(char*) * static_cast<size_t>(capacity)));
    if (!lines) return false;
    if (g_lineCount) memcpy(lines, g_lines, sizeof(char*) * static_cast<size_t>(g_lineCount));
    g_lines = lines;
    g_lineCapacity = capacity;
  }
  size_t length = strlen(line);
  char* copy = static_cast<char*>(OsHeapAlloc(g_heap, length + 1));
  if (!copy) return false;
  memcpy(copy, line, length + 1);
  g_lines[g_lineCount++] = copy;
  return true;
}

// Reads one line of at most kLineSize - 1 bytes; the rest of a longer line is skipped.
bool ReadLine(FILE* file, char* line) {
  if (!fgets(line, kLineSize, file)) return false;
  size_t length = strlen(line);
  if (length > 0 && line[length - 1] != '\n') {
    int c;
    while ((c = fgetc(file)) != EOF && c != '\n') {
    }
  }
  while (length > 0 && (line[length - 1] == '\n' || line[length - 1] == '\r'))
    line[--length] = '\0';
  return true;
}

const char* FindEntry(const char* key, size_t keyLength) {
  for (int i = 0; i < g_lineCount; ++i) {
    if (strncmp(g_lines[i], key, keyLength) == 0 && g_lines[i][keyLength] == '=') {
      return g_lines[i] + keyLength + 1;
    }
  }
  return "";
}

const char* CacheString(int id, const char* text) {
  size_t length = strlen(text);
  CachedString* node =
      static_cast<CachedString*>(AllocMem(sizeof(CachedString) + length, kOwnerStringCache));
  if (!node) return "(null)";
  node->id = id;
  memcpy(node->text, text, length + 1);
  node->next = g_cache;
  g_cache = node;
  return node->text;
}

const char* CachedText(int id) {
  for (CachedString* node = g_cache; node; node = node->next) {
    if (node->id == id) return node->text;
  }
  return nullptr;
}

}  // namespace

bool DecodeLanguageLine(char* line) {
  if (line[0] == '\0' || line[0] == ';') return false;
  char* equals = strchr(line, '=');
  if (!equals || equals == line) return false;
  // A value wrapped in quotes loses them: the one it begins with and the one the line ends with.
  char* value = equals + 1;
  if (*value == '"') memmove(value, value + 1, strlen(value));
  size_t length = strlen(line);
  if (length > static_cast<size_t>(value - line) && line[length - 1] == '"')
    line[length - 1] = '\0';
  DecodeEscapes(line);
  return true;
}

void LoadLanguageFile(const char* path) {
  UnloadLanguage();
  char systemPath[260];
  if (ToSystemPath(path, systemPath, sizeof systemPath) < 0) return;
  FILE* file = fopen(systemPath, "rb");
  if (!file) return;
  char* line = static_cast<char*>(AllocMem(kLineSize, kOwnerLanguageLoad));
  char* internal = static_cast<char*>(AllocMem(kLineSize * 3, kOwnerLanguageLoad));
  g_heap = (line && internal) ? OsCreateHeap() : nullptr;
  // The files are in the system code page, but an editor may well save one in UTF-8 with a
  // byte-order mark: such a file is taken as UTF-8, which is already the internal form.
  bool utf8 = false;
  for (bool first = true; g_heap && ReadLine(file, line); first = false) {
    char* text = line;
    if (first && memcmp(line, "\xEF\xBB\xBF", 3) == 0) {
      utf8 = true;
      text += 3;
    }
    if (!DecodeLanguageLine(text)) continue;
    if (!utf8 && FromSystemText(text, internal, kLineSize * 3) < 0) continue;
    if (!AppendLine(utf8 ? text : internal)) break;
  }
  fclose(file);
  FreeMem(internal);
  FreeMem(line);
}

bool IsLanguageName(const char* name) {
  int characters = 0;
  for (const char* c = name; *c; ++c) {
    if (*c == '/' || *c == '\\' || *c == ':') return false;
    if ((*c & 0xC0) != 0x80) ++characters;  // UTF-8 continuation bytes are no new character
  }
  return characters > 0 && characters <= kLanguageNameCharacters;
}

int ListLanguageFiles(const char* folder, void (*add)(const char* name, void* context),
                      void* context) {
  char pattern[kPathSize];
  if (FormatStr(pattern, sizeof pattern, "%s/LANGUAGE/*.LNG", folder) >
      static_cast<int>(sizeof pattern))
    return 0;
  FindData found;
  FileHandle search = FileFindFirst(pattern, &found);
  if (search == kInvalidFile) return 0;
  int count = 0;
  do {
    if (found.attributes & kAttrDirectory) continue;
    char* dot = strrchr(found.name, '.');
    if (dot) *dot = '\0';
    // A name that could not be stored or loaded is not offered.
    if (!IsLanguageName(found.name)) continue;
    add(found.name, context);
    ++count;
  } while (FileFindNext(search, &found));
  FileFindClose(search);
  return count;
}

void LoadLanguage(const char* name) {
  if (!name || !IsLanguageName(name)) return;
  char path[260];
  size_t length = OsGetModulePath(path, sizeof path);
  char* slash = length ? strrchr(path, '/') : nullptr;
  if (!slash) return;
  *slash = '\0';
  char file[260];
  if (FormatStr(file, sizeof file, "%s/LANGUAGE/%s.lng", path, name) >
      static_cast<int>(sizeof file)) {
    return;
  }
  LoadLanguageFile(file);
}

void UnloadLanguage() {
  OsDestroyHeap(g_heap);
  g_heap = nullptr;
  g_lines = nullptr;
  g_lineCount = 0;
  g_lineCapacity = 0;
}

const char* LanguageText(int number) {
  char key[16];
  int length = FormatStr(key, sizeof key, "%d", number) - 1;
  return FindEntry(key, static_cast<size_t>(length));
}

const char* LanguageTextByName(const char* name) {
  return FindEntry(name, strlen(name));
}

const char* GetStr(int id) {
  const char* translated = LanguageText(kLanguageStringBase + id);
  if (*translated) return translated;
  LockGuard guard(&g_stringCacheLock);
  if (const char* cached = CachedText(id)) return cached;
  char16_t* wide = static_cast<char16_t*>(AllocMem(kResourceStringSize * 2, kOwnerLanguageLoad));
  char* text = static_cast<char*>(AllocMem(kResourceStringSize * 3, kOwnerLanguageLoad));
  const char* result = "(null)";
  if (wide && text) {
    int length = OsLoadString(static_cast<unsigned>(id), wide, kResourceStringSize);
    if (length > 0) {
      text[Utf16ToUtf8(wide, length, text, kResourceStringSize * 3 - 1)] = '\0';
    } else {
      FormatStr(text, 32, "(%d)", id);
    }
    result = CacheString(id, text);
  }
  FreeMem(text);
  FreeMem(wide);
  return result;
}

void StartStringCache() {
  OsCreateLock(&g_stringCacheLock);
}

void FreeStringCache() {
  LockGuard guard(&g_stringCacheLock);
  while (g_cache) {
    CachedString* next = g_cache->next;
    FreeMem(g_cache);
    g_cache = next;
  }
}

void StopStringCache() {
  FreeStringCache();
  OsDeleteLock(&g_stringCacheLock);
}
