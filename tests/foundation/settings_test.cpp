// The settings store against a file of the test's own. The same tests run against the POSIX
// profile code natively and against the system's profile functions under Wine.
#include "foundation/settings.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/klib_test.h"

namespace {

std::string TempPath(const std::string& name) {
  std::string path = testing::TempDir() + name;
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return path;
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

class SettingsTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    path_ = TempPath("quill_settings_test.ini");
    std::remove(path_.c_str());
    ASSERT_TRUE(SetSettingsPath(path_.c_str()));
  }
  void TearDown() override {
    std::remove(path_.c_str());
    KLibTest::TearDown();
  }
  std::string Str(const char* section, const char* key, int size = 256) {
    std::string buffer(static_cast<size_t>(size), '#');
    int length = ReadStr(section, key, &buffer[0], size);
    EXPECT_EQ(length, static_cast<int>(strlen(buffer.c_str())));
    return buffer.c_str();
  }
  std::string path_;
};

TEST(SettingsPath, ExtensionReplacedAndShortNamesUpperCased) {
  char path[260];
  ASSERT_TRUE(MakeProfilePath("C:/Apps/quill.exe", "ini", path, sizeof path));
  EXPECT_STREQ(path, "C:/Apps/QUILL.INI");
  ASSERT_TRUE(MakeProfilePath("C:/Apps/my editor.exe", "ini", path, sizeof path));
  EXPECT_STREQ(path, "C:/Apps/my editor.ini");
  ASSERT_TRUE(MakeProfilePath("/opt/quill.d/quill", "log", path, sizeof path));
  EXPECT_STREQ(path, "/opt/quill.d/QUILL.LOG");
  ASSERT_TRUE(MakeProfilePath("/x/quilleditor.exe", "ini", path, sizeof path));
  EXPECT_STREQ(path, "/x/quilleditor.ini");
  ASSERT_TRUE(MakeProfilePath("/x/a+b.exe", "ini", path, sizeof path));
  EXPECT_STREQ(path, "/x/a+b.ini");
  EXPECT_FALSE(MakeProfilePath("/x/quill.exe", "ini", path, 10));
}

TEST_F(SettingsTest, NamesIgnoreCaseAndValuesAreTrimmedAndUnquoted) {
  WriteFile(path_,
            "; a comment\r\n"
            "[Config]\r\n"
            "  Language = English  \r\n"
            "Quoted=\"  two blanks  \"\r\n"
            "Single='x'\r\n"
            "HalfQuoted=say \"hi\"\r\n"
            "Empty=\r\n"
            "NoValue\r\n"
            "[Other]\r\n"
            "Language=Other\r\n");
  EXPECT_EQ(Str("config", "LANGUAGE"), "English");
  EXPECT_EQ(Str("Config", "Quoted"), "  two blanks  ");
  EXPECT_EQ(Str("Config", "Single"), "x");
  EXPECT_EQ(Str("Config", "HalfQuoted"), "say \"hi\"");
  EXPECT_EQ(Str("Other", "language"), "Other");
  // An empty value is there, but the integer reading takes the default.
  char buffer[16];
  EXPECT_EQ(ReadStrDef("Config", "Empty", buffer, sizeof buffer, "dflt"), 0);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(ReadInt("Config", "Empty", 7), 7);
  // A key without '=' and missing keys, sections and files give the default, less its trailing
  // blanks.
  EXPECT_EQ(ReadStrDef("Config", "NoValue", buffer, sizeof buffer, "d1"), 2);
  EXPECT_STREQ(buffer, "d1");
  EXPECT_EQ(ReadStrDef("Config", "Missing", buffer, sizeof buffer, "abc  "), 3);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(ReadInt("Nowhere", "Language", -5), -5);
  ASSERT_TRUE(SetSettingsPath(TempPath("quill_no_such_file.ini").c_str()));
  EXPECT_EQ(ReadInt("Config", "Language", 12), 12);
  EXPECT_EQ(Str("Config", "Language"), "");
}

TEST_F(SettingsTest, FirstSectionAndFirstKeyOfANameWin) {
  WriteFile(path_, "[A]\nk=1\nK=2\n[B]\nk=3\n[a]\nk=4\nj=5\n");
  EXPECT_EQ(ReadInt("A", "k", 0), 1);
  EXPECT_EQ(ReadInt("B", "k", 0), 3);
}

TEST_F(SettingsTest, IntegerParseOfTheProfile) {
  WriteFile(path_,
            "[N]\na=  42xyz\nb=-7\nc=0x1F\nd=abc\ne=+5\nf=4294967295\ng=0b101\nh=12 34\n"
            "i=00000000000000000000000000001234\n");
  EXPECT_EQ(ReadInt("N", "a", 0), 42);
  EXPECT_EQ(ReadInt("N", "b", 0), -7);
  EXPECT_EQ(ReadInt("N", "c", 0), 31);
  EXPECT_EQ(ReadInt("N", "d", 9), 0);
  EXPECT_EQ(ReadInt("N", "e", 0), 5);
  EXPECT_EQ(ReadInt("N", "f", 0), -1);
  EXPECT_EQ(ReadInt("N", "g", 0), 5);
  EXPECT_EQ(ReadInt("N", "h", 0), 12);
  // Only the first 29 characters are read.
  EXPECT_EQ(ReadInt("N", "i", 0), 1);
}

