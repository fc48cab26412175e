#include "editor/find_match.h"

#include "editor/case_fold.h"
#include "editor/char_class.h"

namespace {

bool SameUnits(const char16_t* text, const char16_t* pattern, int length, bool caseSensitive) {
  for (int i = 0; i < length; ++i) {
    if (text[i] == pattern[i]) continue;
    if (caseSensitive || FoldCase(text[i]) != FoldCase(pattern[i])) return false;
  }
  return true;
}

// The end test of whole-word matching for a pattern starting with `first`; null for no test.
using TouchTest = bool (*)(char16_t);
TouchTest WholeWordTest(char16_t first) {
  if (IsIdentifierChar(first)) return IsIdentifierChar;
  if (IsWordChar(first)) return IsWordChar;
  return nullptr;
}

}  // namespace

int MatchInLine(const char16_t* line, int lineLength, int start, int endLimit,
                const char16_t* pattern, int patternLength, MatchRules rules) {
  if (patternLength <= 0 || start < 0) return -1;
  if (endLimit > lineLength) endLimit = lineLength;
  TouchTest touches = rules.wholeWord ? WholeWordTest(pattern[0]) : nullptr;
  for (int at = start; at + patternLength <= endLimit;) {
    if (!SameUnits(line + at, pattern, patternLength, rules.caseSensitive)) {
      ++at;
      continue;
    }
    int end = at + patternLength;
    bool touchedBefore = touches && at > 0 && touches(line[at - 1]);
    bool touchedAfter = touches && end < lineLength && touches(line[end]);
    if (!touchedBefore && !touchedAfter) return at;
    at = end;
  }
  return -1;
}
