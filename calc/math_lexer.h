// Lexical helpers of the integer evaluator.
#pragma once
#include <cstdint>

// Every byte from 1 to 32 is a blank.
const char* SkipMathBlanks(const char* text);
// The length of `pattern` when `text` begins with it, letters compared without case; else 0.
int MatchMathPrefix(const char* text, const char* pattern);
// The value of a hexadecimal digit (either case), or -1.
int MathDigitValue(char c);
// A character constant: `text` is just after the opening quote. Its bytes (no escapes) go to
// `bytes`, their number to `count`, and `end` gets the position after the closing quote or where
// it failed. Returns kMathIncomplete at the end of the text, kMathSyntax when it is empty or has
// more than `capacity` bytes.
uint32_t ScanMathCharConstant(const char* text, unsigned char* bytes, int capacity, int* count,
                              const char** end);
// floor(sqrt(x)), bit by bit.
uint32_t MathIntegerSqrt(uint32_t x);
