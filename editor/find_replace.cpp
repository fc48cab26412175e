#include "editor/find_replace.h"

#include <cstring>

#include "editor/command_host.h"
#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/find_match.h"
#include "editor/search_request.h"
#include "editor/undo.h"
#include "editor/word_moves.h"
#include "foundation/host.h"
#include "foundation/unicode.h"

namespace {

constexpr int kMessageNotFound = 86;
constexpr int kMessageNoSelection = 87;

int TextLength(const char16_t* text) {
  int length = 0;
  while (length < kSearchTextUnits && text[length])
    ++length;
  return length;
}

MatchRules RulesOf(const SearchRequest* request) {
  return {request->caseSensitive != 0, request->wholeWord != 0};
}

void NotFound(const SearchRequest* request) {
  char text[kSearchTextUnits * 3 + 1];
  int length = Utf16ToUtf8(request->findText, TextLength(request->findText), text, sizeof text - 1);
  text[length > 0 ? length : 0] = '\0';
  HostMessageId(kMessageNotFound, kMbOk | kMbIconInformation, text);
}

struct ReplaceRun {
  EditorView* view;
  const char16_t* replacement;
  int replacementLength;
  UndoRecord* record;  // the record the run's places go into while the matched text stays the same
  char16_t matched[kSearchTextUnits];
  int matchedLength;
};

// Replaces `length` units at `index` and records it. False when the line would grow too long.
bool ReplaceAt(ReplaceRun* run, int line, int index, int length) {
  EditDocument* document = run->view->document;
  const LineRecord* record = document->lines[line];
  const char16_t* found = record->text + index;
  // The old text is the text as it stood, so that undo gives back its case too.
  char16_t texts[2 * kSearchTextUnits + 2];
  memcpy(texts, found, static_cast<size_t>(length) * sizeof(char16_t));
  texts[length] = 0;
  memcpy(texts + length + 1, run->replacement,
         static_cast<size_t>(run->replacementLength) * sizeof(char16_t));
  texts[length + 1 + run->replacementLength] = 0;
  int column = ColumnOfIndex(record, index);
  bool sameRun = run->record && run->record == UndoHead(document) && run->matchedLength == length &&
                 memcmp(run->matched, found, static_cast<size_t>(length) * sizeof(char16_t)) == 0;
  if (!ReplaceUnits(document, line, index, length, run->replacement, run->replacementLength))
    return false;
  int count = length + run->replacementLength + 2;
  if (sameRun) {
    PushUndo(run->view, kUndoReplace, column, line, texts, count);
  } else {
    run->record = PushUndoUnselected(run->view, kUndoReplace, column, line, texts, count);
    memcpy(run->matched, texts, static_cast<size_t>(length) * sizeof(char16_t));
    run->matchedLength = length;
  }
  return true;
}

}  // namespace

void ProposeFindText(const EditorView* view, SearchRequest* request) {
  const EditDocument* document = view->document;
  if (HasSelection(view)) {
    Selection s = NormalisedSelection(view);
    const LineRecord* line = DocumentLine(document, s.startLine);
    int from = UnitIndexAtColumn(line, s.startColumn);
    int to = s.endLine == s.startLine || view->blockMode == 1 ? UnitIndexAtColumn(line, s.endColumn)
                                                              : LineLength(line);
    if (to > from) {
      SetSearchText(request->findText, line->text + from, to - from);
      return;
    }
  }
  int start = 0;
  int end = 0;
  if (WordAtCaret(view, &start, &end)) {
    SetSearchText(request->findText, DocumentLine(document, view->caretLine)->text + start,
                  end - start);
  }
}

namespace {

// Selects the match at unit `at` of `line` with the caret at its end, behind a group boundary.
void SelectMatch(EditorView* view, int line, int at, int length) {
  const LineRecord* record = view->document->lines[line];
  int startColumn = ColumnOfIndex(record, at);
  int endColumn = ColumnOfIndex(record, at + length);
  PushUndoMark(view, kUndoGroup, view->caretColumn, view->caretLine);
  PushUndoMark(view, kUndoCaret, endColumn, line);
  // The window scrolls the start into view first, then the end.
  view->caretColumn = startColumn;
  view->caretLine = line;
  EditorCaretMoved(view);
  view->caretColumn = endColumn;
  view->selStartColumn = startColumn;
  view->selStartLine = line;
  view->selEndColumn = endColumn;
  view->selEndLine = line;
  EditorCaretMoved(view);
  EditorRepaintAll(view);
}

// The last match in line[0, limit) that starts before `before`, or -1.
int LastMatchBefore(const LineRecord* record, int before, const char16_t* pattern, int length,
                    MatchRules rules) {
  int last = -1;
  for (int from = 0; from < before;) {
    int at =
        MatchInLine(record->text, record->length, from, record->length, pattern, length, rules);
    if (at < 0 || at >= before) break;
    last = at;
    from = at + 1;
  }
  return last;
}

// Searching upward: from the start of the selection (or the caret) toward the top, or from the
// end of the text when started from the dialog with origin 1.
bool FindUpward(EditorView* view, const SearchRequest* request, bool fromF3, int length) {
  EditDocument* document = view->document;
  int line = view->caretLine;
  int column = view->caretColumn;
  if (HasSelection(view)) {
    Selection s = NormalisedSelection(view);
    line = s.startLine;
    column = s.startColumn;
  }
  if (line >= document->lineCount) {
    line = document->lineCount - 1;
    column = 0x7FFFFFFF;
  }
  int before = UnitIndexAtColumn(DocumentLine(document, line), column);
  if (!fromF3 && request->origin == 1) {
    line = document->lineCount - 1;
    before = 0x7FFFFFFF;
  }
  MatchRules rules = RulesOf(request);
  for (; line >= 0; --line, before = 0x7FFFFFFF) {
    const LineRecord* record = document->lines[line];
    if (!record) continue;
    int at = LastMatchBefore(record, before < record->length ? before : record->length + 1,
                             request->findText, length, rules);
    if (at < 0) continue;
    SelectMatch(view, line, at, length);
    return true;
  }
  return false;
}

bool FindDownward(EditorView* view, const SearchRequest* request, bool fromF3, int length) {
  EditDocument* document = view->document;
  int line = view->caretLine;
  int index = UnitIndexAtColumn(DocumentLine(document, line), view->caretColumn);
  if (!fromF3 && request->origin == 1) line = index = 0;
  MatchRules rules = RulesOf(request);
  for (; line < document->lineCount; ++line, index = 0) {
    const LineRecord* record = document->lines[line];
    if (!record) continue;
    int at = MatchInLine(record->text, record->length, index, record->length, request->findText,
                         length, rules);
    if (at < 0) continue;
    SelectMatch(view, line, at, length);
    return true;
  }
  return false;
}

}  // namespace

