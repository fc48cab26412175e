// The program's formatter against the C library's snprintf on the conversions both have.
#include <cstdio>

#include "bench/bench_util.h"
#include "foundation/formatter.h"
#include "foundation/library.h"

int main() {
  InitKLib(nullptr, nullptr);
  char buffer[256];
  volatile int sink = 0;
  const int n = 200000;
  double ours = BestNanosPerIteration(n, [&](int i) {
    sink += FormatStr(buffer, sizeof buffer, "Error %d at %s line %5d: 0x%08X\r\n", i, "main.c",
                      i & 0xFFF, i * 7);
  });
  double theirs = BestNanosPerIteration(n, [&](int i) {
    sink += snprintf(buffer, sizeof buffer, "Error %d at %s line %5d: 0x%08X\r\n", i, "main.c",
                     i & 0xFFF, i * 7);
  });
  Report("FormatStr  mixed message", ours, "snprintf", theirs);
  ours = BestNanosPerIteration(
      n, [&](int i) { sink += FormatStr(buffer, sizeof buffer, "%d", i * 12345); });
  theirs = BestNanosPerIteration(
      n, [&](int i) { sink += snprintf(buffer, sizeof buffer, "%d", i * 12345); });
  Report("FormatStr  one %d", ours, "snprintf", theirs);
  CloseKLib();
  return 0;
}
