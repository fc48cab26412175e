// The string code view: the codes of a text in every form against Python's codecs (cp949, johab,
// utf-8), C literals that compile to the same bytes, and codes read back into text.
#include <gtest/gtest.h>

#include <string>

#include "foundation/memory.h"
#include "foundation/unicode.h"
#include "tests/support/klib_test.h"
#include "tools/string_code.h"

namespace {

class StringCodeTest : public KLibTest {
 protected:
  std::string View(const std::u16string& text) {
    char* out = StringCodeText(text.data(), static_cast<int>(text.size()));
    EXPECT_NE(out, nullptr);
    std::string result = out ? out : "";
    FreeMem(out);
    return result;
  }
  // The one line of the view that starts with `label`, without its line end.
  std::string Line(const std::u16string& text, const std::string& label) {
    std::string view = View(text);
    size_t at = view.find("\r\n" + label);
    if (at == std::string::npos) return "(no " + label + ")";
    at += 2;
    return view.substr(at, view.find("\r\n", at) - at);
  }
};

TEST_F(StringCodeTest, ShowsEveryFormOfOneSyllable) {
  EXPECT_EQ(View(u"가"),
            "글자 1개\r\n"
            "UTF-16: AC00\r\n"
            "UTF-8: EA B0 80\r\n"
            "EUC-KR: B0 A1\r\n"
            "조합형: 88 61\r\n"
            "C 문자열 (EUC-KR): \"\\xB0\\xA1\"\r\n"
            "C 문자열 (조합형): \"\\x88\\x61\"\r\n"
            "C 문자열 (UTF-16): L\"\\uAC00\"\r\n"
            "C 문자열 (UTF-8): u8\"\\xEA\\xB0\\x80\"\r\n");
}

TEST_F(StringCodeTest, AgreesWithTheCodecsAndMarksWhatAFormCannotHold) {
  struct Case {
    std::u16string text;
    const char* euc;
    const char* johab;
    const char* utf8;
  };
  const Case kCases[] = {
      {u"똠", " 8C 63", " 99 B1", " EB 98 A0"},  // beyond KS X 1001's 2,350 syllables
      {u"·ㄱ한A", " A1 A4 A4 A1 C7 D1 41", " D9 34 88 41 D0 65 41", " C2 B7 E3 84 B1 ED 95 9C 41"},
      {u"é", " --  (1자는 나타낼 수 없음: --)", " --  (1자는 나타낼 수 없음: --)", " C3 A9"},
      {u"\U0001F600가", " -- B0 A1  (1자는 나타낼 수 없음: --)",
       " -- 88 61  (1자는 나타낼 수 없음: --)", " F0 9F 98 80 EA B0 80"},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(Line(c.text, "EUC-KR:"), std::string("EUC-KR:") + c.euc);
    EXPECT_EQ(Line(c.text, "조합형:"), std::string("조합형:") + c.johab);
    EXPECT_EQ(Line(c.text, "UTF-8:"), std::string("UTF-8:") + c.utf8);
  }
  EXPECT_EQ(Line(u"\U0001F600", "UTF-16:"), "UTF-16: D83D DE00");
  EXPECT_EQ(Line(u"\U0001F600", "C 문자열 (UTF-16)"), "C 문자열 (UTF-16): L\"\\U0001F600\"");
}

TEST_F(StringCodeTest, LiteralsStayCorrectC) {
  // A hexadecimal escape would swallow a following hex digit: the literal is split there.
  EXPECT_EQ(Line(u"가A가g", "C 문자열 (EUC-KR)"),
            "C 문자열 (EUC-KR): \"\\xB0\\xA1\" \"A\\xB0\\xA1g\"");
  // Quotes, backslashes and controls are escaped; octal escapes end by themselves.
  EXPECT_EQ(Line(u"\"\\\t\x01"
                 u"7",
                 "C 문자열 (UTF-8)"),
            "C 문자열 (UTF-8): u8\"\\\"\\\\\\t\\0017\"");
  // What EUC-KR cannot hold becomes '?', as a conversion would write it.
  EXPECT_EQ(Line(u"é가", "C 문자열 (EUC-KR)"), "C 문자열 (EUC-KR): \"?\\xB0\\xA1\"");
}

TEST_F(StringCodeTest, ALoneSurrogateIsShownNotEncoded) {
  std::u16string lone = {0xD800, u'a', 0xDC00};
  EXPECT_EQ(Line(lone, "UTF-16:"), "UTF-16: D800 0061 DC00");
  EXPECT_EQ(Line(lone, "UTF-8:"), "UTF-8: -- 61 --  (2자는 나타낼 수 없음: --)");
  EXPECT_EQ(Line(lone, "C 문자열 (UTF-16)"), "C 문자열 (UTF-16): L\"\\xD800\" \"a\\xDC00\"");
  EXPECT_EQ(View(lone).substr(0, 11), "글자 3개");
}

TEST_F(StringCodeTest, ReadsCodesBackIntoText) {
  struct Case {
    std::u16string input;
    const char* start;  // the view's first line
  };
  const Case kCases[] = {
      {u"\\xB0\\xA1", "EUC-KR(으)로 읽으면: 가"},
      {u"\"\\xB0\\xA1\\xC7\\xD1\"", "EUC-KR(으)로 읽으면: 가한"},
      {u"88 61", "EUC-KR(으)로 읽으면: 늏"},
      {u"0xAC00", "텍스트: 가"},
      {u"L\"\\uAC00\\uD55C\"", "텍스트: 가한"},
      {u"U+1F600, U+41",
       "텍스트: \xF0\x9F\x98\x80"
       "A"},
      {u"AC00 D55C", "텍스트: 가한"},
      // Not codes: words, a mix of bare and marked codes, odd lengths.
      {u"BEEF", "글자 4개"},
      {u"AC00 0x41", "글자 9개"},
      {u"ABC12", "글자 5개"},
      {u"\\uAC0", "글자 5개"},
  };
  for (const Case& c : kCases) {
    std::string view = View(c.input);
    EXPECT_EQ(view.substr(0, view.find("\r\n")), c.start);
  }
  // Every reading of bytes, each checked against its encoding.
  EXPECT_EQ(View(u"\\x88\\x61"),
            "EUC-KR(으)로 읽으면: 늏\r\n조합형(으)로 읽으면: 가\r\n"
            "UTF-8(으)로 읽으면: (올바른 코드가 아님)\r\n");
  EXPECT_EQ(View(u"EA B0 80"),
            "EUC-KR(으)로 읽으면: (올바른 코드가 아님)\r\n"
            "조합형(으)로 읽으면: (올바른 코드가 아님)\r\nUTF-8(으)로 읽으면: 가\r\n");
  // A pair written as one \U code reads back as the pair; a lone surrogate as itself.
  EXPECT_EQ(Line(u"\\U0001F600", "UTF-16:"), "UTF-16: D83D DE00");
  EXPECT_EQ(Line(u"\\uD800", "UTF-16:"), "UTF-16: D800");
}

TEST_F(StringCodeTest, LongAndEmptyInputs) {
  std::u16string text;
  for (int i = 0; i < 10000; ++i)
    text += static_cast<char16_t>(0xAC00 + i);
  std::string view = View(text);
  EXPECT_EQ(view.substr(0, view.find("\r\n")), "글자 10000개");
  EXPECT_NE(view.find("UTF-16: AC00 AC01"), std::string::npos);
  EXPECT_NE(view.find(" D30F\r\n"), std::string::npos);  // the last of them
  EXPECT_EQ(View(u"").substr(0, 9), "선택한");
}

}  // namespace
