#include "foundation/os_resource.h"

#include "foundation/unicode.h"

namespace {

struct StringEntry {
  unsigned id;
  const char* text;
};

#define QUILL_STRING(id, text) {id, text},
const StringEntry kStrings[] = {
#include "resources/strings.inc"
};
#undef QUILL_STRING

}  // namespace

int OsLoadString(unsigned id, char16_t* buffer, int size) {
  if (size <= 0) return 0;
  for (const StringEntry& entry : kStrings) {
    if (entry.id != id) continue;
    int length = Utf8ToUtf16(entry.text, -1, buffer, size - 1);
    buffer[length] = 0;
    return length;
  }
  buffer[0] = 0;
  return 0;
}
