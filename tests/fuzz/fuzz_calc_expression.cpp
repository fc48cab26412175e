// The integer evaluator and the calculator's output on arbitrary text. Checks that the stop
// position lies inside the text, that the code is one the evaluator produces, and that no input
// the calculator can hold takes longer than the calculator's time bound.
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>

#include "calc/int_calculator.h"
#include "calc/math_expression.h"
#include "calc/math_number.h"
#include "foundation/library.h"

namespace {
constexpr auto kTimeBound = std::chrono::milliseconds(100);
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Error messages come from the string table.
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  if (size > kIntCalcInputSize - 1) size = kIntCalcInputSize - 1;
  std::string text(reinterpret_cast<const char*>(data), size);
  const char* begin = text.c_str();
  const char* end = begin + strlen(begin);

  auto start = std::chrono::steady_clock::now();
  uint32_t error = 0;
  int32_t value = 0;
  const char* stop = CalcMathExpression(begin, 0, 0, &error, &value);
  if (stop < begin || stop > end) __builtin_trap();
  if (error > kMathOverflow || (error >= kMathOutOfRange && error <= kMathEmpty)) __builtin_trap();
  char output[256];
  if (FormatIntCalcOutput(begin, output, sizeof output) != (end == begin ? kMathOk : error))
    __builtin_trap();
  if (std::chrono::steady_clock::now() - start > kTimeBound) __builtin_trap();

  int32_t number = 0;
  const char* after = ParseMathNumber(begin, &number);
  if (after && (after <= begin || after > end)) __builtin_trap();
  return 0;
}
