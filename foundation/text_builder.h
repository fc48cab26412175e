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
// Hands the text over to the caller, who frees it; null when a growth failed (the text is then
// incomplete and dropped). The buffer is empty afterwards.
char* ReleaseText(TextBuffer* buffer);

// The same block as an object that frees what it still holds: for code that builds a text and
// hands it on.
class TextBuilder {
 public:
  explicit TextBuilder(int owner) { InitText(&buffer_, owner); }
  ~TextBuilder() { FreeText(&buffer_); }
  TextBuilder(const TextBuilder&) = delete;
  TextBuilder& operator=(const TextBuilder&) = delete;

  void Append(const char* text, size_t length) { AppendText(&buffer_, text, length); }
  void Append(const char* text) { AppendText(&buffer_, text); }
  void Append(char c) { AppendChar(&buffer_, c); }
  template <typename... Args>
  void Format(const char* format, Args... args) {
    AppendFormat(&buffer_, format, args...);
  }
  // The last character, or '\0' when the text is empty.
  char Last() const { return buffer_.length ? buffer_.text[buffer_.length - 1] : '\0'; }
  bool Failed() const { return buffer_.failed; }
  const char* Text() const { return TextOf(&buffer_); }
  char* Release() { return ReleaseText(&buffer_); }

 private:
  TextBuffer buffer_;
};
