#include "foundation/formatter.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/support/klib_test.h"

namespace {

// The conversions of "ws" and "U8s" allocate, so the library is up for every test.
using FormatterTest = KLibTest;

template <typename... Args>
std::string Format(const char* format, Args... args) {
  char buffer[512];
  int needed = FormatStr(buffer, sizeof buffer, format, args...);
  std::string text(buffer);
  EXPECT_EQ(needed, static_cast<int>(text.size()) + 1) << format;
  return text;
}

TEST_F(FormatterTest, ThousandsGroupingOfDecimalAndHexadecimal) {
  EXPECT_EQ(Format("%,d", 1234567), "1,234,567");
  EXPECT_EQ(Format("%,d", -1234567), "-1,234,567");
  EXPECT_EQ(Format("%,d|%,d|%,d", 999, 1000, 0), "999|1,000|0");
  EXPECT_EQ(Format("%,u", 4294967295u), "4,294,967,295");
  EXPECT_EQ(Format("%,x", 0x12345678), "1234,5678");
  EXPECT_EQ(Format("%,X", 0xABCDE), "A,BCDE");
  EXPECT_EQ(Format("%,I64d", 1234567890123LL), "1,234,567,890,123");
}

TEST_F(FormatterTest, FixedPointScaleDropsOrKeepsTrailingZeros) {
  EXPECT_EQ(Format("%.2d", 12345), "123.45");
  EXPECT_EQ(Format("%.2d", 12300), "123");
  EXPECT_EQ(Format("%.2d", 12340), "123.4");
  EXPECT_EQ(Format("%.02d", 12300), "123.00");
  EXPECT_EQ(Format("%.01d%%", 125), "12.5%");
  EXPECT_EQ(Format("%.01d", 0), "0.0");
  EXPECT_EQ(Format("%0.01d", 7), "0.7");
  EXPECT_EQ(Format("%.2d", 5), "0.05");
  EXPECT_EQ(Format("%.3d", -5), "-0.005");
  EXPECT_EQ(Format("%.2d", 0), "0");
  // Grouping counts only the digits left of the point.
  EXPECT_EQ(Format("%,.2d", 123456789), "1,234,567.89");
  EXPECT_EQ(Format("%,.02d", 100000), "1,000.00");
}

TEST_F(FormatterTest, FieldsPadLeftOfTheSignAndPrefix) {
  EXPECT_EQ(Format("%05d", -42), "00-42");
  EXPECT_EQ(Format("%5d|%-5d|", 42, 42), "   42|42   |");
  EXPECT_EQ(Format("%-05d|", 42), "42   |");
  EXPECT_EQ(Format("%04X:%02X", 0x1234F, 7), "1234F:07");
  EXPECT_EQ(Format("%#X|%#x", 255, 255), "0xFF|0xff");
  EXPECT_EQ(Format("%#06X", 255), "000xFF");
  EXPECT_EQ(Format("%6s|%-6s|", "ab", "cd"), "    ab|cd    |");
  EXPECT_EQ(Format("%3c|%-3c|", 'x', 'y'), "  x|y  |");
  EXPECT_EQ(Format("%2d", 12345), "12345");
}

TEST_F(FormatterTest, IntegerLimitsAndSixtyFourBitArguments) {
  EXPECT_EQ(Format("%d", INT_MIN), "-2147483648");
  EXPECT_EQ(Format("%u", -1), "4294967295");
  EXPECT_EQ(Format("%x", -1), "ffffffff");
  // A 64-bit argument is taken whole, and the next conversion gets the next argument.
  EXPECT_EQ(Format("%I64d %d", -1LL, 7), "-1 7");
  EXPECT_EQ(Format("%lld", LLONG_MIN), "-9223372036854775808");
  EXPECT_EQ(Format("%I64u", ULLONG_MAX), "18446744073709551615");
  EXPECT_EQ(Format("%I64X", 0x123456789ABCDEF0ULL), "123456789ABCDEF0");
}

TEST_F(FormatterTest, CharactersAndStrings) {
  EXPECT_EQ(Format("[%c]", 'A'), "[A]");
  EXPECT_EQ(Format("[%c]", 0x141), "[A]");  // only the low byte
  EXPECT_EQ(Format("[%c]", 0), "[]");
  EXPECT_EQ(Format("%s|%s", "text", static_cast<const char*>(nullptr)), "text|<null>");
  EXPECT_EQ(Format("%ws", u"\ud55c\uae00 A"), "\xed\x95\x9c\xea\xb8\x80 A");
  EXPECT_EQ(Format("%ws", u"\U0001F600"), "\xf0\x9f\x98\x80");
  EXPECT_EQ(Format("%ws", u"x\xd800y"), "x\xef\xbf\xbdy");
  EXPECT_EQ(Format("%ws", static_cast<const char16_t*>(nullptr)), "<null>");
  EXPECT_EQ(Format("%-4ws|", u"ab"), "ab  |");
  EXPECT_EQ(Format("%U8s|%U8s", "plain", static_cast<const char*>(nullptr)), "plain|<null>");
}

TEST_F(FormatterTest, HangulToTheSystemCodePage) {
#ifdef _WIN32
  // Quill runs on Korean Windows: code page 949.
  EXPECT_EQ(Format("%U8s", "\xea\xb0\x80"), "\xb0\xa1");
#else
  EXPECT_EQ(Format("%U8s", "\xea\xb0\x80"), "\xea\xb0\x80");
#endif
}

TEST_F(FormatterTest, UnknownConversionsPrintLiterallyAndUseASlot) {
  EXPECT_EQ(Format("%q %d", 1, 2), "%q 2");
  EXPECT_EQ(Format("%f|%d", 1, 2), "%f|2");
  EXPECT_EQ(Format("%-5q|%d", 1, 2), "%-5q|2");
  EXPECT_EQ(Format("%I6d|%d", 1, 2), "%I6d|2");
  EXPECT_EQ(Format("100%%"), "100%");
  EXPECT_EQ(Format("ends in %"), "ends in %");
  EXPECT_EQ(Format("ends in %-0"), "ends in %-0");
}

TEST_F(FormatterTest, TruncationNeverWritesPastTheBuffer) {
  char buffer[16];
  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(FormatStr(buffer, 10, "%s", "abcdefghijklmnopqrst"), 21);
  EXPECT_STREQ(buffer, "abcdefghi");
  EXPECT_EQ(buffer[10], '#');

  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(FormatStr(buffer, 1, "%,d", 1234567), 10);
  EXPECT_EQ(buffer[0], '\0');
  EXPECT_EQ(buffer[1], '#');

  memset(buffer, '#', sizeof buffer);
  EXPECT_EQ(FormatStr(buffer, 0, "%d", 12), 3);
  EXPECT_EQ(buffer[0], '#');
  EXPECT_EQ(FormatStr(nullptr, 0, "%5s", "ab"), 6);

  // The size counts on through padding and conversions past the end.
  EXPECT_EQ(FormatStr(buffer, 4, "%8d%ws", 1, u"\ud55c"), 12);
  EXPECT_STREQ(buffer, "   ");
  EXPECT_EQ(FormatStr(buffer, sizeof buffer, nullptr), 1);
  EXPECT_STREQ(buffer, "");
}

}  // namespace
