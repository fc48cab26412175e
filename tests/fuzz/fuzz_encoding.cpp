// Arbitrary bytes through every decoder, the detection tests, and the units back through every
// encoder, each into a target of exactly the counted size (plus the Johab writer's terminator)
// so that the sanitizers see any write past it. Checks that the counts hold what the conversions
// write and that UTF-8 and Johab text read back the way it was written.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "encoding/encoding_detect.h"
#include "encoding/line_convert.h"
#include "foundation/library.h"
#include "foundation/unicode.h"

namespace {

using Decode = int (*)(const char*, int, char16_t*, int);
using DecodeCount = int (*)(const char*, int);
using Encode = int (*)(const char16_t*, int, char*, int);
using EncodeCount = int (*)(const char16_t*, int);

std::vector<char16_t> DecodeExactly(DecodeCount count, Decode decode, const char* bytes, int size) {
  int needed = count(bytes, size);
  std::vector<char16_t> units(static_cast<size_t>(needed));
  int written = decode(bytes, size, units.data(), needed);
  if (written < 0 || written > needed) abort();
  units.resize(static_cast<size_t>(written));
  return units;
}

std::vector<char> EncodeExactly(EncodeCount count, Encode encode,
                                const std::vector<char16_t>& units, int extra) {
  int needed = count(units.data(), static_cast<int>(units.size())) + extra;
  std::vector<char> bytes(static_cast<size_t>(needed));
  int written = encode(units.data(), static_cast<int>(units.size()), bytes.data(), needed);
  if (written < 0 || written > needed) abort();
  bytes.resize(static_cast<size_t>(written));
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  if (size > 4096) return 0;  // lines are short; many small inputs find more
  const char* bytes = reinterpret_cast<const char*>(data);
  int count = static_cast<int>(size);

  int bom = 0;
  std::vector<char16_t> aligned(size / 2 + 1);
  memcpy(aligned.data(), data, size);
  int encoding = DetectTextEncoding(reinterpret_cast<const char*>(aligned.data()), count, 2, &bom);
  if (encoding < 1 || encoding > 4) abort();
  DetectJohab(bytes, count);

  std::vector<char16_t> johab =
      DecodeExactly(JohabLineToUtf16Count, JohabLineToUtf16, bytes, count);
  std::vector<char16_t> eucKr =
      DecodeExactly(EucKrLineToUtf16Count, EucKrLineToUtf16, bytes, count);
  std::vector<char16_t> utf8 = DecodeExactly(Utf8LineToUtf16Count, Utf8LineToUtf16, bytes, count);
  if (johab.size() != static_cast<size_t>(JohabLineToUtf16Count(bytes, count))) abort();
  if (utf8.size() != static_cast<size_t>(Utf8LineToUtf16Count(bytes, count))) abort();

  for (const std::vector<char16_t>* units : {&johab, &eucKr, &utf8}) {
    EncodeExactly(Utf16LineToEucKrCount, Utf16LineToEucKr, *units, 0);
    std::vector<char> asJohab = EncodeExactly(Utf16LineToJohabCount, Utf16LineToJohab, *units, 1);
    // With room for the count and the terminator, everything is written.
    if (asJohab.size() !=
        static_cast<size_t>(Utf16LineToJohabCount(units->data(), static_cast<int>(units->size()))))
      abort();
    std::vector<char> asUtf8 = EncodeExactly(Utf16LineToUtf8Count, Utf16LineToUtf8, *units, 0);
    // Units written as UTF-8 read back unchanged.
    std::vector<char16_t> again = DecodeExactly(Utf8LineToUtf16Count, Utf8LineToUtf16,
                                                asUtf8.data(), static_cast<int>(asUtf8.size()));
    if (again != *units) abort();
    // Johab written from units reads back as the same number of characters (a surrogate pair is
    // one), unless a unit 0x01 was written as the byte that Johab reads as a lead.
    bool hasLeadLike = false;
    for (char16_t unit : *units)
      hasLeadLike |= unit == 0x01;
    if (hasLeadLike) continue;
    std::vector<char16_t> reread = DecodeExactly(JohabLineToUtf16Count, JohabLineToUtf16,
                                                 asJohab.data(), static_cast<int>(asJohab.size()));
    size_t characters = 0;
    int length = static_cast<int>(units->size());
    for (int i = 0; i < length; i += CharacterUnits(units->data(), length, i))
      ++characters;
    if (reread.size() != characters) abort();
  }
  return 0;
}
