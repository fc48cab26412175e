// The declaration scan over one file's preprocessed text: typedefs, tagged structs, unions and
// enums, functions, calling-convention declarations and variables go into the symbol table.
//
// How a declaration that is neither a typedef nor a tagged block is read:
// - It runs to its ';' (or, for a function definition, to its body's '{'), parentheses and braces
//   counted, and is split at the commas outside them; each part declares one name.
// - A part's name is the identifier before its first parameter list, looked for inside a
//   parenthesised declarator such as "(__stdcall *pfn)" first; without a parameter list it is the
//   last identifier. Keywords, tags after struct/union/enum and attribute groups
//   (__declspec(...), __attribute__((...))) are never names.
// - A name followed by its parameter list is a function (kind 1) whose body is the whole
//   declaration; when a calling convention (__stdcall, __cdecl, __fastcall, ...) is written in it,
//   it is a calling-convention record (kind 6) instead: params are the parameter list and body the
//   text before the name ("HWND __stdcall").
// - Any other name is a variable (kind 7) whose body is its type: the declaration without the
//   name and the initializer ("int *", "int (__stdcall *)(int)").
// - A typedef's names (kind 0) get the same type text; a tagged block in it is entered under its
//   tag first and stands in the type as "struct tag".
#pragma once
#include <cstddef>

struct SymbolTable;
struct TextBuffer;

void ScanDeclarations(SymbolTable* table, const char* text, size_t length, const char* fileName,
                      TextBuffer* sink);
