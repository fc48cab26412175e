// Small text helpers of the project code: the lines of a multi-line field, bounded copies that
// never split a UTF-8 character, and the decimal numbers of an "Info" value.
#pragma once
#include <cstddef>

// The lines of a text ended by "\r\n", "\n" or "\r"; a line end at the very end adds no empty
// line, and a null text has none.
class TextLines {
 public:
  explicit TextLines(const char* text) : p_(text) {}
  bool Next(const char** start, size_t* length);

 private:
  const char* p_;
};

// Copies at most size - 1 bytes of `text` (cut before a partial UTF-8 character) and terminates;
// returns the bytes copied.
size_t CopyLineCut(const char* text, size_t length, char* target, size_t size);

// Skips blanks and reads an optionally signed decimal number as "%d" does; false (and `*p`
// unchanged) when there is none.
bool ParseDecimal(const char** p, int* value);
