// ColourLine over arbitrary units: runs start at increasing columns inside the line (or just
// behind it), every class is one of the eight, and the end state agrees with the plain scan
// whenever the line has no preprocessor '#', where the two are allowed to differ.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "editor/colouring.h"
#include "foundation/library.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  if (size < 1 || size > 8192) return 0;
  bool startsInComment = data[0] & 1;
  // Each byte is a unit; a byte of 0xF0 or more takes the next one along to make a wide unit.
  std::vector<char16_t> line;
  for (size_t i = 1; i < size; ++i) {
    if (data[i] >= 0xF0 && i + 1 < size) {
      line.push_back(static_cast<char16_t>(0xAC00 + data[i + 1]));
      ++i;
    } else {
      line.push_back(data[i]);
    }
  }
  ColourRuns* runs = NewColourRuns();
  if (!runs) return 0;
  int length = static_cast<int>(line.size());
  bool ends = ColourLine(&runs, line.data(), length, 0, startsInComment);
  for (int i = 0; i < runs->count; ++i) {
    if (runs->entries[i].colourClass > 7) abort();
    if (runs->entries[i].start > length + 2) abort();
    if (i > 0 && runs->entries[i].start <= runs->entries[i - 1].start) abort();
  }
  bool hasHash = false;
  for (char16_t unit : line) hasHash |= unit == u'#';
  if (!hasHash && ends != ScanCommentState(line.data(), length, startsInComment)) abort();
  FreeColourRuns(runs);
  return 0;
}
