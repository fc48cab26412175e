#include "csource/show_definition.h"

#include <cstring>

#include "calc/math_expression.h"
#include "csource/c_chars.h"
#include "csource/csource_owners.h"
#include "csource/macro_expand.h"
#include "csource/parse_source.h"
#include "csource/source_path.h"
#include "csource/syntax_error.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/text_builder.h"

namespace {

// A cycle of typedefs or macros naming each other ends the display.
constexpr int kMaxSteps = 32;

unsigned StampOf(const char* path) {
  FileHandle file = FileOpen(path, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
  if (file == kInvalidFile) return 0;
  unsigned stamp = FileStamp(file);
  FileClose(file);
  return stamp;
}

// `text` without blanks at either end, cut to `limit` bytes, into `out`.
void SetTrimmed(TextBuffer* out, const char* text, size_t length, size_t limit) {
  while (length && IsCBlank(*text)) {
    ++text;
    --length;
  }
  while (length && IsCBlank(text[length - 1]))
    --length;
  if (length > limit) length = limit;
  TruncateText(out, 0);
  AppendText(out, text, length);
}

// What a record leads to: a typedef's type without "struct" and the like or trailing '*', any
// other record's body.
void NextText(const SymbolRecord* record, TextBuffer* next) {
  const char* body = record->body;
  size_t length = strlen(body);
  if (record->kind == kSymbolTypedef) {
    const char* p = body;
    while (IsCBlank(*p))
      ++p;
    const char* e = p;
    while (IsCIdentChar(*e))
      ++e;
    size_t word = static_cast<size_t>(e - p);
    static const char* const kTags[] = {"class", "struct", "union", "enum"};
    for (const char* tag : kTags) {
      if (strlen(tag) == word && memcmp(p, tag, word) == 0) {
        length -= static_cast<size_t>(e - body);
        body = e;
        break;
      }
    }
    while (length && (body[length - 1] == '*' || IsCBlank(body[length - 1])))
      --length;
  }
  SetTrimmed(next, body, length, kMaxLookupText);
}

bool Refresh(DefinitionCache* cache, const char* sourcePath, TextBuffer* result,
             const ParseOptions* options) {
  if (!sourcePath) return true;
  unsigned stamp = StampOf(sourcePath);
  if (cache->path && SamePath(cache->path, sourcePath) && cache->stamp == stamp) return true;
  FreeSymbolTable(&cache->table);
  FreeMem(cache->path);
  size_t length = strlen(sourcePath);
  cache->path = static_cast<char*>(AllocMem(length + 1, kOwnerCachePath));
  if (!cache->path) return false;
  memcpy(cache->path, sourcePath, length + 1);
  cache->stamp = stamp;
  ++cache->parses;
  ParseSourceFile(&cache->table, sourcePath, result, options);
  return true;
}

}  // namespace

void InitDefinitionCache(DefinitionCache* cache) {
  cache->table = {0, 0, nullptr};
  cache->path = nullptr;
  cache->stamp = 0;
  cache->parses = 0;
}

void FreeDefinitionCache(DefinitionCache* cache) {
  FreeSymbolTable(&cache->table);
  FreeMem(cache->path);
  cache->path = nullptr;
}

void DisplaySymbol(const SymbolRecord* record, const char* word, TextBuffer* result) {
  if (record->line) {
    AppendFormat(result, "[%s #%d]\r\n", record->source, static_cast<int>(record->line));
  } else {
    AppendFormat(result, "[%s]\r\n", record->source);
  }
  if (record->kind == kSymbolTypedef) {
    AppendFormat(result, "%s %s %s", "typedef", record->body, word);
  } else if (record->kind == kSymbolFunction) {
    AppendText(result, record->body);
  } else {
    AppendFormat(result, "%s %s", SymbolKindName(record->kind), word);
    if (record->params[0] || (record->kind == kSymbolMacro && IsFunctionLikeMacro(record)))
      AppendFormat(result, "(%s)", record->params);
    if (record->body[0]) {
      AppendChar(result, ' ');
      AppendText(result, record->body);
    }
  }
  if (record->kind != kSymbolMacro) AppendChar(result, ';');
  AppendText(result, "\r\n\r\n");
}

bool ShowDefinition(DefinitionCache* cache, const char* sourcePath, const char* word,
                    TextBuffer* result, const ParseOptions* options) {
  if (!Refresh(cache, sourcePath, result, options)) return false;
  TextBuffer text;
  TextBuffer next;
  InitText(&text, kOwnerResultText);
  InitText(&next, kOwnerResultText);
  SetTrimmed(&text, word, strlen(word) > kMaxLookupWord ? kMaxLookupWord : strlen(word),
             kMaxLookupWord);
  SourcePlace place = {result, "", 0};
  // Each look-up tells its own story: what an earlier one reported or showed does not count.
  ClearSymbolFlags(&cache->table, kSymbolFlagReported | kSymbolFlagShown);
  for (int step = 0; step < kMaxSteps && text.length && !text.failed; ++step) {
    SymbolRecord* record = FindSymbol(&cache->table, TextOf(&text), -1, kSymbolAny);
    if (record) {
      // Back at a name already shown: the chain is a cycle, and once round it is enough.
      if (record->flags & kSymbolFlagShown) {
        if (record->kind == kSymbolMacro && !(record->flags & kSymbolFlagReported))
          ReportRecursiveMacro(result, record);
        break;
      }
      record->flags |= kSymbolFlagShown;
      DisplaySymbol(record, TextOf(&text), result);
      NextText(record, &next);
    } else {
      TruncateText(&next, 0);
      AppendText(&next, TextOf(&text), text.length);
      size_t stopped;
      bool recursed = false;
      ExpandMacros(&cache->table, &next, 0, &stopped, &place, &recursed);
      if (next.failed) break;
      if (next.length == text.length && memcmp(TextOf(&next), TextOf(&text), text.length) == 0) {
        uint32_t error = 0;
        int32_t value = 0;
        CalcMathExpression(TextOf(&text), 0, 0, &error, &value);
        if (error == 0) AppendFormat(result, "[Result]\r\n=%d\r\n\r\n", value);
        break;
      }
      AppendText(result, "[Original Sentence]\r\n");
      AppendText(result, TextOf(&next), next.length);
      AppendText(result, "\r\n\r\n");
      // A macro inside its own replacement makes every further round longer, never final.
      if (recursed) break;
      if (next.length > kMaxLookupText) TruncateText(&next, kMaxLookupText);
    }
    TextBuffer swap = text;
    text = next;
    next = swap;
  }
  FreeText(&text);
  FreeText(&next);
  return !result->failed;
}
