#include "editor/case_change.h"

#include <cstdint>
#include <cstring>

#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "editor/word_moves.h"
#include "encoding/word_case.h"
#include "foundation/memory.h"

namespace {

// Where a run of one-character changes stands: the next change merges into the run's record
// only when it comes straight behind the last one in the same document.
struct CharacterRun {
  const EditDocument* document;
  uint32_t version;  // the version the run's record had after its last change (0: no run)
  int column;
  int line;
};
CharacterRun g_characterRun = {};

}  // namespace

bool ChangeWordCase(EditorView* view, bool upper) {
  EditDocument* document = view->document;
  int start = 0;
  int end = 0;
  if (!document || !WordAtCaret(view, &start, &end)) return false;
  int line = view->caretLine;
  int length = end - start;
  // "old\0new\0" for the record; the new text is made in its place there.
  auto* texts = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(2 * length + 2) * sizeof(char16_t), kOwnerLineScratch));
  if (!texts) return false;
  const LineRecord* record = document->lines[line];
  memcpy(texts, record->text + start, static_cast<size_t>(length) * sizeof(char16_t));
  texts[length] = 0;
  char16_t* changed = texts + length + 1;
  memcpy(changed, texts, static_cast<size_t>(length) * sizeof(char16_t));
  changed[length] = 0;
  if (upper)
    UpperCaseWord(changed, length);
  else
    LowerCaseWord(changed, length);
  bool done = ReplaceUnits(document, line, start, length, changed, length);
  if (done) {
    PushUndoUnselected(view, kUndoReplace, ColumnOfIndex(document->lines[line], start), line, texts,
                       2 * length + 2);
    document->modified = 1;
    EditorRepaintLine(view, line);
  }
  FreeMem(texts);
  return done;
}

void ChangeCharacterCase(EditorView* view) {
  EditDocument* document = view->document;
  if (!document) return;
  int line = view->caretLine;
  const LineRecord* record = DocumentLine(document, line);
  int index = UnitIndexAtColumn(record, view->caretColumn);
  int step = 1;
  if (index < LineLength(record) && ColumnOfIndex(record, index) == view->caretColumn) {
    char16_t old = record->text[index];
    char16_t flipped = old;
    if (old >= u'A' && old <= u'Z')
      flipped = static_cast<char16_t>(old + 32);
    else if (old >= u'a' && old <= u'z')
      flipped = static_cast<char16_t>(old - 32);
    // A surrogate pair is one character: both units go into the record, neither changes.
    int units = CharacterUnitsAt(record, index);
    step = RunColumns(record->text + index, units);
    if (flipped != old) {
      ReplaceUnits(document, line, index, 1, &flipped, 1);
      document->modified = 1;
      EditorRepaintLine(view, line);
    }
    char16_t texts[6] = {old, 0, flipped, 0};
    if (units == 2) {
      texts[1] = texts[4] = record->text[index + 1];
      texts[3] = old;
      texts[2] = texts[5] = 0;
    }
    const CharacterRun& run = g_characterRun;
    const UndoRecord* head = UndoHead(document);
    // Record versions are never reused, so a freed record's address met again is no run.
    if (run.document == document && run.version && head && head->version == run.version &&
        head->positionCount == 0 && run.column == view->caretColumn && run.line == line) {
      PushUndo(view, kUndoCaseChar, view->caretColumn, line, texts, 2 * units + 2);
    } else {
      PushUndoUnselected(view, kUndoCaseChar, view->caretColumn, line, texts, 2 * units + 2);
      g_characterRun.document = document;
    }
    head = UndoHead(document);
    g_characterRun.version = head ? head->version : 0;
  } else {
    g_characterRun.version = 0;  // inside a wide character: nothing changed, the run ends
  }
  view->caretColumn += step;
  CollapseSelection(view);
  g_characterRun.column = view->caretColumn;
  g_characterRun.line = line;
  EditorCaretMoved(view);
}
