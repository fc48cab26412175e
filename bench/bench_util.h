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

// Two pieces of work run in turn, `rounds` times each (interleaved, so that a burst of load from
// another process on the shared machine falls on both), with the minimum and the median of each.
#include <algorithm>
#include <vector>

struct Spread {
  double min;
  double median;
};

inline Spread SpreadOf(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return {seconds.front(), seconds[seconds.size() / 2]};
}

template <typename Ours, typename Theirs>
void Interleave(int rounds, Ours ours, Theirs theirs, Spread* oursSpread, Spread* theirsSpread) {
  std::vector<double> a;
  std::vector<double> b;
  for (int round = 0; round < rounds; ++round) {
    a.push_back(ours());
    b.push_back(theirs());
  }
  *oursSpread = SpreadOf(a);
  *theirsSpread = SpreadOf(b);
}

// "min 0.123 s, median 0.130 s"
inline void PrintSpread(const char* name, Spread spread) {
  printf("%s min %.3f s, median %.3f s", name, spread.min, spread.median);
}
