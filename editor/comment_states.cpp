#include "editor/comment_states.h"

#include "editor/colour_runs.h"
#include "editor/colouring.h"
#include "editor/document.h"

bool LineStartsInComment(const EditDocument* document, int line) {
  if (line > document->lineCount) line = document->lineCount;
  for (int above = line - 1; above >= 0; --above) {
    if (const LineRecord* record = document->lines[above]) return record->commentState != 0;
  }
  return false;
}

void EnsureCommentStates(EditDocument* document, int line) {
  int from = document->commentFrom;
  if (from > line) return;
  if (from >= document->lineCount) {
    document->commentFrom = kStatesClean;
    return;
  }
  bool state = LineStartsInComment(document, from);
  for (int i = from; i < document->lineCount; ++i) {
    LineRecord* record = document->lines[i];
    if (record) {
      bool end = ScanCommentState(record->text, record->length, state);
      // Below the changed text, a line that ends as it did leaves every later line as it was.
      if (i >= document->changedEnd && (record->commentState != 0) == end) {
        document->commentFrom = kStatesClean;
        return;
      }
      record->commentState = end ? 1 : 0;
      state = end;
    }
    if (i >= line) {
      document->commentFrom = i + 1;
      return;
    }
  }
  document->commentFrom = kStatesClean;
}

namespace {

// Whether the colour scan reads the line as a preprocessor line: its end state may then differ
// from the plain scan's. Elsewhere the two scans agree.
bool IsDirectiveLine(const LineRecord* record, bool startsInComment) {
  if (startsInComment) return false;
  for (int i = 0; i < record->length; ++i) {
    if (record->text[i] >= 33) return record->text[i] == u'#';
  }
  return false;
}

}  // namespace

void ColourDocumentLine(EditDocument* document, int line, ColourRuns** runs) {
  if (line < 0 || line >= document->lineCount) return;
  LineRecord* record = document->lines[line];
  if (!record) return;
  EnsureCommentStates(document, line - 1);
  bool starts = LineStartsInComment(document, line);
  bool ends;
  if (runs && *runs) {
    (*runs)->count = 0;
    ends = ColourLine(runs, record->text, record->length, line, starts);
    if (IsDirectiveLine(record, starts) &&
        ends != ScanCommentState(record->text, record->length, starts)) {
      if (document->paintedFrom >= document->paintedEnd) {
        document->paintedFrom = line;
        document->paintedEnd = line + 1;
      } else {
        if (line < document->paintedFrom) document->paintedFrom = line;
        if (line >= document->paintedEnd) document->paintedEnd = line + 1;
      }
    }
  } else {
    ends = ScanCommentState(record->text, record->length, starts);
  }
  bool before = record->commentState != 0;
  record->commentState = ends ? 1 : 0;
  // The first stale line has just been scanned: the lines below follow from it.
  if (document->commentFrom == line) {
    if (line >= document->changedEnd && before == ends)
      document->commentFrom = kStatesClean;
    else
      document->commentFrom = line + 1;
  }
}

void ComputeCommentStates(EditDocument* document) {
  bool state = false;
  for (int i = 0; i < document->lineCount; ++i) {
    LineRecord* line = document->lines[i];
    if (!line) continue;
    state = ScanCommentState(line->text, line->length, state);
    line->commentState = state ? 1 : 0;
  }
  document->commentFrom = kStatesClean;
  document->paintedFrom = document->paintedEnd = 0;
}

void RefreshCommentStates(EditDocument* document, int from) {
  if (from < 0) from = 0;
  if (from < document->lineCount) NoteLinesChanged(document, from, 1);
}

void ForgetPaintedStates(EditDocument* document) {
  int from = document->paintedFrom;
  int end = document->paintedEnd < document->lineCount ? document->paintedEnd : document->lineCount;
  if (from < end) NoteLinesChanged(document, from, end - from);
  document->paintedFrom = document->paintedEnd = 0;
}
