#include "csource/decl_scan.h"

#include <cstring>

#include "csource/c_chars.h"
#include "csource/csource_owners.h"
#include "csource/decl_text.h"
#include "csource/symbol_table.h"
#include "csource/syntax_error.h"
#include "foundation/text_builder.h"

namespace {

constexpr int kMaxDeclaratorDepth = 16;

bool Is(const char* p, size_t length, const char* word) {
  return strlen(word) == length && memcmp(p, word, length) == 0;
}

bool IsOneOf(const char* p, size_t length, const char* const* words) {
  for (; *words; ++words) {
    if (Is(p, length, *words)) return true;
  }
  return false;
}

const char* const kCallConvs[] = {
    "__stdcall",    "_stdcall",  "__cdecl",  "_cdecl",  "__fastcall", "_fastcall", "__thiscall",
    "__vectorcall", "__clrcall", "__pascal", "_pascal", "__syscall",  nullptr};
// Words whose parenthesised group is no declarator.
const char* const kAttributes[] = {
    "__declspec", "_declspec", "__attribute__", "__attribute",    "__asm__",       "__asm",
    "asm",        "__pragma",  "_Pragma",       "__typeof__",     "__typeof",      "typeof",
    "_Alignas",   "alignas",   "__alignof__",   "_Static_assert", "static_assert", nullptr};
const char* const kKeywords[] = {
    "auto",          "break",       "case",         "char",      "const",        "continue",
    "default",       "do",          "double",       "else",      "enum",         "extern",
    "float",         "for",         "goto",         "if",        "inline",       "int",
    "long",          "register",    "restrict",     "return",    "short",        "signed",
    "sizeof",        "static",      "struct",       "switch",    "typedef",      "union",
    "unsigned",      "void",        "volatile",     "while",     "_Bool",        "_Complex",
    "__int8",        "__int16",     "__int32",      "__int64",   "__inline",     "__inline__",
    "__forceinline", "__restrict",  "__restrict__", "__const",   "__volatile__", "__volatile",
    "__extension__", "__unaligned", "__ptr32",      "__ptr64",   "__w64",        "__signed__",
    "__signed",      "bool",        "class",        "_Noreturn", "__unsigned",   "__int128",
    nullptr};
const char* const kTagWords[] = {"struct", "union", "enum", "class", nullptr};

bool IsCallConv(const char* p, size_t length) {
  return IsOneOf(p, length, kCallConvs);
}

const char* SkipBlanks(const char* p, const char* end) {
  while (p < end && IsCBlank(*p))
    ++p;
  return p;
}

// After the group that opens at `p`, quotes passed over; null when it is not closed.
const char* SkipGroup(const char* p, const char* end, char open, char close) {
  int depth = 0;
  while (p < end) {
    char c = *p;
    if (c == '"' || c == '\'') {
      p = SkipCQuoted(p, end);
      continue;
    }
    if (c == open) {
      ++depth;
    } else if (c == close && --depth == 0) {
      return p + 1;
    }
    ++p;
  }
  return nullptr;
}

struct Declarator {
  const char* name;
  size_t nameLength;
  const char* params;
  size_t paramsLength;
  bool function;
};

// A parenthesised declarator such as "(*p)" or "(__stdcall *pfn)", not a parameter list.
bool IsDeclaratorGroup(const char* p, const char* end) {
  for (;;) {
    p = SkipBlanks(p, end);
    if (p < end && IsCIdentStart(*p)) {
      const char* e = SkipCIdent(p, end);
      size_t length = static_cast<size_t>(e - p);
      if (IsCallConv(p, length)) {
        p = e;
        continue;
      }
      if (IsOneOf(p, length, kAttributes)) {
        const char* open = SkipBlanks(e, end);
        if (open < end && *open == '(') {
          p = SkipGroup(open, end, '(', ')');
          if (!p) return false;
          continue;
        }
      }
      return false;
    }
    return p < end && (*p == '*' || *p == '&' || *p == '^');
  }
}

// Finds the name of the declarator in [p, end); false when it has none.
bool FindDeclarator(const char* p, const char* end, Declarator* d, int depth) {
  const char* last = nullptr;
  size_t lastLength = 0;
  bool tagNext = false;
  while (p < end) {
    char c = *p;
    if (c == '"' || c == '\'') {
      p = SkipCQuoted(p, end);
    } else if (IsCDigit(c)) {
      p = SkipCNumber(p, end);
    } else if (IsCIdentStart(c)) {
      const char* e = SkipCIdent(p, end);
      size_t length = static_cast<size_t>(e - p);
      if (IsOneOf(p, length, kAttributes)) {
        const char* open = SkipBlanks(e, end);
        if (open < end && *open == '(') {
          const char* close = SkipGroup(open, end, '(', ')');
          p = close ? close : end;
          continue;
        }
      }
      if (tagNext) {
        tagNext = false;
      } else if (IsOneOf(p, length, kTagWords)) {
        tagNext = true;
      } else if (!IsOneOf(p, length, kKeywords) && !IsCallConv(p, length)) {
        last = p;
        lastLength = length;
      }
      p = e;
    } else if (c == '(') {
      const char* close = SkipGroup(p, end, '(', ')');
      if (!close) close = end;
      const char* inside = p + 1;
      const char* insideEnd = close > inside && close[-1] == ')' ? close - 1 : close;
      bool pointer = IsDeclaratorGroup(inside, insideEnd);
      // With no name before it, a group can't be a parameter list: "void (__stdcall F)(int)".
      if ((pointer || !last) && depth < kMaxDeclaratorDepth &&
          FindDeclarator(inside, insideEnd, d, depth + 1)) {
        const char* after = SkipBlanks(close, end);
        if (!pointer && !d->function && after < end && *after == '(') {
          const char* paramsEnd = SkipGroup(after, end, '(', ')');
          if (!paramsEnd) paramsEnd = end;
          d->function = true;
          d->params = after + 1;
          d->paramsLength = static_cast<size_t>(paramsEnd - after - (paramsEnd[-1] == ')' ? 2 : 1));
        }
        return true;
      }
      if (last) {
        *d = {last, lastLength, inside, static_cast<size_t>(insideEnd - inside), true};
        return true;
      }
      p = close;
    } else if (c == '[') {
      const char* close = SkipGroup(p, end, '[', ']');
      p = close ? close : end;
    } else if (c == '{') {
      const char* close = SkipGroup(p, end, '{', '}');
      p = close ? close : end;
      tagNext = false;  // "struct { ... } NAME": the block took the tag's place
    } else if (c == ':') {
      break;  // a bit-field width
    } else {
      ++p;
    }
  }
  if (!last) return false;
  *d = {last, lastLength, nullptr, 0, false};
  return true;
}

bool HasWord(const char* p, const char* end, const char* const* words) {
  while (p < end) {
    if (*p == '"' || *p == '\'') {
      p = SkipCQuoted(p, end);
    } else if (IsCIdentStart(*p)) {
      const char* e = SkipCIdent(p, end);
      if (IsOneOf(p, static_cast<size_t>(e - p), words)) return true;
      p = e;
    } else {
      ++p;
    }
  }
  return false;
}

// Where the declarator of a name begins: back over blanks, '*', '&', '(' and the words that may
// stand among them.
const char* DeclaratorStart(const char* text, const char* name) {
  const char* const kQualifiers[] = {"const",       "volatile",   "__ptr32",  "__ptr64",
                                     "__unaligned", "__restrict", "restrict", nullptr};
  const char* p = name;
  while (p > text) {
    char c = p[-1];
    if (IsCBlank(c) || c == '*' || c == '&' || c == '(') {
      --p;
    } else if (IsCIdentChar(c)) {
      const char* s = p;
      while (s > text && IsCIdentChar(s[-1]))
        --s;
      size_t length = static_cast<size_t>(p - s);
      if (!IsCallConv(s, length) && !IsOneOf(s, length, kQualifiers)) break;
      p = s;
    } else {
      break;
    }
  }
  while (p < name && IsCBlank(*p))
    ++p;
  return p;
}

// Where a declaration or typedef ends: its ';', or the '{' of a function body (`body` set). Null
// when the text ends first or a '}' closes an enclosing block.
const char* FindEnd(const char* p, const char* end, bool* body) {
  int parens = 0;
  char lastSignificant = 0;
  *body = false;
  while (p < end) {
    char c = *p;
    if (c == '"' || c == '\'') {
      p = SkipCQuoted(p, end);
      lastSignificant = '"';
      continue;
    }
    if (c == '(') {
      ++parens;
    } else if (c == ')') {
      if (parens > 0) --parens;
    } else if (c == ';' && parens == 0) {
      return p;
    } else if (c == '{') {
      if (parens == 0 && lastSignificant == ')') {
        *body = true;
        return p;
      }
      const char* close = SkipGroup(p, end, '{', '}');
      if (!close) return nullptr;
      p = close;
      lastSignificant = '}';
      continue;
    } else if (c == '}' && parens == 0) {
      return nullptr;
    }
    if (!IsCBlank(c)) lastSignificant = c;
    ++p;
  }
  return nullptr;
}

struct Scanner {
  SymbolTable* table;
  const char* fileName;
  TextBuffer* sink;
  unsigned line;
  const char* end;
};

// Follows the line markers between two positions.
void FollowLines(Scanner& s, const char* from, const char* to) {
  for (const char* p = from; p < to; ++p) {
    if (*p == '#' && (p == from || p[-1] == '\n') && p + 1 < to && IsCDigit(p[1])) {
      unsigned line = 0;
      for (++p; p < to && IsCDigit(*p); ++p)
        line = line * 10 + static_cast<unsigned>(*p - '0');
      s.line = line;
    }
  }
}

void Report(Scanner& s, int code) {
  ReportSyntaxError(s.sink, s.fileName, static_cast<int>(s.line), code);
}

// Appends pieces of raw text with a blank between, then the tidy form into `out`.
void Tidy(const char* a, size_t aLength, const char* b, size_t bLength, TextBuffer* out) {
  TextBuffer raw;
  InitText(&raw, kOwnerDeclText);
  AppendText(&raw, a, aLength);
  AppendChar(&raw, ' ');
  AppendText(&raw, b, bLength);
  NormalizeDeclText(TextOf(&raw), raw.length, true, out);
  FreeText(&raw);
}

void Enter(Scanner& s, uint32_t kind, const char* name, size_t nameLength, const TextBuffer& params,
           const TextBuffer& body) {
  if (params.failed || body.failed) return;
  InsertSymbol(s.table, NewSymbol(kind, s.fileName, s.line, name, static_cast<int>(nameLength),
                                  TextOf(&params), static_cast<int>(params.length), TextOf(&body),
                                  static_cast<int>(body.length)));
}

// One part: a declarator with the type of the declaration.
void EnterPart(Scanner& s, bool isTypedef, const char* base, size_t baseLength, const char* part,
               const char* partEnd, const Declarator& d) {
  TextBuffer params;
  TextBuffer body;
  InitText(&params, kOwnerDeclText);
  InitText(&body, kOwnerDeclText);
  uint32_t kind = isTypedef ? kSymbolTypedef : d.function ? kSymbolFunction : kSymbolVariable;
  const char* nameEnd = d.name + d.nameLength;
  if (kind == kSymbolFunction &&
      (HasWord(base, base + baseLength, kCallConvs) || HasWord(part, d.name, kCallConvs))) {
    kind = kSymbolCallConv;
    NormalizeDeclText(d.params, d.paramsLength, false, &params);
    Tidy(base, baseLength, part, static_cast<size_t>(d.name - part), &body);
  } else if (kind == kSymbolFunction) {
    Tidy(base, baseLength, part, static_cast<size_t>(partEnd - part), &body);
  } else {
    // The type: the declaration without its name.
    TextBuffer rest;
    InitText(&rest, kOwnerDeclText);
    AppendText(&rest, part, static_cast<size_t>(d.name - part));
    AppendText(&rest, nameEnd, static_cast<size_t>(partEnd - nameEnd));
    Tidy(base, baseLength, TextOf(&rest), rest.length, &body);
    FreeText(&rest);
  }
  Enter(s, kind, d.name, d.nameLength, params, body);
  FreeText(&params);
  FreeText(&body);
}

// The declaration (or typedef) text [p, end): each comma-separated part enters its name.
void Analyze(Scanner& s, const char* p, const char* end, bool isTypedef) {
  const char* base = p;
  size_t baseLength = 0;
  bool first = true;
  while (p < end) {
    // The part runs to a comma outside parentheses and braces; its initializer is cut.
    const char* partEnd = p;
    const char* initializer = nullptr;
    int depth = 0;
    while (partEnd < end) {
      char c = *partEnd;
      if (c == '"' || c == '\'') {
        partEnd = SkipCQuoted(partEnd, end);
        continue;
      }
      if (c == '(' || c == '[' || c == '{') ++depth;
      if ((c == ')' || c == ']' || c == '}') && depth > 0) --depth;
      if (depth == 0 && c == ',') break;
      if (depth == 0 && c == '=' && !initializer) initializer = partEnd;
      ++partEnd;
    }
    const char* declEnd = initializer ? initializer : partEnd;
    Declarator d;
    if (FindDeclarator(p, declEnd, &d, 0)) {
      const char* part = p;
      if (first) {
        part = DeclaratorStart(p, d.name);
        baseLength = static_cast<size_t>(part - base);
      }
      EnterPart(s, isTypedef, base, first ? baseLength : baseLength, part, declEnd, d);
    } else if (first) {
      baseLength = static_cast<size_t>(declEnd - base);
      // "struct tag;" declares only the tag.
      if (!HasWord(p, declEnd, kTagWords))
        Report(s, isTypedef ? kSyntaxTypedef : kSyntaxDeclaration);
    }
    first = false;
    p = partEnd < end ? partEnd + 1 : end;
  }
}

// A tagged block: "struct tag { ... }" entered under the tag. Returns after the block, or null
// when it is not closed.
const char* EnterTag(Scanner& s, uint32_t kind, const char* tag, size_t tagLength,
                     const char* open) {
  const char* close = SkipGroup(open, s.end, '{', '}');
  if (!close) {
    Report(s, kSyntaxUnclosedBlock);
    return nullptr;
  }
  TextBuffer params;
  TextBuffer body;
  InitText(&params, kOwnerDeclText);
  InitText(&body, kOwnerDeclText);
  NormalizeDeclText(open, static_cast<size_t>(close - open), true, &body);
  Enter(s, kind, tag, tagLength, params, body);
  FreeText(&body);
  return close;
}

uint32_t TagKind(const char* p, size_t length) {
  if (Is(p, length, "struct")) return kSymbolStruct;
  if (Is(p, length, "union")) return kSymbolUnion;
  if (Is(p, length, "enum")) return kSymbolEnum;
  return kSymbolAny;
}

// A declaration that starts at `p` whose type may begin with a replacement for the text before
// `from` ("struct tag" for a block already entered). Returns where scanning goes on.
const char* Declaration(Scanner& s, const char* prefix, size_t prefixLength, const char* from) {
  bool body = false;
  const char* stop = FindEnd(from, s.end, &body);
  if (!stop) {
    Report(s, kSyntaxDeclaration);
    // Go on after the enclosing block's '}' or give up at the end.
    const char* close = from;
    while (close < s.end && *close != '}')
      ++close;
    return close < s.end ? close + 1 : s.end;
  }
  TextBuffer text;
  InitText(&text, kOwnerDeclText);
  AppendText(&text, prefix, prefixLength);
  if (prefixLength) AppendChar(&text, ' ');
  AppendText(&text, from, static_cast<size_t>(stop - from));
  if (!text.failed) Analyze(s, TextOf(&text), TextOf(&text) + text.length, false);
  FreeText(&text);
  if (body) {
    const char* close = SkipGroup(stop, s.end, '{', '}');
    return close ? close : s.end;
  }
  return stop + 1;
}

const char* Typedef(Scanner& s, const char* p) {
  const char* q = SkipBlanks(p, s.end);
  const char* kw = q;
  const char* kwEnd = SkipCIdent(q, s.end);
  uint32_t kind = TagKind(kw, static_cast<size_t>(kwEnd - kw));
  const char* from = q;
  TextBuffer text;
  InitText(&text, kOwnerDeclText);
  if (kind != kSymbolAny) {
    const char* tag = SkipBlanks(kwEnd, s.end);
    const char* tagEnd = SkipCIdent(tag, s.end);
    const char* open = SkipBlanks(tagEnd, s.end);
    if (tagEnd > tag && open < s.end && *open == '{') {
      const char* close = EnterTag(s, kind, tag, static_cast<size_t>(tagEnd - tag), open);
      if (!close) return s.end;
      AppendText(&text, kw, static_cast<size_t>(tagEnd - kw));
      AppendChar(&text, ' ');
      from = close;
    }
  }
  bool body = false;
  const char* stop = FindEnd(from, s.end, &body);
  if (!stop || body) {
    FreeText(&text);
    Report(s, kSyntaxTypedef);
    return stop ? stop : s.end;
  }
  AppendText(&text, from, static_cast<size_t>(stop - from));
  if (!text.failed) Analyze(s, TextOf(&text), TextOf(&text) + text.length, true);
  FreeText(&text);
  return stop + 1;
}

const char* TagConstruct(Scanner& s, uint32_t kind, const char* keyword, const char* after) {
  const char* tag = SkipBlanks(after, s.end);
  const char* tagEnd = SkipCIdent(tag, s.end);
  const char* open = SkipBlanks(tagEnd, s.end);
  if (tagEnd == tag || open >= s.end || *open != '{') return Declaration(s, "", 0, keyword);
  const char* close = EnterTag(s, kind, tag, static_cast<size_t>(tagEnd - tag), open);
  if (!close) return s.end;
  const char* next = SkipBlanks(close, s.end);
  if (next < s.end && *next == ';') return next + 1;
  // "struct tag { ... } x, *px;": the names after the block have the type "struct tag".
  return Declaration(s, keyword, static_cast<size_t>(tagEnd - keyword), close);
}

const char* Extern(Scanner& s, const char* word, const char* after) {
  const char* q = SkipBlanks(after, s.end);
  if (q < s.end && *q == '"') {
    const char* e = SkipCQuoted(q, s.end);
    if (Is(q, static_cast<size_t>(e - q), "\"C\"")) return e;
    if (Is(q, static_cast<size_t>(e - q), "\"C++\"")) {
      Report(s, kSyntaxExternCpp);
      const char* open = SkipBlanks(e, s.end);
      if (open < s.end && *open == '{') {
        const char* close = SkipGroup(open, s.end, '{', '}');
        return close ? close : s.end;
      }
      return Declaration(s, "", 0, open);
    }
  }
  return Declaration(s, "", 0, word);
}

}  // namespace

