// Replace-all of a frequent identifier in a C source of at least 50 MB (the MinGW-w64 headers on
// this machine, repeated), with its undo record, against one `grep -c` pass over the same file in
// the same run; then the undo of a replace-all that touched more than 1,000,000 places.
#include <dirent.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "editor/find_replace.h"
#include "editor/search_request.h"
#include "editor/undo.h"
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

SearchRequest Request(const char16_t* find, const char16_t* by, bool wholeWord) {
  SearchRequest request = {};
  request.mode = 1;
  request.caseSensitive = 1;
  request.wholeWord = wholeWord;
  request.origin = 1;
  request.replaceAll = 1;
  SetSearchText(request.findText, find, static_cast<int>(std::char_traits<char16_t>::length(find)));
  SetSearchText(request.replaceText, by, static_cast<int>(std::char_traits<char16_t>::length(by)));
  return request;
}

}  // namespace

int main() {
  InitKLib(nullptr, nullptr);
  std::string headers = HeaderText();
  if (headers.empty()) {
    fprintf(stderr, "no headers in %s\n", kHeaders);
    return 1;
  }
  std::string path = "/tmp/quill_replace_bench.c";
  {
    // 50 MB up to the last whole line: the editor refuses files from 52,480,000 bytes.
    std::string source;
    while (source.size() < kSourceBytes)
      source += headers;
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

  // The identifier of every COM method's first parameter, replaced by a longer name that holds it.
  SearchRequest request = Request(u"This", u"ThisObject", true);
  double replace = 1e30;
  double undo = 1e30;
  int places = 0;
  for (int round = 0; round < 3; ++round) {
    auto start = std::chrono::steady_clock::now();
    places = ReplaceAll(&view, &request);
    if (Seconds(start) < replace) replace = Seconds(start);
    start = std::chrono::steady_clock::now();
    Undo(&view);
    if (Seconds(start) < undo) undo = Seconds(start);
    FreeUndoList(document->redoList);
    document->redoList = nullptr;
  }
  double grep = 1e30;
  for (int round = 0; round < 3; ++round) {
    auto start = std::chrono::steady_clock::now();
    // Not to /dev/null: grep notices it and stops at the first match.
    std::string command = "grep -c This " + path + " >" + path + ".count";
    if (system(command.c_str()) != 0) fprintf(stderr, "grep failed\n");
    if (Seconds(start) < grep) grep = Seconds(start);
  }
  printf(
      "replace all %d places of This in %d lines (50 MB): Quill %.3f s   grep -c %.3f s   ratio "
      "%.2f (target 20)\n",
      places, document->lineCount, replace, grep, replace / grep);
  printf("undo of that replace-all: %.3f s\n", undo);

  SearchRequest many = Request(u"_", u"__", false);
  int manyPlaces = ReplaceAll(&view, &many);
  auto start = std::chrono::steady_clock::now();
  Undo(&view);
  printf("undo of a replace-all of %d places: %.3f s (target well under 1 s)\n", manyPlaces,
         Seconds(start));

  FreeDocument(document);
  remove(path.c_str());
  remove((path + ".count").c_str());
  CloseKLib();
  return 0;
}
