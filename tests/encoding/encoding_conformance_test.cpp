// Every Hangul syllable, lone letter, KS X 1001 symbol and hanja through the converters, both ways,
// against what Python's johab, cp949 and utf-8 codecs say (encoding_vectors.inc).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "encoding/johab.h"
#include "encoding/johab_special.h"
#include "encoding/johab_symbols.h"
#include "encoding/line_convert.h"
#include "tests/support/klib_test.h"

namespace {

#include "tests/encoding/encoding_vectors.inc"

std::vector<unsigned> Codes(const char* hex) {
  std::vector<unsigned> codes;
  for (std::string text(hex); codes.size() * 4 < text.size();)
    codes.push_back(
        static_cast<unsigned>(std::stoul(text.substr(codes.size() * 4, 4), nullptr, 16)));
  return codes;
}

std::u16string Units(const std::vector<unsigned>& codes) {
  return std::u16string(codes.begin(), codes.end());
}

std::string PairBytes(const std::vector<unsigned>& codes) {
  std::string bytes;
  for (unsigned code : codes) {
    bytes += static_cast<char>(code >> 8);
    bytes += static_cast<char>(code & 0xFF);
  }
  return bytes;
}

std::string ToJohab(const std::u16string& units) {
  std::string bytes(
      static_cast<size_t>(Utf16LineToJohabCount(units.data(), static_cast<int>(units.size()))) + 1,
      '\0');
  bytes.resize(static_cast<size_t>(Utf16LineToJohab(units.data(), static_cast<int>(units.size()),
                                                    &bytes[0], static_cast<int>(bytes.size()))));
  return bytes;
}

std::string ToEucKr(const std::u16string& units) {
  std::string bytes(
      static_cast<size_t>(Utf16LineToEucKrCount(units.data(), static_cast<int>(units.size()))),
      '\0');
  bytes.resize(static_cast<size_t>(Utf16LineToEucKr(units.data(), static_cast<int>(units.size()),
                                                    &bytes[0], static_cast<int>(bytes.size()))));
  return bytes;
}

std::u16string FromJohab(const std::string& bytes) {
  std::u16string units(
      static_cast<size_t>(JohabLineToUtf16Count(bytes.data(), static_cast<int>(bytes.size()))),
      u'\0');
  units.resize(static_cast<size_t>(JohabLineToUtf16(bytes.data(), static_cast<int>(bytes.size()),
                                                    &units[0], static_cast<int>(units.size()))));
  return units;
}

std::u16string FromEucKr(const std::string& bytes) {
  std::u16string units(
      static_cast<size_t>(EucKrLineToUtf16Count(bytes.data(), static_cast<int>(bytes.size()))),
      u'\0');
  units.resize(static_cast<size_t>(EucKrLineToUtf16(bytes.data(), static_cast<int>(bytes.size()),
                                                    &units[0], static_cast<int>(units.size()))));
  return units;
}

// The first index where two sequences differ, for a readable failure.
template <typename Sequence>
size_t FirstDifference(const Sequence& a, const Sequence& b) {
  size_t i = 0;
  while (i < a.size() && i < b.size() && a[i] == b[i])
    ++i;
  return i;
}

// The doubled box characters of DOS screens are read as boxes although a few of their codes are
// also syllables or symbols; those codes are the one place where reading departs from the mapping.
bool IsBoxCode(unsigned code) {
  for (int i = 0; i < kJohabBoxPairs; ++i) {
    if (kJohabSpecials[i].code == code) return true;
  }
  return false;
}

// Johab bytes with every box code replaced by the unit it reads as.
std::u16string ExpectedFromJohab(const std::u16string& units, const std::vector<unsigned>& codes) {
  std::u16string expected = units;
  for (size_t i = 0; i < codes.size(); ++i) {
    if (IsBoxCode(codes[i])) expected[i] = JohabToUnicode(codes[i], 0);
  }
  return expected;
}

class EncodingConformance : public KLibTest {};

TEST_F(EncodingConformance, BoxCodesWinOverTheMapping) {
  EXPECT_EQ(JohabToUnicode(0xC4C4, 0), 0x2500);  // also the syllable U+CECB
  EXPECT_EQ(JohabToUnicode(0xDBDB, 0), 0x25A9);  // also the symbol U+2540
  EXPECT_EQ(UnicodeToJohab(0xCECB, 0), 0xC4C4u);
  EXPECT_EQ(UnicodeToJohab(0x2540, 0), 0xDBDBu);
}

TEST_F(EncodingConformance, SyllablesBothWaysInJohabAndEucKr) {
  std::vector<unsigned> units;
  for (unsigned unit = 0xAC00; unit <= 0xD7A3; ++unit)
    units.push_back(unit);
  std::vector<unsigned> johab = Codes(kSyllableJohab);
  ASSERT_EQ(johab.size(), static_cast<size_t>(kVectorSyllables));
  for (size_t i = 0; i < units.size(); ++i) {
    ASSERT_EQ(UnicodeToJohab(static_cast<char16_t>(units[i]), 0), johab[i]) << std::hex << units[i];
    if (!IsBoxCode(johab[i]))
      ASSERT_EQ(JohabToUnicode(johab[i], 0), units[i]) << std::hex << johab[i];
  }
  // The detection's bit set of the syllables KS X 1001 codes: those with two bytes from 0xA1 up.
  std::vector<unsigned> eucKr = Codes(kSyllableEucKr);
  int wrongBits = 0;
  for (size_t i = 0; i < units.size(); ++i) {
    bool ks = (eucKr[i] >> 8) >= 0xA1 && (eucKr[i] & 0xFF) >= 0xA1;
    wrongBits += ks != ((kKsSyllableBits[i / 32] >> (i % 32) & 1u) != 0);
  }
  EXPECT_EQ(wrongBits, 0);
  std::u16string line = Units(units);
  std::string expectedJohab = PairBytes(johab);
  std::string expectedEucKr = PairBytes(eucKr);
  EXPECT_EQ(FirstDifference(ToJohab(line), expectedJohab), expectedJohab.size());
  std::u16string read = ExpectedFromJohab(line, johab);
  EXPECT_EQ(FirstDifference(FromJohab(expectedJohab), read), read.size());
  EXPECT_EQ(FirstDifference(ToEucKr(line), expectedEucKr), expectedEucKr.size());
  EXPECT_EQ(FirstDifference(FromEucKr(expectedEucKr), line), line.size());
}

TEST_F(EncodingConformance, LoneLettersBothWays) {
  std::vector<unsigned> johab = Codes(kLetterJohab);
  std::vector<unsigned> eucKr = Codes(kLetterEucKr);
  ASSERT_EQ(johab.size(), static_cast<size_t>(kVectorLetters));
  for (int i = 0; i < kVectorLetters; ++i) {
    char16_t unit = static_cast<char16_t>(0x3131 + i);
    EXPECT_EQ(UnicodeToJohab(unit, 0), johab[i]) << std::hex << unit;
    EXPECT_EQ(JohabToUnicode(johab[i], 0), unit) << std::hex << johab[i];
    EXPECT_EQ(ToEucKr(std::u16string(1, unit)), PairBytes({eucKr[i]}));
    EXPECT_EQ(FromEucKr(PairBytes({eucKr[i]})), std::u16string(1, unit));
  }
}

TEST_F(EncodingConformance, SymbolRowsBothWays) {
  std::vector<unsigned> ksUnit = Codes(kSymbolKsUnit);
  std::vector<unsigned> written = Codes(kSymbolJohab);
  ASSERT_EQ(ksUnit.size(), static_cast<size_t>(2 * kVectorSymbols));
  for (int i = 0; i < kVectorSymbols; ++i) {
    unsigned ks = ksUnit[2 * i];
    char16_t unit = static_cast<char16_t>(ksUnit[2 * i + 1]);
    unsigned johab = KsToJohabCode(ks);
    EXPECT_EQ(JohabToKsCode(johab), ks) << std::hex << ks;
    if (!IsBoxCode(johab)) EXPECT_EQ(JohabToUnicode(johab, 0), unit) << std::hex << johab;
    EXPECT_EQ(UnicodeToJohab(unit, 0), written[i]) << std::hex << unit;
    EXPECT_EQ(ToEucKr(std::u16string(1, unit)), PairBytes({ks})) << std::hex << unit;
    EXPECT_EQ(FromEucKr(PairBytes({ks})), std::u16string(1, unit)) << std::hex << ks;
  }
}

TEST_F(EncodingConformance, HanjaBothWays) {
  std::vector<unsigned> units = Codes(kHanjaUnit);
  std::vector<unsigned> johab = Codes(kHanjaJohab);
  ASSERT_EQ(units.size(), static_cast<size_t>(kVectorHanja));
  std::vector<unsigned> ks;
  for (unsigned row = 0xCA; row <= 0xFD; ++row) {
    for (unsigned cell = 0xA1; cell <= 0xFE; ++cell)
      ks.push_back(row << 8 | cell);
  }
  for (int i = 0; i < kVectorHanja; ++i) {
    ASSERT_EQ(JohabToUnicode(johab[i], 0), units[i]) << std::hex << johab[i];
    ASSERT_EQ(UnicodeToJohab(static_cast<char16_t>(units[i]), 0), johab[i]) << std::hex << units[i];
  }
  std::u16string line = Units(units);
  std::string eucKr = PairBytes(ks);
  EXPECT_EQ(FirstDifference(ToEucKr(line), eucKr), eucKr.size());
  EXPECT_EQ(FirstDifference(FromEucKr(eucKr), line), line.size());
  EXPECT_EQ(FirstDifference(FromJohab(PairBytes(johab)), line), line.size());
}

// Below the symbol rows a code is a Johab code exactly when the mapping knows it (or it is one of
// the box codes); above, every mapped symbol and hanja is one.
TEST_F(EncodingConformance, JohabCodesAreTheMappedOnes) {
  std::vector<bool> mapped(0x10000);
  for (unsigned code : Codes(kSyllableJohab))
    mapped[code] = true;
  for (unsigned code : Codes(kLetterJohab))
    mapped[code] = true;
  for (int i = 0; i < kJohabSpecialCount; ++i)
    mapped[kJohabSpecials[i].code] = true;
  int wrong = 0;
  for (unsigned code = 0x8000; code <= 0xD8FF; ++code)
    wrong += IsJohabCode(code) != mapped[code];
  EXPECT_EQ(wrong, 0);
  int unknown = 0;
  for (unsigned code : Codes(kSymbolJohab))
    unknown += !IsJohabCode(code);
  for (unsigned code : Codes(kHanjaJohab))
    unknown += !IsJohabCode(code);
  EXPECT_EQ(unknown, 0);
  for (unsigned code : {0xD930u, 0xD97Fu, 0xD990u, 0xDF31u, 0xE0FFu, 0xFA31u})
    EXPECT_FALSE(IsJohabCode(code)) << std::hex << code;
}

unsigned Crc32(const std::string& bytes) {
  unsigned crc = 0xFFFFFFFF;
  for (unsigned char byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit)
      crc = crc >> 1 ^ (0xEDB88320 & (0u - (crc & 1)));
  }
  return ~crc;
}

