#include "encoding/encoding_detect.h"

#include "encoding/text_encoding.h"
#include "encoding/utf8_rules.h"

namespace {

bool IsHangulSyllable(char16_t unit) {
  return unit >= 0xAC00 && unit <= 0xD7A3;
}

bool IsEucKrTrail(unsigned char byte) {
  return byte >= 0x41 && byte <= 0xFE && !(byte >= 0x5B && byte <= 0x60) &&
         !(byte >= 0x7B && byte <= 0x80);
}

bool IsJohabHitLead(unsigned char lead) {
  return (lead >= 0x88 && lead <= 0xD3) || (lead >= 0xD9 && lead <= 0xDE) ||
         (lead >= 0xE0 && lead <= 0xF9);
}

// Doubled box-drawing characters of DOS screens, which would otherwise read as Hangul.
bool IsBoxPair(unsigned char lead, unsigned char trail) {
  return lead == trail && (lead == 0xDB || lead == 0xC4 || lead == 0xDF || lead == 0xDC);
}

}  // namespace

bool DetectUtf16(const char16_t* units, int count) {
  if (count <= 0) return false;
  long long plain = 0;
  for (int i = 0; i < count; ++i) {
    if (units[i] < 127 || IsHangulSyllable(units[i])) ++plain;
  }
  long long percent = (plain * 100 + count / 2) / count;
  return percent >= 90;
}

bool DetectUtf8(const char* bytes, int count) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  for (int i = 0; i < count;) {
    int trail = Utf8TrailCount(data[i++]);
    if (trail < 0) return false;
    for (; trail > 0 && i < count; --trail, ++i) {
      if (!IsUtf8Continuation(data[i])) return false;
    }
  }
  return true;
}

bool DetectEucKr(const char* bytes, int count) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  for (int i = 0; i < count; ++i) {
    if (data[i] < 0x80) continue;
    if (data[i] == 0x80 || data[i] == 0xFF) return false;
    if (++i < count && !IsEucKrTrail(data[i])) return false;
  }
  return true;
}

bool DetectJohab(const char* bytes, int count) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  long long pairs = 0;
  long long hits = 0;
  for (int i = 0; i < count; ++i) {
    if (data[i] < 0x80) continue;
    unsigned char lead = data[i];
    // A lead at the very end has no trail: it counts as a pair that misses.
    unsigned char trail = ++i < count ? data[i] : 0;
    if (IsBoxPair(lead, trail)) continue;
    ++pairs;
    if (IsJohabHitLead(lead) && trail >= 0x31 && trail <= 0x7E) ++hits;
  }
  return pairs > 0 && hits * 100 / pairs >= 25;
}

int DetectTextEncoding(const char* bytes, int count, int unrecognised, int* bomLength) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  *bomLength = 0;
  if (count >= 2 && data[0] == 0xFF && data[1] == 0xFE) {
    *bomLength = 2;
    return UTF16;
  }
  if (count >= 3 && data[0] == 0xEF && data[1] == 0xBB && data[2] == 0xBF) {
    *bomLength = 3;
    return UTF8;
  }
  // The loader's buffer is aligned; the units are read in place as the file's UTF-16.
  if (DetectUtf16(reinterpret_cast<const char16_t*>(bytes), count / 2)) return UTF16;
  if (DetectUtf8(bytes, count)) return UTF8;
  if (DetectEucKr(bytes, count)) return EUCKR;
  if (DetectJohab(bytes, count)) return JOHAP;
  return unrecognised;
}
