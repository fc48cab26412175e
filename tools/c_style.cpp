// The converter streams: each token's place (line break or not, blanks before it, indent) is
// decided from the tokens before it, so a large file needs no token list. Decisions depend only on
// the tokens and on whether a line break stood before each one, which is what makes a second
// conversion a no-op.
#include "tools/c_style.h"

#include <cstring>

#include "csource/c_chars.h"

namespace {

// Longest first, so that the first match is the token.
constexpr const char* kPuncts[] = {"<<=", ">>=", "...", "->*", "->", "++", "--", "<<", ">>",
                                   "<=",  ">=",  "==",  "!=",  "&&", "||", "+=", "-=", "*=",
                                   "/=",  "%=",  "&=",  "|=",  "^=", "::", "##", ".*"};

size_t PunctLength(const char* p, const char* end) {
  for (const char* punct : kPuncts) {
    size_t n = strlen(punct);
    if (static_cast<size_t>(end - p) >= n && memcmp(p, punct, n) == 0) return n;
  }
  return 1;
}

bool IsLineEndAt(const char* p, const char* end) {
  return p < end && IsCLineEnd(*p);
}

// Past a line end ("\r\n", "\n" or "\r").
const char* SkipLineEnd(const char* p, const char* end) {
  if (p < end && *p == '\r')
    ++p;
  else if (p < end && *p == '\n')
    return p + 1;
  if (p < end && *p == '\n') ++p;
  return p;
}

// A backslash with only a line end after it.
bool IsContinuation(const char* p, const char* end) {
  return *p == '\\' && IsLineEndAt(p + 1, end);
}

// Quoted text with escapes; a backslash before a line end continues it on the next line. An
// unclosed literal stops at its line's end.
const char* SkipQuoted(const char* p, const char* end, bool* closed = nullptr) {
  char quote = *p++;
  if (closed) *closed = false;
  while (p < end && *p != quote) {
    if (IsCLineEnd(*p)) return p;
    if (*p == '\\' && p + 1 < end) {
      ++p;
      if (*p == '\r' && p + 1 < end && p[1] == '\n') ++p;
    }
    ++p;
  }
  if (closed) *closed = p < end;
  return p < end ? p + 1 : p;
}

const char* SkipBlockComment(const char* p, const char* end) {
  p += 2;
  while (p + 1 < end && !(p[0] == '*' && p[1] == '/'))
    ++p;
  return p + 1 < end ? p + 2 : end;
}

// To the end of a line, over continuations, comments and literals (which may hide line ends).
const char* SkipDirective(const char* p, const char* end) {
  while (p < end && !IsCLineEnd(*p)) {
    if (IsContinuation(p, end)) {
      p = SkipLineEnd(p + 1, end);
    } else if (*p == '/' && p + 1 < end && p[1] == '*') {
      p = SkipBlockComment(p, end);
    } else if (*p == '/' && p + 1 < end && p[1] == '/') {
      while (p < end && !IsCLineEnd(*p))
        p = IsContinuation(p, end) ? SkipLineEnd(p + 1, end) : p + 1;
    } else if (*p == '"' || *p == '\'') {
      p = SkipQuoted(p, end);
    } else {
      ++p;
    }
  }
  return p;
}

bool IsLiteralPrefix(const char* p, size_t n) {
  return (n == 1 && (*p == 'L' || *p == 'u' || *p == 'U')) || (n == 2 && memcmp(p, "u8", 2) == 0);
}

}  // namespace

