#include "project/text_lines.h"

#include <cstring>

bool TextLines::Next(const char** start, size_t* length) {
  if (!p_ || !*p_) return false;
  const char* end = p_;
  while (*end && *end != '\r' && *end != '\n')
    ++end;
  *start = p_;
  *length = static_cast<size_t>(end - p_);
  if (*end == '\r' && end[1] == '\n') {
    p_ = end + 2;
  } else {
    p_ = *end ? end + 1 : end;
  }
  return true;
}

size_t CopyLineCut(const char* text, size_t length, char* target, size_t size) {
  if (size == 0) return 0;
  size_t count = length < size - 1 ? length : size - 1;
  if (count < length) {
    // Step back over continuation bytes to the lead byte of the character that was cut.
    size_t back = count;
    while (back > 0 && (static_cast<unsigned char>(text[back]) & 0xC0) == 0x80)
      --back;
    count = back;
  }
  memcpy(target, text, count);
  target[count] = '\0';
  return count;
}

bool ParseDecimal(const char** p, int* value) {
  const char* s = *p;
  while (*s == ' ' || *s == '\t')
    ++s;
  bool negative = *s == '-';
  if (*s == '-' || *s == '+') ++s;
  if (*s < '0' || *s > '9') return false;
  unsigned number = 0;
  for (; *s >= '0' && *s <= '9'; ++s)
    number = number * 10 + static_cast<unsigned>(*s - '0');  // wraps like the C library's
  *value = static_cast<int>(negative ? 0u - number : number);
  *p = s;
  return true;
}
