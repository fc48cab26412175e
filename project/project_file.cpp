#include "project/project_file.h"

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/memory.h"
#include "foundation/os_profile.h"
#include "foundation/path.h"
#include "foundation/settings.h"
#include "foundation/system_text.h"
#include "project/project.h"
#include "project/project_host.h"
#include "project/text_lines.h"

const char kProjectHeader[] = "Quill Project File 1.00";
const char kProjectHeaderPrefix[] = "Quill Project File ";

namespace {

constexpr int kMsgNotOpened = 2;
constexpr int kMsgNotCreated = 3;
constexpr int kMsgNotProject = 96;
constexpr int kMsgTooManyTargets = 199;
constexpr int kKeySize = 32;
constexpr int kSystemPathSize = 1024;

// ---- Writing

// Each non-empty line of a multi-line text under "<prefix>00", "<prefix>01", ..., then an empty
// value under the next number.
void WriteLines(const char* file, const char* section, const char* prefix, const char* text) {
  char key[kKeySize];
  char line[kProjectLineLimit + 1];
  int number = 0;
  TextLines lines(text);
  const char* start;
  size_t length;
  while (lines.Next(&start, &length)) {
    CopyLineCut(start, length, line, sizeof line);
    size_t kept = strlen(line);
    while (kept > 0 && (line[kept - 1] == ' ' || line[kept - 1] == '\t'))
      line[--kept] = '\0';
    if (kept == 0) continue;
    FormatStr(key, sizeof key, "%s%02d", prefix, number++);
    WriteToFile(file, section, key, line);
  }
  FormatStr(key, sizeof key, "%s%02d", prefix, number);
  WriteToFile(file, section, key, "");
}

// A value in quotes, in a block of its own (a path or a name may be long).
void WriteQuoted(const char* file, const char* section, const char* key, const char* format,
                 const char* text, const ProjectTarget* target) {
  int size = static_cast<int>(strlen(text)) + 64;
  char* value = static_cast<char*>(AllocMem(static_cast<size_t>(size), kOwnerProjectScratch));
  if (!value) return;
  if (target) {
    FormatStr(value, size, format, text, target->platform, target->type, target->useDefaultLib,
              target->useKLib);
  } else {
    FormatStr(value, size, format, text);
  }
  WriteToFile(file, section, key, value);
  FreeMem(value);
}

void WriteTarget(const char* file, int number, const ProjectTarget* target) {
  char section[kKeySize];
  char key[kKeySize];
  FormatStr(section, sizeof section, "Target%02d", number);
  WriteQuoted(file, section, "Info", "\"%s\" %d %d %d %d", target->name, target);
  int count = 0;
  for (const ProjectFile* entry = target->files; entry; entry = entry->next) {
    FormatStr(key, sizeof key, "File%02d", count++);
    WriteQuoted(file, section, key, "\"%s\"", entry->path, nullptr);
  }
  FormatStr(key, sizeof key, "File%02d", count);
  WriteToFile(file, section, key, "");
  WriteLines(file, section, "MakeStart", target->makeStart);
  WriteLines(file, section, "AddCompile", target->addCompile);
  WriteLines(file, section, "AddLib", target->libraries);
  WriteLines(file, section, "Define", target->defines);
  WriteLines(file, section, "Include", target->includes);
  WriteToFile(file, section, "COption", target->cOption);
  WriteToFile(file, section, "RCOption", target->rcOption);
  WriteToFile(file, section, "AsmOption", target->asmOption);
  WriteToFile(file, section, "LinkOption", target->linkOption);
  WriteToFile(file, section, "Compiler", target->compiler);
}

// ---- Reading

// Reads one value of the project file into `buffer` in the internal form; `size` bounds what is
// read from the file, and the buffer must hold twice that (a code-page character grows by half).
struct ProjectReader {
  char path[kSystemPathSize];
  char* scratch;
  int scratchSize;

