// The show-definition command's text: what a word at the caret stands for, from the symbol table
// of the active source file, kept between commands while the file is unchanged.
#pragma once
#include <cstddef>

#include "csource/symbol_table.h"

struct ParseOptions;
struct TextBuffer;

struct DefinitionCache {
  SymbolTable table;
  char* path;      // the file the table was built from (compared without case), or null
  unsigned stamp;  // its time stamp then
  int parses;      // runs of the preprocessor so far
};

void InitDefinitionCache(DefinitionCache* cache);
void FreeDefinitionCache(DefinitionCache* cache);

constexpr int kMaxLookupWord = 2048;
constexpr int kMaxLookupText = 4096;

// Brings the table up to date with `sourcePath` (null: a document without a file keeps the table)
// and appends to `result` the preprocessor's messages, then the display of `word`. False when the
// result text could not be had.
bool ShowDefinition(DefinitionCache* cache, const char* sourcePath, const char* word,
                    TextBuffer* result, const ParseOptions* options);

// One record as the parser window shows it for `word`.
void DisplaySymbol(const SymbolRecord* record, const char* word, TextBuffer* result);