const char* ScanCToken(const char* p, const char* end, bool lineStart, int* kind) {
  if (lineStart && *p == '#') {
    *kind = kCTokenPreprocessor;
    return SkipDirective(p, end);
  }
  if (IsContinuation(p, end)) {
    *kind = kCTokenContinuation;
    return p + 1;
  }
  if (*p == '/' && p + 1 < end && p[1] == '*') {
    *kind = kCTokenBlockComment;
    return SkipBlockComment(p, end);
  }
  if (*p == '/' && p + 1 < end && p[1] == '/') {
    *kind = kCTokenLineComment;
    while (p < end && !IsCLineEnd(*p))
      p = IsContinuation(p, end) ? SkipLineEnd(p + 1, end) : p + 1;
    return p;
  }
  if (*p == '"' || *p == '\'') {
    bool closed;
    const char* after = SkipQuoted(p, end, &closed);
    *kind = closed ? kCTokenQuoted : kCTokenOpenQuoted;
    return after;
  }
  if (IsCDigit(*p) || (*p == '.' && p + 1 < end && IsCDigit(p[1]))) {
    *kind = kCTokenNumber;
    return SkipCNumber(p + 1, end);
  }
  if (IsCIdentStart(*p)) {
    const char* after = SkipCIdent(p, end);
    if (after < end && (*after == '"' || *after == '\'') &&
        IsLiteralPrefix(p, static_cast<size_t>(after - p))) {
      bool closed;
      const char* last = SkipQuoted(after, end, &closed);
      *kind = closed ? kCTokenQuoted : kCTokenOpenQuoted;
      return last;
    }
    *kind = kCTokenIdent;
    return after;
  }
  *kind = kCTokenPunct;
  return p + PunctLength(p, end);
}

