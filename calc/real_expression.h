// The expression style of the real calculator: C precedence with ^, functions and parentheses.
#pragma once
#include <cstdint>

// The calculator window's input edit holds at most this many characters and a terminator.
constexpr int kRealCalcInputSize = 2048;

extern const char kRealExpressionExample[];

// Writes the result text, the error's message or (for an empty input) the example into the
// buffer and returns the error code.
uint32_t EvaluateRealExpression(const char* text, char* buffer, int size);
