#include "calc/int_calculator.h"

#include <cstring>

#include "calc/math_expression.h"
#include "foundation/formatter.h"

const char kIntCalcExample[] = "Ex)\r\n0x23 & (45 | 13) + ~123 + 'A' + 0123\r\n";

uint32_t FormatIntCalcOutput(const char* input, char* output, int size) {
  char text[kIntCalcInputSize];
  int length = 0;
  while (length < kIntCalcInputSize - 1 && input[length])
    ++length;
  memcpy(text, input, static_cast<size_t>(length));
  text[length] = '\0';
  if (length == 0) {
    FormatStr(output, size, "%s", kIntCalcExample);
    return kMathOk;
  }
  uint32_t error = kMathOk;
  int32_t value = 0;
  CalcMathExpression(text, 0, 0, &error, &value);
  if (error != kMathOk) {
    FormatMathError(output, size, error);
  } else {
    FormatStr(output, size, "= %d\r\n= 0x%X", value, value);
  }
  return error;
}
