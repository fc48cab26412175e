#include "editor/char_class.h"

bool IsIdentifierChar(char16_t unit) {
  return unit == u'_' || unit == u'$' || (unit >= u'A' && unit <= u'Z') ||
         (unit >= u'a' && unit <= u'z') || IsDecimalDigit(unit);
}

bool IsSeparator(char16_t unit) {
  if (unit == u'_' || unit == u'$') return false;
  return (unit >= 0x21 && unit <= 0x2F) || (unit >= 0x3A && unit <= 0x40) ||
         (unit >= 0x5B && unit <= 0x60) || (unit >= 0x7B && unit <= 0x7E);
}

bool IsWordChar(char16_t unit) {
  return unit >= 33 && !IsSeparator(unit);
}

bool IsBlank(char16_t unit) {
  return unit < 33;
}

bool IsDecimalDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool IsHexDigit(char16_t unit) {
  return IsDecimalDigit(unit) || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}
