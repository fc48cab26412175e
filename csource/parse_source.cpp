#include "csource/parse_source.h"

#include <cstring>

#include "csource/c_chars.h"
#include "csource/csource_owners.h"
#include "csource/makefile_pp.h"
#include "csource/preprocessor.h"
#include "csource/source_path.h"
#include "csource/symbol_table.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "foundation/text_builder.h"
#include "project/make_target.h"
#include "project/project.h"

namespace {

constexpr int kOptionSize = 780;

void AppendInclude(char* list, int size, const char* folder) {
  size_t used = strlen(list);
  size_t length = strlen(folder);
  size_t need = used + (used ? 1 : 0) + length;
  if (need >= static_cast<size_t>(size)) return;  // the list is cut at its size
  if (used) list[used++] = ';';
  memcpy(list + used, folder, length + 1);
}

bool EndsWithCpp(const char* path) {
  const char* dot = strrchr(path, '.');
  if (!dot || strchr(dot, '/')) return false;
  return SamePath(dot + 1, "cpp");
}

// The project's target that lists the file, with its makefile written afresh.
bool AskProject(Project* project, const char* sourcePath, char* makefile, char* compiler) {
  if (!project) return false;
  char folder[kPathSize];
  if (ProjectFolder(project, folder, sizeof folder) < 0) return false;
  char wanted[kPathSize];
  if (!JoinSourcePath("", sourcePath, wanted, sizeof wanted)) return false;
  for (ProjectTarget* target = project->targets; target; target = target->next) {
    for (const ProjectFile* file = target->files; file; file = file->next) {
      char path[kPathSize];
      if (!JoinSourcePath(folder, file->path, path, sizeof path)) continue;
      if (!SamePath(path, wanted)) continue;
      return MakeTarget(project, target, false, false, true, makefile, compiler) == 1;
    }
  }
  return false;
}

}  // namespace

bool DefineOptionMacro(SymbolTable* table, const char* text, int length) {
  const char* equals = static_cast<const char*>(memchr(text, '=', static_cast<size_t>(length)));
  int nameLength = equals ? static_cast<int>(equals - text) : length;
  if (nameLength <= 0) return false;
  const char* value = equals ? equals + 1 : "";
  int valueLength = equals ? static_cast<int>(text + length - value) : 0;
  return InsertSymbol(
      table, NewSymbol(kSymbolMacro, "MAKEFILE", 0, text, nameLength, "", 0, value, valueLength));
}

void ScanCompilerOptions(SymbolTable* table, const char* options, const char* makefileFolder,
                         char* includePaths, int includeSize) {
  const char* p = strchr(options, '/');
  while (p) {
    // An option runs to the next '/', or to the end once it holds a '"'.
    const char* e = p + 1;
    bool quoted = false;
    while (*e && (quoted || *e != '/')) {
      if (*e == '"') quoted = true;
      ++e;
    }
    char option[kOptionSize];
    size_t length = static_cast<size_t>(e - p);
    if (length >= sizeof option) length = sizeof option - 1;
    memcpy(option, p, length);
    option[length] = '\0';
    p = *e ? e : nullptr;

    if (option[1] != 'D' && option[1] != 'I') continue;
    const char* word = option + 2;
    while (IsCBlank(*word))
      ++word;
    const char* wordEnd = word;
    while (*wordEnd && !IsCBlank(*wordEnd))
      ++wordEnd;
    if (option[1] == 'D') {
      DefineOptionMacro(table, word, static_cast<int>(wordEnd - word));
      continue;
    }
    char folder[kOptionSize];
    size_t n = 0;
    for (const char* c = word; c < wordEnd && n + 1 < sizeof folder; ++c) {
      if (*c != '"') folder[n++] = *c == '\\' ? '/' : *c;
    }
    folder[n] = '\0';
    if (!n) continue;
    char path[kPathSize];
    if (strcmp(folder, ".") == 0) {
      strncpy(path, makefileFolder, sizeof path - 1);
      path[sizeof path - 1] = '\0';
    } else if (folder[1] != ':') {
      if (!JoinSourcePath(makefileFolder, folder, path, sizeof path)) continue;
    } else {
      strcpy(path, folder);
    }
    AppendInclude(includePaths, includeSize, path);
  }
}

