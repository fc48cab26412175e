// The lead-byte rule that both the UTF-8 test and the UTF-8 decoder follow.
#pragma once

// Continuation bytes that a lead byte announces (up to 5, the old 6-byte forms included); -1 for
// a byte that cannot lead.
inline int Utf8TrailCount(unsigned char lead) {
  if (lead < 0x80) return 0;
  if (lead < 0xC0) return -1;
  if (lead < 0xE0) return 1;
  if (lead < 0xF0) return 2;
  if (lead < 0xF8) return 3;
  if (lead < 0xFC) return 4;
  if (lead < 0xFE) return 5;
  return -1;
}

inline bool IsUtf8Continuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}