  int Read(const char* section, const char* key, char* buffer, int size, int limit) {
    if (limit > scratchSize) limit = scratchSize;
    int got = OsProfileGetString(path, section, key, "", scratch, limit);
    int length = FromSystemText(scratch, buffer, size);
    // A value cut to its buffer may end in part of a character: drop the part.
    for (int drop = 1; length < 0 && drop <= 3 && got - drop > 0; ++drop) {
      scratch[got - drop] = '\0';
      length = FromSystemText(scratch, buffer, size);
    }
    if (length < 0) buffer[0] = '\0';
    return length < 0 ? 0 : length;
  }
};

// Reads "<prefix>00", "<prefix>01", ... until an empty one and joins them with "\r\n", at most
// kProjectTextLimit bytes with the terminator. No key means no text.
bool ReadLines(ProjectReader& reader, const char* section, const char* prefix, char* joined,
               char* line, int lineSize, char** field) {
  char key[kKeySize];
  size_t length = 0;
  joined[0] = '\0';
  for (int number = 0;; ++number) {
    FormatStr(key, sizeof key, "%s%02d", prefix, number);
    if (reader.Read(section, key, line, lineSize, kProjectLineLimit + 1) == 0) break;
    const char* separator = number > 0 ? "\r\n" : "";
    size_t room = kProjectTextLimit - 1 - length;
    size_t wanted = strlen(separator) + strlen(line);
    if (wanted > room) {
      // The rest of the text is cut, on a character boundary.
      if (room > strlen(separator)) {
        strcpy(joined + length, separator);
        length += strlen(separator);
        length += CopyLineCut(line, strlen(line), joined + length, room - strlen(separator) + 1);
      }
      break;
    }
    strcpy(joined + length, separator);
    strcpy(joined + length + strlen(separator), line);
    length += wanted;
  }
  return SetTargetText(field, joined);
}

// "%s %d %d %d %d" with a name that may be quoted; numbers that are missing stay as they were.
void ParseTargetInfo(const char* info, ProjectTarget* target) {
  const char* p = info;
  while (*p == ' ' || *p == '\t')
    ++p;
  const char* name = p;
  const char* end;
  if (*p == '"') {
    name = ++p;
    while (*p && *p != '"')
      ++p;
    end = p;
    if (*p) ++p;
  } else {
    while (*p && *p != ' ' && *p != '\t')
      ++p;
    end = p;
  }
  CopyLineCut(name, static_cast<size_t>(end - name), target->name, sizeof target->name);
  int* numbers[] = {&target->platform, &target->type, &target->useDefaultLib, &target->useKLib};
  for (int* number : numbers) {
    if (!ParseDecimal(&p, number)) break;
  }
}

// One target's section; null when the target can't be allocated or has no "Info".
struct LoadBuffers {
  char* info;
  char* joined;
  char* line;
  char* option;
};

constexpr int kInfoLimit = kPathSize;
constexpr int kOptionBufferSize = kProjectTextLimit * 2;
constexpr int kLineBufferSize = (kProjectLineLimit + 1) * 2;

bool ReadTarget(ProjectReader& reader, const char* section, LoadBuffers& buffers,
                ProjectTarget* target) {
  ParseTargetInfo(buffers.info, target);
  char key[kKeySize];
  for (int number = 0;; ++number) {
    FormatStr(key, sizeof key, "File%02d", number);
    if (reader.Read(section, key, buffers.line, kLineBufferSize, kPathSize) == 0) break;
    if (!AppendTargetFile(target, buffers.line)) return false;
  }
  struct {
    const char* prefix;
    char** field;
  } lines[] = {{"MakeStart", &target->makeStart},
               {"AddCompile", &target->addCompile},
               {"AddLib", &target->libraries},
               {"Define", &target->defines},
               {"Include", &target->includes}};
  for (auto& entry : lines) {
    if (!ReadLines(reader, section, entry.prefix, buffers.joined, buffers.line, kLineBufferSize,
                   entry.field)) {
      return false;
    }
  }
  struct {
    const char* key;
    char** field;
  } options[] = {{"COption", &target->cOption},
                 {"RCOption", &target->rcOption},
                 {"AsmOption", &target->asmOption},
                 {"LinkOption", &target->linkOption}};
  for (auto& entry : options) {
    reader.Read(section, entry.key, buffers.option, kOptionBufferSize, kProjectTextLimit + 1);
    if (!SetTargetText(entry.field, buffers.option)) return false;
  }
  reader.Read(section, "Compiler", buffers.line, kLineBufferSize, kCompilerNameSize);
  if (buffers.line[0])
    CopyLineCut(buffers.line, strlen(buffers.line), target->compiler, sizeof target->compiler);
  return true;
}

bool CanOpen(const char* path) {
  FileHandle file = FileOpen(path, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
  if (file == kInvalidFile) return false;
  FileClose(file);
  return !(FileGetAttributes(path) & kAttrDirectory);
}

}  // namespace

bool SaveProject(Project* project) {
  const char* path = project->path;
  FileHandle file = FileOpen(path, kFileWrite, kShareRead, kOpenAlways, 0);
  if (file == kInvalidFile) {
    HostMessageId(kMsgNotCreated, kMbOk | kMbIconExclamation, path);
    return false;
  }
  FileClose(file);
  WriteToFile(path, "Head", "Info", kProjectHeader);
  int number = 0;
  for (const ProjectTarget* target = project->targets; target; target = target->next)
    WriteTarget(path, number++, target);
  char section[kKeySize];
  FormatStr(section, sizeof section, "Target%02d", number);
  WriteToFile(path, section, "Info", "");
  project->modified = false;
  return true;
}

bool LoadProject(Project* project, const char* path) {
  if (!CanOpen(path)) {
    HostMessageId(kMsgNotOpened, kMbOk | kMbIconExclamation, path);
    return false;
  }
  ProjectReader reader;
  size_t pathLength = strlen(path);
  if (pathLength >= kPathSize || ToSystemPath(path, reader.path, sizeof reader.path) < 0) {
    HostMessageId(kMsgNotOpened, kMbOk | kMbIconExclamation, path);
    return false;
  }
  // One block for every buffer of the load: the scratch of the profile call and the converted
  // values.
  reader.scratchSize = kProjectTextLimit + 1;
  size_t total = static_cast<size_t>(reader.scratchSize) + kInfoLimit * 2 + kProjectTextLimit +
                 kLineBufferSize + kOptionBufferSize;
  char* block = static_cast<char*>(AllocMem(total, kOwnerProjectScratch));
  if (!block) return false;
  reader.scratch = block;
  LoadBuffers buffers;
  buffers.info = block + reader.scratchSize;
  buffers.joined = buffers.info + kInfoLimit * 2;
  buffers.line = buffers.joined + kProjectTextLimit;
  buffers.option = buffers.line + kLineBufferSize;

  reader.Read("Head", "Info", buffers.info, kInfoLimit * 2, kInfoLimit);
  if (strncmp(buffers.info, kProjectHeaderPrefix, strlen(kProjectHeaderPrefix)) != 0) {
    FreeMem(block);
    HostMessageId(kMsgNotProject, kMbOk | kMbIconExclamation, path);
    return false;
  }
  FreeProjectTargets(project);
  memcpy(project->path, path, pathLength + 1);
  project->partial = false;
  char section[kKeySize];
  for (int number = 0;; ++number) {
    FormatStr(section, sizeof section, "Target%02d", number);
    if (reader.Read(section, "Info", buffers.info, kInfoLimit * 2, kInfoLimit) == 0) break;
    if (number == kProjectTargetLimit) {
      project->partial = true;
      HostMessagePath(kMsgTooManyTargets, kMbOk | kMbIconExclamation, path);
      break;
    }
    ProjectTarget* target = NewTarget();
    if (!target) break;
    // A target that can't be read whole is kept as far as it was read; the load ends there.
    bool complete = ReadTarget(reader, section, buffers, target);
    AppendTarget(project, target);
    if (!complete) break;
  }
  FreeMem(block);
  CurrentProjectHost().projectLoaded(CurrentProjectHost().context);
  project->modified = false;
  return true;
}
