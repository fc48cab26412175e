#include "tools/error_lookup.h"

#include <cstring>

#include "calc/math_number.h"
#include "foundation/os_errmsg.h"
#include "foundation/system_text.h"

namespace {
// The longest system message fits with room to spare.
constexpr int kSystemTextSize = 4096;
}  // namespace

int LookUpErrorText(const char* input, char* output, int size, unsigned* code) {
  char edit[kErrorLookupInputSize + 1];
  strncpy(edit, input, kErrorLookupInputSize);
  edit[kErrorLookupInputSize] = '\0';
  int32_t value = 0;
  ParseMathNumber(edit, &value);  // no digits read as 0
  *code = static_cast<unsigned>(value);
  if (size > 0) output[0] = '\0';
  char system[kSystemTextSize];
  int length = OsGetErrorText(*code, system, sizeof system);
  if (length <= 0) return length;
  length = FromSystemText(system, output, size);
  if (length < 0 && size > 0) output[0] = '\0';
  return length < 0 ? 0 : length;
}
