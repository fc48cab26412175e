// The view of a document: caret, selection, block mode and scroll position. The window that
// shows it only routes input into the editing functions and paints what they ask for.
#pragma once

struct EditDocument;

struct EditorView {
  void* window;
  int leftMargin;
  int firstColumn;  // first visible column
  int firstLine;    // first visible line
  int textWidth;    // pixels, for the window
  int textHeight;
  int pageLines;  // the text area in whole cells (SetViewPage)
  int pageColumns;
  int caretColumn;  // a display column, not a unit index
  int caretLine;
  int blockMode;  // 0 line block, 1 column block
  int overwrite;  // Insert: typing replaces the character under the caret
  int selStartColumn;
  int selStartLine;
  int selEndColumn;
  int selEndLine;
  EditDocument* document;
  void* colourRuns;
  unsigned lastTabTick;  // when the last Tab key came, for the swallowed double Tab
};

// A selection normalised so that (startColumn, startLine) comes first. For a column block the
// columns are the rectangle's left and right edges.
struct Selection {
  int startColumn;
  int startLine;
  int endColumn;
  int endLine;
};

inline bool HasSelection(const EditorView* view) {
  return view->selStartColumn != view->selEndColumn || view->selStartLine != view->selEndLine;
}
Selection NormalisedSelection(const EditorView* view);
// Makes the selection empty at the caret.
void CollapseSelection(EditorView* view);
// Puts the caret at (column, line). With `extend` the selection stretches from where the caret
// was (or from the old selection's start), otherwise it goes. True when a selection was or is
// shown, so that the view has to be repainted.
bool PlaceCaret(EditorView* view, int column, int line, bool extend);
// After an edit, undo or a search: the caret at (column, line) with nothing selected, and the
// window told that it moved.
void SetCaret(EditorView* view, int column, int line);
