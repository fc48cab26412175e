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

uint32_t CalcBackColour(int row, int height) {
  if (height <= 1 || row <= 0) return kCalcBackTop;
  if (row >= height - 1) return kCalcBackBottom;
  uint32_t colour = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    int from = static_cast<int>((kCalcBackTop >> shift) & 0xFF);
    int to = static_cast<int>((kCalcBackBottom >> shift) & 0xFF);
    int64_t part = static_cast<int64_t>(to - from) * row / (height - 1);
    colour |= static_cast<uint32_t>(from + part) << shift;
  }
  return colour;
}

int CalcCascadeOffset(int open) {
  if (open <= 0) return 0;
  return (open % kCalcCascadeSteps) * kCalcCascadeStep;
}
