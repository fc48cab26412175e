#include "project/make_target.h"

#include <cstring>

#include "foundation/diagnostics.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "foundation/system_text.h"
#include "foundation/text_builder.h"
#include "project/folder_tree.h"
#include "project/project.h"
#include "project/project_host.h"
#include "project/text_lines.h"

namespace {

constexpr int kMsgNotCreated = 3;
constexpr int kMsgCloseOutput = 100;
constexpr int kMsgUnsavedSources = 113;
constexpr int kShowNormal = 5;

char ToLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Sources NMAKE compiles; headers and the rest stay out of "S=".
bool IsCompiledSource(const char* path) {
  const char* dot = strrchr(path, '.');
  if (!dot || strchr(dot, '/')) return false;
  char extension[5] = "";
  size_t length = strlen(dot + 1);
  if (length == 0 || length > 3) return false;
  for (size_t i = 0; i <= length; ++i)
    extension[i] = ToLowerAscii(dot[1 + i]);
  return strcmp(extension, "c") == 0 || strcmp(extension, "cpp") == 0 ||
         strcmp(extension, "asm") == 0 || strcmp(extension, "rc") == 0;
}

// One line of the source list: " <path>\".
void AppendSourceLine(TextBuilder& out, const char* path, size_t length, bool backslashes) {
  out.Append(' ');
  for (size_t i = 0; i < length; ++i)
    out.Append(backslashes && path[i] == '/' ? '\\' : path[i]);
  out.Append("\\\r\n");
}

// The text after '=' gets a blank before each further part.
void AppendPart(TextBuilder& out, const char* text) {
  if (out.Last() != '=') out.Append(' ');
  out.Append(text);
}

// "/D" or "/I" before each non-empty line of a multi-line field.
void AppendSwitches(TextBuilder& out, const char* text, const char* option) {
  TextLines lines(text);
  const char* start;
  size_t length;
  while (lines.Next(&start, &length)) {
    if (length == 0) continue;
    AppendPart(out, option);
    // Include folders may be written with '/'; the compiler takes them as '\'. A folder with a
    // blank is quoted, or the compiler would read two options.
    bool folder = option[1] == 'I';
    bool quote = folder && memchr(start, ' ', length) && start[0] != '"';
    if (quote) out.Append('"');
    for (size_t i = 0; i < length; ++i)
      out.Append(folder && start[i] == '/' ? '\\' : start[i]);
    if (quote) out.Append('"');
  }
}

void AppendDefinesAndIncludes(TextBuilder& out, const ProjectTarget* target) {
  AppendSwitches(out, target->defines, "/D");
  AppendSwitches(out, target->includes, "/I");
}

void AppendSystemPath(TextBuilder& out, const char* path) {
  for (const char* p = path; *p; ++p)
    out.Append(*p == '/' ? '\\' : *p);
}

// Converts `text` to the external form and writes it to a new file; false after string 3.
bool WriteTextFile(const char* path, const char* text) {
  FileHandle file = FileOpen(path, kFileWrite, kShareRead, kCreateAlways, 0);
  if (file == kInvalidFile) {
    HostMessageId(kMsgNotCreated, kMbOk | kMbIconExclamation, path);
    return false;
  }
  size_t size = strlen(text) * 2 + 1;
  char* external = static_cast<char*>(AllocMem(size, kOwnerProjectOutput));
  int length = external ? ToSystemText(text, external, static_cast<int>(size)) : -1;
  unsigned done = 0;
  bool ok = length >= 0 && FileWrite(file, external, static_cast<unsigned>(length), &done) &&
            done == static_cast<unsigned>(length);
  FreeMem(external);
  FileClose(file);
  if (!ok) HostMessageId(kMsgNotCreated, kMbOk | kMbIconExclamation, path);
  return ok;
}

bool JoinPath(char* buffer, int size, const char* folder, const char* name, const char* tail) {
  return FormatStr(buffer, size, "%s/%s%s", folder, name, tail) <= size;
}

}  // namespace

char* ComposeMakefile(const ProjectTarget* target) {
  TextBuilder out(kOwnerProjectOutput);
  if (target->makeStart) {
    out.Append(target->makeStart);
    out.Append("\r\n\r\n");
  }
  out.Format("O=OBJ\\%s\r\n", target->name);
  out.Format("T=%s%s\r\n", target->name, TargetExtension(target->type));

  out.Append("S=\\\r\n");
  TextLines lines(target->addCompile);
  const char* start;
  size_t length;
  while (lines.Next(&start, &length)) {
    if (length) AppendSourceLine(out, start, length, true);
  }
  for (const ProjectFile* file = target->files; file; file = file->next) {
    if (IsCompiledSource(file->path)) AppendSourceLine(out, file->path, strlen(file->path), false);
  }
  out.Append("\r\n");

  // Without the default library the C side gets a define and the linker an option; RC neither.
  out.Append("ADD_C_OPT=");
  if (!target->useDefaultLib) out.Append("/DNODEFAULTLIB");
  if (target->cOption) AppendPart(out, target->cOption);
  AppendDefinesAndIncludes(out, target);
  out.Append("\r\n");

  out.Append("ADD_RC_OPT=");
  if (target->rcOption) out.Append(target->rcOption);
  AppendDefinesAndIncludes(out, target);
  out.Append("\r\n");

  if (target->asmOption) out.Format("ADD_ASM_OPT=%s\r\n", target->asmOption);

  out.Append("ADD_LINK_OPT=");
  if (!target->useDefaultLib) out.Append("/NODEFAULTLIB");
  if (target->linkOption) AppendPart(out, target->linkOption);
  out.Append("\r\n");

  if (target->libraries) {
    out.Append("ADD_LIB=");
    TextLines libraries(target->libraries);
    bool first = true;
    while (libraries.Next(&start, &length)) {
      if (!length) continue;
      if (!first) out.Append(' ');
      out.Append(start, length);
      first = false;
    }
    out.Append("\r\n");
  }
  out.Append("\r\n");
  out.Format("!INCLUDE $(VCPATH)\\%s%s.mak\r\n", TargetMakefileKind(target->type),
             target->platform == kPlatform64 ? "X64" : "");
  return out.Release();
}

