// Macro expansion in place over a text buffer, as the preprocessor, #if conditions and the
// show-definition command use it.
#pragma once
#include <cstddef>

struct SymbolTable;
struct TextBuffer;
struct SourcePlace;
struct SymbolRecord;

// Expands the macros of `buffer` from `start`. Quoted text, numbers and "#name" tokens (the line
// markers) are left alone. An invocation is replaced by its replacement, which is scanned again; a
// name inside its own replacement is not expanded again, as in C, and a runaway expansion is cut
// off with a message. Headers name macros after themselves on purpose, so a self-reference is
// only worth a word when someone asks about the name: with `recursed` given it is set, and each
// such macro not yet marked reported (kSymbolFlagReported) is reported and marked. Returns 1 when
// it stopped at a function-like macro whose argument list is not complete in the buffer
// (`stopped` is that name's offset), 0 when it reached the end (`stopped` is the length).
int ExpandMacros(SymbolTable* table, TextBuffer* buffer, size_t start, size_t* stopped,
                 const SourcePlace* place, bool* recursed = nullptr);

// "[%s #%d] Recursive macro '%s'\r\n" with the macro's own source and line.
void ReportRecursiveMacro(TextBuffer* sink, const SymbolRecord* record);

// Bounds of one ExpandMacros call.
constexpr size_t kMaxExpandGrowth = 4u << 20;  // bytes the buffer may grow by
constexpr long kMaxExpansions = 1L << 17;      // invocations replaced
constexpr int kMaxMacroName = 63;              // longer names are never looked up
