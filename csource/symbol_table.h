// The one table of names that the preprocessor and the declaration scan fill: macros, typedefs,
// functions, tags, calling-convention records and variables, sorted by name for a binary search.
// One namespace: a new record replaces any record of the same name, whatever its kind.
#pragma once
#include <cstdint>

#include "foundation/os_text_order.h"

enum SymbolKind : uint32_t {
  kSymbolTypedef = 0,
  kSymbolFunction = 1,
  kSymbolStruct = 2,
  kSymbolUnion = 3,
  kSymbolEnum = 4,
  kSymbolMacro = 5,
  kSymbolCallConv = 6,
  kSymbolVariable = 7,
  kSymbolAny = 8,  // look-up only
};

// One block: these fields, then the four strings they point at.
struct SymbolRecord {
  uint32_t kind;
  uint32_t line;  // 0 for predefined and makefile macros
  const char* source;
  const char* name;
  const char* params;  // function-like macro's parameter list, a function's parameters, or ""
  const char* body;
  uint32_t flags;  // kSymbolFlag*
};

enum : uint32_t {
  kSymbolFlagReported = 1,  // its self-reference was reported in this look-up
  kSymbolFlagCallable = 2,  // a function-like macro with an empty parameter list, "F()"
  kSymbolFlagShown = 4,     // displayed in this look-up: meeting it again closes a cycle
};

// A macro that takes an argument list.
inline bool IsFunctionLikeMacro(const SymbolRecord* record) {
  return record->params[0] != '\0' || (record->flags & kSymbolFlagCallable) != 0;
}

struct SymbolTable {
  int count;
  int capacity;  // bytes of `records`
  SymbolRecord** records;
};

// "typedef", "function", ..., "var"; "" for kinds beyond them.
const char* SymbolKindName(uint32_t kind);

// A record with copies of the strings (lengths given, -1 for a terminated string); null when it
// can't be allocated.
SymbolRecord* NewSymbol(uint32_t kind, const char* source, uint32_t line, const char* name,
                        int nameLength, const char* params, int paramsLength, const char* body,
                        int bodyLength);
// Takes the record into the table, replacing and freeing a record of the same name. False when
// the table can't grow; the record is then freed.
bool InsertSymbol(SymbolTable* table, SymbolRecord* record);
// The same, building the record from terminated strings.
bool AddSymbol(SymbolTable* table, uint32_t kind, const char* source, uint32_t line,
               const char* name, const char* params, const char* body);
// The record named `name` (`length` bytes, -1 when terminated) when its kind is `kind`, any kind
// for kSymbolAny; else null.
SymbolRecord* FindSymbol(const SymbolTable* table, const char* name, int length, uint32_t kind);
// Removes and frees the record of that name when its kind is `kind` (or any); false when none.
bool RemoveSymbol(SymbolTable* table, const char* name, uint32_t kind);
void FreeSymbolTable(SymbolTable* table);
// Clears `flags` on every record.
void ClearSymbolFlags(SymbolTable* table, uint32_t flags);

// A C name's character by the system's string order: '_' (punctuation) before digits before
// letters, case aside; 0 for any other character.
inline int SymbolNameWeight(unsigned char c) {
  if (c == '_') return 1;
  if (c >= '0' && c <= '9') return 2 + (c - '0');
  if (c >= 'a' && c <= 'z') return 12 + (c - 'a');
  if (c >= 'A' && c <= 'Z') return 12 + (c - 'A');
  return 0;
}

// The order of names: the system's string order (foundation/os_text_order.h), the same on every
// build. `length` bytes of `name` against a terminated `other`. Two C names are put in that order
// here: under Wine the system's comparison costs microseconds, and reading <windows.h> asks it
// millions of times. Any other text asks the system.
inline int CompareSymbolName(const char* name, int length, const char* other) {
  int otherLength = 0;
  for (; other[otherLength]; ++otherLength) {
    if (!SymbolNameWeight(static_cast<unsigned char>(other[otherLength])))
      return OsCompareText(name, length, other);
  }
  for (int i = 0; i < length; ++i) {
    if (!SymbolNameWeight(static_cast<unsigned char>(name[i])))
      return OsCompareText(name, length, other);
  }
  int shorter = length < otherLength ? length : otherLength;
  for (int i = 0; i < shorter; ++i) {
    int a = SymbolNameWeight(static_cast<unsigned char>(name[i]));
    int b = SymbolNameWeight(static_cast<unsigned char>(other[i]));
    if (a != b) return a < b ? -1 : 1;
  }
  if (length != otherLength) return length < otherLength ? -1 : 1;
  // Alike but for case: the first difference decides, lower case first.
  for (int i = 0; i < length; ++i) {
    if (name[i] != other[i]) return name[i] >= 'a' ? -1 : 1;
  }
  return 0;
}
