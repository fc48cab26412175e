// The text of a profile (INI) file, read and edited the way the system's private-profile
// functions do: sections and keys without regard to ASCII case, blanks around keys and values
// trimmed, the first section and the first key of a name winning, "\r\n" or "\n" line ends.
// The POSIX backend of the profile calls is built on these; they work on a buffer in memory.
#pragma once
#include <cstddef>

struct ProfileSpan {
  const char* text;
  size_t length;
};

// Finds the value of `key` in `section`. False when the section or the key is missing (a key
// written without '=' counts as missing). The span is the trimmed value, quotes included.
bool ProfileFindValue(const char* text, size_t length, const char* section, const char* key,
                      ProfileSpan* value);

// Removes one pair of matching quotes (' or ") around a value, as the reading call does.
ProfileSpan ProfileStripQuotes(ProfileSpan value);

// Copies `text` with `key` of `section` set to `value`: the key's line is replaced in place, a
// missing key is added after the last entry of its section, a missing section is added at the end.
// Every other line stays as it was. Returns the new length; with no target (or too small a
// target) only the length needed is returned.
size_t ProfileSetValue(const char* text, size_t length, const char* section, const char* key,
                       const char* value, char* target, size_t targetSize);

// The integer parse of the profile's integer reading: blanks, a sign, "0x", "0o" or "0b", digits
// until the first that does not fit; at most the first 29 characters count; wraps around.
unsigned ProfileParseInt(ProfileSpan value);
