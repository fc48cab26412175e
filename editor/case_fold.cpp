#include "editor/case_fold.h"

#include "foundation/os_case.h"

namespace {

struct FoldTable {
  char16_t units[65536];
  FoldTable() {
    for (int i = 0; i < 65536; ++i)
      units[i] = static_cast<char16_t>(i);
    OsLowerCase(units, 65536);
  }
};

}  // namespace

char16_t FoldCase(char16_t unit) {
  static const FoldTable table;
  return table.units[unit];
}
