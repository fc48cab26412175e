#include "csource/makefile_pp.h"

#include <cstring>

#include "csource/c_chars.h"
#include "csource/condition.h"
#include "csource/csource_owners.h"
#include "csource/preprocessor.h"
#include "csource/source_path.h"
#include "csource/symbol_table.h"
#include "csource/syntax_error.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "foundation/text_builder.h"

namespace {

constexpr int kMaxReferenceDepth = 32;
// Macros that name each other twice over ("A = $(B)$(B)", "B = $(A)$(A)") grow without end; an
// expansion stops at this many references or this much text, whichever comes first (compiler
// options are a few hundred bytes).
constexpr int kMaxReferences = 100000;
constexpr size_t kMaxExpandedText = 1 << 16;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool SameWord(const char* p, size_t length, const char* word) {
  if (strlen(word) != length) return false;
  for (size_t i = 0; i < length; ++i) {
    if (Lower(p[i]) != word[i]) return false;
  }
  return true;
}

bool Expand(const SymbolTable* table, const char* text, size_t length, TextBuffer* out, int depth,
            int* references) {
  bool closed = true;
  for (size_t i = 0; i < length && out->length < kMaxExpandedText; ++i) {
    if (text[i] != '$' || i + 1 >= length) {
      AppendChar(out, text[i]);
      continue;
    }
    const char* name = text + i + 1;
    size_t nameLength = 1;
    size_t used = 1;
    if (*name == '(') {
      const char* close = static_cast<const char*>(memchr(name, ')', length - i - 1));
      if (!close) {
        closed = false;
        AppendChar(out, text[i]);
        continue;
      }
      ++name;
      nameLength = static_cast<size_t>(close - name);
      used = nameLength + 2;
    }
    i += used;
    if (nameLength == 0 || nameLength > 63 || --*references < 0) continue;
    const SymbolRecord* record =
        FindSymbol(table, name, static_cast<int>(nameLength), kSymbolMacro);
    if (!record) continue;
    if (depth < kMaxReferenceDepth) {
      Expand(table, record->body, strlen(record->body), out, depth + 1, references);
    }
  }
  return closed;
}

struct MakeRun {
  SymbolTable* table;
  const char* path;
  int depth;
  int* filesLeft;  // makefiles the whole run may still read
  TextBuffer* sink;
  int level;
  unsigned char active[kMaxIfLevels];
  unsigned char taken[kMaxIfLevels];
};

void ReadMakefile(SymbolTable* table, const char* path, int depth, int* filesLeft,
                  TextBuffer* sink);

bool AllActive(const MakeRun& run) {
  for (int i = 0; i <= run.level; ++i) {
    if (!run.active[i]) return false;
  }
  return true;
}

// "defined(NAME)" as 1 or 0, the references expanded, identifiers made 0, then evaluated.
int MakeCondition(MakeRun& run, const char* text, unsigned line) {
  TextBuffer work;
  InitText(&work, kOwnerMakefileText);
  for (const char* p = text; *p;) {
    if (SameWord(p, 7, "defined") && p[7] && !IsCIdentChar(p[7]) &&
        (p == text || !IsCIdentChar(p[-1]))) {
      const char* q = p + 7;
      while (IsCBlank(*q))
        ++q;
      if (*q == '(') {
        const char* close = strchr(q, ')');
        if (!close) {
          ReportSyntaxError(run.sink, run.path, static_cast<int>(line), kSyntaxMakefileDefined);
          close = q + strlen(q);
        }
        const char* n = q + 1;
        while (IsCBlank(*n))
          ++n;
        const char* e = n;
        while (e < close && !IsCBlank(*e))
          ++e;
        bool known = e > n && FindSymbol(run.table, n, static_cast<int>(e - n), kSymbolMacro);
        AppendChar(&work, known ? '1' : '0');
        p = *close ? close + 1 : close;
        continue;
      }
    }
    AppendChar(&work, *p++);
  }
  TextBuffer expanded;
  InitText(&expanded, kOwnerMakefileText);
  if (!ExpandMakefileText(run.table, TextOf(&work), work.length, &expanded))
    ReportSyntaxError(run.sink, run.path, static_cast<int>(line), kSyntaxMakefileExpansion);
  FreeText(&work);
  ZeroIdentifiers(&expanded);
  int value = CalcCondition(&expanded, run.path, line, run.sink, kSyntaxCondition);
  FreeText(&expanded);
  return value;
}

// One "!word ..." line; false when the rest of the file is dropped.
bool MakeDirective(MakeRun& run, const char* text, unsigned line) {
  const char* p = text + 1;
  while (IsCBlank(*p))
    ++p;
  const char* word = p;
  while (IsCIdentChar(*p))
    ++p;
  size_t length = static_cast<size_t>(p - word);
  while (IsCBlank(*p))
    ++p;
  const char* rest = p;
  auto nameDefined = [&run](const char* name) {
    const char* e = name;
    while (*e && !IsCBlank(*e))
      ++e;
    return e > name && FindSymbol(run.table, name, static_cast<int>(e - name), kSymbolMacro);
  };
  bool isIf = SameWord(word, length, "if");
  bool isIfdef = SameWord(word, length, "ifdef");
  bool isIfndef = SameWord(word, length, "ifndef");
  if (isIf || isIfdef || isIfndef) {
    if (run.level + 1 >= kMaxIfLevels) {
      AppendText(run.sink, "'#if' is too deep\r\n");
      return false;
    }
    bool value = isIf ? MakeCondition(run, rest, line) != 0
                      : (isIfdef ? nameDefined(rest) : !nameDefined(rest));
    ++run.level;
    run.active[run.level] = run.taken[run.level] = value;
    return true;
  }
  bool isElseIf = SameWord(word, length, "elseif");
  bool isElseIfdef = SameWord(word, length, "elseifdef");
  bool isElseIfndef = SameWord(word, length, "elseifndef");
  if (isElseIf || isElseIfdef || isElseIfndef) {
    if (run.level == 0) return true;
    if (run.taken[run.level]) {
      run.active[run.level] = 0;
    } else {
      bool value = isElseIf ? MakeCondition(run, rest, line) != 0
                            : (isElseIfdef ? nameDefined(rest) : !nameDefined(rest));
      run.active[run.level] = run.taken[run.level] = value;
    }
    return true;
  }
  if (SameWord(word, length, "else")) {
    if (run.level == 0) return true;
    run.active[run.level] = !run.taken[run.level];
    run.taken[run.level] = 1;
    return true;
  }
  if (SameWord(word, length, "endif")) {
    if (run.level == 0) {
      AppendText(run.sink, "Unexpected '#endif'\r\n");
    } else {
      --run.level;
    }
    return true;
  }
  if (!AllActive(run)) return true;
  if (SameWord(word, length, "undef")) {
    const char* e = rest;
    while (*e && !IsCBlank(*e))
      ++e;
    char name[64];
    size_t n = static_cast<size_t>(e - rest);
    if (n > 0 && n < sizeof name) {
      memcpy(name, rest, n);
      name[n] = '\0';
      RemoveSymbol(run.table, name, kSymbolMacro);
    }
  } else if (SameWord(word, length, "include")) {
    TextBuffer name;
    InitText(&name, kOwnerMakefileText);
    ExpandMakefileText(run.table, rest, strlen(rest), &name);
    char* n = name.text;
    if (n) {
      while (name.length && IsCBlank(n[name.length - 1]))
        n[--name.length] = '\0';
      if (name.length >= 2 && ((n[0] == '<' && n[name.length - 1] == '>') ||
                               (n[0] == '"' && n[name.length - 1] == '"'))) {
        n[--name.length] = '\0';
        ++n;
      }
      char folder[kPathSize];
      const char* ignored;
      SplitSourcePath(run.path, folder, sizeof folder, &ignored);
      char path[kPathSize];
      if (*n && run.depth + 1 < kMaxMakefileDepth && JoinSourcePath(folder, n, path, sizeof path)) {
        // A makefile that includes itself twice would be read 2^16 times.
        if (*run.filesLeft > 0)
          ReadMakefile(run.table, path, run.depth + 1, run.filesLeft, run.sink);
        else if ((*run.filesLeft)-- == 0)
          AppendFormat(run.sink, "'%s' not read: too many makefiles\r\n", path);
      }
    }
    FreeText(&name);
  }
  return true;
}

void Definition(MakeRun& run, const char* text) {
  const char* p = text;
  while (IsCIdentChar(*p) || *p == '.')
    ++p;
  size_t nameLength = static_cast<size_t>(p - text);
  const char* q = p;
  while (IsCBlank(*q))
    ++q;
  if (nameLength == 0 || nameLength > 63 || *q != '=') return;
  ++q;
  while (IsCBlank(*q))
    ++q;
  size_t valueLength = strlen(q);
  while (valueLength && IsCBlank(q[valueLength - 1]))
    --valueLength;
  char name[64];
  memcpy(name, text, nameLength);
  name[nameLength] = '\0';
  // "X = $(X) more" adds to the old value: a reference to itself is taken now.
  TextBuffer value;
  InitText(&value, kOwnerMakefileText);
  const SymbolRecord* old = FindSymbol(run.table, name, -1, kSymbolMacro);
  TextBuffer self;
  InitText(&self, kOwnerMakefileText);
  AppendText(&self, "$(");
  AppendText(&self, name);
  AppendChar(&self, ')');
  const char* at = q;
  const char* valueEnd = q + valueLength;
  for (;;) {
    const char* hit = nullptr;
    for (const char* s = at; s + self.length <= valueEnd; ++s) {
      if (memcmp(s, TextOf(&self), self.length) == 0) {
        hit = s;
        break;
      }
    }
    if (!hit) break;
    AppendText(&value, at, static_cast<size_t>(hit - at));
    // "X = $(X)$(X)" line after line doubles the value each time; it stops growing at the limit.
    if (old && value.length < kMaxExpandedText) AppendText(&value, old->body);
    at = hit + self.length;
  }
  AppendText(&value, at, static_cast<size_t>(valueEnd - at));
  if (!value.failed) AddSymbol(run.table, kSymbolMacro, "MAKEFILE", 0, name, "", TextOf(&value));
  FreeText(&self);
  FreeText(&value);
}

}  // namespace

