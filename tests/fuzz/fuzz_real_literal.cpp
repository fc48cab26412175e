// The real calculator's literal reader: the cursor stays inside the text, the code is one of its
// own, and a value read is normalised and prints.
#include <cstdint>
#include <cstring>
#include <string>

#include "calc/decimal_format.h"
#include "calc/decimal_number.h"
#include "calc/decimal_parse.h"
#include "calc/math_expression.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  const char* begin = text.c_str();
  const char* end = begin + strlen(begin);
  const char* cursor = begin;
  DecimalNumber value;
  uint32_t error = ParseDecimalNumber(&cursor, &value);
  if (cursor < begin || cursor > end) __builtin_trap();
  if (error != kMathOk && error != kMathSyntax && error != kMathOutOfRange &&
      error != kMathBadVariable)
    __builtin_trap();
  if (error == kMathOk) {
    if (cursor == begin) __builtin_trap();
    DecimalParts parts;
    UnpackDecimal(value, &parts);
    bool zero = memcmp(&value, &kDecimalZero, sizeof value) == 0;
    if (!zero && parts.digits[0] == 0) __builtin_trap();
    for (uint8_t digit : parts.digits)
      if (digit > 9) __builtin_trap();
    char output[1024];
    FormatDecimalResult(output, sizeof output, value);
  }
  return 0;
}
