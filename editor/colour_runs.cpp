#include "editor/colour_runs.h"

#include <cstddef>
#include <cstring>

#include "foundation/memory.h"

namespace {

constexpr int kOwnerColourRuns = 2010;
constexpr int kRunsStep = 20;
constexpr int kMaxRuns = 0xFFFF;

size_t BlockSize(int capacity) {
  return offsetof(ColourRuns, entries) + sizeof(ColourRun) * static_cast<size_t>(capacity);
}

ColourRuns* AllocRuns(int capacity) {
  ColourRuns* runs = static_cast<ColourRuns*>(AllocMem(BlockSize(capacity), kOwnerColourRuns));
  if (!runs) return nullptr;
  runs->capacity = static_cast<unsigned short>(capacity);
  runs->count = 0;
  return runs;
}

}  // namespace

ColourRuns* NewColourRuns() {
  return AllocRuns(kRunsStep);
}

void FreeColourRuns(ColourRuns* runs) {
  FreeMem(runs);
}

bool SetColourClass(ColourRuns** runs, int start, int colourClass) {
  ColourRuns* list = *runs;
  if (!list) return false;
  if (list->count > 0 && list->entries[list->count - 1].start == start) {
    list->entries[list->count - 1].colourClass = static_cast<unsigned short>(colourClass);
    return true;
  }
  if (list->count == list->capacity) {
    if (list->capacity > kMaxRuns - kRunsStep) return false;
    ColourRuns* grown = AllocRuns(list->capacity + kRunsStep);
    if (!grown) return false;
    grown->count = list->count;
    memcpy(grown->entries, list->entries, sizeof(ColourRun) * list->count);
    FreeMem(list);
    *runs = list = grown;
  }
  list->entries[list->count].start = static_cast<unsigned short>(start);
  list->entries[list->count].colourClass = static_cast<unsigned short>(colourClass);
  ++list->count;
  return true;
}
