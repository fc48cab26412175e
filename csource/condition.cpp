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
      while (r < n && IsCIdentChar(t[r]))
        ++r;
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

int32_t CalcCondition(const TextBuffer* text, const char* fileName, uint32_t line, TextBuffer* sink,
                      int code) {
  uint32_t error = 0;
  int32_t value = 0;
  CalcMathExpression(TextOf(text), 0, 0, &error, &value);
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
