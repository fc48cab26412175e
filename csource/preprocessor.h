// The C preprocessor over one source file and its includes. Each file's output (its active text
// with "#n " line markers and macros expanded) goes to the declaration scan; macros go into the
// symbol table; messages go into the sink.
#pragma once
#include <cstddef>

#include "foundation/text_builder.h"

struct SymbolTable;

// The full paths already read in one run (compared without case): every file is read once.
struct SeenFiles {
  char** paths;
  int count;
  int capacity;
  bool tooDeepReported;  // an include chain ran past kMaxIncludeDepth: said once per run
  // The #if errors reported in this run, one "\n"-ended line each: the messages without their
  // place and the condition's text. The same faulty condition in many headers is said once.
  TextBuffer conditionErrors;
};
void InitSeenFiles(SeenFiles* seen);
void FreeSeenFiles(SeenFiles* seen);

constexpr int kMaxIfLevels = 64;                  // nesting levels, the file level included
constexpr int kMaxIncludeDepth = 200;             // files below the top one in one chain
constexpr int kIncludePathsSize = 4096;           // the ';'-separated include-path list
constexpr size_t kMaxUnfinishedCall = 64u << 10;  // an argument list longer than this is dropped

// Resolves `fileName` (quoted: the including file's `directory` first; then each folder of
// `includePaths`), reads it unless it was read in this run, preprocesses it and scans its output.
// "'%s' not Found\r\n" when it can't be found; an #include below kMaxIncludeDepth is skipped with
// "[%s #%d] '#include' is too deep\r\n" (the including file and line), the first time in the run.
// Returns 0.
int PreprocessFile(SeenFiles* seen, SymbolTable* table, const char* fileName, const char* directory,
                   const char* includePaths, int angleFlag, int depth, TextBuffer* sink);