TEST_F(SettingsTest, ReadsAreCutToTheBuffer) {
  WriteFile(path_, "[S]\nk=abcdef\n");
  EXPECT_EQ(Str("S", "k", 4), "abc");
  char one[1] = {'#'};
  EXPECT_EQ(ReadStr("S", "k", one, 1), 0);
  EXPECT_EQ(one[0], '\0');
}

TEST_F(SettingsTest, WritingCreatesWhatIsMissingAndKeepsEveryOtherLine) {
  ASSERT_TRUE(WriteStr("Config", "First", "1"));
  EXPECT_EQ(ReadFile(path_), "[Config]\r\nFirst=1\r\n");
  WriteFile(path_,
            "; keep me\r\n"
            "[Config]\r\n"
            "Alpha=1\r\n"
            "Beta=2\r\n"
            "\r\n"
            "[Other]\r\n"
            "Gamma=3\r\n");
  ASSERT_TRUE(WriteStr("config", "beta", "two"));
  ASSERT_TRUE(WriteStr("Config", "Delta", "4"));
  ASSERT_TRUE(WriteStr("New", "Key", "v"));
  EXPECT_EQ(Str("Config", "Beta"), "two");
  EXPECT_EQ(Str("Config", "Delta"), "4");
  EXPECT_EQ(Str("New", "Key"), "v");
  std::string text = ReadFile(path_);
  EXPECT_NE(text.find("; keep me\r\n"), std::string::npos);
  EXPECT_NE(text.find("Alpha=1\r\n"), std::string::npos);
  EXPECT_NE(text.find("Gamma=3\r\n"), std::string::npos);
  EXPECT_EQ(text.find("Beta=2"), std::string::npos);
  // The new key joins its section, before the next one.
  EXPECT_LT(text.find("Delta=4"), text.find("[Other]"));
}

TEST_F(SettingsTest, WriteNumsLeavesOutTrailingMarkers) {
  WriteNums("DlgPos", "Four", 10, -20, 300, 400);
  WriteNums("DlgPos", "Three", 1, 2, 3);
  WriteNums("DlgPos", "Two", 5, 6);
  WriteNums("DlgPos", "One", 7);
  WriteNums("DlgPos", "Inner", 1, kOmitNum, 3);
  EXPECT_EQ(Str("DlgPos", "Four"), "10 -20 300 400");
  EXPECT_EQ(Str("DlgPos", "Three"), "1 2 3");
  EXPECT_EQ(Str("DlgPos", "Two"), "5 6");
  EXPECT_EQ(Str("DlgPos", "One"), "7");
  EXPECT_EQ(Str("DlgPos", "Inner"), "1 2147483647 3");
}

TEST_F(SettingsTest, TextValuesGoThroughTheSystemCodePage) {
  ASSERT_TRUE(WriteText("Config", "HanFontName", "\xea\xb5\xb4\xeb\xa6\xbc\xec\xb2\xb4"));
  char buffer[64];
  EXPECT_EQ(ReadText("Config", "HanFontName", buffer, sizeof buffer, ""), 9);
  EXPECT_STREQ(buffer, "\xea\xb5\xb4\xeb\xa6\xbc\xec\xb2\xb4");
#ifdef _WIN32
  // On the file as the Korean code page has it.
  EXPECT_NE(ReadFile(path_).find("HanFontName=\xb1\xbc\xb8\xb2\xc3\xbc"), std::string::npos);
#endif
  EXPECT_EQ(ReadText("Config", "Missing", buffer, sizeof buffer, "\xea\xb0\x80"), 3);
  EXPECT_STREQ(buffer, "\xea\xb0\x80");
  WriteStr("List", "0", "zero");
  WriteStr("List", "1", "one");
  EXPECT_EQ(ReadIndexed("List", 1, buffer, sizeof buffer), 3);
  EXPECT_STREQ(buffer, "one");
}

TEST_F(SettingsTest, AnotherFileByIndex) {
  std::string project = TempPath("quill_settings_project.prj");
  std::remove(project.c_str());
  WriteToFile(project.c_str(), "Files", "0", "main.c");
  WriteToFile(project.c_str(), "Files", "1", nullptr);
  char buffer[32];
  EXPECT_EQ(ReadFromFile(project.c_str(), "Files", 0, buffer, sizeof buffer), 6);
  EXPECT_STREQ(buffer, "main.c");
  EXPECT_EQ(ReadFromFile(project.c_str(), "Files", 1, buffer, sizeof buffer), 0);
  EXPECT_EQ(ReadFromFile(project.c_str(), "Files", 2, buffer, sizeof buffer), 0);
  std::remove(project.c_str());
}

}  // namespace