bool FindNext(EditorView* view, SearchRequest* request, bool fromF3) {
  EditDocument* document = view->document;
  int patternLength = TextLength(request->findText);
  if (patternLength == 0 || !document) return false;
  // Direction 0 is the dialog's 위로; F3 keeps whichever was chosen last.
  bool found = request->direction == 0 ? FindUpward(view, request, fromF3, patternLength)
                                       : FindDownward(view, request, fromF3, patternLength);
  if (found) {
    if (fromF3) PushHistory(kFindHistory, request->findText);
    return true;
  }
  NotFound(request);
  return false;
}

int ReplaceAll(EditorView* view, SearchRequest* request) {
  EditDocument* document = view->document;
  int patternLength = TextLength(request->findText);
  if (patternLength == 0 || !document) return 0;
  int line = view->caretLine;
  int index = UnitIndexAtColumn(DocumentLine(document, line), view->caretColumn);
  int lastLine = document->lineCount - 1;
  int endIndex = -1;  // in the last line of a selection: where the selection ends
  if (request->scope == 1) {
    if (!HasSelection(view)) {
      HostMessageId(kMessageNoSelection, kMbOk | kMbIconExclamation, nullptr);
      return 0;
    }
    Selection s = NormalisedSelection(view);
    line = s.startLine;
    index = UnitIndexAtColumn(DocumentLine(document, line), s.startColumn);
    if (s.endLine < lastLine) lastLine = s.endLine;
    if (s.endLine == lastLine)
      endIndex = UnitIndexAtColumn(DocumentLine(document, lastLine), s.endColumn);
  } else if (request->origin == 1) {
    line = index = 0;
  } else if (HasSelection(view)) {
    // A match that Find selected is replaced too: the search starts where the selection does.
    Selection s = NormalisedSelection(view);
    line = s.startLine;
    index = UnitIndexAtColumn(DocumentLine(document, line), s.startColumn);
  }
  ReplaceRun run = {};
  run.view = view;
  run.replacement = request->replaceText;
  run.replacementLength = TextLength(request->replaceText);
  MatchRules rules = RulesOf(request);
  int replaced = 0;
  int caretColumn = 0;
  int caretLine = 0;
  // However many records the replacements make (a case-insensitive search meets the text in
  // several cases), one Ctrl+Z takes them all back.
  BeginUndoGroup(document);
  for (; line <= lastLine; ++line, index = 0) {
    for (;;) {
      const LineRecord* record = document->lines[line];
      int length = LineLength(record);
      int limit = line == lastLine && endIndex >= 0 && endIndex < length ? endIndex : length;
      int at = record ? MatchInLine(record->text, length, index, limit, request->findText,
                                    patternLength, rules)
                      : -1;
      if (at < 0) break;
      if (!ReplaceAt(&run, line, at, patternLength)) {
        index = at + patternLength;  // a line that cannot grow keeps this match
        continue;
      }
      ++replaced;
      index = at + run.replacementLength;
      if (line == lastLine && endIndex >= 0) endIndex += run.replacementLength - patternLength;
      caretColumn = ColumnOfIndex(document->lines[line], index);
      caretLine = line;
      if (!request->replaceAll) break;
    }
    if (replaced && !request->replaceAll) break;
  }
  EndUndoGroup(document);
  if (replaced == 0) {
    NotFound(request);
    return 0;
  }
  document->modified = 1;
  SetCaret(view, caretColumn, caretLine);
  EditorRepaintAll(view);
  return replaced;
}

void FindDialog(EditorView* view, bool findNext) {
  SearchRequest* request = &g_searchRequest;
  if (findNext && request->findText[0]) {
    FindNext(view, request, true);
    return;
  }
  ProposeFindText(view, request);
  request->mode = 0;
  LoadSearchOptions(request);
  if (!CommandSearchDialog(view, request) || !request->findText[0]) return;
  SaveSearchOptions(request);
  PushHistory(kFindHistory, request->findText);
  FindNext(view, request, false);
}

void ReplaceDialog(EditorView* view) {
  SearchRequest* request = &g_searchRequest;
  ProposeFindText(view, request);
  request->mode = 1;
  request->replaceAll = 0;
  LoadSearchOptions(request);
  if (!CommandSearchDialog(view, request) || !request->findText[0]) return;
  SaveSearchOptions(request);
  PushHistory(kFindHistory, request->findText);
  PushHistory(kReplaceHistory, request->replaceText);
  ReplaceAll(view, request);
}
