#include "encoding/word_case.h"

#include "foundation/os_case.h"

void UpperCaseWord(char16_t* units, int count) {
  OsUpperCase(units, count);
}

void LowerCaseWord(char16_t* units, int count) {
  OsLowerCase(units, count);
}
