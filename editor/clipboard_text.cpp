// Copy, cut and paste through the host's clipboard (CF_UNICODETEXT).
#include "editor/document.h"
#include "editor/editing.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "foundation/memory.h"

namespace {

bool IsBreak(char16_t unit) {
  return unit == 13 || unit == 10;
}

// Expands the tabs of pasted text as the loader would, counting from the caret column: on the
// first line only in a stream, on every line in a column block. A null target counts.
int ExpandPasted(const char16_t* units, int count, int caretColumn, int blockMode, int tabSize,
                 char16_t* target) {
  int written = 0;
  int column = caretColumn;
  for (int i = 0; i < count; ++i) {
    char16_t unit = units[i];
    if (unit == u'\t') {
      int stop = NextTabStop(column, tabSize);
      for (; column < stop; ++column) {
        if (target) target[written] = u' ';
        ++written;
      }
      continue;
    }
    if (target) target[written] = unit;
    ++written;
    if (IsBreak(unit))
      column = blockMode == 1 ? caretColumn : 0;
    else
      column += UnitColumnsAfter(i > 0 ? units[i - 1] : 0, unit);
  }
  return written;
}

}  // namespace

bool CopySelection(EditorView* view) {
  if (!HasSelection(view) || !view->document) return false;
  Selection s = NormalisedSelection(view);
  TextPosition from = {s.startColumn, s.startLine};
  TextPosition to = {s.endColumn, s.endLine};
  bool column = view->blockMode == 1;
  // Counted first, then filled.
  int count = CollectRange(view->document, from, to, view->blockMode, column, true, nullptr);
  auto* text = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(count + 1) * sizeof(char16_t), kOwnerClipboardText));
  if (!text) return false;
  CollectRange(view->document, from, to, view->blockMode, column, true, text);
  text[count] = 0;
  bool done = EditorSetClipboard(text, count);
  FreeMem(text);
  return done;
}

bool CutSelection(EditorView* view) {
  return CopySelection(view) && DeleteSelection(view);
}

bool Paste(EditorView* view) {
  if (!view->document) return false;
  int count = 0;
  const char16_t* units = EditorGetClipboard(&count);
  if (!units) return false;
  // The clipboard's text ends at its terminator whatever size it claims.
  int length = 0;
  while (length < count && units[length])
    ++length;
  DeleteSelection(view);
  if (length == 0) return false;
  int tabSize = view->document->tabSize;
  int64_t needed = 0;
  needed = ExpandPasted(units, length, view->caretColumn, view->blockMode, tabSize, nullptr);
  if (needed > 0x3FFFFFFF) return false;
  auto* text = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(needed) * sizeof(char16_t), kOwnerClipboardText));
  if (!text) return false;
  ExpandPasted(units, length, view->caretColumn, view->blockMode, tabSize, text);
  bool done = InsertText(view, text, static_cast<int>(needed), view->blockMode);
  FreeMem(text);
  return done;
}