namespace {

struct Token {
  const char* text;
  size_t length;
  int kind;
};

bool Is(const Token& t, const char* text) {
  size_t n = strlen(text);
  return t.text && t.length == n && memcmp(t.text, text, n) == 0;
}

bool IsWordKind(int kind) {
  return kind == kCTokenIdent || kind == kCTokenNumber;
}

bool IsControlKeyword(const Token& t) {
  return Is(t, "if") || Is(t, "for") || Is(t, "while") || Is(t, "switch");
}

bool IsTypeKeyword(const Token& t) {
  static const char* const kTypes[] = {"void",   "char",   "short",    "int",   "long",     "float",
                                       "double", "signed", "unsigned", "const", "volatile", "bool"};
  for (const char* type : kTypes) {
    if (Is(t, type)) return true;
  }
  return false;
}

bool IsBinaryText(const Token& t) {
  static const char* const kBinary[] = {
      "=",  "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>=", "==", "!=", "<",  ">",
      "<=", ">=", "&&", "||", "+",  "-",  "*",  "/",  "%",  "&",   "|",   "^",  "<<", ">>", "?"};
  if (t.kind != kCTokenPunct) return false;
  for (const char* op : kBinary) {
    if (Is(t, op)) return true;
  }
  return false;
}

// Whether writing `b` right after `a` would read as other tokens.
bool WouldMerge(const Token& a, const Token& b) {
  char first = b.text[0];
  if (IsWordKind(a.kind)) {
    if (IsCIdentChar(first)) return true;
    if ((b.kind == kCTokenQuoted || b.kind == kCTokenOpenQuoted) &&
        IsLiteralPrefix(a.text, a.length))
      return true;
    if (a.kind == kCTokenNumber) {
      char last = a.text[a.length - 1];
      if (first == '.') return true;
      if ((first == '+' || first == '-') &&
          (last == 'e' || last == 'E' || last == 'p' || last == 'P'))
        return true;
    }
    return false;
  }
  if (a.kind == kCTokenContinuation) return false;
  if (a.kind != kCTokenPunct) return false;
  if (b.kind == kCTokenNumber && Is(a, ".")) return true;
  // Three dots written together read as one "...", though two are no token.
  if (Is(a, ".") && first == '.') return true;
  if (first == '/' && Is(a, "/")) return true;
  if (a.text[a.length - 1] == '/' && (first == '*' || first == '/')) return true;
  if (b.kind != kCTokenPunct && b.kind != kCTokenBlockComment && b.kind != kCTokenLineComment)
    return false;
  char joined[8];
  size_t n = a.length < 4 ? a.length : 4;
  memcpy(joined, a.text, n);
  size_t m = b.length < 3 ? b.length : 3;
  memcpy(joined + n, b.text, m);
  return PunctLength(joined, joined + n + m) > a.length;
}

enum : int { kParenPlain = 0, kParenControl = 1, kParenFor = 2 };
enum : int { kBraceBlock = 0, kBraceSwitch = 1, kBraceList = 2 };

constexpr int kMaxNesting = 256;

struct Converter {
  const CStyle* style;
  TextBuffer* out;
  const char* newline;
  Token prev;
  bool prevUnary;  // prev is a prefix operator or a pointer declarator
  bool prevBlockBrace;
  bool prevClosedControl;  // prev is the ')' of if (...), for (...), while (...), switch (...)
  bool lineHasText;
  bool bodyIndent;  // the line after "if (...)", "else", "do" without a brace
  int parens;
  int parenKind[kMaxNesting];
  int braces;
  int braceKind[kMaxNesting];
  int ternaries;  // '?' waiting for their ':'
  bool afterSwitchParen;
  bool afterCaseLabel;
  Token controlWord;  // the keyword before the '(' being opened
  size_t start;       // the output's length before the text (after a mark)
};

void Indent(Converter* c, int level) {
  if (level < 0) level = 0;
  for (int i = 0; i < level; ++i) {
    if (c->style->useTabs) {
      AppendChar(c->out, '\t');
    } else {
      for (int k = 0; k < c->style->indentWidth; ++k)
        AppendChar(c->out, ' ');
    }
  }
}

bool InsideSwitch(const Converter* c) {
  return c->braces > 0 && c->braceKind[c->braces - 1] == kBraceSwitch;
}

// `breaks` counts the line breaks to write before the token: the first line of the text keeps
// up to two of those before it, so that what comes first stays first in a second conversion.
void StartLine(Converter* c, const Token& t, int breaks) {
  // After a token ending in a lone CR (a continuation's), an LF would join that CR into one line
  // end: the breaks are then CRs too.
  bool afterCr = c->prev.text && c->prev.text[c->prev.length - 1] == '\r';
  for (int i = 0; i < breaks; ++i)
    AppendText(c->out, afterCr ? "\r" : c->newline);
  c->lineHasText = true;
  if (t.kind == kCTokenPreprocessor) return;  // its own blanks are part of it
  int level = c->braces;
  if (Is(t, "}") && level > 0) --level;
  // Statements under a case label stand one level in from it.
  bool label = Is(t, "case") || Is(t, "default");
  if (InsideSwitch(c) && !label && !Is(t, "}")) ++level;
  if (c->parens > 0) level += 2;
  if (c->bodyIndent && !Is(t, "{")) ++level;
  Indent(c, level);
}

bool Spaced(const Converter* c, const Token& t, bool unary) {
  const Token& p = c->prev;
  const CStyle& s = *c->style;
  if (WouldMerge(p, t)) return true;
  if (t.kind == kCTokenBlockComment || t.kind == kCTokenLineComment) return true;
  if (p.kind == kCTokenBlockComment || t.kind == kCTokenContinuation) return true;
  if (Is(t, ",") || Is(t, ";")) return false;
  if (Is(p, ",") || Is(p, ";")) return true;
  if (Is(p, "(") || Is(p, "[")) return false;
  if (Is(t, ")") || Is(t, "]")) return false;
  if (Is(p, ".") || Is(p, "->") || Is(p, "::") || Is(t, ".") || Is(t, "->") || Is(t, "::"))
    return false;
  if (Is(t, "(") && IsControlKeyword(p)) return s.blankAfterKeyword;
  if (c->prevUnary) return false;
  if (IsBinaryText(t) && !unary) return s.blankAroundBinary;
  if (IsBinaryText(p)) return s.blankAroundBinary;
  if (Is(t, "++") || Is(t, "--") || Is(p, "++") || Is(p, "--")) return false;
  if (Is(p, "!") || Is(p, "~")) return false;
  if (Is(t, "{")) return true;
  if (Is(p, "{")) return !Is(t, "}");
  if (Is(t, "}")) return true;
  if (Is(t, ":")) return c->ternaries > 0 ? s.blankAroundBinary : false;
  if (Is(p, ":")) return true;
  if (Is(t, "(") && (Is(p, "return") || Is(p, "case"))) return true;
  if ((Is(t, "(") || Is(t, "[")) && (p.kind == kCTokenIdent || Is(p, ")") || Is(p, "]")))
    return false;
  return true;
}

// A '*', '&', '+' or '-' where an operand is expected is a prefix, and a '*' after a type is a
// pointer declarator: neither gets the binary operators' blanks.
bool IsPrefixHere(const Converter* c, const Token& t) {
  if (t.kind != kCTokenPunct) return false;
  if (Is(t, "!") || Is(t, "~")) return true;
  if (!(Is(t, "*") || Is(t, "&") || Is(t, "+") || Is(t, "-") || Is(t, "++") || Is(t, "--")))
    return false;
  const Token& p = c->prev;
  if (!p.text) return true;
  if (Is(t, "*") && (IsTypeKeyword(p) || (Is(p, "*") && c->prevUnary))) return true;
  if (p.kind == kCTokenPunct)
    return !(Is(p, ")") || Is(p, "]") || Is(p, "}") || Is(p, "++") || Is(p, "--"));
  return Is(p, "return") || Is(p, "case") || Is(p, "sizeof");
}

// Where the token goes: the line breaks the style demands or the text had, and the blanks.
void Place(Converter* c, const Token& t, int lineBreaks, bool unary, bool blockBrace) {
  const CStyle& s = *c->style;
  const Token& p = c->prev;
  bool mustBreak = !p.text ? false
                           : p.kind == kCTokenLineComment || p.kind == kCTokenPreprocessor ||
                                 p.kind == kCTokenOpenQuoted || p.kind == kCTokenContinuation ||
                                 t.kind == kCTokenPreprocessor;
  bool breakBefore = lineBreaks > 0;
  bool comment = t.kind == kCTokenBlockComment || t.kind == kCTokenLineComment;
  if (blockBrace && Is(t, "{") && p.text) breakBefore = s.braceNextLine;
  if (Is(t, "else") && Is(p, "}") && c->prevBlockBrace) breakBefore = s.braceNextLine;
  if (s.oneStatementPerLine && !(comment && lineBreaks == 0)) {
    if (Is(p, ";") && c->parens == 0) breakBefore = true;
    if (Is(p, "{") && c->prevBlockBrace && !Is(t, "}")) breakBefore = true;
    if (Is(t, "}") && c->braces > 0 && c->braceKind[c->braces - 1] != kBraceList && !Is(p, "{"))
      breakBefore = true;
  }
  // A '#' that is no directive must not start a line, where it would become one.
  if (t.kind == kCTokenPunct && t.text[0] == '#') breakBefore = false;
  if (!c->lineHasText) {
    StartLine(c, t, lineBreaks > 2 ? 2 : lineBreaks);
    // Bytes of a UTF-8 mark inside a name must not come first, where they would read as a mark.
    if (c->out->length == c->start && t.length >= 3 && memcmp(t.text, "\xEF\xBB\xBF", 3) == 0)
      AppendChar(c->out, ' ');
  } else if (mustBreak || breakBefore) {
    // A stray backslash keeps a blank behind it, or the line end would continue its line.
    if (p.kind == kCTokenPunct && Is(p, "\\")) AppendChar(c->out, ' ');
    StartLine(c, t, lineBreaks > 1 ? 2 : 1);
    c->bodyIndent = false;
  } else if (Spaced(c, t, unary)) {
    AppendChar(c->out, ' ');
  }
}

// Nesting after the token: parentheses, braces and what each one opened.
void Track(Converter* c, const Token& t, bool blockBrace, bool unary) {
  bool closedControl = false;
  if (Is(t, "(")) {
    int kind = Is(c->controlWord, "for")               ? kParenFor
               : c->controlWord.text && c->parens == 0 ? kParenControl
                                                       : kParenPlain;
    if (c->parens < kMaxNesting) c->parenKind[c->parens] = kind;
    c->parens++;
    c->afterSwitchParen = c->parens == 1 && Is(c->prev, "switch");
  } else if (Is(t, ")")) {
    if (c->parens > 0) {
      c->parens--;
      int kind = c->parens < kMaxNesting ? c->parenKind[c->parens] : kParenPlain;
      closedControl = c->parens == 0 && kind != kParenPlain;
    }
  } else if (Is(t, "{")) {
    int kind = !blockBrace ? kBraceList : c->afterSwitchParen ? kBraceSwitch : kBraceBlock;
    if (c->braces < kMaxNesting) c->braceKind[c->braces] = kind;
    c->braces++;
    c->afterSwitchParen = false;
  } else if (Is(t, "}")) {
    if (c->braces > 0) c->braces--;
  } else if (Is(t, "?")) {
    c->ternaries++;
  } else if (Is(t, ":") && c->ternaries > 0) {
    c->ternaries--;
  } else if (Is(t, ";") && c->parens == 0) {
    c->ternaries = 0;
    c->afterSwitchParen = false;
  }
  if (t.kind == kCTokenIdent && IsControlKeyword(t)) {
    c->controlWord = t;
  } else if (!Is(t, "(")) {
    c->controlWord = Token{};
  }
  // A body without braces on the next line stands one level in.
  if (closedControl || Is(t, "else") || Is(t, "do"))
    c->bodyIndent = true;
  else if (t.kind != kCTokenBlockComment && t.kind != kCTokenLineComment)
    c->bodyIndent = false;
  c->prevClosedControl = closedControl;
  c->prevBlockBrace = (Is(t, "{") || Is(t, "}")) && blockBrace;
  c->prevUnary = unary;
  c->prev = t;
}

}  // namespace

