#include "foundation/profile_text.h"

#include <cstring>

namespace {

// The characters the profile functions trim around names and values.
bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

char Lower(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

bool SameName(const char* a, size_t aLength, const char* b) {
  size_t bLength = strlen(b);
  if (aLength != bLength) return false;
  for (size_t i = 0; i < aLength; ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

ProfileSpan Trim(const char* text, size_t length) {
  while (length > 0 && IsBlank(*text))
    ++text, --length;
  while (length > 0 && IsBlank(text[length - 1]))
    --length;
  return {text, length};
}

// One line of the file: where it starts, its length without the line end, where the next begins.
struct Line {
  size_t start;
  size_t length;
  size_t next;
};

Line LineAt(const char* text, size_t length, size_t start) {
  size_t end = start;
  while (end < length && text[end] != '\n')
    ++end;
  size_t content = end;
  if (content > start && text[content - 1] == '\r') --content;
  return {start, content - start, end < length ? end + 1 : length};
}

// A section header "[name]": true with the trimmed name.
bool SectionName(const char* text, const Line& line, ProfileSpan* name) {
  ProfileSpan trimmed = Trim(text + line.start, line.length);
  if (trimmed.length == 0 || trimmed.text[0] != '[') return false;
  // The name runs to the last ']' of the line.
  size_t close = trimmed.length;
  while (close > 1 && trimmed.text[close - 1] != ']')
    --close;
  if (close <= 1) return false;
  *name = Trim(trimmed.text + 1, close - 2);
  return true;
}

// An entry "key=value" (a line without '=' is a key without a value); comments are not entries.
bool EntryName(const char* text, const Line& line, ProfileSpan* key, ProfileSpan* value) {
  ProfileSpan trimmed = Trim(text + line.start, line.length);
  if (trimmed.length == 0 || trimmed.text[0] == ';') return false;
  const char* equals = static_cast<const char*>(memchr(trimmed.text, '=', trimmed.length));
  if (!equals) {
    *key = trimmed;
    *value = {nullptr, 0};  // a key without a value reads as missing
    return true;
  }
  size_t keyLength = static_cast<size_t>(equals - trimmed.text);
  *key = Trim(trimmed.text, keyLength);
  *value = Trim(equals + 1, trimmed.length - keyLength - 1);
  return true;
}

// Where the first section of a name lies: the line after its header, the line after its last
// entry, and the start of the next section's header (or the end of the text).
struct SectionPlace {
  bool found;
  size_t body;
  size_t afterLastEntry;
  size_t end;
};

SectionPlace FindSection(const char* text, size_t length, const char* section) {
  SectionPlace place = {false, 0, 0, length};
  for (size_t at = 0; at < length;) {
    Line line = LineAt(text, length, at);
    ProfileSpan name, key, value;
    if (SectionName(text, line, &name)) {
      if (place.found) {
        place.end = at;
        return place;
      }
      if (SameName(name.text, name.length, section)) place = {true, line.next, line.next, length};
    } else if (place.found && EntryName(text, line, &key, &value)) {
      place.afterLastEntry = line.next;
    }
    at = line.next;
  }
  return place;
}

// Appends to a bounded target while counting everything.
struct Writer {
  char* target;
  size_t size;
  size_t count = 0;
  void Put(const char* text, size_t length) {
    if (length == 0) return;
    if (target && count + length <= size) memcpy(target + count, text, length);
    count += length;
  }
  void Put(const char* text) { Put(text, strlen(text)); }
};

void PutEntry(Writer& out, const char* key, const char* value) {
  out.Put(key);
  out.Put("=");
  out.Put(value);
  out.Put("\r\n");
}

}  // namespace

// The line of `key` inside a section's body, if it is there.
static bool FindEntry(const char* text, const SectionPlace& place, const char* key, Line* found,
                      ProfileSpan* value) {
  for (size_t at = place.body; at < place.end;) {
    Line line = LineAt(text, place.end, at);
    ProfileSpan entryKey;
    if (EntryName(text, line, &entryKey, value) && SameName(entryKey.text, entryKey.length, key)) {
      *found = line;
      return true;
    }
    at = line.next;
  }
  return false;
}

bool ProfileFindValue(const char* text, size_t length, const char* section, const char* key,
                      ProfileSpan* value) {
  SectionPlace place = FindSection(text, length, section);
  Line line;
  return place.found && FindEntry(text, place, key, &line, value) && value->text;
}

ProfileSpan ProfileStripQuotes(ProfileSpan value) {
  if (value.length >= 2 && (value.text[0] == '"' || value.text[0] == '\'') &&
      value.text[value.length - 1] == value.text[0]) {
    return {value.text + 1, value.length - 2};
  }
  return value;
}

size_t ProfileSetValue(const char* text, size_t length, const char* section, const char* key,
                       const char* value, char* target, size_t targetSize) {
  Writer out{target, targetSize};
  SectionPlace place = FindSection(text, length, section);
  if (!place.found) {
    out.Put(text, length);
    if (length > 0 && text[length - 1] != '\n') out.Put("\r\n");
    out.Put("[");
    out.Put(section);
    out.Put("]\r\n");
    PutEntry(out, key, value);
    return out.count;
  }
  Line line;
  ProfileSpan old;
  if (FindEntry(text, place, key, &line, &old)) {
    out.Put(text, line.start);
    PutEntry(out, key, value);
    out.Put(text + line.next, length - line.next);
    return out.count;
  }
  // A new key goes after the section's last entry.
  size_t split = place.afterLastEntry;
  out.Put(text, split);
  if (split > 0 && text[split - 1] != '\n') out.Put("\r\n");
  PutEntry(out, key, value);
  out.Put(text + split, length - split);
  return out.count;
}

unsigned ProfileParseInt(ProfileSpan value) {
  const char* p = value.text;
  size_t left = value.length < 29 ? value.length : 29;
  while (left > 0 && static_cast<unsigned char>(*p) <= ' ')
    ++p, --left;
  bool minus = false;
  if (left > 0 && (*p == '+' || *p == '-')) {
    minus = *p == '-';
    ++p, --left;
  }
  unsigned base = 10;
  if (left >= 2 && p[0] == '0') {
    if (p[1] == 'x') base = 16;
    if (p[1] == 'o') base = 8;
    if (p[1] == 'b') base = 2;
    if (base != 10) p += 2, left -= 2;
  }
  unsigned total = 0;
  for (; left > 0; ++p, --left) {
    char c = *p;
    unsigned digit = (c >= '0' && c <= '9')   ? static_cast<unsigned>(c - '0')
                     : (c >= 'A' && c <= 'Z') ? static_cast<unsigned>(c - 'A' + 10)
                     : (c >= 'a' && c <= 'z') ? static_cast<unsigned>(c - 'a' + 10)
                                              : 99u;
    if (digit >= base) break;
    total = total * base + digit;
  }
  return minus ? 0u - total : total;
}
