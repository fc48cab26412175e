#include "project/output_text.h"

#include <cstdarg>
#include <cstring>

#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "project/project.h"

OutputText::~OutputText() {
  FreeMem(text_);
}

void OutputText::Append(const char* text, size_t length) {
  if (failed_) return;
  if (length_ + length + 1 > capacity_) {
    size_t capacity = capacity_ ? capacity_ * 2 : 256;
    while (capacity < length_ + length + 1)
      capacity *= 2;
    char* grown = static_cast<char*>(AllocMem(capacity, kOwnerProjectOutput));
    if (!grown) {
      FreeMem(text_);
      text_ = nullptr;
      length_ = capacity_ = 0;
      failed_ = true;
      return;
    }
    if (length_) memcpy(grown, text_, length_);
    FreeMem(text_);
    text_ = grown;
    capacity_ = capacity;
  }
  memcpy(text_ + length_, text, length);
  length_ += length;
  text_[length_] = '\0';
}

void OutputText::Append(const char* text) {
  Append(text, strlen(text));
}

void OutputText::Format(const char* format, ...) {
  char small[512];
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  int needed = FormatText(small, sizeof small, format, args);
  va_end(args);
  if (needed <= static_cast<int>(sizeof small)) {
    Append(small, static_cast<size_t>(needed - 1));
  } else {
    char* large = static_cast<char*>(AllocMem(static_cast<size_t>(needed), kOwnerProjectScratch));
    if (large) {
      FormatText(large, needed, format, again);
      Append(large, static_cast<size_t>(needed - 1));
      FreeMem(large);
    } else {
      failed_ = true;
    }
  }
  va_end(again);
}

char* OutputText::Release() {
  if (!failed_ && !text_) Append("", 0);
  char* text = failed_ ? nullptr : text_;
  if (failed_) FreeMem(text_);
  text_ = nullptr;
  length_ = capacity_ = 0;
  return text;
}
