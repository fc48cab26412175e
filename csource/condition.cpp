#include "csource/condition.h"

#include <cstring>

#include "calc/math_expression.h"
#include "csource/c_chars.h"
#include "csource/csource_owners.h"
#include "csource/macro_expand.h"
#include "csource/symbol_table.h"
#include "csource/syntax_error.h"
#include "foundation/diagnostics.h"
#include "foundation/text_builder.h"

namespace {

bool IsWord(const char* p, const char* end, const char* word) {
  size_t length = strlen(word);
  return static_cast<size_t>(end - p) >= length && memcmp(p, word, length) == 0 &&
         (p + length == end || !IsCIdentChar(p[length]));
}

// "defined NAME" and "defined(NAME)" as '1' or '0'; false after a '(' without ')'.
bool ReplaceDefined(SymbolTable* table, TextBuffer* text) {
  TextBuffer out;
  InitText(&out, kOwnerConditionText);
  bool ok = true;
  const char* p = TextOf(text);
  const char* end = p + text->length;
  while (p < end) {
    if (*p == '"' || *p == '\'') {
      const char* e = SkipCQuoted(p, end);
      AppendText(&out, p, static_cast<size_t>(e - p));
      p = e;
    } else if (IsCDigit(*p)) {
      const char* e = SkipCNumber(p, end);
      AppendText(&out, p, static_cast<size_t>(e - p));
      p = e;
    } else if (IsCIdentStart(*p)) {
      const char* e = SkipCIdent(p, end);
      if (!IsWord(p, end, "defined")) {
        AppendText(&out, p, static_cast<size_t>(e - p));
        p = e;
        continue;
      }
      const char* q = e;
      while (q < end && IsCBlank(*q))
        ++q;
      bool paren = q < end && *q == '(';
      if (paren) {
        ++q;
        while (q < end && IsCBlank(*q))
          ++q;
      }
      const char* nameEnd = SkipCIdent(q, end);
      bool known = nameEnd > q && FindSymbol(table, q, static_cast<int>(nameEnd - q), kSymbolMacro);
      const char* after = nameEnd;
      if (paren) {
        while (after < end && IsCBlank(*after))
          ++after;
        if (after < end && *after == ')') {
          ++after;
        } else {
          ok = false;
        }
      }
      AppendChar(&out, known ? '1' : '0');
      p = after;
    } else {
      AppendChar(&out, *p++);
    }
  }
  FreeText(text);
  *text = out;
  return ok;
}

// Moves the literal that starts at t[*r] down to t[w], untouched; returns the new w.
size_t MoveQuoted(char* t, size_t w, size_t* r, size_t n) {
  size_t e = static_cast<size_t>(SkipCQuoted(t + *r, t + n) - t);
  memmove(t + w, t + *r, e - *r);
  w += e - *r;
  *r = e;
  return w;
}

}  // namespace

void StripConditionComments(TextBuffer* text) {
  if (!text->text) return;
  char* t = text->text;
  size_t w = 0;
  size_t n = text->length;
  for (size_t r = 0; r < n;) {
    if (t[r] == '"' || t[r] == '\'') {
      w = MoveQuoted(t, w, &r, n);
    } else if (t[r] == '/' && r + 1 < n && t[r + 1] == '/') {
      while (r < n && !IsCLineEnd(t[r]))
        ++r;
    } else if (t[r] == '/' && r + 1 < n && t[r + 1] == '*') {
      const char* close = nullptr;
      for (size_t i = r + 2; i + 1 < n; ++i) {
        if (t[i] == '*' && t[i + 1] == '/') {
          close = t + i;
          break;
        }
      }
      if (!close) break;  // an unclosed comment ends the expression
      r = static_cast<size_t>(close - t) + 2;
      t[w++] = ' ';
    } else if (t[r] == '\\' && r + 1 < n && IsCLineEnd(t[r + 1])) {
      ++r;
    } else {
      t[w++] = t[r++];
    }
  }
  text->length = w;
  t[w] = '\0';
}

