// The Korean code page 949 on POSIX, as tables built once from the system's CP949 converter, so
// that a line converts without a converter call per character and bad bytes are replaced the way
// the Windows code page replaces them instead of failing the whole line.
#include "foundation/os_codepage_korean.h"

#include <iconv.h>
#include <pthread.h>

namespace {

constexpr unsigned kFirstLead = 0x81;
constexpr unsigned kLastLead = 0xFE;
constexpr char16_t kDefaultUnit = u'?';
constexpr unsigned char kDefaultByte = '?';
// Single bytes outside ASCII that the Windows table maps through to private units.
constexpr char16_t kUnitOf80 = 0x0080;
constexpr char16_t kUnitOfFF = 0xF8F7;

struct KoreanTables {
  char16_t pairs[kLastLead - kFirstLead + 1][256];  // 0: no character
  unsigned short codes[65536];                      // 0: no code
};

KoreanTables g_tables;
pthread_once_t g_tablesOnce = PTHREAD_ONCE_INIT;

char16_t DecodePair(iconv_t cd, unsigned lead, unsigned trail) {
  char in[2] = {static_cast<char>(lead), static_cast<char>(trail)};
  char16_t out[2];
  char* inPtr = in;
  char* outPtr = reinterpret_cast<char*>(out);
  size_t inLeft = 2;
  size_t outLeft = sizeof out;
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1)) return 0;
  return inLeft == 0 && outLeft == sizeof out - 2 ? out[0] : 0;
}

void BuildTables() {
  for (unsigned unit = 0; unit < 0x80; ++unit)
    g_tables.codes[unit] = static_cast<unsigned short>(unit);
  g_tables.codes[kUnitOf80] = 0x80;
  g_tables.codes[kUnitOfFF] = 0xFF;
  iconv_t cd = iconv_open("UTF-16LE", "CP949");
  if (cd == reinterpret_cast<iconv_t>(-1)) return;
  for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
    for (unsigned trail = 0x41; trail <= 0xFE; ++trail) {
      char16_t unit = DecodePair(cd, lead, trail);
      if (!unit || unit < 0x80) continue;
      g_tables.pairs[lead - kFirstLead][trail] = unit;
      if (!g_tables.codes[unit])
        g_tables.codes[unit] = static_cast<unsigned short>(lead << 8 | trail);
    }
  }
  iconv_close(cd);
}

const KoreanTables& Tables() {
  pthread_once(&g_tablesOnce, BuildTables);
  return g_tables;
}

}  // namespace

int KoreanToWide(const char* source, int sourceLength, char16_t* target, int targetSize) {
  const KoreanTables& tables = Tables();
  const unsigned char* data = reinterpret_cast<const unsigned char*>(source);
  int written = 0;
  for (int i = 0; i < sourceLength; ++written) {
    unsigned byte = data[i++];
    char16_t unit;
    if (byte < 0x80) {
      unit = static_cast<char16_t>(byte);
    } else if (byte == 0x80) {
      unit = kUnitOf80;
    } else if (byte == 0xFF) {
      unit = kUnitOfFF;
    } else if (i == sourceLength) {
      unit = kDefaultUnit;  // a lead with nothing behind it
    } else {
      // A lead takes the next byte with it even when the pair means nothing.
      unit = tables.pairs[byte - kFirstLead][data[i++]];
      if (!unit) unit = kDefaultUnit;
    }
    if (targetSize > 0) {
      if (written >= targetSize) return 0;  // short target: fails as a whole, as on Windows
      target[written] = unit;
    }
  }
  return written;
}

int WideToKorean(const char16_t* source, int sourceLength, char* target, int targetSize) {
  const KoreanTables& tables = Tables();
  int written = 0;
  for (int i = 0; i < sourceLength; ++i) {
    unsigned code = tables.codes[source[i]];
    if (!code && source[i] != 0) code = kDefaultByte;
    int length = code > 0xFF ? 2 : 1;
    if (targetSize > 0) {
      if (written + length > targetSize) return 0;
      if (length == 2) target[written++] = static_cast<char>(code >> 8);
      target[written++] = static_cast<char>(code & 0xFF);
    } else {
      written += length;
    }
  }
  return written;
}