bool ExpandMakefileText(const SymbolTable* table, const char* text, size_t length,
                        TextBuffer* out) {
  int references = kMaxReferences;
  return Expand(table, text, length, out, 0, &references);
}

namespace {

void ReadMakefile(SymbolTable* table, const char* path, int depth, int* filesLeft,
                  TextBuffer* sink) {
  --*filesLeft;
  size_t size = 0;
  char* text = ReadWholeFile(path, &size, kOwnerMakefileText);
  if (!text) {
    AppendFormat(sink, "'%s' not Found\r\n", path);
    return;
  }
  MakeRun run = {table, path, depth, filesLeft, sink, 0, {1}, {0}};
  char* line = static_cast<char*>(AllocMem(kMakefileLineSize + 1, kOwnerMakefileText));
  const char* p = text;
  const char* end = text + size;
  unsigned lineNumber = 0;
  while (line && p < end) {
    // One logical line: a trailing backslash joins the next.
    size_t n = 0;
    unsigned first = lineNumber + 1;
    for (;;) {
      ++lineNumber;
      while (p < end && !IsCLineEnd(*p)) {
        if (n < kMakefileLineSize) line[n++] = *p;
        ++p;
      }
      if (p < end) p += (*p == '\r' && p + 1 < end && p[1] == '\n') ? 2 : 1;
      if (n > 0 && line[n - 1] == '\\' && p < end) {
        line[n - 1] = ' ';
        continue;
      }
      break;
    }
    line[n] = '\0';
    if (char* comment = strchr(line, '#')) *comment = '\0';
    if (static_cast<unsigned char>(line[0]) <= 32) continue;
    if (line[0] == '!') {
      if (!MakeDirective(run, line, first)) break;
    } else if (AllActive(run)) {
      Definition(run, line);
    }
  }
  FreeMem(line);
  FreeMem(text);
}

}  // namespace

void PreprocessMakefile(SymbolTable* table, const char* path, TextBuffer* sink) {
  int filesLeft = kMaxMakefileFiles;
  ReadMakefile(table, path, 0, &filesLeft, sink);
}

char* ReadCompilerOptions(const char* compilerFolder, const char* makefilePath, TextBuffer* sink) {
  SymbolTable table = {0, 0, nullptr};
  AddSymbol(&table, kSymbolMacro, "VC", 0, "VCPATH", "", compilerFolder);
  PreprocessMakefile(&table, makefilePath, sink);
  TextBuffer options;
  InitText(&options, kOwnerCompilerOptions);
  ExpandMakefileText(&table, "$(C_OPTION)", 11, &options);
  FreeSymbolTable(&table);
  if (options.failed || !options.text) {
    FreeText(&options);
    return nullptr;
  }
  return options.text;
}
