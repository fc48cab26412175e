// The run list a line is coloured into: kept by the view and reused for every line it paints.
#pragma once

// Colour classes; the number is what the run list stores and what the settings keys are indexed by.
enum ColourClass : unsigned short {
  kClassBackground = 0,
  kClassNormal = 1,
  kClassKeyword = 2,
  kClassUserWord = 3,
  kClassRemark = 4,
  kClassConst = 5,
  kClassWrongWord = 6,
  kClassPreProc = 7,
};
constexpr int kColourClassCount = 8;

struct ColourRun {
  unsigned short start;  // column in units; the run lasts until the next entry
  unsigned short colourClass;
};

// One block: capacity and count, then the entries.
struct ColourRuns {
  unsigned short capacity;
  unsigned short count;
  ColourRun entries[1];
};

// A list with room for 20 entries; null when out of memory.
ColourRuns* NewColourRuns();
void FreeColourRuns(ColourRuns* runs);
// Sets `colourClass` from `start` on: overwrites the class of an entry at the same position,
// else appends, growing the list by 20. False when the list could not grow (it keeps its entries).
bool SetColourClass(ColourRuns** runs, int start, int colourClass);