namespace {

// The makefile's /D macros into `table` and its /I folders, then the caller's own, into
// `includePaths`; the target's compiler name into `compiler`.
void TargetOptions(SymbolTable* table, const char* sourcePath, TextBuffer* sink,
                   const ParseOptions* options, char* includePaths, char* compiler) {
  char makefile[kPathSize] = "";
  if (options && AskProject(options->project, sourcePath, makefile, compiler)) {
    char program[kPathSize];
    char compilerFolder[kPathSize + kCompilerNameSize];
    if (ProgramFolder(program, sizeof program) > 0) {
      JoinSourcePath(program, compiler, compilerFolder, sizeof compilerFolder);
      if (char* text = ReadCompilerOptions(compilerFolder, makefile, sink)) {
        char folder[kPathSize];
        const char* ignored;
        SplitSourcePath(makefile, folder, sizeof folder, &ignored);
        ScanCompilerOptions(table, text, folder, includePaths, kIncludePathsSize);
        FreeMem(text);
      }
    }
  }
  if (options) {
    for (int i = 0; i < options->defineCount; ++i)
      DefineOptionMacro(table, options->defines[i], static_cast<int>(strlen(options->defines[i])));
    if (options->includePaths && *options->includePaths)
      AppendInclude(includePaths, kIncludePathsSize, options->includePaths);
  }
}

}  // namespace

int SourceIncludeFolders(const char* sourcePath, const ParseOptions* options, char* list,
                         int size) {
  if (size <= 0) return 0;
  char includePaths[kIncludePathsSize] = "";
  char compiler[kCompilerNameSize] = "";
  SymbolTable table = {0, 0, nullptr};
  TextBuffer ignored;
  InitText(&ignored, kOwnerResultText);
  TargetOptions(&table, sourcePath, &ignored, options, includePaths, compiler);
  FreeText(&ignored);
  FreeSymbolTable(&table);
  size_t length = strlen(includePaths);
  if (length >= static_cast<size_t>(size)) length = 0;  // a cut list would name a wrong folder
  memcpy(list, includePaths, length);
  list[length] = '\0';
  return static_cast<int>(length);
}

int ParseSourceFile(SymbolTable* table, const char* sourcePath, TextBuffer* sink,
                    const ParseOptions* options) {
  char includePaths[kIncludePathsSize] = "";
  char compiler[kCompilerNameSize] = "";
  TargetOptions(table, sourcePath, sink, options, includePaths, compiler);

  if (EndsWithCpp(sourcePath))
    AddSymbol(table, kSymbolMacro, "VC9", 0, "__cplusplus", "", "199711");
  if (strcmp(compiler, "VC9") == 0) {
    AddSymbol(table, kSymbolMacro, "VC9", 0, "_MSC_VER", "", "1500");
    AddSymbol(table, kSymbolMacro, "VC9", 0, "_MSC_FULL_VER", "", "150021022");
  } else if (strcmp(compiler, "VC15") == 0) {
    AddSymbol(table, kSymbolMacro, "VC15", 0, "_MSC_VER", "", "1910");
    AddSymbol(table, kSymbolMacro, "VC15", 0, "_MSC_FULL_VER", "", "191025017");
  }
  AddSymbol(table, kSymbolMacro, "CPU", 0, "_M_IX86", "", "600");
  AddSymbol(table, kSymbolMacro, "CPU", 0, "_M_IX86_FP", "", "0");

  char folder[kPathSize];
  const char* name;
  SplitSourcePath(sourcePath, folder, sizeof folder, &name);
  SeenFiles seen;
  InitSeenFiles(&seen);
  PreprocessFile(&seen, table, name, folder, includePaths, 0, 0, sink);
  FreeSeenFiles(&seen);
  return 0;
}
