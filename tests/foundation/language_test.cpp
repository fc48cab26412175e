#include "foundation/language.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "tests/support/klib_test.h"

namespace {

std::string Decoded(const char* line) {
  char buffer[256];
  strcpy(buffer, line);
  return DecodeLanguageLine(buffer) ? buffer : "<skipped>";
}

TEST(LanguageLine, CommentsAndLinesWithoutAKeyAreSkipped) {
  EXPECT_EQ(Decoded(""), "<skipped>");
  EXPECT_EQ(Decoded("; 25=comment"), "<skipped>");
  EXPECT_EQ(Decoded("no equals sign"), "<skipped>");
  EXPECT_EQ(Decoded("=starts with equals"), "<skipped>");
  EXPECT_EQ(Decoded("Name=value = more"), "Name=value = more");
}

TEST(LanguageLine, QuotesAtTheStartOfTheValueAndTheEndOfTheLine) {
  EXPECT_EQ(Decoded("25=\"Yes to all\""), "25=Yes to all");
  // Only the closing quote goes when the value does not start with one.
  EXPECT_EQ(Decoded("26=say \"hi\""), "26=say \"hi");
  EXPECT_EQ(Decoded("27=\" padded \""), "27= padded ");
  EXPECT_EQ(Decoded("28=\"open only"), "28=open only");
  EXPECT_EQ(Decoded("29=a\"b"), "29=a\"b");
}

TEST(LanguageLine, Escapes) {
  EXPECT_EQ(Decoded("1=a\\tb\\nc\\rd\\ae\\bf"), "1=a\tb\nc\rd\ae\bf");
  EXPECT_EQ(Decoded("2=\\x41\\x7a\\101\\061"), "2=AzA1");
  // Any other character stands for itself; an unfinished \x keeps its 'x'.
  EXPECT_EQ(Decoded("3=\\\\ \\q \\\" \\xZ1 \\4"), "3=\\ q \" xZ1 4");
  // A '\' at the end of the line ends it.
  EXPECT_EQ(Decoded("4=end\\"), "4=end");
  EXPECT_EQ(Decoded("5=\\0411"), "5=!1");
}

class LanguageTest : public KLibTest {
 protected:
  void TearDown() override {
    UnloadLanguage();
    KLibTest::TearDown();
  }
  void Load(const std::string& text) {
    std::string path = testing::TempDir() + "quill_language_test.lng";
    for (char& c : path) {
      if (c == '\\') c = '/';
    }
    std::ofstream(path, std::ios::binary) << text;
    LoadLanguageFile(path.c_str());
    std::remove(path.c_str());
  }
};

TEST_F(LanguageTest, LookupByNumberAndNameTakesTheFirstEntry) {
  Load(
      "; English\r\n"
      "124=Build\r\n"
      "124=Second\r\n"
      "12=Twelve\r\n"
      "DlgFind=300\r\n"
      "DlgFindMore=400\r\n"
      "1245=Other\r\n");
  EXPECT_STREQ(LanguageText(124), "Build");
  EXPECT_STREQ(LanguageText(12), "Twelve");
  EXPECT_STREQ(LanguageText(1), "");
  EXPECT_STREQ(LanguageTextByName("DlgFind"), "300");
  EXPECT_STREQ(LanguageTextByName("DlgFindMore"), "400");
  EXPECT_STREQ(LanguageTextByName("Dlg"), "");
}

TEST_F(LanguageTest, LongAndBinaryLinesDoNotOverflow) {
  std::string text = "1=" + std::string(10000, 'x') + "\n2=two\n";
  text += std::string("3=a\0b\n", 6);
  text += "4=\xff\xfe\x01\n";
  Load(text);
  EXPECT_EQ(strlen(LanguageText(1)), 4093u);
  EXPECT_STREQ(LanguageText(2), "two");
  EXPECT_STREQ(LanguageText(3), "a");
}

TEST_F(LanguageTest, GetStrPrefersTheLanguageThenTheTableThenTheNumber) {
  EXPECT_STREQ(GetStr(80), "Quill");
  EXPECT_STREQ(GetStr(81), "\xea\xb5\xb4\xeb\xa6\xbc\xec\xb2\xb4");
  const char* unknown = GetStr(123);
  EXPECT_STREQ(unknown, "(123)");
  // The same text, from the cache, every later time.
  EXPECT_EQ(GetStr(123), unknown);
  Load("50080=Quill (English)\n50027=Cancel\n");
  EXPECT_STREQ(GetStr(80), "Quill (English)");
  EXPECT_STREQ(GetStr(27), "Cancel");
  UnloadLanguage();
  EXPECT_STREQ(GetStr(27), "\xec\xb7\xa8\xec\x86\x8c");
  // The cache is the library's: it goes at shutdown, and the fixture sees nothing leak.
  FreeStringCache();
}

}  // namespace
