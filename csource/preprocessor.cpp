#include "csource/preprocessor.h"

#include <cstring>

#include "csource/c_chars.h"
#include "csource/condition.h"
#include "csource/csource_owners.h"
#include "csource/decl_scan.h"
#include "csource/decl_text.h"
#include "csource/macro_expand.h"
#include "csource/source_path.h"
#include "csource/symbol_table.h"
#include "csource/syntax_error.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "foundation/text_builder.h"

namespace {

constexpr int kWordSize = 260;

bool IsSeen(const SeenFiles* seen, const char* path) {
  for (int i = 0; i < seen->count; ++i) {
    if (SamePath(seen->paths[i], path)) return true;
  }
  return false;
}

bool AddSeen(SeenFiles* seen, const char* path) {
  if (seen->count == seen->capacity) {
    int capacity = seen->capacity + 64;
    char** paths = static_cast<char**>(AllocMem(capacity * sizeof(char*), kOwnerSeenList));
    if (!paths) return false;
    if (seen->count) memcpy(paths, seen->paths, seen->count * sizeof(char*));
    FreeMem(seen->paths);
    seen->paths = paths;
    seen->capacity = capacity;
  }
  size_t length = strlen(path);
  char* copy = static_cast<char*>(AllocMem(length + 1, kOwnerSeenList));
  if (!copy) return false;
  memcpy(copy, path, length + 1);
  seen->paths[seen->count++] = copy;
  return true;
}

bool Resolve(const char* fileName, const char* directory, const char* includePaths, int angleFlag,
             char* path) {
  if (!angleFlag || IsAbsolutePath(fileName)) {
    if (JoinSourcePath(directory, fileName, path, kPathSize) && IsPlainFile(path)) return true;
    if (IsAbsolutePath(fileName)) return false;
  }
  for (const char* p = includePaths ? includePaths : ""; *p;) {
    const char* e = strchr(p, ';');
    if (!e) e = p + strlen(p);
    char folder[kPathSize];
    size_t length = static_cast<size_t>(e - p);
    if (length && length < sizeof folder) {
      memcpy(folder, p, length);
      folder[length] = '\0';
      if (JoinSourcePath(folder, fileName, path, kPathSize) && IsPlainFile(path)) return true;
    }
    p = *e ? e + 1 : e;
  }
  return false;
}

struct FileRun {
  SeenFiles* seen;
  SymbolTable* table;
  const char* fileName;
  const char* directory;  // this file's own folder
  const char* includePaths;
  int depth;
  TextBuffer* sink;
  TextBuffer out;
  TextBuffer directive;
  int level;
  unsigned char active[kMaxIfLevels];
  unsigned char taken[kMaxIfLevels];
  unsigned markedLine;
  bool markedAny;
  bool unfinished;
  size_t expandFrom;
};

bool AllActive(const FileRun& run) {
  for (int i = 0; i <= run.level; ++i) {
    if (!run.active[i]) return false;
  }
  return true;
}

void Expand(FileRun& run, unsigned line) {
  SourcePlace place = {run.sink, run.fileName, line};
  run.unfinished = ExpandMacros(run.table, &run.out, run.expandFrom, &run.expandFrom, &place) == 1;
  if (run.unfinished && run.out.length - run.expandFrom > kMaxUnfinishedCall) {
    // An argument list that never closes would be scanned again for every line that follows.
    size_t from = run.expandFrom;
    while (from < run.out.length && IsCIdentChar(run.out.text[from]))
      ++from;
    run.expandFrom = from;
    run.unfinished =
        ExpandMacros(run.table, &run.out, run.expandFrom, &run.expandFrom, &place) == 1;
  }
}

void EmitFragment(FileRun& run, const char* from, const char* to, unsigned line) {
  if (!run.unfinished && line != run.markedLine) {
    if (run.markedAny) AppendText(&run.out, "\r\n");
    AppendFormat(&run.out, "#%d ", static_cast<int>(line));
    run.markedLine = line;
    run.markedAny = true;
  } else if (run.out.length && !IsCBlank(run.out.text[run.out.length - 1])) {
    AppendChar(&run.out, ' ');
  }
  AppendText(&run.out, from, static_cast<size_t>(to - from));
  Expand(run, line);
}

// Past a "/*" comment that starts at `p`; counts its line ends. Null when it is not closed.
const char* SkipBlockComment(const char* p, const char* end, unsigned* line) {
  for (p += 2; p + 1 < end; ++p) {
    if (*p == '*' && p[1] == '/') return p + 2;
    if (*p == '\n' || (*p == '\r' && p[1] != '\n')) ++*line;
  }
  return nullptr;
}

// Reads the logical line after '#' into run.directive: continuations joined, comments made blanks.
// Returns where the line's end (the line break itself) is.
const char* ReadLogicalLine(FileRun& run, const char* p, const char* end, unsigned* line) {
  TruncateText(&run.directive, 0);
  while (p < end) {
    char c = *p;
    if (c == '\\' && p + 1 < end && IsCLineEnd(p[1])) {
      p += (p[1] == '\r' && p + 2 < end && p[2] == '\n') ? 3 : 2;
      ++*line;
      continue;
    }
    if (IsCLineEnd(c)) break;
    if (c == '"' || c == '\'') {
      const char* e = SkipCQuoted(p, end);
      AppendText(&run.directive, p, static_cast<size_t>(e - p));
      p = e;
      continue;
    }
    if (c == '/' && p + 1 < end && p[1] == '/') {
      while (p < end && !IsCLineEnd(*p))
        ++p;
      break;
    }
    if (c == '/' && p + 1 < end && p[1] == '*') {
      const char* e = SkipBlockComment(p, end, line);
      AppendChar(&run.directive, ' ');
      p = e ? e : end;
      continue;
    }
    AppendChar(&run.directive, c);
    ++p;
  }
  return p;
}

const char* SkipBlanks(const char* p) {
  while (IsCBlank(*p))
    ++p;
  return p;
}

// The identifier at `p` (at most kWordSize - 1 characters) into `word`; returns after it.
const char* ReadWord(const char* p, char* word) {
  int n = 0;
  while (IsCIdentChar(*p)) {
    if (n < kWordSize - 1) word[n++] = *p;
    ++p;
  }
  word[n] = '\0';
  return p;
}

void Define(FileRun& run, const char* text, unsigned line) {
  const char* p = SkipBlanks(text);
  const char* name = p;
  while (IsCIdentChar(*p))
    ++p;
  size_t nameLength = static_cast<size_t>(p - name);
  if (nameLength == 0 || !IsCIdentStart(*name)) return;
  TextBuffer params;
  TextBuffer body;
  InitText(&params, kOwnerDeclText);
  InitText(&body, kOwnerDeclText);
  bool callable = false;
  if (*p == '(') {
    const char* close = strchr(p + 1, ')');
    if (!close) {
      SourcePlace place = {run.sink, run.fileName, line};
      ReportSyntaxError(&place, kSyntaxMacroParams);
      NormalizeDeclText(p + 1, strlen(p + 1), false, &params);
    } else {
      NormalizeDeclText(p + 1, static_cast<size_t>(close - p - 1), false, &params);
      NormalizeDeclText(close + 1, strlen(close + 1), false, &body);
      callable = params.length == 0;
    }
  } else {
    NormalizeDeclText(p, strlen(p), false, &body);
  }
  if (!params.failed && !body.failed) {
    SymbolRecord* record = NewSymbol(
        kSymbolMacro, run.fileName, line, name, static_cast<int>(nameLength), TextOf(&params),
        static_cast<int>(params.length), TextOf(&body), static_cast<int>(body.length));
    if (record && callable) record->flags |= kSymbolFlagCallable;
    InsertSymbol(run.table, record);
  }
  FreeText(&params);
  FreeText(&body);
}

void Include(FileRun& run, const char* text, unsigned line) {
  const char* p = SkipBlanks(text);
  TextBuffer expanded;
  InitText(&expanded, kOwnerDeclText);
  if (IsCIdentStart(*p)) {
    // "#include NAME" with NAME a macro for the quoted or angled name.
    AppendText(&expanded, p);
    SourcePlace place = {run.sink, run.fileName, line};
    size_t stopped;
    ExpandMacros(run.table, &expanded, 0, &stopped, &place);
    p = SkipBlanks(TextOf(&expanded));
  }
  char name[kWordSize];
  int n = 0;
  int angle = 0;
  if (*p) {
    char close = *p == '<' ? '>' : *p;
    angle = *p == '<';
    for (++p; *p && *p != close; ++p) {
      if (n < kWordSize - 1) name[n++] = *p;
    }
    if (angle) {
      while (n > 0 && IsCBlank(name[n - 1]))
        --n;
    }
  }
  name[n] = '\0';
  FreeText(&expanded);
  if (n == 0) return;
  if (run.depth >= kMaxIncludeDepth) {
    // Everything further down is dropped; one word about where is enough for a whole run.
    if (!run.seen->tooDeepReported) {
      run.seen->tooDeepReported = true;
      AppendFormat(run.sink, "[%s #%d] '#include' is too deep\r\n", run.fileName,
                   static_cast<int>(line));
    }
    return;
  }
  PreprocessFile(run.seen, run.table, name, run.directory, run.includePaths, angle, run.depth + 1,
                 run.sink);
}

// The line of conditionErrors that stands for `messages` of the condition `text`.
void ConditionErrorKey(const TextBuffer* messages, const char* text, TextBuffer* key) {
  AppendChar(key, '\n');
  for (const char* p = TextOf(messages); *p;) {
    const char* place = strstr(p, "] ");
    const char* end = strchr(p, '\n');
    if (!end) end = p + strlen(p);
    if (place && place < end) p = place + 2;
    AppendText(key, p, static_cast<size_t>(end - p));
    p = *end ? end + 1 : end;
  }
  AppendChar(key, '\x01');
  AppendText(key, text);
  AppendChar(key, '\n');
}

// An #if or #elif condition; its errors reach the sink the first time they are met in the run.
bool Condition(FileRun& run, const char* text, unsigned line) {
  TextBuffer messages;
  InitText(&messages, kOwnerConditionText);
  bool value = EvalCondition(run.table, text, strlen(text), run.fileName, line, &messages) != 0;
  if (messages.length) {
    TextBuffer key;
    InitText(&key, kOwnerConditionText);
    ConditionErrorKey(&messages, text, &key);
    TextBuffer* known = &run.seen->conditionErrors;
    if (!known->length) AppendChar(known, '\n');
    // Each key starts with the '\n' that ends the one before it.
    if (!key.failed && !strstr(TextOf(known), TextOf(&key))) {
      AppendText(known, TextOf(&key) + 1, key.length - 1);
      AppendText(run.sink, TextOf(&messages), messages.length);
    }
    FreeText(&key);
  }
  FreeText(&messages);
  return value;
}

// One directive; false when the rest of the file is to be dropped.
bool Directive(FileRun& run, unsigned line) {
  const char* text = TextOf(&run.directive);
  char word[kWordSize];
  const char* rest = ReadWord(SkipBlanks(text), word);
  bool active = AllActive(run);
  bool isIf = strcmp(word, "if") == 0;
  bool isIfdef = strcmp(word, "ifdef") == 0;
  bool isIfndef = strcmp(word, "ifndef") == 0;
  if (isIf || isIfdef || isIfndef) {
    if (run.level + 1 >= kMaxIfLevels) {
      AppendFormat(run.sink, "[%s #%d] '#if' is too deep\r\n", run.fileName,
                   static_cast<int>(line));
      return false;
    }
    bool value;
    if (isIf) {
      value = Condition(run, rest, line);
    } else {
      char name[kWordSize];
      ReadWord(SkipBlanks(rest), name);
      bool known = FindSymbol(run.table, name, -1, kSymbolMacro) != nullptr;
      value = isIfdef ? known : !known;
    }
    ++run.level;
    run.active[run.level] = run.taken[run.level] = value;
  } else if (strcmp(word, "elif") == 0) {
    if (run.level == 0) return true;
    if (run.taken[run.level]) {
      run.active[run.level] = 0;
    } else {
      bool value = Condition(run, rest, line);
      run.active[run.level] = run.taken[run.level] = value;
    }
  } else if (strcmp(word, "else") == 0) {
    if (run.level == 0) return true;
    run.active[run.level] = !run.taken[run.level];
    run.taken[run.level] = 1;
  } else if (strcmp(word, "endif") == 0) {
    if (run.level == 0) {
      AppendFormat(run.sink, "[%s #%d] Unexpected '#endif'\r\n", run.fileName,
                   static_cast<int>(line));
    } else {
      --run.level;
    }
  } else if (!active) {
    return true;
  } else if (strcmp(word, "include") == 0) {
    Include(run, rest, line);
  } else if (strcmp(word, "define") == 0) {
    Define(run, rest, line);
  } else if (strcmp(word, "undef") == 0) {
    char name[kWordSize];
    ReadWord(SkipBlanks(rest), name);
    RemoveSymbol(run.table, name, kSymbolMacro);
  }
  return true;
}

// Backslashes before line breaks go; the breaks stay.
void DropContinuations(TextBuffer* out) {
  if (!out->text) return;
  size_t w = 0;
  for (size_t r = 0; r < out->length; ++r) {
    if (out->text[r] == '\\' && r + 1 < out->length && IsCLineEnd(out->text[r + 1])) continue;
    out->text[w++] = out->text[r];
  }
  TruncateText(out, w);
}

// Scans the whole file; false when it was dropped.
bool ScanFile(FileRun& run, const char* p, const char* end) {
  unsigned line = 1;
  bool lineStart = true;
  while (p < end) {
    char c = *p;
    if (c == '\r' || c == '\n') {
      p += (c == '\r' && p + 1 < end && p[1] == '\n') ? 2 : 1;
      ++line;
      lineStart = true;
      continue;
    }
    if (static_cast<unsigned char>(c) <= 32) {
      ++p;
      continue;
    }
    if (c == '#' && lineStart) {
      unsigned first = line;
      p = ReadLogicalLine(run, p + 1, end, &line);
      if (!Directive(run, first)) return false;
      continue;
    }
    if (c == '/' && p + 1 < end && p[1] == '/') {
      while (p < end && !IsCLineEnd(*p))
        ++p;
      continue;
    }
    if (c == '/' && p + 1 < end && p[1] == '*') {
      const char* e = SkipBlockComment(p, end, &line);
      p = e ? e : end;
      continue;
    }
    // A fragment: to the line's end or a comment, quoted text passed over.
    const char* q = p;
    while (q < end && !IsCLineEnd(*q)) {
      if (*q == '"' || *q == '\'') {
        q = SkipCQuoted(q, end);
        continue;
      }
      if (*q == '/' && q + 1 < end && (q[1] == '/' || q[1] == '*')) break;
      ++q;
    }
    if (AllActive(run)) EmitFragment(run, p, q, line);
    p = q;
    lineStart = false;
  }
  return true;
}

}  // namespace

