#include "foundation/text_builder.h"

#include <cstdarg>
#include <cstring>

#include "foundation/formatter.h"
#include "foundation/memory.h"

namespace {
constexpr size_t kGrowStep = 4096;
}

void InitText(TextBuffer* buffer, int owner) {
  buffer->text = nullptr;
  buffer->length = 0;
  buffer->capacity = 0;
  buffer->owner = owner;
  buffer->failed = false;
}

void FreeText(TextBuffer* buffer) {
  FreeMem(buffer->text);
  InitText(buffer, buffer->owner);
}

bool ReserveText(TextBuffer* buffer, size_t extra) {
  if (buffer->failed) return false;
  size_t need = buffer->length + extra + 1;
  if (need <= buffer->capacity) return true;
  // A step beyond the need, and never less than half again, so that a long file is not copied
  // over and over while it grows.
  size_t capacity = need + kGrowStep;
  if (capacity < buffer->capacity + buffer->capacity / 2)
    capacity = buffer->capacity + buffer->capacity / 2;
  char* text = static_cast<char*>(AllocMem(capacity, buffer->owner));
  if (!text) {
    buffer->failed = true;
    return false;
  }
  if (buffer->text) memcpy(text, buffer->text, buffer->length);
  text[buffer->length] = '\0';
  FreeMem(buffer->text);
  buffer->text = text;
  buffer->capacity = capacity;
  return true;
}

bool AppendText(TextBuffer* buffer, const char* text, size_t length) {
  if (!ReserveText(buffer, length)) return false;
  memcpy(buffer->text + buffer->length, text, length);
  buffer->length += length;
  buffer->text[buffer->length] = '\0';
  return true;
}

bool AppendText(TextBuffer* buffer, const char* text) {
  return AppendText(buffer, text, strlen(text));
}

bool AppendChar(TextBuffer* buffer, char c) {
  return AppendText(buffer, &c, 1);
}

bool AppendFormat(TextBuffer* buffer, const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  char small[512];
  int need = FormatText(small, sizeof small, format, args);
  va_end(args);
  bool ok;
  if (need <= static_cast<int>(sizeof small)) {
    ok = AppendText(buffer, small, need > 0 ? static_cast<size_t>(need - 1) : 0);
  } else {
    ok = ReserveText(buffer, static_cast<size_t>(need));
    if (ok) {
      FormatText(buffer->text + buffer->length, need, format, again);
      buffer->length += static_cast<size_t>(need - 1);
    }
  }
  va_end(again);
  return ok;
}

bool ReplaceText(TextBuffer* buffer, size_t offset, size_t count, const char* replacement,
                 size_t replacementLength) {
  if (replacementLength > count && !ReserveText(buffer, replacementLength - count)) return false;
  if (!buffer->text) return replacementLength == 0;
  memmove(buffer->text + offset + replacementLength, buffer->text + offset + count,
          buffer->length - offset - count + 1);
  memcpy(buffer->text + offset, replacement, replacementLength);
  buffer->length = buffer->length - count + replacementLength;
  return true;
}

void TruncateText(TextBuffer* buffer, size_t length) {
  if (buffer->text && length < buffer->length) {
    buffer->length = length;
    buffer->text[length] = '\0';
  }
}

const char* TextOf(const TextBuffer* buffer) {
  return buffer->text ? buffer->text : "";
}

char* ReleaseText(TextBuffer* buffer) {
  if (!buffer->failed && !buffer->text) ReserveText(buffer, 0);  // an empty text is ""
  if (buffer->failed) {
    FreeText(buffer);
    return nullptr;
  }
  char* text = buffer->text;
  InitText(buffer, buffer->owner);
  return text;
}
