#include "editor/brace_match.h"

#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/undo.h"

namespace {

// Walks the document from its start as the colouring reads C: literals end at their quote or at
// the end of the line, a backslash in them escapes the next unit, "//" ends the line and "/*"
// runs to "*/" across lines. Every bracket in code is handed to `visit`, which returns false to
// stop the walk.
template <typename Visit>
void WalkCode(const EditDocument* document, Visit visit) {
  bool inComment = false;
  for (int line = 0; line < document->lineCount; ++line) {
    const LineRecord* record = document->lines[line];
    int length = LineLength(record);
    const char16_t* text = record ? record->text : nullptr;
    for (int at = 0; at < length;) {
      char16_t unit = text[at];
      bool pairNext = at + 1 < length;
      if (inComment) {
        if (unit == u'*' && pairNext && text[at + 1] == u'/') {
          inComment = false;
          at += 2;
        } else {
          ++at;
        }
        continue;
      }
      if (unit == u'/' && pairNext && text[at + 1] == u'/') break;
      if (unit == u'/' && pairNext && text[at + 1] == u'*') {
        inComment = true;
        at += 2;
        continue;
      }
      if (unit == u'"' || unit == u'\'') {
        ++at;
        while (at < length) {
          if (text[at] == u'\\')
            at += 2;
          else if (text[at++] == unit)
            break;
        }
        continue;
      }
      if (!visit(line, at, unit)) return;
      ++at;
    }
  }
}

bool Before(int lineA, int indexA, int lineB, int indexB) {
  return lineA < lineB || (lineA == lineB && indexA < indexB);
}

}  // namespace

bool FindBracePartner(const EditDocument* document, int line, int index, int* partnerLine,
                      int* partnerIndex) {
  const LineRecord* record = DocumentLine(document, line);
  if (index < 0 || index >= LineLength(record)) return false;
  char16_t bracket = record->text[index];
  static const char16_t kOpen[] = u"([{";
  static const char16_t kClose[] = u")]}";
  int kind = -1;
  bool opening = false;
  for (int k = 0; k < 3; ++k) {
    if (bracket == kOpen[k]) kind = k, opening = true;
    if (bracket == kClose[k]) kind = k;
  }
  if (kind < 0) return false;
  char16_t open = kOpen[kind];
  char16_t close = kClose[kind];
  // The depth of unmatched openings before each place; a closing bracket without an opening
  // one is ignored, as a compiler would report it and go on.
  int depth = 0;
  bool inCode = false;
  int depthAtBracket = 0;
  bool found = false;
  WalkCode(document, [&](int l, int i, char16_t unit) {
    if (l == line && i == index) {
      inCode = true;
      depthAtBracket = depth;
      if (!opening) return false;
    } else if (inCode && opening) {
      // Behind an opening bracket: the first closing one that brings the depth back is the partner.
      if (unit == open) {
        ++depth;
      } else if (unit == close && --depth == depthAtBracket) {
        *partnerLine = l;
        *partnerIndex = i;
        found = true;
        return false;
      }
      return true;
    }
    if (unit == open)
      ++depth;
    else if (unit == close && depth > 0)
      --depth;
    return true;
  });
  if (!inCode || opening) return found;
  // Before a closing bracket: its partner is the last opening bracket that raised the depth from
  // depthAtBracket - 1 to depthAtBracket; nothing after it went below that depth again.
  if (depthAtBracket == 0) return false;
  depth = 0;
  WalkCode(document, [&](int l, int i, char16_t unit) {
    if (!Before(l, i, line, index)) return false;
    if (unit == open && ++depth == depthAtBracket) {
      *partnerLine = l;
      *partnerIndex = i;
      found = true;
    } else if (unit == close && depth > 0) {
      --depth;
    }
    return true;
  });
  return found;
}

bool MatchBrace(EditorView* view) {
  EditDocument* document = view->document;
  if (!document) return false;
  const LineRecord* record = DocumentLine(document, view->caretLine);
  int index = UnitIndexAtColumn(record, view->caretColumn);
  int line = 0;
  int at = 0;
  if (!FindBracePartner(document, view->caretLine, index, &line, &at)) return false;
  int column = ColumnOfIndex(document->lines[line], at);
  PushUndoMark(view, kUndoCaret, view->caretColumn, view->caretLine);
  PushUndoMark(view, kUndoCaret, column, line);
  view->caretColumn = column;
  view->caretLine = line;
  CollapseSelection(view);
  EditorCaretMoved(view);
  return true;
}
