// The fixed word lists and the number test of the C colouring.
#pragma once

// One of the 43 built-in C words, compared case-sensitively.
bool IsBuiltinWord(const char16_t* word, int length);
// "0x"/"0X" with at least one hexadecimal digit, or at least one decimal digit; then optionally
// "L" or "UL" in either case, and nothing else.
bool IsNumber(const char16_t* word, int length);
// One of the 12 preprocessor directive words.
bool IsDirective(const char16_t* word, int length);
