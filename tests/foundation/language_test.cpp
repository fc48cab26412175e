#include "foundation/language.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "foundation/fileutil.h"

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

TEST_F(LanguageTest, AFileWithAByteOrderMarkIsReadAsUtf8) {
  // "취소" in UTF-8 stays as it is; without the mark the same bytes would be taken as the system
  // code page (949 here under Wine), and the first key would carry the mark.
  Load("\xEF\xBB\xBF" "50027=\xEC\xB7\xA8\xEC\x86\x8C\r\n50080=Quill \\x41\r\n");
  EXPECT_STREQ(LanguageText(50027), "\xEC\xB7\xA8\xEC\x86\x8C");
  EXPECT_STREQ(LanguageText(50080), "Quill A");
  // A mark anywhere but at the start is text of the line.
  Load("50080=x\n\xEF\xBB\xBF" "50027=y\n");
  EXPECT_STREQ(LanguageText(50027), "");
}

TEST(LanguageName, OnlyShortNamesWithoutSeparators) {
  struct Case {
    const char* name;
    bool valid;
  } cases[] = {
      {"English", true},
      {"", false},
      {"12345678901234567890123456789012", true},    // 32 characters
      {"123456789012345678901234567890123", false},  // 33
      // 32 Hangul syllables are 96 bytes but 32 characters.
      {"\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C"
       "\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C"
       "\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C"
       "\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C\xED\x95\x9C",
       true},
      {"..\\quill", false},
      {"../quill", false},
      {"sub/English", false},
      {"C:English", false},
      {"..", true},  // "LANGUAGE/...lng" is still inside the folder
  };
  for (const Case& c : cases)
    EXPECT_EQ(IsLanguageName(c.name), c.valid) << c.name;
}

// Files in the program's folder, removed again whatever the test's outcome.
class ProgramFolderFiles : public LanguageTest {
 protected:
  void SetUp() override {
    LanguageTest::SetUp();
    char folder[kPathSize];
    ASSERT_GT(ProgramFolder(folder, sizeof folder), 0);
    folder_ = folder;
  }
  void TearDown() override {
    for (auto it = made_.rbegin(); it != made_.rend(); ++it)
      std::remove(it->c_str());
    if (!folderMade_.empty()) FolderRemove(folderMade_.c_str());
    LanguageTest::TearDown();
  }
  void Write(const std::string& relative, const std::string& text) {
    std::string path = folder_ + "/" + relative;
    std::ofstream(path, std::ios::binary) << text;
    made_.push_back(path);
  }
  void MakeFolder(const std::string& relative) {
    // Kept when it was there already: the Windows build ships LANGUAGE beside the tests.
    if (FolderCreate((folder_ + "/" + relative).c_str())) folderMade_ = folder_ + "/" + relative;
  }
  std::string folder_, folderMade_;
  std::vector<std::string> made_;
};

TEST_F(ProgramFolderFiles, OnlyFilesInsideLanguageAreLoadedAndListed) {
  MakeFolder("LANGUAGE");
  Write("quilltest_outside.lng", "50027=Outside\n");
  const std::string longest(32, 'q'), tooLong(33, 'q');
  Write("LANGUAGE/" + longest + ".lng", "50027=Longest\n");
  Write("LANGUAGE/" + tooLong + ".lng", "50027=Too long\n");
  for (const char* name : {"../quilltest_outside", "..\\quilltest_outside", tooLong.c_str()}) {
    LoadLanguage(name);
    EXPECT_STREQ(LanguageText(50027), "") << name;
  }
  LoadLanguage(longest.c_str());
  EXPECT_STREQ(LanguageText(50027), "Longest");

  // 500 language files, one name too long to be stored, and files that are not language files.
  for (int i = 0; i < 500; ++i)
    Write("LANGUAGE/quilltest" + std::to_string(i) + ".LnG", "");
  Write("LANGUAGE/quilltest.txt", "");
  Write("LANGUAGE/quilltest.lng.bak", "");
  std::vector<std::string> names;
  auto add = [](const char* name, void* context) {
    static_cast<std::vector<std::string>*>(context)->push_back(name);
  };
  int count = ListLanguageFiles(folder_.c_str(), add, &names);
  EXPECT_EQ(count, static_cast<int>(names.size()));
  // Only the files of this test (the folder may hold the shipped ones too).
  names.erase(std::remove_if(names.begin(), names.end(),
                             [](const std::string& name) { return name[0] != 'q'; }),
              names.end());
  std::sort(names.begin(), names.end());
  ASSERT_EQ(names.size(), 501u);  // the 500 and the 32-character one
  EXPECT_EQ(names.front(), longest);
  EXPECT_TRUE(std::binary_search(names.begin(), names.end(), "quilltest0"));
  EXPECT_TRUE(std::binary_search(names.begin(), names.end(), "quilltest499"));
  EXPECT_FALSE(std::binary_search(names.begin(), names.end(), tooLong));
  EXPECT_FALSE(std::binary_search(names.begin(), names.end(), "quilltest.lng"));
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
