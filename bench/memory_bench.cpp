// AllocMem/FreeMem (a locked list and a tag per block) against the system allocator beneath it.
#include <cstdlib>

#include "bench/bench_util.h"
#include "foundation/library.h"
#include "foundation/memory.h"

int main() {
  InitKLib(nullptr, nullptr);
  const int batch = 64;
  void* blocks[batch];
  const int n = 20000;
  double ours = BestNanosPerIteration(n, [&](int i) {
    for (int k = 0; k < batch; ++k)
      blocks[k] = AllocMem(static_cast<size_t>(16 + (i + k) % 200), 1);
    for (int k = batch - 1; k >= 0; --k)
      FreeMem(blocks[k]);
  });
  double theirs = BestNanosPerIteration(n, [&](int i) {
    for (int k = 0; k < batch; ++k)
      blocks[k] = malloc(static_cast<size_t>(16 + (i + k) % 200));
    for (int k = batch - 1; k >= 0; --k)
      free(blocks[k]);
  });
  Report("AllocMem+FreeMem x64 blocks", ours, "malloc+free", theirs);
  return CloseKLib() == 0 ? 0 : 1;
}
