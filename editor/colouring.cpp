#include "editor/colouring.h"

#include "editor/char_class.h"
#include "editor/colour_words.h"

namespace {

constexpr int kDirectiveWordMax = 9;

struct LineScan {
  ColourRuns** runs;
  const char16_t* text;
  int length;
  int at;
  bool inComment;
};

bool PairAt(const LineScan& scan, int at, char16_t first, char16_t second) {
  return at + 1 < scan.length && scan.text[at] == first && scan.text[at + 1] == second;
}

// Inside a block comment: on to the unit behind the closing "*/", or the end of the line.
void SkipComment(LineScan* scan) {
  for (; scan->at < scan->length; ++scan->at) {
    if (PairAt(*scan, scan->at, u'*', u'/')) {
      scan->at += 2;
      scan->inComment = false;
      SetColourClass(scan->runs, scan->at, kClassNormal);
      return;
    }
  }
}

// A quoted literal from its opening quote: to the matching quote, past escaped units, or to the
// end of the line. Returns the position behind it.
int LiteralEnd(const char16_t* text, int length, int at) {
  char16_t quote = text[at++];
  while (at < length) {
    if (text[at] == u'\\') {
      at += 2;
    } else if (text[at++] == quote) {
      return at;
    }
  }
  return length;
}

// A preprocessor line from its '#': known directives are one class, anything else the wrong-word
// class, up to a comment on the same line.
void ColourDirective(LineScan* scan) {
  int hash = scan->at;
  int word = hash + 1;
  while (word < scan->length && IsBlank(scan->text[word]))
    ++word;
  int wordLength = 0;
  while (word + wordLength < scan->length && wordLength < kDirectiveWordMax &&
         IsIdentifierChar(scan->text[word + wordLength]))
    ++wordLength;
  bool known = IsDirective(scan->text + word, wordLength);
  SetColourClass(scan->runs, hash, known ? kClassPreProc : kClassWrongWord);
  int end = hash + 1;
  while (end < scan->length && !PairAt(*scan, end, u'/', u'/') && !PairAt(*scan, end, u'/', u'*'))
    ++end;
  SetColourClass(scan->runs, end, kClassNormal);
  scan->at = end;
}

int WordClass(const char16_t* word, int length) {
  if (IsBuiltinWord(word, length)) return kClassKeyword;
  if (IsNumber(word, length)) return kClassConst;
  if (IsDecimalDigit(word[0])) return kClassWrongWord;
  for (int i = 0; i < length; ++i) {
    if (!IsIdentifierChar(word[i])) return kClassWrongWord;
  }
  return kClassUserWord;
}

}  // namespace

bool ColourLine(ColourRuns** runs, const char16_t* line, int length, int lineIndex,
                bool startsInComment) {
  (void)lineIndex;
  if (*runs) (*runs)->count = 0;
  if (length <= 0) return startsInComment;
  LineScan scan = {runs, line, length, 0, startsInComment};
  if (startsInComment) SetColourClass(runs, 0, kClassRemark);
  bool onlyBlanks = true;
  while (scan.at < length) {
    if (scan.inComment) {
      SkipComment(&scan);
      onlyBlanks = false;
      continue;
    }
    char16_t unit = line[scan.at];
    if (IsBlank(unit)) {
      ++scan.at;
    } else if (unit == u'#' && onlyBlanks) {
      onlyBlanks = false;
      ColourDirective(&scan);
    } else if (PairAt(scan, scan.at, u'/', u'/')) {
      SetColourClass(runs, scan.at, kClassRemark);
      break;
    } else if (PairAt(scan, scan.at, u'/', u'*')) {
      SetColourClass(runs, scan.at, kClassRemark);
      scan.at += 2;
      scan.inComment = true;
      onlyBlanks = false;
    } else if (unit == u'"' || unit == u'\'') {
      SetColourClass(runs, scan.at, kClassConst);
      scan.at = LiteralEnd(line, length, scan.at);
      SetColourClass(runs, scan.at, kClassNormal);
      onlyBlanks = false;
    } else if (IsSeparator(unit)) {
      ++scan.at;
      onlyBlanks = false;
    } else {
      int start = scan.at;
      while (scan.at < length && IsWordChar(line[scan.at]))
        ++scan.at;
      SetColourClass(runs, start, WordClass(line + start, scan.at - start));
      SetColourClass(runs, scan.at, kClassNormal);
      onlyBlanks = false;
    }
  }
  return scan.inComment;
}

bool ScanCommentState(const char16_t* line, int length, bool startsInComment) {
  bool inComment = startsInComment;
  for (int at = 0; at < length;) {
    bool pairAhead = at + 1 < length;
    if (inComment) {
      if (pairAhead && line[at] == u'*' && line[at + 1] == u'/') {
        inComment = false;
        at += 2;
      } else {
        ++at;
      }
    } else if (line[at] == u'"' || line[at] == u'\'') {
      at = LiteralEnd(line, length, at);
    } else if (pairAhead && line[at] == u'/' && line[at + 1] == u'/') {
      break;
    } else if (pairAhead && line[at] == u'/' && line[at + 1] == u'*') {
      inComment = true;
      at += 2;
    } else {
      ++at;
    }
  }
  return inComment;
}
