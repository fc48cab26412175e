// Converting C source to a coding style on its token stream. Only the blanks and line breaks
// between tokens change: comments, strings, character literals, preprocessor lines (with their
// continuations) keep their bytes, and the tokens come out in the same order. Converting the
// result again changes nothing. Line ends are CRLF when the text has any, else LF, else CR.
#pragma once
#include <cstddef>

#include "foundation/text_builder.h"

struct CStyle {
  bool braceNextLine;        // a block's '{' on a line of its own, else at the end of its line
  int indentWidth;           // blanks per level (1-16), when not indenting with tabs
  bool useTabs;              // one tab per level
  bool blankAfterKeyword;    // "if (" rather than "if("; also for, while and switch
  bool blankAroundBinary;    // "a + b" rather than "a+b"
  bool oneStatementPerLine;  // a line break after each ';' outside parentheses and around blocks
};

enum CTokenKind : int {
  kCTokenIdent,
  kCTokenNumber,
  kCTokenQuoted,      // a string or character literal, its prefix included
  kCTokenOpenQuoted,  // the same left open at its line's end: the line must end with it
  kCTokenPunct,
  kCTokenBlockComment,
  kCTokenLineComment,
  kCTokenPreprocessor,  // the whole line from its start, continuations included
  kCTokenContinuation,  // a backslash ending a line outside a preprocessor line
};

// The token at `p` (never a blank); `lineStart` when only blanks precede it on its line.
// Returns its end and sets `*kind`.
const char* ScanCToken(const char* p, const char* end, bool lineStart, int* kind);

// Appends the converted text to `out` (the caller's, already initialised). False when memory
// ran out (the builder's `failed`).
bool ConvertCStyle(const char* text, size_t length, const CStyle& style, TextBuffer* out);
