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

void AddPair(unsigned lead, unsigned trail, char16_t unit) {
  if (!unit || unit < 0x80) return;
  g_tables.pairs[lead - kFirstLead][trail] = unit;
  if (!g_tables.codes[unit]) g_tables.codes[unit] = static_cast<unsigned short>(lead << 8 | trail);
}

// Every pair of one lead in one converter call: a call per pair made the tables cost a tenth of
// a second at every start. A pair the converter refuses is skipped and the call goes on behind
// it; when the units do not come out one a pair, the lead is done pair by pair.
void BuildLead(iconv_t cd, unsigned lead) {
  constexpr unsigned kFirstTrail = 0x41;
  constexpr int kTrails = 0xFE - kFirstTrail + 1;
  char in[2 * kTrails];
  for (int i = 0; i < kTrails; ++i) {
    in[2 * i] = static_cast<char>(lead);
    in[2 * i + 1] = static_cast<char>(kFirstTrail + i);
  }
  char16_t out[kTrails];
  char16_t units[kTrails] = {};
  int pair = 0;
  bool regular = true;
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  while (pair < kTrails && regular) {
    char* inPtr = in + 2 * pair;
    size_t inLeft = sizeof in - 2 * static_cast<size_t>(pair);
    char* outPtr = reinterpret_cast<char*>(out);
    size_t outLeft = sizeof out;
    size_t result = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
    size_t consumed = sizeof in - 2 * static_cast<size_t>(pair) - inLeft;
    size_t produced = (sizeof out - outLeft) / 2;
    regular = consumed % 2 == 0 && produced == consumed / 2;
    for (size_t k = 0; regular && k < produced; ++k)
      units[pair + k] = out[k];
    pair += static_cast<int>(consumed / 2);
    if (result == static_cast<size_t>(-1)) {
      ++pair;  // the refused pair
      iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
  }
  for (int i = 0; i < kTrails; ++i) {
    unsigned trail = kFirstTrail + static_cast<unsigned>(i);
    AddPair(lead, trail, regular ? units[i] : DecodePair(cd, lead, trail));
  }
}

void BuildTables() {
  for (unsigned unit = 0; unit < 0x80; ++unit)
    g_tables.codes[unit] = static_cast<unsigned short>(unit);
  g_tables.codes[kUnitOf80] = 0x80;
  g_tables.codes[kUnitOfFF] = 0xFF;
  iconv_t cd = iconv_open("UTF-16LE", "CP949");
  if (cd == reinterpret_cast<iconv_t>(-1)) return;
  for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead)
    BuildLead(cd, lead);
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
  if (targetSize <= 0) {
    for (int i = 0; i < sourceLength; ++i) {
      unsigned code = tables.codes[source[i]];
      written += code > 0xFF ? 2 : 1;  // no code: the one default byte
    }
    return written;
  }
  for (int i = 0; i < sourceLength; ++i) {
    unsigned code = tables.codes[source[i]];
    if (!code && source[i] != 0) code = kDefaultByte;
    if (code > 0xFF) {
      if (written + 2 > targetSize) return 0;
      target[written++] = static_cast<char>(code >> 8);
    } else if (written + 1 > targetSize) {
      return 0;
    }
    target[written++] = static_cast<char>(code & 0xFF);
  }
  return written;
}
