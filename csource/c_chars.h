// The lexical classes of the C source analysis: letters, digits and '_' make identifiers, every
// byte up to 32 is a blank, and any other printable byte that is not a quote or '#' is an operator.
#pragma once

inline bool IsCBlank(char c) {
  return c != '\0' && static_cast<unsigned char>(c) <= 32;
}
inline bool IsCDigit(char c) {
  return c >= '0' && c <= '9';
}
inline bool IsCIdentStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
inline bool IsCIdentChar(char c) {
  return IsCIdentStart(c) || IsCDigit(c);
}
inline bool IsCLineEnd(char c) {
  return c == '\r' || c == '\n';
}

// Past the quoted text that starts at `p` (on its quote): to after the closing quote, with
// backslash escapes, or to the end of the line when it is not closed there.
inline const char* SkipCQuoted(const char* p, const char* end) {
  char quote = *p++;
  while (p < end && *p != quote && !IsCLineEnd(*p)) {
    if (*p == '\\' && p + 1 < end && !IsCLineEnd(p[1])) ++p;
    ++p;
  }
  return p < end && *p == quote ? p + 1 : p;
}

inline const char* SkipCIdent(const char* p, const char* end) {
  while (p < end && IsCIdentChar(*p))
    ++p;
  return p;
}

// A number token with its suffixes and exponent signs ("1.5e+3f", "0x1FUL").
inline const char* SkipCNumber(const char* p, const char* end) {
  while (p < end) {
    if (IsCIdentChar(*p) || *p == '.') {
      ++p;
    } else if ((*p == '+' || *p == '-') &&
               (p[-1] == 'e' || p[-1] == 'E' || p[-1] == 'p' || p[-1] == 'P')) {
      ++p;
    } else {
      break;
    }
  }
  return p;
}
