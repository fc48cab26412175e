#include "encoding/encoding_detect.h"

#include <cstdint>
#include <cstring>

#include "encoding/johab.h"
#include "encoding/johab_symbols.h"
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

// Fewer pairs than this are too little to overrule the EUC-KR reading.
constexpr long long kJohabEvidencePairs = 4;

// A Johab code of the kind Korean text is made of: a syllable among the 2,350 that KS X 1001
// codes, or any letter, symbol or hanja code.
bool IsEverydayJohab(unsigned code) {
  if ((code >> 8) > 0xD3) return true;
  char16_t unit = JohabToUnicode(code, 0);
  if (!IsHangulSyllable(unit)) return true;
  unsigned index = unit - 0xAC00u;
  return (kKsSyllableBits[index / 32] >> (index % 32) & 1u) != 0;
}

// From `at`, past the bytes below 0x80 eight at a time: most of a source file is ASCII, which
// every byte test lets pass. Returns the first byte of 0x80 or more, or at most `count`.
int SkipAscii(const unsigned char* data, int count, int at) {
  for (; at + 8 <= count; at += 8) {
    uint64_t word;
    memcpy(&word, data + at, sizeof word);
    if (word & 0x8080808080808080ull) break;
  }
  while (at < count && data[at] < 0x80)
    ++at;
  return at;
}

}  // namespace

bool DetectUtf16(const char16_t* units, int count) {
  if (count <= 0) return false;
  constexpr int kBlock = 4096;
  long long plain = 0;
  for (int from = 0; from < count; from += kBlock) {
    int end = count - from > kBlock ? from + kBlock : count;
    int blockPlain = 0;
    for (int i = from; i < end; ++i) {
      unsigned unit = units[i];
      blockPlain += (unit < 127) | (unit - 0xAC00u <= 0xD7A3u - 0xAC00u);
    }
    plain += blockPlain;
    // Stop once even an all-plain rest could not reach the share: a byte file read as units
    // fails within its first tenth.
    if ((plain + (count - end)) * 100 + count / 2 < 90LL * count) return false;
  }
  long long percent = (plain * 100 + count / 2) / count;
  return percent >= 90;
}

bool DetectUtf8(const char* bytes, int count) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  for (int i = SkipAscii(data, count, 0); i < count; i = SkipAscii(data, count, i)) {
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
  for (int i = SkipAscii(data, count, 0); i < count; i = SkipAscii(data, count, i + 1)) {
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

bool PrefersJohab(const char* bytes, int count) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes);
  long long pairs = 0;
  long long everyday = 0;
  for (int i = 0; i < count; ++i) {
    if (data[i] < 0x80) continue;
    unsigned char lead = data[i];
    unsigned char trail = ++i < count ? data[i] : 0;
    if (IsBoxPair(lead, trail)) continue;
    unsigned code = static_cast<unsigned>(lead) << 8 | trail;
    if (!IsJohabCode(code)) return false;
    ++pairs;
    if (IsEverydayJohab(code)) ++everyday;
  }
  return pairs >= kJohabEvidencePairs && everyday * 10 >= pairs * 9;
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
  if (DetectEucKr(bytes, count)) {
    // The preference gives up at the first code that is not Johab, mostly within the first
    // Hangul of an EUC-KR file: it goes first.
    return PrefersJohab(bytes, count) && DetectJohab(bytes, count) ? JOHAP : EUCKR;
  }
  if (DetectJohab(bytes, count)) return JOHAP;
  return unrecognised;
}
