// Find and replace over arbitrary documents against a plain reference search written from the
// matching rules: every match FindNext selects in turn, the text ReplaceAll leaves, and undo and
// redo of the whole run.
#include <cstdint>
#include <string>
#include <vector>

#include "editor/case_fold.h"
#include "editor/char_class.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/find_replace.h"
#include "editor/search_request.h"
#include "editor/undo.h"
#include "foundation/host.h"
#include "foundation/library.h"

namespace {

int AnswerOk(void*, const char*, unsigned) {
  return 1;
}

// A small alphabet so that matches, near-misses and every class of unit come often.
char16_t UnitOf(uint8_t byte) {
  static const char16_t kUnits[] = u"aAbB_$1 (.\x00E9\x00C9\xD55C\xAE00\x3000xX";
  return kUnits[byte % (sizeof kUnits / sizeof kUnits[0] - 1)];
}

struct Rules {
  bool caseSensitive;
  bool wholeWord;
};

bool Same(const char16_t* text, const std::u16string& pattern, bool caseSensitive) {
  for (size_t i = 0; i < pattern.size(); ++i)
    if (text[i] != pattern[i] && (caseSensitive || FoldCase(text[i]) != FoldCase(pattern[i])))
      return false;
  return true;
}

bool Touches(char16_t first, char16_t neighbour) {
  if (IsIdentifierChar(first)) return IsIdentifierChar(neighbour);
  if (IsWordChar(first)) return IsWordChar(neighbour);
  return false;
}

// The matches of a line in order: a candidate (match or rejected) is consumed whole.
std::vector<size_t> Matches(const std::u16string& line, const std::u16string& pattern,
                            Rules rules) {
  std::vector<size_t> found;
  size_t m = pattern.size();
  for (size_t at = 0; at + m <= line.size();) {
    if (!Same(line.data() + at, pattern, rules.caseSensitive)) {
      ++at;
      continue;
    }
    bool rejected =
        rules.wholeWord && ((at > 0 && Touches(pattern[0], line[at - 1])) ||
                            (at + m < line.size() && Touches(pattern[0], line[at + m])));
    if (!rejected) found.push_back(at);
    at += m;
  }
  return found;
}

std::vector<std::u16string> Snapshot(const EditDocument* document) {
  std::vector<std::u16string> lines;
  for (int i = 0; i < document->lineCount; ++i) {
    const LineRecord* line = document->lines[i];
    lines.push_back(line ? std::u16string(line->text, line->length) : std::u16string());
  }
  return lines;
}

int Column(const std::u16string& line, size_t index) {
  int column = 0;
  for (size_t i = 0; i < index; ++i)
    column += line[i] >= 256 ? 2 : 1;
  return column;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = false;
  if (!started) {
    InitKLib(nullptr, nullptr);
    started = true;
  }
  if (size < 3 || size > 4096) return 0;
  static const UiHost ui = {AnswerOk, nullptr};
  SetUiHost(&ui);
  Rules rules = {(data[0] & 1) != 0, (data[0] & 2) != 0};
  size_t patternLength = 1 + data[1] % 4;
  size_t replacementLength = data[2] % 6;
  size_t at = 3;
  if (size < at + patternLength + replacementLength) return 0;
  std::u16string pattern, replacement;
  for (size_t i = 0; i < patternLength; ++i)
    pattern += UnitOf(data[at++]);
  for (size_t i = 0; i < replacementLength; ++i)
    replacement += UnitOf(data[at++]);
  std::vector<std::u16string> lines(1);
  for (; at < size; ++at) {
    if (data[at] == 0xFF)
      lines.emplace_back();
    else
      lines.back() += UnitOf(data[at]);
  }

  EditDocument* document = NewDocument();
  if (!document) return 0;
  EditorView view = {};
  view.document = document;
  for (const std::u16string& line : lines)
    AppendUtf16Line(document, line.data(), static_cast<int>(line.size()));
  std::vector<std::u16string> original = Snapshot(document);

  SearchRequest request = {};
  request.direction = 1;  // downward first
  request.caseSensitive = rules.caseSensitive;
  request.wholeWord = rules.wholeWord;
  request.origin = 1;
  SetSearchText(request.findText, pattern.data(), static_cast<int>(pattern.size()));
  SetSearchText(request.replaceText, replacement.data(), static_cast<int>(replacement.size()));

  // Every match in turn: the first from the top, then each from the caret as F3 searches (F3
  // itself would also write the history into the settings file).
  for (size_t line = 0; line < original.size(); ++line) {
    for (size_t match : Matches(original[line], pattern, rules)) {
      if (!FindNext(&view, &request, false)) __builtin_trap();
      request.origin = 0;
      int start = Column(original[line], match);
      int end = Column(original[line], match + pattern.size());
      if (view.caretLine != static_cast<int>(line) || view.selStartColumn != start ||
          view.caretColumn != end || view.selEndColumn != end)
        __builtin_trap();
    }
  }
  if (FindNext(&view, &request, false)) __builtin_trap();

  // Upward from the end: every stop lies before the one before it, and the walk comes to an end.
  request.direction = 0;
  request.origin = 1;
  int lastLine = 1 << 30, lastColumn = 1 << 30, steps = 0;
  while (FindNext(&view, &request, false)) {
    request.origin = 0;
    if (view.caretLine > lastLine ||
        (view.caretLine == lastLine && view.selStartColumn >= lastColumn) || ++steps > 100000)
      __builtin_trap();
    lastLine = view.caretLine;
    lastColumn = view.selStartColumn;
  }
  request.direction = 1;

  // Replace all from the top, then undo and redo the whole run.
  std::vector<std::u16string> expected;
  int count = 0;
  for (const std::u16string& line : original) {
    std::u16string out;
    size_t from = 0;
    for (size_t match : Matches(line, pattern, rules)) {
      out += line.substr(from, match - from) + replacement;
      from = match + pattern.size();
      ++count;
    }
    expected.push_back(out + line.substr(from));
  }
  request.mode = 1;
  request.replaceAll = 1;
  request.origin = 1;
  view.caretColumn = view.caretLine = 0;
  CollapseSelection(&view);
  if (ReplaceAll(&view, &request) != count) __builtin_trap();
  if (Snapshot(document) != expected) __builtin_trap();
  if (count > 0) {
    while (document->undoList)
      Undo(&view);
    if (Snapshot(document) != original || document->modified) __builtin_trap();
    while (document->redoList)
      Redo(&view);
    if (Snapshot(document) != expected) __builtin_trap();
  }
  FreeDocument(document);
  SetUiHost(nullptr);
  return 0;
}
