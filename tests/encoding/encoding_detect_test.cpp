// The four detection tests at their boundaries, and the loader's choice on real Korean text in
// every encoding (made with Python's codecs, detect_samples.inc).
#include "encoding/encoding_detect.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "encoding/text_encoding.h"

namespace {

#include "tests/encoding/detect_samples.inc"

bool Utf16(const std::u16string& units) {
  return DetectUtf16(units.data(), static_cast<int>(units.size()));
}
bool Utf8(const std::string& bytes) {
  return DetectUtf8(bytes.data(), static_cast<int>(bytes.size()));
}
bool EucKr(const std::string& bytes) {
  return DetectEucKr(bytes.data(), static_cast<int>(bytes.size()));
}
bool Johab(const std::string& bytes) {
  return DetectJohab(bytes.data(), static_cast<int>(bytes.size()));
}
bool Prefers(const std::string& bytes) {
  return PrefersJohab(bytes.data(), static_cast<int>(bytes.size()));
}

// What opening the bytes would choose; the loader reads files into aligned blocks, and so does
// this copy.
int Opened(const char* bytes, int length, int* bom) {
  std::u16string aligned((length + 1) / 2, u'\0');
  std::memcpy(&aligned[0], bytes, static_cast<size_t>(length));
  return DetectTextEncoding(reinterpret_cast<const char*>(aligned.data()), length, EUCKR, bom);
}

TEST(EncodingDetect, Utf16NeedsNinetyPercentRounded) {
  EXPECT_FALSE(Utf16(u""));
  // 179 of 200 is 89.5 %, rounded to 90; 178 of 200 is 89 %.
  EXPECT_TRUE(Utf16(std::u16string(179, u'a') + std::u16string(21, u'\u4E00')));
  EXPECT_FALSE(Utf16(std::u16string(178, u'a') + std::u16string(22, u'\u4E00')));
  // Hangul syllables count as plain, 127 and the letters do not.
  EXPECT_TRUE(Utf16(u"가힣"));
  EXPECT_FALSE(Utf16(u"\x7F\u3131"));
}

TEST(EncodingDetect, Utf8ByTheLeadByteRule) {
  EXPECT_TRUE(Utf8(""));
  EXPECT_TRUE(Utf8("plain ASCII"));
  EXPECT_TRUE(Utf8("\xEA\xB0\x80"));
  EXPECT_TRUE(Utf8("\xFC\x84\x80\x80\x80\x80"));  // the old six-byte form
  EXPECT_TRUE(Utf8("ok\xEA\xB0"));                // ends inside a sequence
  EXPECT_FALSE(Utf8("\x80"));
  EXPECT_FALSE(Utf8("\xFE\x80"));
  EXPECT_FALSE(Utf8("\xEA\x41\x80"));
  EXPECT_FALSE(Utf8("\xB0\xA1"));  // EUC-KR 가
}

TEST(EncodingDetect, EucKrLeadAndTrailRanges) {
  EXPECT_TRUE(EucKr(""));
  EXPECT_TRUE(EucKr("\xB0\xA1\x81\x41"));
  EXPECT_TRUE(EucKr("ok\xB0"));  // ends after a lead
  EXPECT_FALSE(EucKr("\x80\x41"));
  EXPECT_FALSE(EucKr("\xFF\x41"));
  EXPECT_FALSE(EucKr("\xB0\x5B"));
  EXPECT_FALSE(EucKr("\xB0\x60"));
  EXPECT_FALSE(EucKr("\xB0\x7B"));
  EXPECT_FALSE(EucKr("\xB0\x80"));
  EXPECT_FALSE(EucKr("\xB0 "));
  EXPECT_TRUE(EucKr("\xB0\x61\xB0\x7A\xB0\xFE"));
}

TEST(EncodingDetect, JohabQuarterOfThePairsAndTheBoxPairs) {
  EXPECT_FALSE(Johab(""));
  EXPECT_FALSE(Johab("plain"));
  // One hit in four pairs is 25 %; one in five is not.
  EXPECT_TRUE(Johab("\x88\x61\xE0\xE0\xE0\xE0\xE0\xE0"));
  EXPECT_FALSE(Johab("\x88\x61\xE0\xE0\xE0\xE0\xE0\xE0\xE0\xE0"));
  // Doubled box characters count neither way: alone they make no pair at all...
  EXPECT_FALSE(Johab(std::string(400, '\xC4')));
  EXPECT_FALSE(
      Johab(std::string(100, '\xDB') + std::string(100, '\xDF') + std::string(100, '\xDC')));
  // ... and among other pairs they do not dilute the hits.
  EXPECT_TRUE(Johab(std::string(400, '\xC4') + "\x88\x61\xE0\xE0\xE0\xE0\xE0\xE0"));
  // Another doubled byte is an ordinary pair.
  EXPECT_FALSE(Johab(std::string(400, '\xB3') + "\x88\x61"));
}

TEST(EncodingDetect, MarksThenTheTestsInOrderThenTheDefault) {
  int bom = -1;
  EXPECT_EQ(DetectTextEncoding("\xFF\xFE"
                               "a\0",
                               4, EUCKR, &bom),
            UTF16);
  EXPECT_EQ(bom, 2);
  EXPECT_EQ(DetectTextEncoding("\xEF\xBB\xBF\xB0\xA1", 5, EUCKR, &bom), UTF8);
  EXPECT_EQ(bom, 3);
  EXPECT_EQ(DetectTextEncoding("abcd", 4, EUCKR, &bom), UTF8);
  EXPECT_EQ(bom, 0);
  EXPECT_EQ(DetectTextEncoding("\x80\x80\x80", 3, JOHAP, &bom), JOHAP);
  EXPECT_EQ(DetectTextEncoding("\x80\x80\x80", 3, UTF16, &bom), UTF16);
}

TEST(EncodingDetect, RealKoreanTextInEveryEncoding) {
  struct Expected {
    const char* name;
    int encoding;
    int bom;
  };
  const Expected expected[] = {
      {"korean_euckr.txt", EUCKR, 0},
      {"korean_johab.txt", JOHAP, 0},
      {"korean_utf8.txt", UTF8, 0},
      {"korean_utf16.txt", UTF16, 0},
      {"korean_utf16bom.txt", UTF16, 2},
      {"korean_utf8bom.txt", UTF8, 3},
      {"source_euckr.c", EUCKR, 0},
      {"source_utf8.c", UTF8, 0},
      {"source_utf16.c", UTF16, 0},
      {"boxes_johab.txt", JOHAP, 0},
      // Two Korean comments in ASCII-heavy Johab pass the EUC-KR test as well.
      {"source_johab.c", JOHAP, 0},
  };
  for (const Expected& want : expected) {
    const DetectSample* sample = nullptr;
    for (const DetectSample& candidate : kDetectSamples) {
      if (std::string(candidate.name) == want.name) sample = &candidate;
    }
    ASSERT_NE(sample, nullptr) << want.name;
    int bom = -1;
    EXPECT_EQ(Opened(sample->bytes, sample->length, &bom), want.encoding) << want.name;
    EXPECT_EQ(bom, want.bom) << want.name;
  }
}

// Each line alone: EUC-KR stays EUC-KR, Johab is Johab wherever its own test passes, also when
// the EUC-KR test passes too (most Johab lines). Forum slang in the code page's extra syllables
// passes both tests and reads as rare Johab syllables: it stays EUC-KR.
TEST(EncodingDetect, KoreanLinesAloneInBothEncodings) {
  int bothPass = 0;
  for (const DetectLine& line : kDetectLines) {
    std::string bytes(line.bytes, static_cast<size_t>(line.length));
    int bom = -1;
    int opened = Opened(line.bytes, line.length, &bom);
    if (line.written == EUCKR) {
      EXPECT_EQ(opened, EUCKR) << line.name;
    } else {
      EXPECT_EQ(opened, Johab(bytes) ? JOHAP : EUCKR) << line.name;
      if (EucKr(bytes) && Johab(bytes)) ++bothPass;
    }
  }
  EXPECT_GE(bothPass, 20);
  const DetectLine& slang = kDetectLines[sizeof kDetectLines / sizeof kDetectLines[0] - 1];
  std::string bytes(slang.bytes, static_cast<size_t>(slang.length));
  ASSERT_TRUE(EucKr(bytes) && Johab(bytes)) << slang.name;
  EXPECT_FALSE(Prefers(bytes));
}

TEST(EncodingDetect, JohabNeedsFourPairsNineInTenEveryday) {
  const std::string hangul = "\xD0\x65\x8B\x69\xCC\x61\xB7\xA9";  // 한글파일 in Johab
  const std::string nine =
      "\x88\x61\x90\x61\x94\x61\x9C\x61\xA0\x61\xA4\x61\xAC\x61\xB4\x61\xB8\x61";  // 가나다라마바사아자
  const std::string rare = "\xC1\x64";  // a syllable that KS X 1001 leaves out
  const std::string box(20, '\xC4');
  struct Case {
    std::string bytes;
    bool johab;
  } cases[] = {
      {hangul, true},
      {hangul.substr(0, 6), false},              // three pairs are too few
      {hangul.substr(0, 6) + rare, false},       // three in four everyday
      {nine + rare, true},                       // nine in ten
      {nine.substr(2) + rare, false},            // eight in nine
      {box + hangul.substr(0, 6) + box, false},  // box pairs count neither way
      {box + hangul + box, true},
      {hangul + "\x88\x42", false},                    // a letter with a final but no vowel
      {hangul + "\xD9\x7F", false},                    // between the symbol rows' halves
      {hangul + "\xD9", false},                        // a lead at the end
      {hangul + "\xD9\x31\xE0\x31 a \x88\x41", true},  // a symbol, a hanja, a lone letter
  };
  for (const Case& c : cases)
    EXPECT_EQ(Prefers(c.bytes), c.johab) << testing::PrintToString(c.bytes);
  int bom = -1;
  EXPECT_TRUE(EucKr(hangul) && Johab(hangul));
  EXPECT_EQ(Opened(hangul.data(), static_cast<int>(hangul.size()), &bom), JOHAP);
  EXPECT_EQ(Opened(hangul.data(), 4, &bom), EUCKR);
}

TEST(EncodingNames, ExactNamesOnly) {
  EXPECT_EQ(ParseEncodingName("JOHAP", 0), JOHAP);
  EXPECT_EQ(ParseEncodingName("EUCKR", 0), EUCKR);
  EXPECT_EQ(ParseEncodingName("UTF8", 0), UTF8);
  EXPECT_EQ(ParseEncodingName("UTF16", 0), UTF16);
  EXPECT_EQ(ParseEncodingName("utf8", 7), 7);
  EXPECT_EQ(ParseEncodingName("UTF-8", 7), 7);
  EXPECT_EQ(ParseEncodingName(nullptr, 7), 7);
  EXPECT_STREQ(EncodingName(EUCKR), "EUCKR");
  EXPECT_EQ(EncodingName(0), nullptr);
}

}  // namespace
