// A C source of 50 MB made of the MinGW-w64 headers on this machine, repeated and cut at a whole
// line, and what the benchmarks that read it share: loading it as the editor does and timing a
// `grep -c` pass over it.
#pragma once
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

constexpr size_t kCorpusBytes = 50u << 20;  // below the editor's 52,480,000-byte limit
constexpr char kHeaderFolder[] = "/usr/share/mingw-w64/include";

inline double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Every header whose lines all pass the editor's text check, concatenated.
inline std::string HeaderText() {
  std::string text;
  DIR* folder = opendir(kHeaderFolder);
  if (!folder) return text;
  while (dirent* entry = readdir(folder)) {
    std::string name = entry->d_name;
    if (name.size() < 3 || name.substr(name.size() - 2) != ".h") continue;
    std::ifstream file(std::string(kHeaderFolder) + "/" + name, std::ios::binary);
    std::string header((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    bool longLine = false;
    for (size_t start = 0, end; start < header.size() && !longLine; start = end + 1) {
      end = header.find('\n', start);
      if (end == std::string::npos) end = header.size();
      longLine = end - start > 4000;
    }
    if (!longLine) text += header;
  }
  closedir(folder);
  return text;
}

// Writes the corpus to `path`; false when there are no headers.
inline bool WriteHeaderCorpus(const std::string& path) {
  std::string headers = HeaderText();
  if (headers.empty()) {
    fprintf(stderr, "no headers in %s\n", kHeaderFolder);
    return false;
  }
  std::string source;
  while (source.size() < kCorpusBytes)
    source += headers;
  source.resize(source.rfind('\n', kCorpusBytes) + 1);
  std::ofstream(path, std::ios::binary) << source;
  return true;
}

// Opens the corpus as the editor opens an ASCII file with tabs of 8; null when it cannot.
inline EditDocument* LoadHeaderCorpus(const std::string& path, EditorView* view) {
  EditDocument* document = NewDocument();
  *view = {};
  view->document = document;
  if (!document || path.size() >= sizeof document->path) return document;
  path.copy(document->path, path.size());
  document->path[path.size()] = '\0';
  document->encoding = 3;  // UTF8: the headers are ASCII
  document->tabSize = 8;
  if (!LoadDocument(view)) {
    fprintf(stderr, "cannot load %s\n", path.c_str());
    FreeDocument(document);
    return nullptr;
  }
  return document;
}

// One `grep -c WORD` pass over the file. Not to /dev/null: grep notices it and stops at the first
// match.
inline double GrepSeconds(const std::string& word, const std::string& path) {
  std::string command = "grep -c " + word + " " + path + " >" + path + ".count";
  auto start = std::chrono::steady_clock::now();
  if (system(command.c_str()) != 0) fprintf(stderr, "grep failed\n");
  double seconds = SecondsSince(start);
  remove((path + ".count").c_str());
  return seconds;
}
