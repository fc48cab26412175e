#include "calc/math_expression.h"
#include "foundation/formatter.h"
#include "foundation/language.h"

namespace {

// The string-table id of each error code. Codes 9 and 10 take ids 110 and 109: that crossing is
// the program's.
const int kMathMessageIds[] = {0, 102, 103, 104, 105, 106, 111, 107, 108, 110, 109, 101, 112};
constexpr uint32_t kMathMessageCount = sizeof kMathMessageIds / sizeof kMathMessageIds[0];

}  // namespace

int MathErrorStringId(uint32_t code) {
  return code < kMathMessageCount ? kMathMessageIds[code] : 0;
}

void FormatMathError(char* buffer, int bufferSize, uint32_t code) {
  int id = MathErrorStringId(code);
  if (id == 0) {
    FormatStr(buffer, bufferSize, "MathExpErr: Code=%d", code);
    return;
  }
  // A language file may have translated the text.
  FormatStr(buffer, bufferSize, "%s", GetStr(id));
}
