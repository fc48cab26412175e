// Finding a pattern in one line, the way find and replace compare.
#pragma once

struct MatchRules {
  bool caseSensitive;
  bool wholeWord;
};

// The first match of `pattern` in line[start, endLimit) of a line of `lineLength` units: its index,
// or -1. The units around a match are looked at up to the line's end, not the limit. With wholeWord
// the class of the pattern's first unit decides what may not touch the match on either side; a
// candidate rejected by that test is skipped whole, so overlapping candidates are never tried.
int MatchInLine(const char16_t* line, int lineLength, int start, int endLimit,
                const char16_t* pattern, int patternLength, MatchRules rules);
