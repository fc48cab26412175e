// The value of an #if or #elif expression.
#pragma once
#include <cstddef>
#include <cstdint>

struct SymbolTable;
struct TextBuffer;

// Comments and line continuations go, "defined NAME" and "defined(NAME)" become 1 or 0, macros are
// expanded, every identifier left becomes 0 and the integer evaluator takes the rest. An error of
// the evaluator is logged and reported, and the value is then 0.
int32_t EvalCondition(SymbolTable* table, const char* exprText, size_t length, const char* fileName,
                      uint32_t line, TextBuffer* sink);

// Steps shared with the makefile conditions.
// Removes comments and backslashes before line breaks.
void StripConditionComments(TextBuffer* text);
// Replaces every remaining identifier (with its argument list, if any) by 0 and cuts integer
// suffixes the evaluator does not know.
void ZeroIdentifiers(TextBuffer* text);
// Evaluates the final text (the conditional operator, "&&" and "||" as C evaluates them, so an
// operand that is never evaluated can't fail; the rest by the integer evaluator); on error logs "%s
// #%d CalcMathExpression('%s') Err=%d, Value=%d", reports `code` and answers 0.
int32_t CalcCondition(const TextBuffer* text, const char* fileName, uint32_t line, TextBuffer* sink,
                      int code);
