// Colouring every line of a C source of at least 50 MB (the MinGW-w64 headers on this machine,
// repeated), against one `grep -c` pass over the same file in the same run.
#include <dirent.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "editor/colouring.h"
#include "editor/comment_states.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "foundation/library.h"

namespace {

constexpr size_t kSourceBytes = 50u << 20;
const char kHeaders[] = "/usr/share/mingw-w64/include";

std::string HeaderText() {
  std::string text;
  if (DIR* folder = opendir(kHeaders)) {
    while (dirent* entry = readdir(folder)) {
      std::string name = entry->d_name;
      if (name.size() < 3 || name.substr(name.size() - 2) != ".h") continue;
      std::ifstream file(std::string(kHeaders) + "/" + name, std::ios::binary);
      std::string header((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
      // A line longer than the editor's text check allows would make the file look binary.
      bool longLine = false;
      for (size_t start = 0, end; start < header.size() && !longLine; start = end + 1) {
        end = header.find('\n', start);
        if (end == std::string::npos) end = header.size();
        longLine = end - start > 4000;
      }
      if (!longLine) text += header;
    }
    closedir(folder);
  }
  return text;
}

double Seconds(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main() {
  InitKLib(nullptr, nullptr);
  std::string headers = HeaderText();
  if (headers.empty()) {
    fprintf(stderr, "no headers in %s\n", kHeaders);
    return 1;
  }
  std::string path = "/tmp/quill_colour_bench.c";
  {
    // Exactly 50 MB up to the last whole line: the editor refuses files from 52,480,000 bytes.
    std::string source;
    while (source.size() < kSourceBytes) source += headers;
    source.resize(source.rfind('\n', kSourceBytes) + 1);
    std::ofstream(path, std::ios::binary) << source;
  }
  EditDocument* document = NewDocument();
  EditorView view = {};
  view.document = document;
  snprintf(document->path, sizeof document->path, "%s", path.c_str());
  document->encoding = 3;  // UTF8: the headers are ASCII
  document->tabSize = 8;
  if (!LoadDocument(&view)) {
    fprintf(stderr, "cannot load %s\n", path.c_str());
    return 1;
  }
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
      line->commentState = ColourLine(&runs, line->text, line->length, i, LineStartsInComment(document, i));
      totalRuns += runs->count;
    }
    if (Seconds(start) < best) best = Seconds(start);
  }
  double grep = 1e30;
  for (int round = 0; round < 3; ++round) {
    auto start = std::chrono::steady_clock::now();
    // Not to /dev/null: grep notices it and stops at the first match.
    std::string command = "grep -c int " + path + " >" + path + ".count";
    if (system(command.c_str()) != 0) fprintf(stderr, "grep failed\n");
    if (Seconds(start) < grep) grep = Seconds(start);
  }
  double megabytes = static_cast<double>(kSourceBytes) / (1 << 20);  // to the nearest line
  printf("colour %d lines (%.0f MB, %lld runs): Quill %.3f s   grep -c %.3f s   ratio %.2f (target 10)\n",
         document->lineCount, megabytes, totalRuns, best, grep, best / grep);
  FreeColourRuns(runs);
  FreeDocument(document);
  remove(path.c_str());
  remove((path + ".count").c_str());
  CloseKLib();
  return 0;
}
