// Arbitrary file contents: loading never reads outside the data, and loading what was saved
// gives the lines of the first load again (with the blanks that saving removes).
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "encoding/line_convert.h"
#include "encoding/text_encoding.h"
#include "foundation/host.h"
#include "foundation/library.h"

namespace {

// Every question is answered OK: a file that does not look like text is opened anyway.
int AnswerOk(void*, const char*, unsigned) {
  return 1;
}
bool AnswerTab(void*, int, TabSizeAnswer* answer) {
  *answer = {4, true, false};
  return true;
}

std::vector<std::u16string> Snapshot(const EditDocument* document) {
  std::vector<std::u16string> lines;
  for (int i = 0; i < document->lineCount; ++i) {
    const LineRecord* line = document->lines[i];
    lines.push_back(line ? std::u16string(line->text, line->length) : std::u16string());
  }
  return lines;
}

// Whether the line survives the encoding by itself; lines that do not (unmappable units) are
// not compared.
bool Encodable(const std::u16string& line, int encoding) {
  if (encoding == UTF16 || line.empty()) return true;
  std::string bytes(line.size() * 3 + 4, '\0');
  int length = static_cast<int>(line.size());
  int written = encoding == UTF8 ? Utf16LineToUtf8(line.data(), length, &bytes[0], static_cast<int>(bytes.size()))
                                 : Utf16LineToEucKr(line.data(), length, &bytes[0], static_cast<int>(bytes.size()));
  std::u16string back(static_cast<size_t>(written) * 2 + 2, u'\0');
  int units = encoding == UTF8 ? Utf8LineToUtf16(bytes.data(), written, &back[0], static_cast<int>(back.size()))
                               : EucKrLineToUtf16(bytes.data(), written, &back[0], static_cast<int>(back.size()));
  back.resize(static_cast<size_t>(units));
  return back == line;
}

std::string TempPath() {
  char path[64];
  snprintf(path, sizeof path, "/tmp/fuzz_document_%d.txt", static_cast<int>(getpid()));
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = false;
  if (!started) {
    InitKLib(nullptr, nullptr);
    started = true;
  }
  static const UiHost ui = {AnswerOk, nullptr};
  SetUiHost(&ui);
  EditorHost host = {};
  host.askTabSize = AnswerTab;
  SetEditorHost(&host);

  std::string path = TempPath();
  FILE* file = fopen(path.c_str(), "wb");
  if (!file) return 0;
  fwrite(data, 1, size, file);
  fclose(file);

  EditDocument* document = NewDocument();
  if (!document) return 0;
  EditorView view = {};
  view.document = document;
  snprintf(document->path, sizeof document->path, "%s", path.c_str());
  if (LoadDocument(&view)) {
    // Saving keeps the width the question gave.
    document->tabSize = 4;
    document->keepTabSize = 1;
    if (!SaveDocument(&view, false)) __builtin_trap();
    std::vector<std::u16string> first = Snapshot(document);  // blanks already trimmed
    int encoding = document->encoding;
    if (!LoadDocument(&view)) __builtin_trap();
    std::vector<std::u16string> second = Snapshot(document);
    if (encoding != ENCODING_DETECT) {
      if (first.size() != second.size()) __builtin_trap();
      for (size_t i = 0; i < first.size(); ++i) {
        // Units below 33 at the end are dropped on saving; compare what saving keeps.
        std::u16string kept = first[i];
        while (!kept.empty() && kept.back() < 33) kept.pop_back();
        if (Encodable(kept, encoding) && kept != second[i]) __builtin_trap();
      }
    }
  }
  FreeDocument(document);
  remove(path.c_str());
  SetEditorHost(nullptr);
  SetUiHost(nullptr);
  return 0;
}
