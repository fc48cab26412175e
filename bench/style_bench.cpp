// Coding-style conversion of 50 MB of C headers, in MB/s, beside a `grep -c` pass over the file
// (the floor for anything that reads every byte).
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/header_corpus.h"
#include "foundation/library.h"
#include "foundation/text_builder.h"
#include "tools/c_style.h"

int main() {
  InitKLib(nullptr, nullptr);
  std::string path = "/tmp/quill_style_bench.h";
  if (!WriteHeaderCorpus(path)) return 1;
  std::ifstream in(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const CStyle styles[] = {{false, 4, false, true, true, false}, {true, 4, true, true, true, true}};
  for (const CStyle& style : styles) {
    double best = 1e30;
    size_t length = 0;
    for (int round = 0; round < 3; ++round) {
      TextBuffer out;
      InitText(&out, 1);
      auto start = std::chrono::steady_clock::now();
      ConvertCStyle(text.data(), text.size(), style, &out);
      double took = SecondsSince(start);
      length = out.length;
      FreeText(&out);
      if (took < best) best = took;
    }
    double grep = GrepSeconds("WINAPI", path);
    printf("style %-30s %6.3f s (%5.1f MB/s, %zu B out)   grep -c %6.3f s   ratio %.2f\n",
           style.braceNextLine ? "next-line, tabs, one statement" : "same-line", best,
           text.size() / 1048576.0 / best, length, grep, best / grep);
  }
  remove(path.c_str());
  return 0;
}