void InitSeenFiles(SeenFiles* seen) {
  seen->paths = nullptr;
  seen->count = 0;
  seen->capacity = 0;
  seen->tooDeepReported = false;
  InitText(&seen->conditionErrors, kOwnerSeenList);
}

void FreeSeenFiles(SeenFiles* seen) {
  for (int i = 0; i < seen->count; ++i)
    FreeMem(seen->paths[i]);
  FreeMem(seen->paths);
  seen->paths = nullptr;
  seen->count = 0;
  seen->capacity = 0;
  seen->tooDeepReported = false;
  FreeText(&seen->conditionErrors);
}

int PreprocessFile(SeenFiles* seen, SymbolTable* table, const char* fileName, const char* directory,
                   const char* includePaths, int angleFlag, int depth, TextBuffer* sink) {
  char path[kPathSize];
  if (!Resolve(fileName, directory, includePaths, angleFlag, path)) {
    AppendFormat(sink, "'%s' not Found\r\n", fileName);
    return 0;
  }
  if (IsSeen(seen, path)) return 0;
  if (!AddSeen(seen, path)) return 0;
  size_t size = 0;
  char* source = ReadWholeFile(path, &size, kOwnerSourceText);
  if (!source) return 0;
  char folder[kPathSize];
  const char* ignored;
  SplitSourcePath(path, folder, sizeof folder, &ignored);

  FileRun run;
  run.seen = seen;
  run.table = table;
  run.fileName = fileName;
  run.directory = folder;
  run.includePaths = includePaths;
  run.depth = depth;
  run.sink = sink;
  InitText(&run.out, kOwnerPreprocessOut);
  InitText(&run.directive, kOwnerPreprocessOut);
  run.level = 0;
  run.active[0] = 1;
  run.taken[0] = 0;
  run.markedLine = 0;
  run.markedAny = false;
  run.unfinished = false;
  run.expandFrom = 0;
  if (ScanFile(run, source, source + size)) {
    DropContinuations(&run.out);
    ScanDeclarations(table, TextOf(&run.out), run.out.length, fileName, sink);
  }
  FreeText(&run.directive);
  FreeText(&run.out);
  FreeMem(source);
  return 0;
}
