#include "frame/status_text.h"

#include <cstring>

#include "foundation/formatter.h"

int FormatCursorStatus(int column, int line, char* text, int size) {
  return FormatStr(text, size, "\tCol %d, Ln %d", column + 1, line + 1);
}

const char* ModifiedStatus(bool modified) {
  return modified ? "\tModified" : "";
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
