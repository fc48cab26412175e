// Korean input-method composition shown in place: the unfinished syllable stands in the text in
// front of the caret, without undo, until the next one replaces it or the finished character
// arrives as an ordinary typed character.
#include "editor/comment_states.h"
#include "editor/document.h"
#include "editor/editing.h"
#include "editor/text_edit.h"
#include "frame/editor_window.h"

void DropComposition(EditorWindow* editor) {
  EditDocument* document = editor->document;
  if (!document->composing) return;
  document->composing = 0;
  EditorView* view = &editor->view;
  DeleteForward(document, TextPosition{view->caretColumn, view->caretLine}, 1);
  RepaintEditorLine(editor, view->caretLine);
}

void EditorComposition(EditorWindow* editor, char16_t unit) {
  DropComposition(editor);
  if (!unit) return;
  EditorView* view = &editor->view;
  if (HasSelection(view)) DeleteSelection(view);
  TextPosition end;
  if (!InsertStream(editor->document, TextPosition{view->caretColumn, view->caretLine}, &unit, 1,
                    &end))
    return;
  // The caret stays in front of the syllable being composed.
  editor->document->composing = 1;
  RepaintEditorLine(editor, view->caretLine);
  CaretFollows(editor);
}
