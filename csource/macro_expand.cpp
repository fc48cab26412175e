#include "csource/macro_expand.h"

#include <cstring>

#include "csource/c_chars.h"
#include "csource/csource_owners.h"
#include "csource/symbol_table.h"
#include "csource/syntax_error.h"
#include "foundation/text_builder.h"

namespace {

constexpr int kMaxActive = 128;
constexpr int kMaxParams = 64;
constexpr int kMaxNesting = 32;  // argument pre-expansion inside argument pre-expansion

struct ActiveMacro {
  const SymbolRecord* record;
  size_t end;  // the replacement's end in the buffer being scanned
};

struct Budget {
  long expansions;
  bool exhausted;
};

struct Expander {
  SymbolTable* table;
  const SourcePlace* place;
  Budget* budget;
  bool* recursed;  // null: a name inside its own replacement is left as it is, silently
  ActiveMacro active[kMaxActive];
  int activeCount;
  int nesting;
};

struct Span {
  size_t start;
  size_t length;
};

bool IsActive(const Expander& ex, const SymbolRecord* record) {
  for (int i = 0; i < ex.activeCount; ++i) {
    if (ex.active[i].record == record) return true;
  }
  return false;
}

void DropFinished(Expander& ex, size_t pos) {
  int kept = 0;
  for (int i = 0; i < ex.activeCount; ++i) {
    if (ex.active[i].end > pos) ex.active[kept++] = ex.active[i];
  }
  ex.activeCount = kept;
}

// Named by its definition: the place of use says nothing about why it recurses.
void ReportRecursion(const Expander& ex, SymbolRecord* record) {
  if (!ex.recursed) return;
  *ex.recursed = true;
  if (record->flags & kSymbolFlagReported) return;
  record->flags |= kSymbolFlagReported;
  if (ex.place && ex.place->sink) ReportRecursiveMacro(ex.place->sink, record);
}

void ReportRunaway(const Expander& ex) {
  if (ex.budget->exhausted) return;
  ex.budget->exhausted = true;
  if (ex.place && ex.place->sink) {
    AppendFormat(ex.place->sink, "[%s #%d] Macro expansion too long\r\n", ex.place->fileName,
                 static_cast<int>(ex.place->line));
  }
}

int ExpandRange(Expander& ex, TextBuffer* buffer, size_t start, size_t* stopped, bool finalAtEnd);

// The parameter names of a macro: the identifiers of its list in order; "..." makes it variadic.
int ParseParams(const char* params, Span* names, bool* variadic) {
  int count = 0;
  *variadic = false;
  const char* p = params;
  while (*p) {
    if (IsCIdentStart(*p)) {
      const char* e = p;
      while (IsCIdentChar(*e))
        ++e;
      if (count < kMaxParams)
        names[count++] = {static_cast<size_t>(p - params), static_cast<size_t>(e - p)};
      p = e;
    } else {
      if (p[0] == '.' && p[1] == '.' && p[2] == '.') *variadic = true;
      ++p;
    }
  }
  return count;
}

void Trim(const char* text, Span* span) {
  while (span->length && IsCBlank(text[span->start])) {
    ++span->start;
    --span->length;
  }
  while (span->length && IsCBlank(text[span->start + span->length - 1]))
    --span->length;
}

// The closing parenthesis of the list opening at `open`, with the arguments split at top-level
// commas; false when it is not in the buffer.
bool ReadArguments(const char* text, size_t length, size_t open, size_t* close, Span* args,
                   int* argCount, int maxArgs) {
  int depth = 0;
  size_t argStart = open + 1;
  *argCount = 0;
  const char* end = text + length;
  for (size_t i = open; i < length;) {
    char c = text[i];
    if (c == '"' || c == '\'') {
      i = static_cast<size_t>(SkipCQuoted(text + i, end) - text);
      continue;
    }
    if (c == '(') {
      ++depth;
    } else if (c == ')' || (c == ',' && depth == 1)) {
      if (c == ')') --depth;
      if (depth == 0 || c == ',') {
        if (*argCount < maxArgs) {
          Span& arg = args[(*argCount)++];
          arg = {argStart, i - argStart};
          Trim(text, &arg);
        }
        argStart = i + 1;
        if (depth == 0) {
          *close = i;
          return true;
        }
      }
    }
    ++i;
  }
  return false;
}

// `text` in double quotes, with the quotes and backslashes of its literals escaped, as C's '#'.
void AppendStringized(TextBuffer* out, const char* text, size_t length) {
  AppendChar(out, '"');
  char quote = 0;
  for (size_t i = 0; i < length; ++i) {
    char c = text[i];
    if (!quote) {
      if (c == '"' || c == '\'') quote = c;
      if (c == '"') AppendChar(out, '\\');
      AppendChar(out, c);
      continue;
    }
    if (c == '\\' || c == '"') AppendChar(out, '\\');
    AppendChar(out, c);
    if (c == '\\' && i + 1 < length) {
      char next = text[++i];
      if (next == '\\' || next == '"') AppendChar(out, '\\');
      AppendChar(out, next);
    } else if (c == quote) {
      quote = 0;
    }
  }
  AppendChar(out, '"');
}

bool NextIsPaste(const char* p) {
  while (IsCBlank(*p))
    ++p;
  return p[0] == '#' && p[1] == '#';
}

// True when the output so far ends with "##" (blanks aside).
bool PrevIsPaste(const TextBuffer* out) {
  size_t n = out->length;
  while (n && IsCBlank(out->text[n - 1]))
    --n;
  return n >= 2 && out->text[n - 1] == '#' && out->text[n - 2] == '#';
}

// When the output ends with a single '#' (blanks aside), cuts it and returns true.
bool CutStringizer(TextBuffer* out) {
  size_t n = out->length;
  while (n && IsCBlank(out->text[n - 1]))
    --n;
  if (n == 0 || out->text[n - 1] != '#' || (n >= 2 && out->text[n - 2] == '#')) return false;
  TruncateText(out, n - 1);
  return true;
}

// Joins the tokens around every "##" of the replacement.
void Paste(TextBuffer* out) {
  if (!out->text) return;
  char* t = out->text;
  size_t w = 0;
  for (size_t r = 0; r < out->length;) {
    char c = t[r];
    if (c == '"' || c == '\'') {
      size_t e = static_cast<size_t>(SkipCQuoted(t + r, t + out->length) - t);
      memmove(t + w, t + r, e - r);
      w += e - r;
      r = e;
    } else if (c == '#' && r + 1 < out->length && t[r + 1] == '#') {
      while (w && IsCBlank(t[w - 1]))
        --w;
      r += 2;
      while (r < out->length && IsCBlank(t[r]))
        ++r;
    } else {
      t[w++] = t[r++];
    }
  }
  out->length = w;
  t[w] = '\0';
}

// An argument with its own macros expanded, as C does before substitution.
bool ExpandArgument(Expander& ex, const char* text, Span arg, TextBuffer* out) {
  if (!AppendText(out, text + arg.start, arg.length)) return false;
  if (ex.nesting >= kMaxNesting) return true;
  Expander inner;
  inner.table = ex.table;
  inner.place = ex.place;
  inner.budget = ex.budget;
  inner.recursed = ex.recursed;
  inner.activeCount = ex.activeCount;
  for (int i = 0; i < ex.activeCount; ++i)
    inner.active[i] = {ex.active[i].record, static_cast<size_t>(-1)};
  inner.nesting = ex.nesting + 1;
  size_t ignored;
  ExpandRange(inner, out, 0, &ignored, true);
  return !out->failed;
}

// Builds the replacement of `record` invoked with `args` (spans of `text`).
bool BuildReplacement(Expander& ex, const SymbolRecord* record, const char* text, const Span* args,
                      int argCount, TextBuffer* out) {
  const char* body = record->body;
  if (!IsFunctionLikeMacro(record)) {
    AppendText(out, body);
    if (strstr(body, "##")) Paste(out);
    return !out->failed;
  }
  Span names[kMaxParams];
  bool variadic;
  int nameCount = ParseParams(record->params, names, &variadic);
  TextBuffer expanded[kMaxParams + 1];
  bool ready[kMaxParams + 1] = {};
  bool pasted = false;
  for (const char* p = body; *p;) {
    if (*p == '"' || *p == '\'') {
      const char* e = SkipCQuoted(p, p + strlen(p));
      AppendText(out, p, static_cast<size_t>(e - p));
      p = e;
      continue;
    }
    if (IsCDigit(*p)) {
      const char* e = SkipCNumber(p, p + strlen(p));
      AppendText(out, p, static_cast<size_t>(e - p));
      p = e;
      continue;
    }
    if (!IsCIdentStart(*p)) {
      if (p[0] == '#' && p[1] == '#') pasted = true;
      AppendChar(out, *p++);
      continue;
    }
    const char* e = p;
    while (IsCIdentChar(*e))
      ++e;
    size_t length = static_cast<size_t>(e - p);
    int index = -1;
    Span arg = {0, 0};
    bool isVaArgs = variadic && length == 11 && memcmp(p, "__VA_ARGS__", 11) == 0;
    if (isVaArgs) {
      index = nameCount;
      if (argCount > nameCount) {
        arg.start = args[nameCount].start;
        arg.length = args[argCount - 1].start + args[argCount - 1].length - arg.start;
      }
    } else {
      for (int i = 0; i < nameCount; ++i) {
        if (names[i].length == length && memcmp(record->params + names[i].start, p, length) == 0) {
          index = i;
          break;
        }
      }
      if (index >= 0 && index < argCount) arg = args[index];
    }
    if (index < 0) {
      AppendText(out, p, length);
    } else if (!isVaArgs && index >= argCount) {
      ReportSyntaxError(ex.place, kSyntaxMissingArgument);
      AppendText(out, p, length);
    } else if (CutStringizer(out)) {
      AppendStringized(out, text + arg.start, arg.length);
    } else if (PrevIsPaste(out) || NextIsPaste(e)) {
      AppendText(out, text + arg.start, arg.length);
    } else {
      if (!ready[index]) {
        InitText(&expanded[index], kOwnerExpandWork);
        ready[index] = true;
        ExpandArgument(ex, text, arg, &expanded[index]);
      }
      AppendText(out, TextOf(&expanded[index]), expanded[index].length);
    }
    p = e;
  }
  for (int i = 0; i <= kMaxParams; ++i) {
    if (ready[i]) FreeText(&expanded[i]);
  }
  if (pasted) Paste(out);
  return !out->failed;
}

int ExpandRange(Expander& ex, TextBuffer* buffer, size_t start, size_t* stopped, bool finalAtEnd) {
  size_t pos = start;
  size_t limit = buffer->length + kMaxExpandGrowth;
  Span args[kMaxParams + 1];
  while (pos < buffer->length) {
    const char* t = buffer->text;
    const char* end = t + buffer->length;
    if (ex.activeCount) DropFinished(ex, pos);
    char c = t[pos];
    if (c == '"' || c == '\'') {
      pos = static_cast<size_t>(SkipCQuoted(t + pos, end) - t);
      continue;
    }
    if (IsCDigit(c)) {
      pos = static_cast<size_t>(SkipCNumber(t + pos, end) - t);
      continue;
    }
    if (c == '#') {
      pos = static_cast<size_t>(SkipCIdent(t + pos + 1, end) - t);
      continue;
    }
    if (!IsCIdentStart(c)) {
      ++pos;
      continue;
    }
    size_t nameEnd = static_cast<size_t>(SkipCIdent(t + pos, end) - t);
    size_t nameLength = nameEnd - pos;
    SymbolRecord* record =
        nameLength <= static_cast<size_t>(kMaxMacroName)
            ? FindSymbol(ex.table, t + pos, static_cast<int>(nameLength), kSymbolMacro)
            : nullptr;
    if (!record) {
      pos = nameEnd;
      continue;
    }
    if (IsActive(ex, record)) {
      ReportRecursion(ex, record);
      pos = nameEnd;
      continue;
    }
    size_t invocationEnd = nameEnd;
    int argCount = 0;
    if (IsFunctionLikeMacro(record)) {
      size_t q = nameEnd;
      while (q < buffer->length && IsCBlank(t[q]))
        ++q;
      size_t close = 0;
      bool complete = q < buffer->length && t[q] == '(' &&
                      ReadArguments(t, buffer->length, q, &close, args, &argCount, kMaxParams + 1);
      if (!complete && (q >= buffer->length || t[q] == '(')) {
        if (finalAtEnd) {
          pos = nameEnd;
          continue;
        }
        *stopped = pos;
        return 1;
      }
      if (!complete) {
        pos = nameEnd;
        continue;
      }
      // "F()" passes one empty argument.
      if (argCount == 1 && args[0].length == 0 && !record->params[0]) argCount = 0;
      invocationEnd = close + 1;
    }
    if (++ex.budget->expansions > kMaxExpansions || buffer->length > limit) {
      ReportRunaway(ex);
      *stopped = buffer->length;
      return 0;
    }
    TextBuffer replacement;
    InitText(&replacement, kOwnerExpandWork);
    bool built = BuildReplacement(ex, record, t, args, argCount, &replacement);
    size_t replacedLength = invocationEnd - pos;
    if (!built ||
        !ReplaceText(buffer, pos, replacedLength, TextOf(&replacement), replacement.length)) {
      FreeText(&replacement);
      *stopped = buffer->length;
      return 0;
    }
    size_t newEnd = pos + replacement.length;
    FreeText(&replacement);
    for (int i = 0; i < ex.activeCount; ++i) {
      ActiveMacro& a = ex.active[i];
      if (a.end == static_cast<size_t>(-1) || a.end <= pos) continue;
      a.end = a.end <= invocationEnd ? newEnd : a.end - replacedLength + (newEnd - pos);
    }
    if (ex.activeCount < kMaxActive) {
      ex.active[ex.activeCount++] = {record, newEnd};
    } else {
      ReportRunaway(ex);
      *stopped = buffer->length;
      return 0;
    }
  }
  *stopped = buffer->length;
  return 0;
}

}  // namespace

void ReportRecursiveMacro(TextBuffer* sink, const SymbolRecord* record) {
  if (record->line) {
    AppendFormat(sink, "[%s #%d] Recursive macro '%s'\r\n", record->source,
                 static_cast<int>(record->line), record->name);
  } else {
    AppendFormat(sink, "[%s] Recursive macro '%s'\r\n", record->source, record->name);
  }
}

int ExpandMacros(SymbolTable* table, TextBuffer* buffer, size_t start, size_t* stopped,
                 const SourcePlace* place, bool* recursed) {
  Budget budget = {0, false};
  Expander ex;
  ex.table = table;
  ex.place = place;
  ex.budget = &budget;
  ex.recursed = recursed;
  ex.activeCount = 0;
  ex.nesting = 0;
  *stopped = start;
  if (!buffer->text || start >= buffer->length) {
    *stopped = buffer->length;
    return 0;
  }
  return ExpandRange(ex, buffer, start, stopped, false);
}
