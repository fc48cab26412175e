// Lexical helpers of the integer evaluator.
#pragma once
#include <cstdint>

// Every byte from 1 to 32 is a blank.
const char* SkipMathBlanks(const char* text);
// The length of `pattern` when `text` begins with it, letters compared without case; else 0.
int MatchMathPrefix(const char* text, const char* pattern);
// floor(sqrt(x)), bit by bit.
uint32_t MathIntegerSqrt(uint32_t x);
