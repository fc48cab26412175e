#include "foundation/settings.h"

#include <cstring>

#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/os_path.h"
#include "foundation/os_profile.h"
#include "foundation/system_text.h"

const char kConfigSection[] = "Config";
const char kDlgPosSection[] = "DlgPos";

namespace {

constexpr int kPathSize = 260;
constexpr int kOwnerSettingsText = 20;

char g_settingsPath[kPathSize];
char g_logPath[kPathSize];

// A scratch block for one conversion, freed with the holder.
struct Scratch {
  char* text;
  explicit Scratch(size_t size) : text(static_cast<char*>(AllocMem(size, kOwnerSettingsText))) {}
  ~Scratch() { FreeMem(text); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
};

bool IsShortNameChar(char c) {
  return !strchr(" +,;=[]", c);
}

// At most 8 characters, optionally '.' and at most 3 more, none of the forbidden ones.
bool IsShortName(const char* name) {
  const char* dot = strchr(name, '.');
  size_t base = dot ? static_cast<size_t>(dot - name) : strlen(name);
  size_t extension = dot ? strlen(dot + 1) : 0;
  if (base == 0 || base > 8 || extension > 3 || (dot && strchr(dot + 1, '.'))) return false;
  for (const char* p = name; *p; ++p) {
    if (*p != '.' && !IsShortNameChar(*p)) return false;
  }
  return true;
}

bool DerivePath(const char* modulePath, const char* extension, char* systemPath) {
  char internal[kPathSize];
  if (!MakeProfilePath(modulePath, extension, internal, kPathSize)) return false;
  return ToSystemPath(internal, systemPath, kPathSize) >= 0;
}

}  // namespace

bool MakeProfilePath(const char* modulePath, const char* extension, char* target, int size) {
  size_t length = strlen(modulePath);
  const char* slash = strrchr(modulePath, '/');
  const char* name = slash ? slash + 1 : modulePath;
  const char* dot = strrchr(name, '.');
  size_t stem = dot ? static_cast<size_t>(dot - modulePath) : length;
  size_t total = stem + 1 + strlen(extension);
  if (total + 1 > static_cast<size_t>(size)) return false;
  memcpy(target, modulePath, stem);
  target[stem] = '.';
  strcpy(target + stem + 1, extension);
  char* fileName = target + (name - modulePath);
  if (IsShortName(fileName)) {
    for (char* p = fileName; *p; ++p) {
      if (*p >= 'a' && *p <= 'z') *p = static_cast<char>(*p - 32);
    }
  }
  return true;
}

void InitSettingsPaths() {
  char module[kPathSize];
  if (!OsGetModulePath(module, sizeof module)) return;
  if (DerivePath(module, "ini", g_settingsPath)) OsClearReadOnly(g_settingsPath);
  DerivePath(module, "log", g_logPath);
}

const char* SettingsPath() {
  return g_settingsPath;
}
const char* SettingsLogPath() {
  return g_logPath;
}

bool SetSettingsPath(const char* internalPath) {
  return ToSystemPath(internalPath, g_settingsPath, kPathSize) >= 0;
}

int ReadInt(const char* section, const char* key, int fallback) {
  return static_cast<int>(OsProfileGetInt(g_settingsPath, section, key, fallback));
}

int ReadStr(const char* section, const char* key, char* buffer, int size) {
  return OsProfileGetString(g_settingsPath, section, key, "", buffer, size);
}

int ReadStrDef(const char* section, const char* key, char* buffer, int size, const char* fallback) {
  return OsProfileGetString(g_settingsPath, section, key, fallback, buffer, size);
}

int ReadText(const char* section, const char* key, char* buffer, int size, const char* fallback) {
  if (size <= 0) return 0;
  buffer[0] = '\0';
  // A code-page character may take up to three bytes of the internal form and no less than one.
  Scratch systemFallback(strlen(fallback ? fallback : "") * 2 + 1);
  Scratch value(static_cast<size_t>(size));
  if (!systemFallback.text || !value.text) return 0;
  if (ToSystemText(fallback ? fallback : "", systemFallback.text,
                   static_cast<int>(strlen(fallback ? fallback : "") * 2 + 1)) < 0) {
    systemFallback.text[0] = '\0';
  }
  OsProfileGetString(g_settingsPath, section, key, systemFallback.text, value.text, size);
  int length = FromSystemText(value.text, buffer, size);
  if (length < 0) {
    buffer[0] = '\0';
    return 0;
  }
  return length;
}

int ReadIndexed(const char* section, int index, char* buffer, int size) {
  char key[16];
  FormatStr(key, sizeof key, "%d", index);
  return ReadStr(section, key, buffer, size);
}

bool WriteStr(const char* section, const char* key, const char* value) {
  return OsProfileWriteString(g_settingsPath, section, key, value);
}

bool WriteText(const char* section, const char* key, const char* value) {
  size_t size = strlen(value) * 2 + 1;
  Scratch converted(size);
  if (!converted.text || ToSystemText(value, converted.text, static_cast<int>(size)) < 0) {
    return false;
  }
  return WriteStr(section, key, converted.text);
}

bool WriteNums(const char* section, const char* key, int a, int b, int c, int d) {
  int count = d != kOmitNum ? 4 : c != kOmitNum ? 3 : b != kOmitNum ? 2 : 1;
  static const char* const kFormats[] = {"%d", "%d %d", "%d %d %d", "%d %d %d %d"};
  char text[64];
  FormatStr(text, sizeof text, kFormats[count - 1], a, b, c, d);
  return WriteStr(section, key, text);
}

void WriteToFile(const char* file, const char* section, const char* key, const char* value) {
  char path[kPathSize];
  if (ToSystemPath(file, path, kPathSize) < 0) return;
  if (!value) value = "";
  size_t size = strlen(value) * 2 + 1;
  Scratch converted(size);
  if (!converted.text || ToSystemText(value, converted.text, static_cast<int>(size)) < 0) return;
  OsProfileWriteString(path, section, key, converted.text);
}

int ReadFromFile(const char* file, const char* section, int index, char* buffer, int size) {
  if (size <= 0) return 0;
  buffer[0] = '\0';
  char path[kPathSize];
  if (ToSystemPath(file, path, kPathSize) < 0) return 0;
  char key[16];
  FormatStr(key, sizeof key, "%d", index);
  Scratch value(static_cast<size_t>(size));
  if (!value.text) return 0;
  OsProfileGetString(path, section, key, "", value.text, size);
  int length = FromSystemText(value.text, buffer, size);
  return length < 0 ? (buffer[0] = '\0', 0) : length;
}
