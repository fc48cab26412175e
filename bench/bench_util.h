// Times a piece of work: the best of several runs, in nanoseconds per iteration.
#pragma once
#include <chrono>
#include <cstdio>

template <typename Work>
double BestNanosPerIteration(int iterations, Work work) {
  double best = 1e30;
  for (int run = 0; run < 7; ++run) {
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iterations; ++i)
      work(i);
    std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
    if (took.count() / iterations < best) best = took.count() / iterations;
  }
  return best;
}

inline void Report(const char* what, double ours, const char* reference, double theirs) {
  printf("%-40s %8.1f ns   %-12s %8.1f ns   ratio %.2f\n", what, ours, reference, theirs,
         ours / theirs);
}