TEST_F(EncodingConformance, EveryUnitThroughUtf8) {
  std::vector<unsigned> all;
  for (unsigned unit = 0xAC00; unit <= 0xD7A3; ++unit)
    all.push_back(unit);
  for (unsigned unit = 0x3131; unit <= 0x3163; ++unit)
    all.push_back(unit);
  std::vector<unsigned> ksUnit = Codes(kSymbolKsUnit);
  for (size_t i = 1; i < ksUnit.size(); i += 2)
    all.push_back(ksUnit[i]);
  for (unsigned unit : Codes(kHanjaUnit))
    all.push_back(unit);
  ASSERT_EQ(all.size(), static_cast<size_t>(kVectorUnits));
  std::u16string line = Units(all);
  int count = static_cast<int>(line.size());
  std::string utf8(static_cast<size_t>(Utf16LineToUtf8Count(line.data(), count)), '\0');
  ASSERT_EQ(Utf16LineToUtf8(line.data(), count, &utf8[0], static_cast<int>(utf8.size())),
            static_cast<int>(utf8.size()));
  EXPECT_EQ(Crc32(utf8), kUtf8Crc);
  std::u16string back(
      static_cast<size_t>(Utf8LineToUtf16Count(utf8.data(), static_cast<int>(utf8.size()))), u'\0');
  back.resize(static_cast<size_t>(Utf8LineToUtf16(utf8.data(), static_cast<int>(utf8.size()),
                                                  &back[0], static_cast<int>(back.size()))));
  EXPECT_EQ(FirstDifference(back, line), line.size());
  EXPECT_EQ(back.size(), line.size());
}

}  // namespace
