// The integer expression evaluator shared by the integer calculator, the preprocessor's #if and
// the macro-expansion report. It keeps no state and allocates nothing.
#pragma once
#include <cstdint>

// Error codes; the real calculator produces 8 to 11 and shares the messages.
enum : uint32_t {
  kMathOk = 0,
  kMathIncomplete = 1,
  kMathSyntax = 2,
  kMathMissingParen = 3,
  kMathStrayParen = 4,
  kMathUnknownOperator = 5,
  kMathDivideByZero = 6,
  kMathUnknownFunction = 7,
  kMathOutOfRange = 8,
  kMathBadVariable = 9,
  kMathUnsupported = 10,
  kMathEmpty = 11,
  kMathOverflow = 12,
};

// Parentheses nested deeper than this answer kMathOverflow instead of exhausting the stack; C
// asks only 63 levels of an #if.
constexpr int kMathMaxDepth = 256;

// Evaluates `text` and returns where it stopped. External callers pass depth 0 and continuation
// 0; continuation 1 (the evaluator's own calls) takes the left operand from `valueInOut`. On error
// the value is whatever had been accumulated.
const char* CalcMathExpression(const char* text, int depth, int continuation, uint32_t* errorOut,
                               int32_t* valueInOut);

// The string id of an error code's message, 0 for codes without one.
int MathErrorStringId(uint32_t code);
// The message of `code`, cut to the buffer; "MathExpErr: Code=%d" for codes without one.
void FormatMathError(char* buffer, int bufferSize, uint32_t code);
