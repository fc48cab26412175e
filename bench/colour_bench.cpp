// Colouring every line of a C source of at least 50 MB (the MinGW-w64 headers on this machine,
// repeated) as painting colours it from a fresh load, every comment state stale: the runs of every
// line and the state it passes on, against one `grep -c` pass over the same file, the two
// interleaved in the same run.
#include <chrono>
#include <cstdio>
#include <string>

#include "bench/bench_util.h"
#include "bench/header_corpus.h"
#include "editor/colouring.h"
#include "editor/comment_states.h"
#include "foundation/library.h"

int main() {
  InitKLib(nullptr, nullptr);
  std::string path = "/tmp/quill_colour_bench.c";
  if (!WriteHeaderCorpus(path)) return 1;
  EditorView view;
  EditDocument* document = LoadHeaderCorpus(path, &view);
  if (!document) return 1;
  ColourRuns* runs = NewColourRuns();
  long long totalRuns = 0;
  auto colour = [&] {
    auto start = std::chrono::steady_clock::now();
    NoteLinesChanged(document, 0, document->lineCount);  // as a load leaves them
    totalRuns = 0;
    for (int i = 0; i < document->lineCount; ++i) {
      if (!document->lines[i]) continue;
      ColourDocumentLine(document, i, &runs);
      totalRuns += runs->count;
    }
    return SecondsSince(start);
  };
  auto grep = [&] { return GrepSeconds("int", path); };
  Spread ours;
  Spread theirs;
  Interleave(9, colour, grep, &ours, &theirs);
  double megabytes = static_cast<double>(kCorpusBytes) / (1 << 20);  // to the nearest line
  printf("colour %d lines (%.0f MB, %lld runs), 9 interleaved runs:", document->lineCount,
         megabytes, totalRuns);
  PrintSpread("  Quill", ours);
  PrintSpread("   grep -c", theirs);
  printf("   ratio of minima %.2f, of medians %.2f (target 3)\n", ours.min / theirs.min,
         ours.median / theirs.median);
  FreeColourRuns(runs);
  FreeDocument(document);
  remove(path.c_str());
  CloseKLib();
  return 0;
}