bool ConvertCStyle(const char* text, size_t length, const CStyle& style, TextBuffer* out) {
  Converter c = {};
  c.style = &style;
  c.out = out;
  const char* end = text + length;
  // A UTF-8 mark stays in front; read as a name it would hide a directive on the first line.
  if (length >= 3 && memcmp(text, "\xEF\xBB\xBF", 3) == 0) {
    AppendText(out, text, 3);
    text += 3;
  }
  // CRLF when the text has any, else LF, else CR: a choice the converted text makes again.
  c.newline = "\n";
  const char* lf = static_cast<const char*>(memchr(text, '\n', static_cast<size_t>(end - text)));
  if (!lf && memchr(text, '\r', static_cast<size_t>(end - text))) c.newline = "\r";
  for (; lf;
       lf = static_cast<const char*>(memchr(lf + 1, '\n', static_cast<size_t>(end - lf - 1)))) {
    if (lf > text && lf[-1] == '\r') {
      c.newline = "\r\n";
      break;
    }
  }
  c.start = out->length;
  const char* p = text;
  const char* lineStart = text;
  bool atLineStart = true;  // only blanks so far on this line
  int lineBreaks = 0;
  bool endsWithBreak = false;
  while (p < end) {
    if (IsCLineEnd(*p)) {
      p = (*p == '\r' && p + 1 < end && p[1] == '\n') ? p + 2 : p + 1;
      lineStart = p;
      atLineStart = true;
      ++lineBreaks;
      endsWithBreak = true;
      continue;
    }
    if (IsCBlank(*p)) {
      ++p;
      continue;
    }
    int kind;
    const char* tokenEnd = ScanCToken(p, end, atLineStart, &kind);
    Token t = {kind == kCTokenPreprocessor ? lineStart : p,
               static_cast<size_t>(tokenEnd - (kind == kCTokenPreprocessor ? lineStart : p)), kind};
    bool unary = IsPrefixHere(&c, t);
    bool blockBrace = Is(t, "{") && !(c.braces > 0 && c.braceKind[c.braces - 1] == kBraceList) &&
                      !(Is(c.prev, "=") || Is(c.prev, ",") || Is(c.prev, "{") || Is(c.prev, "(") ||
                        Is(c.prev, "[") || Is(c.prev, "return") || Is(c.prev, ":"));
    if (Is(t, "}")) blockBrace = c.braces > 0 && c.braceKind[c.braces - 1] != kBraceList;
    Place(&c, t, lineBreaks, unary, blockBrace);
    AppendText(out, t.text, t.length);
    Track(&c, t, blockBrace, unary);
    lineBreaks = 0;
    atLineStart = false;
    endsWithBreak = false;
    p = tokenEnd;
  }
  if (c.lineHasText && endsWithBreak) {
    if (c.prev.kind == kCTokenPunct && Is(c.prev, "\\")) AppendChar(out, ' ');
    AppendText(out, c.prev.text[c.prev.length - 1] == '\r' ? "\r" : c.newline);
  }
  return !out->failed;
}
