// F5: the local date and time at the caret.
#include "editor/editing.h"
#include "editor/editor_host.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/unicode.h"

bool InsertDateTime(EditorView* view) {
  LocalTime now = EditorLocalTime();
  char text[128];
  FormatStr(text, sizeof text, GetStr(88), now.year, now.month, now.day, now.hour, now.minute);
  char16_t units[128];
  int count = Utf8ToUtf16(text, -1, units, 128);
  return InsertText(view, units, count, 0);
}
