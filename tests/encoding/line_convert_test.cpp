// The line conversions' own rules: Johab's lead bytes, the fallbacks, the bounded Johab writer,
// UTF-8 of old and odd forms, and EUC-KR through the Korean code page whatever the system's is.
#include "encoding/line_convert.h"

#include <gtest/gtest.h>

#include <string>

#include "encoding/johab.h"
#include "encoding/johab_special.h"
#include "tests/support/klib_test.h"

namespace {

std::u16string DecodeJohab(const std::string& bytes) {
  int count = JohabLineToUtf16Count(bytes.data(), static_cast<int>(bytes.size()));
  std::u16string units(static_cast<size_t>(count), u'\0');
  int written = JohabLineToUtf16(bytes.data(), static_cast<int>(bytes.size()), &units[0], count);
  EXPECT_EQ(written, count) << "the count form counts what the conversion writes";
  return units;
}

std::string EncodeJohab(const std::u16string& units, int targetSize) {
  std::string bytes(static_cast<size_t>(targetSize) + 4, '#');
  int written =
      Utf16LineToJohab(units.data(), static_cast<int>(units.size()), &bytes[0], targetSize);
  if (targetSize > 0) EXPECT_EQ(bytes[static_cast<size_t>(written)], '\0') << "terminated";
  EXPECT_EQ(bytes[static_cast<size_t>(targetSize)], '#') << "nothing past the target";
  return bytes.substr(0, static_cast<size_t>(written));
}

std::u16string DecodeUtf8(const std::string& bytes) {
  int count = Utf8LineToUtf16Count(bytes.data(), static_cast<int>(bytes.size()));
  std::u16string units(static_cast<size_t>(count), u'\0');
  EXPECT_EQ(Utf8LineToUtf16(bytes.data(), static_cast<int>(bytes.size()), &units[0], count), count);
  return units;
}

std::string EncodeUtf8(const std::u16string& units) {
  int count = Utf16LineToUtf8Count(units.data(), static_cast<int>(units.size()));
  std::string bytes(static_cast<size_t>(count), '\0');
  EXPECT_EQ(Utf16LineToUtf8(units.data(), static_cast<int>(units.size()), &bytes[0], count), count);
  return bytes;
}

std::u16string DecodeEucKr(const std::string& bytes, int targetSize) {
  std::u16string units(static_cast<size_t>(targetSize), u'\0');
  units.resize(static_cast<size_t>(
      EucKrLineToUtf16(bytes.data(), static_cast<int>(bytes.size()), &units[0], targetSize)));
  return units;
}

class LineConvert : public KLibTest {};

TEST_F(LineConvert, JohabSyllablesAndTheirArithmetic) {
  EXPECT_EQ(JohabToUnicode(0x8861, 0), u'가');
  unsigned last = UnicodeToJohab(0xD7A3, 0);
  EXPECT_EQ(JohabToUnicode(last, 0), 0xD7A3);
  // A code with fields outside their ranges is computed anyway, never the fallback.
  char16_t odd = JohabToUnicode(0x8800, 0x3000);
  EXPECT_NE(odd, 0x3000);
  EXPECT_LT(odd, 0xAC00);
}

TEST_F(LineConvert, BoxPairsAreReadButNeverWritten) {
  EXPECT_EQ(JohabToUnicode(0xC4C4, 0), 0x2500);
  EXPECT_EQ(JohabToUnicode(0xDFDF, 0), 0x25A0);
  EXPECT_EQ(JohabToUnicode(0xDCDC, 0), 0x25A0);
  EXPECT_EQ(JohabToUnicode(0xDBDB, 0), 0x25A9);
  EXPECT_NE(UnicodeToJohab(0x2500, 0), 0xC4C4u);  // written as the symbol row's code
  EXPECT_EQ(JohabToUnicode(UnicodeToJohab(0x2500, 0), 0), 0x2500);
  for (int i = kJohabBoxPairs; i < kJohabSpecialCount; ++i)
    EXPECT_EQ(UnicodeToJohab(kJohabSpecials[i].unit, 0), kJohabSpecials[i].code);
}

TEST_F(LineConvert, SymbolTablesAndFallbacks) {
  EXPECT_EQ(JohabToUnicode(0xD931, 0), 0x3000);
  EXPECT_EQ(JohabToUnicode(0xD933, 0), 0x3002);
  EXPECT_EQ(UnicodeToJohab(0x00A1, 0), 0xD9AEu);
  EXPECT_EQ(UnicodeToJohab(0xFFE6, 0), 0xDA6Cu);
  // The euro sign is newer than the symbol tables: read as the fallback, written through the
  // code page's KS X 1001 code.
  EXPECT_EQ(JohabToUnicode(0xD9E6, 0x3000), 0x3000);
  EXPECT_EQ(UnicodeToJohab(0x20AC, 0), 0xD9E6u);
  // No Johab code at all.
  EXPECT_EQ(UnicodeToJohab(0x0100, kJohabFallbackCode), kJohabFallbackCode);
  EXPECT_EQ(JohabToUnicode(0xD9FF, 0x3000), 0x3000);
}

TEST_F(LineConvert, JohabLineLeadBytes) {
  EXPECT_EQ(DecodeJohab("a\x88\x61z"), u"a가z");
  // 0x01 leads a pair: the old screens' box codes.
  EXPECT_EQ(DecodeJohab("\x01\x56\x01\x57"), u"\u2502\u2500");
  // A lead before a blank or a tab swallows it and gives the ideographic space.
  EXPECT_EQ(DecodeJohab("\x88 x\x88\tx"), u"\u3000x\u3000x");
  // A lead at the very end is a space.
  EXPECT_EQ(DecodeJohab("ab\x88"), u"ab ");
  EXPECT_EQ(DecodeJohab(""), u"");
}

TEST_F(LineConvert, JohabWriterIsBoundedAndTerminated) {
  EXPECT_EQ(EncodeJohab(u"a가", 8), "a\x88\x61");
  EXPECT_EQ(EncodeJohab(u"a\u0100b", 8),
            "a\xD9\x31"
            "b");  // unmappable unit
  // A pair needs more than 2 bytes left, a byte more than 1: the terminator always fits.
  EXPECT_EQ(EncodeJohab(u"가a", 3), "\x88\x61");
  EXPECT_EQ(EncodeJohab(u"가a", 2), "");
  EXPECT_EQ(EncodeJohab(u"ab", 2), "a");
  EXPECT_EQ(EncodeJohab(u"ab", 0), "");
  std::u16string line = u"가a\u0100";
  EXPECT_EQ(Utf16LineToJohabCount(line.data(), 3), 5);
}

TEST_F(LineConvert, Utf8OldFormsPairsAndBrokenSequences) {
  struct Case {
    std::string bytes;
    std::u16string units;
  } reads[] = {
      {"A\xEA\xB0\x80\xC3\xA9", u"A가é"},
      // Four bytes beyond the Basic Multilingual Plane are a surrogate pair, up to U+10FFFF.
      {"\xF0\x9F\x98\x80", u"\U0001F600"},
      {"\xF0\x90\x80\x80|\xF4\x8F\xBF\xBF", u"\U00010000|\U0010FFFF"},
      // Surrogates written unit by unit, three bytes each, read back as the pair they spell.
      {"\xED\xA0\xBD\xED\xB8\x80", u"\U0001F600"},
      // Beyond U+10FFFF, the old five- and six-byte forms included: one replacement character.
      {"\xF4\x90\x80\x80z", u"\uFFFDz"},
      {"\xF8\x88\x80\x80\x80z", u"\uFFFDz"},
      {"\xFC\x84\x80\x80\x80\x80z", u"\uFFFDz"},
      // A sequence cut short by the end or by a byte that does not continue it: every byte of it
      // stands for itself, and the byte that cut it is read afresh.
      {"a\xF0\x9F\x98", u"a\u00F0\u009F\u0098"},
      {"\xF0\x9F\x98z\xF0\x9F\x98\x80", u"\u00F0\u009F\u0098z\U0001F600"},
      {"\xF0\x9F\xEA\xB0\x80", u"\u00F0\u009F가"},
      {"a\xEA\xB0", u"a\u00EA\u00B0"},
      // Bytes that cannot lead; ASCII spelt the long way is not read as ASCII, so that no line
      // end can hide inside a line.
      {"\x80\xFF", u"\u0080\u00FF"},
      {"\xC0\x8A*", u"\u00C0\u008A*"},
      {"\xF0\x80\x80\x8D", u"\u00F0\u0080\u0080\u008D"},
  };
  for (const Case& c : reads)
    EXPECT_EQ(DecodeUtf8(c.bytes), c.units) << testing::PrintToString(c.bytes);
  Case writes[] = {
      {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", u"\x7F\x80\u07FF\u0800\uFFFF"},
      {"\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF", u"\U0001F600\U0010FFFF"},
      // A lone surrogate, or two the wrong way round, is written as the unit it is.
      {"\xED\xA0\xBD"
       "a\xED\xB8\x80",
       u"\xD83D"
       u"a\xDE00"},
      {"\xED\xB8\x80\xED\xA0\xBD", u"\xDE00\xD83D"},
  };
  for (const Case& c : writes) {
    EXPECT_EQ(EncodeUtf8(c.units), c.bytes);
    EXPECT_EQ(DecodeUtf8(c.bytes), c.units) << "reads back as written";
  }
}

TEST_F(LineConvert, Utf8WriterAndReaderKeepCharactersWhole) {
  std::u16string line = u"a가";
  char bytes[4] = {'#', '#', '#', '#'};
  EXPECT_EQ(Utf16LineToUtf8(line.data(), 2, bytes, 3), 1);
  EXPECT_EQ(bytes[1], '#');
  line = u"a\U0001F600";
  EXPECT_EQ(Utf16LineToUtf8(line.data(), 3, bytes, 4), 1);
  EXPECT_EQ(bytes[1], '#');
  char16_t units[2] = {u'#', u'#'};
  EXPECT_EQ(Utf8LineToUtf16("a\xF0\x9F\x98\x80", 5, units, 2), 1);
  EXPECT_EQ(units[1], u'#');
}

// Neither Korean code has a character beyond the Basic Multilingual Plane: a pair is one
// unmappable character, replaced once as Python's codecs replace it, not once for each unit.
TEST_F(LineConvert, PairsAreOneUnmappableCharacterInTheKoreanCodes) {
  std::u16string line = u"a\U0001F600b\U0001F600\U0001F600";
  int count = static_cast<int>(line.size());
  EXPECT_EQ(EncodeJohab(line, 16),
            "a\xD9\x31"
            "b\xD9\x31\xD9\x31");
  EXPECT_EQ(Utf16LineToJohabCount(line.data(), count), 8);
  char bytes[8] = {};
  EXPECT_EQ(Utf16LineToEucKrCount(line.data(), count), 5);
  ASSERT_EQ(Utf16LineToEucKr(line.data(), count, bytes, sizeof bytes), 5);
  EXPECT_EQ(std::string(bytes, 5), "a?b??");
  // A short target gets what fits.
  EXPECT_EQ(Utf16LineToEucKr(line.data(), count, bytes, 3), 3);
  EXPECT_EQ(Utf16LineToEucKr(line.data(), count, bytes, 1), 1);
  // A lone surrogate is an ordinary unmappable unit.
  EXPECT_EQ(EncodeJohab(u"\xD83D"
                        u"a",
                        8),
            "\xD9\x31"
            "a");
}

TEST_F(LineConvert, EucKrThroughTheKoreanCodePage) {
  EXPECT_EQ(DecodeEucKr("\xB0\xA1"
                        "a",
                        2),
            u"가a");
  std::u16string units = u"가a";
  char bytes[4] = {};
  ASSERT_EQ(Utf16LineToEucKr(units.data(), 2, bytes, sizeof bytes), 3);
  EXPECT_EQ(std::string(bytes, 3),
            "\xB0\xA1"
            "a");
  EXPECT_EQ(Utf16LineToEucKrCount(units.data(), 2), 3);
  // The count takes 0x01 and every byte of 0x80 or more as a lead of two bytes.
  EXPECT_EQ(EucKrLineToUtf16Count("\x01"
                                  "Aa\xB0\xA1\xB0",
                                  6),
            4);
  // 0x80 and 0xFF are characters of their own to the code page: more units than counted.
  EXPECT_EQ(EucKrLineToUtf16Count("\xFF"
                                  "re",
                                  3),
            2);
  EXPECT_EQ(DecodeEucKr("\xFF"
                        "re",
                        3),
            u"\uF8F7re");
  // A short target gets what fits instead of nothing.
  EXPECT_EQ(DecodeEucKr("\xB0\xA1\xB0\xA1\xB0\xA1", 2), u"가가");
}

TEST_F(LineConvert, EucKrBadBytesBecomeTheDefaultCharacter) {
  // A lead takes the byte behind it even when the pair means nothing; a lead at the end is alone.
  EXPECT_EQ(DecodeEucKr("\x81 x", 8), u"?x");
  EXPECT_EQ(DecodeEucKr("x\xB0", 8), u"x?");
  std::u16string units = u"a\u0E01";  // Thai: no code and no look-alike
  char bytes[4] = {};
  ASSERT_EQ(Utf16LineToEucKr(units.data(), 2, bytes, sizeof bytes), 2);
  EXPECT_EQ(std::string(bytes, 2), "a?");
}

}  // namespace