void ZeroIdentifiers(TextBuffer* text) {
  if (!text->text) return;
  char* t = text->text;
  size_t w = 0;
  size_t n = text->length;
  for (size_t r = 0; r < n;) {
    if (t[r] == '"' || t[r] == '\'') {
      w = MoveQuoted(t, w, &r, n);
    } else if (IsCDigit(t[r])) {
      size_t e = static_cast<size_t>(SkipCNumber(t + r, t + n) - t);
      // The evaluator knows "U", "L" and "UL"; "LL", "ULL" and "i64" are cut.
      size_t keep = e;
      bool hex = e - r > 1 && t[r] == '0' && (t[r + 1] == 'x' || t[r + 1] == 'X');
      while (keep > r + 1 &&
             (t[keep - 1] == 'u' || t[keep - 1] == 'U' || t[keep - 1] == 'l' || t[keep - 1] == 'L'))
        --keep;
      if (keep - r > 3 && t[keep - 3] == 'i' && t[keep - 2] == '6' && t[keep - 1] == '4' && !hex)
        keep -= 3;
      memmove(t + w, t + r, keep - r);
      w += keep - r;
      r = e;
    } else if (IsCIdentStart(t[r])) {
      size_t start = r;
      while (r < n && IsCIdentChar(t[r]))
        ++r;
      // L'x', u'x', U'x', u8'x': the prefix of a character constant, not a name.
      size_t prefix = r - start;
      if (r < n && t[r] == '\'' &&
          ((prefix == 1 && (t[start] == 'L' || t[start] == 'u' || t[start] == 'U')) ||
           (prefix == 2 && t[start] == 'u' && t[start + 1] == '8')))
        continue;
      // An unknown name with an argument list ("__has_builtin(x)") is one 0 with its list.
      size_t q = r;
      while (q < n && IsCBlank(t[q]))
        ++q;
      if (q < n && t[q] == '(') {
        int depth = 0;
        for (; q < n; ++q) {
          if (t[q] == '(') ++depth;
          if (t[q] == ')' && --depth == 0) {
            r = q + 1;
            break;
          }
        }
      }
      t[w++] = '0';
    } else {
      t[w++] = t[r++];
    }
  }
  text->length = w;
  t[w] = '\0';
}

