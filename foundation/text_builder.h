// The one growing text block of the program: the preprocessor's output, the parser window's text,
// the makefile and batch file, binary-to-source lines.
// A failed growth leaves the text as it was and sets `failed`; later appends are dropped.
#pragma once
#include <cstddef>

struct TextBuffer {
  char* text;  // always terminated once anything has been reserved
  size_t length;
  size_t capacity;
  int owner;
  bool failed;
};

void InitText(TextBuffer* buffer, int owner);
void FreeText(TextBuffer* buffer);
// Room for `extra` more bytes and a terminator; false (and `failed`) when it can't be had.
bool ReserveText(TextBuffer* buffer, size_t extra);
bool AppendText(TextBuffer* buffer, const char* text, size_t length);
bool AppendText(TextBuffer* buffer, const char* text);
bool AppendChar(TextBuffer* buffer, char c);
// The program's formatter (foundation/formatter.h) into the end of the buffer.
bool AppendFormat(TextBuffer* buffer, const char* format, ...);
// Replaces `count` bytes at `offset` with `replacement`.
bool ReplaceText(TextBuffer* buffer, size_t offset, size_t count, const char* replacement,
                 size_t replacementLength);
void TruncateText(TextBuffer* buffer, size_t length);
// The text ("" when nothing was ever appended).
const char* TextOf(const TextBuffer* buffer);
