// A growing text in blocks of the allocator, for the makefile and the batch file. A failed
// allocation sticks: the text is then dropped and Failed() says so.
#pragma once
#include <cstddef>

class OutputText {
 public:
  OutputText() = default;
  ~OutputText();
  OutputText(const OutputText&) = delete;
  OutputText& operator=(const OutputText&) = delete;

  void Append(const char* text, size_t length);
  void Append(const char* text);
  void Append(char c) { Append(&c, 1); }
  // Appends the output of FormatStr.
  void Format(const char* format, ...);
  // The last character, or '\0' when the text is empty.
  char Last() const { return length_ ? text_[length_ - 1] : '\0'; }

  bool Failed() const { return failed_; }
  const char* Text() const { return text_ ? text_ : ""; }
  size_t Length() const { return length_; }
  // Hands the block over to the caller (null when failed), leaving this text empty.
  char* Release();

 private:
  char* text_ = nullptr;
  size_t length_ = 0;
  size_t capacity_ = 0;
  bool failed_ = false;
};
