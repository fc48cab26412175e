#include <cstring>

#include "csource/symbol_table.h"

int CompareSymbolName(const char* name, int length, const char* other) {
  int order = strncmp(name, other, static_cast<size_t>(length));
  if (order != 0) return order;
  return other[length] == '\0' ? 0 : -1;
}
