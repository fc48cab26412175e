// The C preprocessor over one source file and its includes. Each file's output (its active text
// with "#n " line markers and macros expanded) goes to the declaration scan; macros go into the
// symbol table; messages go into the sink.
#pragma once
#include <cstddef>

struct SymbolTable;
struct TextBuffer;

// The full paths already read in one run (compared without case): every file is read once.
struct SeenFiles {
  char** paths;
  int count;
  int capacity;
};
void FreeSeenFiles(SeenFiles* seen);

constexpr int kMaxIfLevels = 64;                  // nesting levels, the file level included
constexpr int kIncludePathsSize = 4096;           // the ';'-separated include-path list
constexpr size_t kMaxUnfinishedCall = 64u << 10;  // an argument list longer than this is dropped

// Resolves `fileName` (quoted: the including file's `directory` first; then each folder of
// `includePaths`), reads it unless it was read in this run, preprocesses it and scans its output.
// "'%s' not Found\r\n" when it can't be found. Returns 0.
int PreprocessFile(SeenFiles* seen, SymbolTable* table, const char* fileName, const char* directory,
                   const char* includePaths, int angleFlag, int depth, TextBuffer* sink);
