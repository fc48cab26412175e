// Replace-all of a frequent identifier in a C source of at least 50 MB (the MinGW-w64 headers on
// this machine, repeated), with its undo record, against one `grep -c` pass over the same file in
// the same run; then the undo of a replace-all that touched more than 1,000,000 places.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/header_corpus.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "editor/find_replace.h"
#include "editor/search_request.h"
#include "editor/undo.h"
#include "foundation/library.h"

namespace {

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
  std::string path = "/tmp/quill_replace_bench.c";
  if (!WriteHeaderCorpus(path)) return 1;
  EditorView view;
  EditDocument* document = LoadHeaderCorpus(path, &view);
  if (!document) return 1;

  // The identifier of every COM method's first parameter, replaced by a longer name that holds it.
  SearchRequest request = Request(u"This", u"ThisObject", true);
  double replace = 1e30;
  double undo = 1e30;
  int places = 0;
  for (int round = 0; round < 3; ++round) {
    auto start = std::chrono::steady_clock::now();
    places = ReplaceAll(&view, &request);
    if (SecondsSince(start) < replace) replace = SecondsSince(start);
    start = std::chrono::steady_clock::now();
    Undo(&view);
    if (SecondsSince(start) < undo) undo = SecondsSince(start);
    FreeUndoList(document->redoList);
    document->redoList = nullptr;
  }
  double grep = 1e30;
  for (int round = 0; round < 3; ++round)
    grep = std::min(grep, GrepSeconds("This", path));
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
         SecondsSince(start));

  FreeDocument(document);
  remove(path.c_str());
  CloseKLib();
  return 0;
}
