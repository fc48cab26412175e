#include "frame/status_text.h"

#include <cstring>

#include "encoding/text_encoding.h"
#include "foundation/formatter.h"
#include "foundation/language.h"

int FormatCursorStatus(int column, int line, char* text, int size) {
  return FormatStr(text, size, "\tCol %d, Ln %d", column + 1, line + 1);
}

const char* ModifiedStatus(bool modified) {
  return modified ? "\tModified" : "";
}

int FormatFileFormatStatus(int encoding, bool byteOrderMark, bool lfOnly, char* text, int size,
                           bool overwrite) {
  static const char* const kNames[] = {"", "Johab", "EUC-KR", "UTF-8", "UTF-16"};
  const char* name = encoding >= JOHAP && encoding <= UTF16 ? kNames[encoding] : "";
  // Only the Unicode encodings carry a mark.
  const char* mark = byteOrderMark && (encoding == UTF8 || encoding == UTF16) ? " BOM" : "";
  return FormatStr(text, size, "\t%s%s%s%s%s%s", name, mark, name[0] ? "  " : "",
                   lfOnly ? "LF" : "CRLF", overwrite ? "  " : "", overwrite ? GetStr(180) : "");
}

// A text longer than the memory is compared by its first 40 characters only, so a long message
// that differs only past them is taken for the same one; the bar keeps showing the first.
bool StatusMessageChanged(StatusMemory* memory, const char* text) {
  if (!text) text = "";
  if (strncmp(memory->last, text, kStatusMemorySize) == 0) return false;
  strncpy(memory->last, text, kStatusMemorySize);
  memory->last[kStatusMemorySize] = '\0';
  return true;
}
