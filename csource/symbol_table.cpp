#include "csource/symbol_table.h"

#include <cstring>

#include "csource/csource_owners.h"
#include "foundation/memory.h"

namespace {

constexpr int kTableStep = 4096;

const char* const kKindNames[] = {"typedef", "function", "struct",   "union",
                                  "enum",    "#define",  "callconv", "var"};

int Length(const char* text, int length) {
  return length < 0 ? static_cast<int>(strlen(text)) : length;
}

// Index of the record named so, or the place where it would go as a negative number - 1.
int Search(const SymbolTable* table, const char* name, int length) {
  int low = 0;
  int high = table->count - 1;
  while (low <= high) {
    int middle = (low + high) / 2;
    int order = CompareSymbolName(name, length, table->records[middle]->name);
    if (order == 0) return middle;
    if (order < 0) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  return -low - 1;
}

}  // namespace

const char* SymbolKindName(uint32_t kind) {
  return kind < sizeof kKindNames / sizeof kKindNames[0] ? kKindNames[kind] : "";
}

SymbolRecord* NewSymbol(uint32_t kind, const char* source, uint32_t line, const char* name,
                        int nameLength, const char* params, int paramsLength, const char* body,
                        int bodyLength) {
  if (!source) source = "";
  if (!params) params = "";
  if (!body) body = "";
  size_t sourceLength = strlen(source);
  nameLength = Length(name, nameLength);
  paramsLength = Length(params, paramsLength);
  bodyLength = Length(body, bodyLength);
  size_t size = sizeof(SymbolRecord) + sourceLength + nameLength + paramsLength + bodyLength + 4;
  SymbolRecord* record = static_cast<SymbolRecord*>(AllocMem(size, kOwnerSymbolRecord));
  if (!record) return nullptr;
  char* p = reinterpret_cast<char*>(record + 1);
  auto place = [&p](const char* text, size_t length) {
    char* start = p;
    memcpy(p, text, length);
    p[length] = '\0';
    p += length + 1;
    return start;
  };
  record->kind = kind;
  record->line = line;
  record->source = place(source, sourceLength);
  record->name = place(name, nameLength);
  record->params = place(params, paramsLength);
  record->body = place(body, bodyLength);
  record->flags = 0;
  return record;
}

bool InsertSymbol(SymbolTable* table, SymbolRecord* record) {
  if (!record) return false;
  int at = Search(table, record->name, static_cast<int>(strlen(record->name)));
  if (at >= 0) {
    FreeMem(table->records[at]);
    table->records[at] = record;
    return true;
  }
  at = -at - 1;
  size_t needed = (static_cast<size_t>(table->count) + 1) * sizeof(SymbolRecord*);
  if (needed > static_cast<size_t>(table->capacity)) {
    int capacity = table->capacity + kTableStep;
    SymbolRecord** records = static_cast<SymbolRecord**>(AllocMem(capacity, kOwnerSymbolTable));
    if (!records) {
      FreeMem(record);
      return false;
    }
    if (table->count) memcpy(records, table->records, table->count * sizeof(SymbolRecord*));
    FreeMem(table->records);
    table->records = records;
    table->capacity = capacity;
  }
  memmove(table->records + at + 1, table->records + at,
          (table->count - at) * sizeof(SymbolRecord*));
  table->records[at] = record;
  ++table->count;
  return true;
}

bool AddSymbol(SymbolTable* table, uint32_t kind, const char* source, uint32_t line,
               const char* name, const char* params, const char* body) {
  return InsertSymbol(table, NewSymbol(kind, source, line, name, -1, params, -1, body, -1));
}

SymbolRecord* FindSymbol(const SymbolTable* table, const char* name, int length, uint32_t kind) {
  int at = Search(table, name, Length(name, length));
  if (at < 0) return nullptr;
  SymbolRecord* record = table->records[at];
  return kind == kSymbolAny || record->kind == kind ? record : nullptr;
}

bool RemoveSymbol(SymbolTable* table, const char* name, uint32_t kind) {
  int at = Search(table, name, static_cast<int>(strlen(name)));
  if (at < 0) return false;
  if (kind != kSymbolAny && table->records[at]->kind != kind) return false;
  FreeMem(table->records[at]);
  memmove(table->records + at, table->records + at + 1,
          (table->count - at - 1) * sizeof(SymbolRecord*));
  --table->count;
  return true;
}

void FreeSymbolTable(SymbolTable* table) {
  for (int i = 0; i < table->count; ++i)
    FreeMem(table->records[i]);
  FreeMem(table->records);
  table->count = 0;
  table->capacity = 0;
  table->records = nullptr;
}

void ClearSymbolFlags(SymbolTable* table, uint32_t flags) {
  for (int i = 0; i < table->count; ++i)
    table->records[i]->flags &= ~flags;
}