void ScanDeclarations(SymbolTable* table, const char* text, size_t length, const char* fileName,
                      TextBuffer* sink) {
  Scanner s = {table, fileName, sink, 0, text + length};
  const char* p = text;
  while (p < s.end) {
    char c = *p;
    if (c == '#') {
      const char* n = p + 1;
      if (n < s.end && IsCDigit(*n)) {
        unsigned line = 0;
        for (; n < s.end && IsCDigit(*n); ++n)
          line = line * 10 + static_cast<unsigned>(*n - '0');
        s.line = line;
      }
      p = n;
      continue;
    }
    if (c == '"' || c == '\'') {
      p = SkipCQuoted(p, s.end);
      continue;
    }
    if (IsCDigit(c)) {
      p = SkipCNumber(p, s.end);
      continue;
    }
    if (!IsCIdentStart(c)) {
      ++p;
      continue;
    }
    const char* e = SkipCIdent(p, s.end);
    size_t wordLength = static_cast<size_t>(e - p);
    uint32_t kind = TagKind(p, wordLength);
    const char* next;
    unsigned line = s.line;
    if (Is(p, wordLength, "typedef")) {
      next = Typedef(s, e);
    } else if (kind != kSymbolAny) {
      next = TagConstruct(s, kind, p, e);
    } else if (Is(p, wordLength, "extern")) {
      next = Extern(s, p, e);
    } else {
      next = Declaration(s, "", 0, p);
    }
    s.line = line;
    FollowLines(s, p, next);
    p = next > p ? next : e;
  }
}
