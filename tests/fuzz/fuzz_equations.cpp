// The linear equation calculator on arbitrary text: a known result, a terminated answer that says
// something, and no input taking longer than a keystroke may.
#include <chrono>
#include <cstdint>
#include <string>

#include "calc/linear_equations.h"
#include "foundation/library.h"
#include "foundation/memory.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Messages come from the string table.
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  std::string text(reinterpret_cast<const char*>(data), size);
  auto start = std::chrono::steady_clock::now();
  int result = -1;
  char* answer = SolveLinearEquations(text.c_str(), &result);
  if (!answer || !*answer || result < kLinearSolved || result > kLinearArithmetic) __builtin_trap();
  FreeMem(answer);
  if (size < 4096 && std::chrono::steady_clock::now() - start > std::chrono::milliseconds(200))
    __builtin_trap();
  return 0;
}
