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

void ColourDocumentLine(EditDocument* document, int line, ColourRuns** runs) {
  if (line < 0 || line >= document->lineCount) return;
  LineRecord* record = document->lines[line];
  if (!record) return;
  bool starts = LineStartsInComment(document, line);
  bool ends;
  if (runs && *runs) {
    (*runs)->count = 0;
    ends = ColourLine(runs, record->text, record->length, line, starts);
  } else {
    ends = ScanCommentState(record->text, record->length, starts);
  }
  record->commentState = ends ? 1 : 0;
}

void ComputeCommentStates(EditDocument* document) {
  bool state = false;
  for (int i = 0; i < document->lineCount; ++i) {
    LineRecord* line = document->lines[i];
    if (!line) continue;
    state = ScanCommentState(line->text, line->length, state);
    line->commentState = state ? 1 : 0;
  }
}

void RefreshCommentStates(EditDocument* document, int from) {
  if (from < 0) from = 0;
  bool state = LineStartsInComment(document, from);
  for (int i = from; i < document->lineCount; ++i) {
    LineRecord* line = document->lines[i];
    if (!line) continue;
    bool end = ScanCommentState(line->text, line->length, state);
    // Past the edited line, a line that ends as it did leaves every later line as it was.
    if (i > from && (line->commentState != 0) == end) return;
    line->commentState = end ? 1 : 0;
    state = end;
  }
}