char* ComposeBatch(const ProjectTarget* target, const char* projectFolder,
                   const char* programFolder, bool run) {
  TextBuilder folder(kOwnerProjectOutput);
  AppendSystemPath(folder, projectFolder);
  TextBuilder compiler(kOwnerProjectOutput);
  AppendSystemPath(compiler, programFolder);
  compiler.Append('\\');
  compiler.Append(target->compiler);
  char output[kTargetNameSize + 8];
  FormatTargetOutput(target, output, sizeof output);

  // Names with a blank are quoted so that the command interpreter and NMAKE take them whole;
  // names without one keep the plain text. CD takes the rest of its line as the folder.
  const char* q = strchr(output, ' ') ? "\"" : "";
  const char* c = strchr(compiler.Text(), ' ') ? "\"" : "";
  TextBuilder out(kOwnerProjectOutput);
  out.Format("@Echo Off\r\n%c:\r\nCD %s\r\n\r\n%s%s\\NMAKE%s %s%s.mak%s %sVCPATH=%s%s\r\n",
             projectFolder[0], folder.Text(), c, compiler.Text(), c, q, target->name, q, c,
             compiler.Text(), c);
  out.Append("Del TargetList.mak\r\nDel TargetCompile.mak\r\n\r\n");
  if (!run || target->type == kTargetDll || target->type == kTargetLib) {
    out.Append("Pause\r\n");
  } else if (target->type == kTargetConsole) {
    // A console program's screen is cleared before it runs and kept open after it.
    out.Format("If not exist %s%s%s goto Exit\r\nCls\r\n%s%s%s\r\n:Exit\r\nPause\r\n", q, output, q,
               q, output, q);
  } else if (target->type == kTargetWindow || target->type == kTargetDialog ||
             target->type == kTargetAsm) {
    out.Format("If not exist %s%s%s goto Exit\r\n%s%s%s\r\n:Exit\r\n", q, output, q, q, output, q);
  }
  if (folder.Failed() || compiler.Failed()) return nullptr;
  return out.Release();
}

int MakeTarget(Project* project, ProjectTarget* target, bool rebuild, bool run, bool makefileOnly,
               char* makefilePathOut, char* compilerOut) {
  const ProjectHost& host = CurrentProjectHost();
  if (host.hasUnsavedSources(host.context)) {
    int answer = HostMessageId(kMsgUnsavedSources, kMbYesNoCancel | kMbIconQuestion, nullptr);
    if (answer == kIdCancel) return 0;
    if (answer == kIdYes) host.saveAllSources(host.context);
  }

  char folder[kPathSize];
  char path[kPathSize];
  if (ProjectFolder(project, folder, sizeof folder) < 0) return 0;
  if (rebuild) {
    if (!JoinPath(path, sizeof path, folder, "OBJ", "")) return 0;
    DeleteFolderTree(path);
  }

  char output[kTargetNameSize + 8];
  FormatTargetOutput(target, output, sizeof output);
  if (run) {
    // A failed build must not run the old output, so it goes first; if it can't, it is probably
    // still running.
    if (!JoinPath(path, sizeof path, folder, output, "")) return 0;
    if (!FileDelete(path)) {
      unsigned error = FileLastError();
      if (error != kErrorFileNotFound && error != kErrorPathNotFound) {
        HostMessageId(kMsgCloseOutput, kMbOk | kMbIconExclamation, output);
        return 0;
      }
    }
  }

  if (!JoinPath(path, sizeof path, folder, target->name, ".mak")) {
    HostMessageId(kMsgNotCreated, kMbOk | kMbIconExclamation, target->name);
    return 0;
  }
  if (makefilePathOut) strcpy(makefilePathOut, path);
  if (compilerOut) strcpy(compilerOut, target->compiler);
  char* makefile = ComposeMakefile(target);
  bool written = makefile && WriteTextFile(path, makefile);
  FreeMem(makefile);
  if (!written) return 0;
  if (makefileOnly) return 1;

  char program[kPathSize];
  if (ProgramFolder(program, sizeof program) == 0) return 0;
  if (!JoinPath(path, sizeof path, folder, "C.BAT", "")) return 0;
  char* batch = ComposeBatch(target, folder, program, run);
  written = batch && WriteTextFile(path, batch);
  FreeMem(batch);
  if (!written) return 0;
  char commandLine[kPathSize + 2];
  FormatStr(commandLine, sizeof commandLine, "\"%s\"", path);
  if (!host.startProgram(host.context, commandLine, kShowNormal)) {
    DebugLog("MakeTarget: could not start %s, Error=%d\r\n", commandLine,
             static_cast<int>(FileLastError()));
  }
  return 1;
}

int MakeTarget(Project* project, ProjectTarget* target, BuildMode mode) {
  return MakeTarget(project, target, mode == BuildMode::kRebuild, mode == BuildMode::kRun, false,
                    nullptr, nullptr);
}
