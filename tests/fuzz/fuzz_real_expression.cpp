// The real calculator's expression style on arbitrary text: a known code, a terminated result and
// no input the window can hold taking longer than the calculator's time bound.
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>

#include "calc/decimal_registers.h"
#include "calc/math_expression.h"
#include "calc/real_expression.h"
#include "foundation/library.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Error messages come from the string table.
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  if (size > kRealCalcInputSize - 1) size = kRealCalcInputSize - 1;
  std::string text(reinterpret_cast<const char*>(data), size);
  auto start = std::chrono::steady_clock::now();
  char output[1024];
  uint32_t error = EvaluateRealExpression(text.c_str(), output, sizeof output);
  if (error > kMathOverflow || error == kMathEmpty) __builtin_trap();
  if (strlen(output) >= sizeof output) __builtin_trap();
  if (std::chrono::steady_clock::now() - start > std::chrono::milliseconds(100)) __builtin_trap();
  ResetDecimalCalcState();
  return 0;
}
