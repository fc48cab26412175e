#include "editor/colouring.h"

#include "editor/colour_words.h"

namespace {

constexpr int kDirectiveWordMax = 9;

// What a unit below 128 starts or continues; every unit of 128 or more is a word unit that is not
// an identifier unit. One table lookup per unit instead of a chain of range tests.
enum UnitKind : unsigned char {
  kBlankUnit,      // below 33
  kSeparatorUnit,  // punctuation without a role of its own
  kLetterUnit,     // _ $ A-Z a-z
  kDigitUnit,      // 0-9
  kOtherWordUnit,  // 127: part of a word, never of an identifier
  kSlashUnit,      // '/': may open a comment
  kQuoteUnit,      // '"' and '\''
  kHashUnit,       // '#': a directive when only blanks stand before it
};

struct UnitKinds {
  UnitKind kind[128];
};

constexpr UnitKinds MakeUnitKinds() {
  UnitKinds table = {};
  for (int unit = 0; unit < 128; ++unit) {
    UnitKind kind = kSeparatorUnit;
    if (unit < 33) {
      kind = kBlankUnit;
    } else if (unit == '_' || unit == '$' || (unit >= 'A' && unit <= 'Z') ||
               (unit >= 'a' && unit <= 'z')) {
      kind = kLetterUnit;
    } else if (unit >= '0' && unit <= '9') {
      kind = kDigitUnit;
    } else if (unit == 127) {
      kind = kOtherWordUnit;
    } else if (unit == '/') {
      kind = kSlashUnit;
    } else if (unit == '"' || unit == '\'') {
      kind = kQuoteUnit;
    } else if (unit == '#') {
      kind = kHashUnit;
    }
    table.kind[unit] = kind;
  }
  return table;
}

constexpr UnitKinds kUnitKinds = MakeUnitKinds();

inline UnitKind KindOf(char16_t unit) {
  return unit < 128 ? kUnitKinds.kind[unit] : kOtherWordUnit;
}

// SetColourClass with its common cases inline: most lines fit the list the view keeps.
inline void Mark(ColourRuns** runs, int start, int colourClass) {
  ColourRuns* list = *runs;
  if (list) {
    if (list->count > 0 && list->entries[list->count - 1].start == start) {
      list->entries[list->count - 1].colourClass = static_cast<unsigned short>(colourClass);
      return;
    }
    if (list->count < list->capacity) {
      list->entries[list->count].start = static_cast<unsigned short>(start);
      list->entries[list->count].colourClass = static_cast<unsigned short>(colourClass);
      ++list->count;
      return;
    }
  }
  SetColourClass(runs, start, colourClass);
}

// Bits of the units below 64 that the comment scan must stop at outside a comment: " ' /.
constexpr unsigned long long kCommentStops = (1ull << '"') | (1ull << '\'') | (1ull << '/');

inline bool IsCommentStop(char16_t unit) {
  return unit < 64 && ((kCommentStops >> unit) & 1) != 0;
}

// Inside a block comment from `at`: the position behind the closing "*/", or -1 when the line
// ends first.
inline int CommentEnd(const char16_t* text, int length, int at) {
  for (; at + 1 < length; ++at) {
    if (text[at] == u'*' && text[at + 1] == u'/') return at + 2;
  }
  return -1;
}

// A quoted literal from its opening quote: to the matching quote, past escaped units, or to the
// end of the line. Returns the position behind it.
inline int LiteralEnd(const char16_t* text, int length, int at) {
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

inline bool IsIdentifierKind(UnitKind kind) {
  return kind == kLetterUnit || kind == kDigitUnit;
}

// A preprocessor line from its '#': known directives are one class, anything else the wrong-word
// class, up to a comment on the same line. Returns where the scan goes on.
int ColourDirective(ColourRuns** runs, const char16_t* text, int length, int hash) {
  int word = hash + 1;
  while (word < length && KindOf(text[word]) == kBlankUnit)
    ++word;
  int wordLength = 0;
  while (word + wordLength < length && wordLength < kDirectiveWordMax &&
         IsIdentifierKind(KindOf(text[word + wordLength])))
    ++wordLength;
  bool known = IsDirective(text + word, wordLength);
  Mark(runs, hash, known ? kClassPreProc : kClassWrongWord);
  int end = hash + 1;
  while (end + 1 < length &&
         !(text[end] == u'/' && (text[end + 1] == u'/' || text[end + 1] == u'*')))
    ++end;
  if (end + 1 >= length) end = length;
  Mark(runs, end, kClassNormal);
  return end;
}

}  // namespace

bool ColourLine(ColourRuns** runs, const char16_t* line, int length, int lineIndex,
                bool startsInComment) {
  (void)lineIndex;
  if (*runs) (*runs)->count = 0;
  if (length <= 0) return startsInComment;
  bool inComment = startsInComment;
  if (inComment) Mark(runs, 0, kClassRemark);
  bool onlyBlanks = true;
  int at = 0;
  while (at < length) {
    if (inComment) {
      at = CommentEnd(line, length, at);
      if (at < 0) return true;
      inComment = false;
      onlyBlanks = false;
      Mark(runs, at, kClassNormal);
      continue;
    }
    switch (KindOf(line[at])) {
      case kBlankUnit:
        ++at;
        break;
      case kSeparatorUnit:
        ++at;
        onlyBlanks = false;
        break;
      case kHashUnit:
        if (onlyBlanks) {
          at = ColourDirective(runs, line, length, at);
        } else {
          ++at;
        }
        onlyBlanks = false;
        break;
      case kSlashUnit:
        if (at + 1 < length && line[at + 1] == u'/') {
          Mark(runs, at, kClassRemark);
          return false;
        }
        if (at + 1 < length && line[at + 1] == u'*') {
          Mark(runs, at, kClassRemark);
          at += 2;
          inComment = true;
        } else {
          ++at;
        }
        onlyBlanks = false;
        break;
      case kQuoteUnit:
        Mark(runs, at, kClassConst);
        at = LiteralEnd(line, length, at);
        Mark(runs, at, kClassNormal);
        onlyBlanks = false;
        break;
      case kLetterUnit:
      case kDigitUnit:
      case kOtherWordUnit: {
        // A word runs over identifier units, 127 and every unit of 128 or more; any unit of the
        // last two makes it a wrong word, since no built-in word or number holds one.
        int start = at;
        bool identifier = true;
        for (; at < length; ++at) {
          UnitKind kind = KindOf(line[at]);
          if (IsIdentifierKind(kind)) continue;
          if (kind != kOtherWordUnit) break;
          identifier = false;
        }
        int colourClass = kClassWrongWord;
        if (identifier) {
          if (KindOf(line[start]) == kDigitUnit) {
            if (IsNumber(line + start, at - start)) colourClass = kClassConst;
          } else {
            colourClass = IsBuiltinWord(line + start, at - start) ? kClassKeyword : kClassUserWord;
          }
        }
        Mark(runs, start, colourClass);
        Mark(runs, at, kClassNormal);
        onlyBlanks = false;
        break;
      }
    }
  }
  return inComment;
}

bool ScanCommentState(const char16_t* line, int length, bool startsInComment) {
  bool inComment = startsInComment;
  int at = 0;
  while (at < length) {
    if (inComment) {
      at = CommentEnd(line, length, at);
      if (at < 0) return true;
      inComment = false;
      continue;
    }
    // Outside a comment only a quote or a slash matters.
    while (at < length && !IsCommentStop(line[at]))
      ++at;
    if (at >= length) break;
    char16_t unit = line[at];
    if (unit == u'"' || unit == u'\'') {
      at = LiteralEnd(line, length, at);
    } else if (unit == u'/' && at + 1 < length && line[at + 1] == u'/') {
      break;
    } else if (unit == u'/' && at + 1 < length && line[at + 1] == u'*') {
      inComment = true;
      at += 2;
    } else {
      ++at;
    }
  }
  return inComment;
}