namespace {

constexpr int kMaxSplitDepth = 64;

// The first top-level `op` (one character, or two when `twice`) in t[from, to), or `to`; for ')'
// the one that closes a group opened before `from`.
size_t FindTopLevel(const char* t, size_t from, size_t to, char op, bool twice) {
  int depth = 0;
  for (size_t i = from; i < to; ++i) {
    char c = t[i];
    if (c == '\'' || c == '"') {
      i = static_cast<size_t>(SkipCQuoted(t + i, t + to) - t) - 1;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && (depth > 0 || op != ')')) {
      --depth;
    } else if (depth == 0 && c == op) {
      if (!twice) return i;
      if (i + 1 < to && t[i + 1] == op) return i;
    }
  }
  return to;
}

// The ':' that belongs to the '?' just before `from`, or `to`.
size_t FindColon(const char* t, size_t from, size_t to) {
  int pending = 0;
  for (size_t at = from;; ++at) {
    size_t question = FindTopLevel(t, at, to, '?', false);
    size_t colon = FindTopLevel(t, at, to, ':', false);
    if (colon == to) return to;
    if (question < colon) {
      ++pending;
      at = question;
    } else if (pending == 0) {
      return colon;
    } else {
      --pending;
      at = colon;
    }
  }
}

bool Enclosed(const char* t, size_t from, size_t to) {
  if (to - from < 2 || t[from] != '(' || t[to - 1] != ')') return false;
  return FindTopLevel(t, from + 1, to, ')', false) == to - 1;
}

bool HasShortCircuit(const char* t, size_t from, size_t to) {
  return FindTopLevel(t, from, to, '?', false) < to || FindTopLevel(t, from, to, '|', true) < to ||
         FindTopLevel(t, from, to, '&', true) < to;
}

// The value of t[from, to). The conditional operator and "&&" and "||" are taken here, as C
// takes them, so a part that C never evaluates (a division behind "0 &&") is not evaluated; the
// evaluator gets the rest, with each parenthesised group that holds one of them already reduced
// to its value.
int32_t EvalPart(const char* t, size_t from, size_t to, int depth, uint32_t* error) {
  while (from < to && IsCBlank(t[from]))
    ++from;
  while (to > from && IsCBlank(t[to - 1]))
    --to;
  bool split = depth < kMaxSplitDepth;
  if (split) {
    if (Enclosed(t, from, to)) return EvalPart(t, from + 1, to - 1, depth + 1, error);
    size_t question = FindTopLevel(t, from, to, '?', false);
    if (question < to) {
      size_t colon = FindColon(t, question + 1, to);
      if (colon < to) {
        int32_t test = EvalPart(t, from, question, depth + 1, error);
        if (*error) return 0;
        return test ? EvalPart(t, question + 1, colon, depth + 1, error)
                    : EvalPart(t, colon + 1, to, depth + 1, error);
      }
    }
    static const char kShortCircuit[] = {'|', '&'};
    for (char op : kShortCircuit) {
      size_t at = FindTopLevel(t, from, to, op, true);
      if (at == to) continue;
      int32_t left = EvalPart(t, from, at, depth + 1, error);
      if (*error) return 0;
      if ((op == '|') == (left != 0)) return op == '|';
      return EvalPart(t, at + 2, to, depth + 1, error) != 0;
    }
  }
  TextBuffer leaf;
  InitText(&leaf, kOwnerConditionText);
  for (size_t i = from; i < to;) {
    size_t close = t[i] == '(' ? FindTopLevel(t, i + 1, to, ')', false) : to;
    if (split && close < to && HasShortCircuit(t, i + 1, close)) {
      int32_t value = EvalPart(t, i + 1, close, depth + 1, error);
      if (*error) break;
      AppendFormat(&leaf, "(%d)", value);
      i = close + 1;
    } else if (t[i] == '\'' || t[i] == '"') {
      size_t e = static_cast<size_t>(SkipCQuoted(t + i, t + to) - t);
      AppendText(&leaf, t + i, e - i);
      i = e;
    } else {
      AppendChar(&leaf, t[i++]);
    }
  }
  int32_t value = 0;
  if (leaf.failed) {
    *error = kMathOverflow;
  } else if (*error == 0) {
    CalcMathExpression(TextOf(&leaf), 0, 0, error, &value);
  }
  FreeText(&leaf);
  return value;
}

}  // namespace

int32_t CalcCondition(const TextBuffer* text, const char* fileName, uint32_t line, TextBuffer* sink,
                      int code) {
  uint32_t error = 0;
  int32_t value = EvalPart(TextOf(text), 0, text->length, 0, &error);
  if (error == 0) return value;
  DebugLog("%s #%d CalcMathExpression('%s') Err=%d, Value=%d\r\n", fileName, static_cast<int>(line),
           TextOf(text), static_cast<int>(error), value);
  ReportSyntaxError(sink, fileName, static_cast<int>(line), code);
  return 0;
}

int32_t EvalCondition(SymbolTable* table, const char* exprText, size_t length, const char* fileName,
                      uint32_t line, TextBuffer* sink) {
  TextBuffer text;
  InitText(&text, kOwnerConditionText);
  if (!AppendText(&text, exprText, length)) return 0;
  StripConditionComments(&text);
  SourcePlace place = {sink, fileName, line};
  if (!ReplaceDefined(table, &text)) ReportSyntaxError(&place, kSyntaxDefined);
  size_t stopped = 0;
  if (ExpandMacros(table, &text, 0, &stopped, &place) != 0)
    ReportSyntaxError(&place, kSyntaxConditionExpansion);
  ZeroIdentifiers(&text);
  int32_t value = text.failed ? 0 : CalcCondition(&text, fileName, line, sink, kSyntaxCondition);
  FreeText(&text);
  return value;
}
