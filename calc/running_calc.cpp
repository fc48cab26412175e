#include "calc/running_calc.h"

#include "calc/decimal_arith.h"
#include "calc/decimal_format.h"
#include "calc/decimal_parse.h"
#include "calc/decimal_registers.h"
#include "calc/math_expression.h"
#include "calc/math_lexer.h"
#include "foundation/formatter.h"

const char kRunningCalcExample[] =
    "Ex)\r\nPi * 0x3FE + 0b0101 / 1,234.23e-6 + 4\r\n'a'+2 = @A\r\n10mm, 254mil\r\n2^16 + @A -1";

namespace {

// Only space and tab are blanks here.
const char* SkipBlanks(const char* p) {
  while (*p == ' ' || *p == '\t')
    ++p;
  return p;
}

// The end of the input is read as a literal too, one without digits (code 2): this style has no
// "operand expected" state of its own.
uint32_t ReadLiteral(const char** cursor, DecimalNumber* value) {
  *cursor = SkipBlanks(*cursor);
  return ParseDecimalNumber(cursor, value);
}

uint32_t Run(const char* p, DecimalNumber* accumulator) {
  int powerSteps = kDecimalPowerSteps;
  p = SkipBlanks(p);
  uint32_t error = kMathOk;
  if (*p != '+' && *p != '-') error = ReadLiteral(&p, accumulator);
  while (error == kMathOk) {
    p = SkipBlanks(p);
    if (*p == '\0') break;
    char op = *p;
    DecimalNumber operand = kDecimalZero;
    if (op == 'm' || op == 'M') {
      // A unit after a number: the letters are read again as the literal 0.0254.
      bool millimetres = MatchMathPrefix(p, "mm") != 0;
      error = ReadLiteral(&p, &operand);
      if (error == kMathOk) {
        error = millimetres ? DivideDecimal(accumulator, operand)
                            : MultiplyDecimal(accumulator, operand);
      }
      continue;
    }
    ++p;
    switch (op) {
      case '+':
      case '-':
      case '*':
      case '/':
      case '^':
        error = ReadLiteral(&p, &operand);
        if (error != kMathOk) break;
        if (op == '+') error = AddDecimal(accumulator, operand);
        if (op == '-') error = SubtractDecimal(accumulator, operand);
        if (op == '*') error = MultiplyDecimal(accumulator, operand);
        if (op == '/') error = DivideDecimal(accumulator, operand);
        if (op == '^') error = PowerDecimalWithin(accumulator, operand, &powerSteps);
        break;
      case '=':
        // Only a register may follow; the literal reader forgets the last register first.
        error = ReadLiteral(&p, &operand);
        if (error != kMathOk) break;
        if (LastDecimalRegister() == kNoDecimalRegister) {
          error = kMathBadVariable;
          break;
        }
        *DecimalRegister(LastDecimalRegister()) = *accumulator;
        break;
      default:
        error = kMathSyntax;
        break;
    }
  }
  return error;
}

}  // namespace

uint32_t EvaluateRunningCalc(const char* text, char* buffer, int size) {
  if (*text == '\0') {
    FormatStr(buffer, size, "%s", kRunningCalcExample);
    return kMathOk;
  }
  const char* first = SkipBlanks(text);
  if (*first == 'b' || *first == 'B') {
    SetDecimalBinaryOutput(!DecimalBinaryOutput());
    FormatStr(buffer, size, "%s", DecimalBinaryOutput() ? "Binary out On" : "Binary out Off");
    return kMathOk;
  }
  DecimalNumber accumulator = kDecimalZero;
  uint32_t error = Run(text, &accumulator);
  if (error != kMathOk) {
    FormatMathError(buffer, size, error);
  } else {
    FormatDecimalResult(buffer, size, accumulator);
  }
  return error;
}
