// Colouring every line of a C source of at least 50 MB (the MinGW-w64 headers on this machine,
// repeated), against one `grep -c` pass over the same file in the same run.
#include <chrono>
#include <cstdio>
#include <string>

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
  double best = 1e30;
  long long totalRuns = 0;
  for (int round = 0; round < 3; ++round) {
    auto start = std::chrono::steady_clock::now();
    ComputeCommentStates(document);
    totalRuns = 0;
    for (int i = 0; i < document->lineCount; ++i) {
      LineRecord* line = document->lines[i];
      if (!line) continue;
      line->commentState =
          ColourLine(&runs, line->text, line->length, i, LineStartsInComment(document, i));
      totalRuns += runs->count;
    }
    if (SecondsSince(start) < best) best = SecondsSince(start);
  }
  double grep = GrepSeconds("int", path);
  double megabytes = static_cast<double>(kCorpusBytes) / (1 << 20);  // to the nearest line
  printf(
      "colour %d lines (%.0f MB, %lld runs): Quill %.3f s   grep -c %.3f s   ratio %.2f (target "
      "10)\n",
      document->lineCount, megabytes, totalRuns, best, grep, best / grep);
  FreeColourRuns(runs);
  FreeDocument(document);
  remove(path.c_str());
  CloseKLib();
  return 0;
}
