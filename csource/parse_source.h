// One whole preprocessor run over a source file: compiler options from the project's makefile,
// the predefined macros, then the file and its includes.
#pragma once

struct Project;
struct SymbolTable;
struct TextBuffer;

// What a run takes besides the file. quill-tool's -I and -D stand as if they came from the
// makefile's C options.
struct ParseOptions {
  Project* project;            // the open project, or null
  const char* includePaths;    // further ';'-separated include folders, or null
  const char* const* defines;  // "NAME" or "NAME=VALUE"
  int defineCount;
};

// Fills `table` from `sourcePath`; messages go to `sink`. Returns 0.
int ParseSourceFile(SymbolTable* table, const char* sourcePath, TextBuffer* sink,
                    const ParseOptions* options = nullptr);

// The include folders a run over `sourcePath` would search, ';'-separated, into `list`: the
// target's /I folders, then the caller's. Returns the length; 0 ("") when there are none or they
// do not fit.
int SourceIncludeFolders(const char* sourcePath, const ParseOptions* options, char* list, int size);

// Scans an option text ("/DNAME=1 /I..\inc /W3") into macros of source "MAKEFILE" and the
// ';'-separated include list (`includeSize` bytes at most); relative folders are taken from
// `makefileFolder`.
void ScanCompilerOptions(SymbolTable* table, const char* options, const char* makefileFolder,
                         char* includePaths, int includeSize);

// Defines "NAME" or "NAME=VALUE" as a makefile macro; false for an empty name.
bool DefineOptionMacro(SymbolTable* table, const char* text, int length);
