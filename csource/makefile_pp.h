// The makefile preprocessor: reads a project's generated makefile (and the compiler's make file
// it includes) for its macro definitions, so that the compiler options can be known.
#pragma once
#include <cstddef>

struct SymbolTable;
struct TextBuffer;

constexpr int kMakefileLineSize = 4096;
constexpr int kMaxMakefileDepth = 16;  // !include levels; a makefile that includes itself stops
constexpr int kMaxMakefileFiles = 64;  // makefiles one run reads, the first included

// Defines every active "NAME = value" of the makefile at `path` in `table` (kind 5, source
// "MAKEFILE"), following !if/!ifdef/.../!include. Messages go to the sink.
void PreprocessMakefile(SymbolTable* table, const char* path, TextBuffer* sink);

// Appends `text` with its $(NAME) and $X references expanded (unknown ones expand to nothing, a
// "$(" without ")" stays). Macros that name each other endlessly are cut off after a fixed number
// of references and 64 KB of text. False when a "$(" was not closed.
bool ExpandMakefileText(const SymbolTable* table, const char* text, size_t length, TextBuffer* out);

// The expanded "$(C_OPTION)" of a makefile read with VCPATH = `compilerFolder`; a block the caller
// frees, or null.
char* ReadCompilerOptions(const char* compilerFolder, const char* makefilePath, TextBuffer* sink);
