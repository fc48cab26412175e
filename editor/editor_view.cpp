#include "editor/editor_view.h"

#include "editor/editor_host.h"

Selection NormalisedSelection(const EditorView* view) {
  Selection s = {view->selStartColumn, view->selStartLine, view->selEndColumn, view->selEndLine};
  if (view->blockMode == 1) {
    if (s.startColumn > s.endColumn) {
      int swap = s.startColumn;
      s.startColumn = s.endColumn;
      s.endColumn = swap;
    }
    if (s.startLine > s.endLine) {
      int swap = s.startLine;
      s.startLine = s.endLine;
      s.endLine = swap;
    }
  } else if (s.startLine > s.endLine || (s.startLine == s.endLine && s.startColumn > s.endColumn)) {
    s = {view->selEndColumn, view->selEndLine, view->selStartColumn, view->selStartLine};
  }
  return s;
}

void CollapseSelection(EditorView* view) {
  view->selStartColumn = view->selEndColumn = view->caretColumn;
  view->selStartLine = view->selEndLine = view->caretLine;
}

bool PlaceCaret(EditorView* view, int column, int line, bool extend) {
  bool hadSelection = HasSelection(view);
  if (extend && !hadSelection) {
    view->selStartColumn = view->caretColumn;
    view->selStartLine = view->caretLine;
  }
  view->caretColumn = column;
  view->caretLine = line;
  if (extend) {
    view->selEndColumn = column;
    view->selEndLine = line;
  } else {
    CollapseSelection(view);
  }
  return hadSelection || HasSelection(view);
}

void SetCaret(EditorView* view, int column, int line) {
  view->caretColumn = column;
  view->caretLine = line;
  CollapseSelection(view);
  EditorCaretMoved(view);
}
