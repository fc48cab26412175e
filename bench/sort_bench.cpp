// The line sort over 1,000,000 lines (identifiers with numbers, Hangul words, mixed case: the
// document of a generated word list) with its undo record, against `LC_ALL=C sort -s` on the same
// file in the same run; the ascending plain order, and descending, case folded, numbers by value
// and without duplicates against `sort -s -r -f -u` (whose numbers are not by value, so that pair
// compares work of the same size rather than the same answer).
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "editor/line_sort.h"
#include "editor/undo.h"
#include "foundation/library.h"

namespace {

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void WriteLines(const std::string& path, int count) {
  std::mt19937 random(20261123);
  const char* kWords[] = {"file", "Buffer", "count", "가나", "정렬", "ID_", "x", "Zeta", "value"};
  std::ofstream file(path, std::ios::binary);
  for (int i = 0; i < count; ++i) {
    std::string line = kWords[random() % 9];
    line += std::to_string(random() % 100000);
    if (random() % 2) line += kWords[random() % 9];
    line += std::to_string(random() % 1000);
    file << line << '\n';
  }
}

double SortSeconds(const std::string& path, const LineSortOptions& options, int* lines) {
  EditorView view = {};
  EditDocument* document = NewDocument();
  view.document = document;
  snprintf(document->path, sizeof document->path, "%s", path.c_str());
  document->encoding = 3;
  document->tabSize = 8;
  if (!LoadDocument(&view)) return -1;
  auto start = std::chrono::steady_clock::now();
  if (getenv("SORT_KEYS_ONLY")) {
    std::vector<SortKey> keys(document->lineCount);
    std::vector<int32_t> order(document->lineCount);
    for (int i = 0; i < document->lineCount; ++i)
      keys[i] = {document->lines[i] ? document->lines[i]->text : nullptr,
                 LineLength(document->lines[i])};
    start = std::chrono::steady_clock::now();
    SortKeys(keys.data(), document->lineCount, options, order.data());
  } else {
    SortLines(&view, options);
  }
  double seconds = SecondsSince(start);
  *lines = document->lineCount;
  FreeDocument(document);
  return seconds;
}

double GnuSeconds(const std::string& path, const char* flags) {
  std::string command =
      "LC_ALL=C sort -s " + std::string(flags) + " " + path + " >" + path + ".out";
  auto start = std::chrono::steady_clock::now();
  if (system(command.c_str()) != 0) fprintf(stderr, "sort failed\n");
  double seconds = SecondsSince(start);
  remove((path + ".out").c_str());
  return seconds;
}

}  // namespace

int main() {
  InitKLib(nullptr, nullptr);
  const std::string path = "/tmp/quill_sort_bench.txt";
  WriteLines(path, 1000000);
  struct Pass {
    const char* what;
    LineSortOptions options;
    const char* flags;
  } kPasses[] = {
      {"sort 1,000,000 lines", {0, 0, 0, 0}, ""},
      {"descending, folded, numbers, unique", {1, 1, 1, 1}, "-r -f -u"},
  };
  for (const Pass& pass : kPasses) {
    double ours = 1e30;
    double theirs = 1e30;
    int lines = 0;
    for (int round = 0; round < 3; ++round) {
      double seconds = SortSeconds(path, pass.options, &lines);
      if (seconds >= 0 && seconds < ours) ours = seconds;
      seconds = GnuSeconds(path, pass.flags);
      if (seconds < theirs) theirs = seconds;
    }
    printf("%-40s %8.3f s   LC_ALL=C sort -s %-8s %8.3f s   ratio %.2f   (%d lines left)\n",
           pass.what, ours, pass.flags, theirs, ours / theirs, lines);
  }
  remove(path.c_str());
  return CloseKLib() == 0 ? 0 : 1;
}
