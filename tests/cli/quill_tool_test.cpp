// quill-tool from the outside: its output, line ends and exit status.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include "foundation/version.h"
#include "tests/support/tool_run.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

TEST(QuillTool, FormatsWithTheProgramsFormatter) {
  ToolRun run = Tool("format '%s: %,d bytes, %05d, %.02d%%, %ws' s:Size 1234567 -42 12300 w:한글");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Size: 1,234,567 bytes, 00-42, 123.00%, 한글\n");
  EXPECT_EQ(Tool("format '%q %d' 1 2").out, "%q 2\n");
  EXPECT_EQ(Tool("format '[%c|%s]' c:Z null").out, "[Z|<null>]\n");
}

TEST(QuillTool, BoundedFormatPrintsTheTruncatedTextAndTheSizeNeeded) {
  ToolRun run = Tool("format --size 10 %s s:abcdefghijklmnopqrst");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "abcdefghi\n21\n");
  EXPECT_EQ(Tool("format --size 0 %d 5").out, "\n2\n");
}

TEST(QuillTool, HexDumpUsesTheLogFormatWithItsLineEnds) {
  std::string path = testing::TempDir() + "quill_tool_dump.bin";
  std::ofstream(path, std::ios::binary) << "0123456789ABCDEFxyz";
  ToolRun run = Tool("hexdump " + path);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "0000: 30 31 32 33 34 35 36 37-38 39 41 42 43 44 45 46   0123456789ABCDEF\r\n"
            "0010: 78 79 7A" +
                std::string(42, ' ') + "xyz\r\n");
}

TEST(QuillTool, IniReadsAndWritesLikeTheSettingsStore) {
  std::string path = testing::TempDir() + "quill_tool_settings.ini";
  std::ofstream(path, std::ios::binary) << "; mine\r\n[Config]\r\n UseSelfFontFg = 0x10 \r\n";
  EXPECT_EQ(Tool("ini int " + path + " config useselffontfg 5").out, "16\n");
  EXPECT_EQ(Tool("ini int " + path + " Config Missing 5").out, "5\n");
  EXPECT_EQ(Tool("ini set " + path + " Config Language English").status, 0);
  EXPECT_EQ(Tool("ini get " + path + " CONFIG LANGUAGE").out, "English\n");
  EXPECT_EQ(Tool("ini get " + path + " Config Missing 'dflt  '").out, "dflt\n");
  std::ifstream file(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  EXPECT_EQ(text, "; mine\r\n[Config]\r\n UseSelfFontFg = 0x10 \r\nLanguage=English\r\n");
  EXPECT_EQ(Tool("ini frob " + path + " a b").status, 2);
}

TEST(QuillTool, LanguageEntriesAndStringTableTexts) {
  std::string path = testing::TempDir() + "quill_tool_language.lng";
  std::ofstream(path, std::ios::binary) << "; English\n25=\"Yes to all\"\n25=Second\n"
                                           "DlgFind=300\n50080=Quill EN\n";
  EXPECT_EQ(Tool("lang " + path + " 25").out, "Yes to all\n");
  EXPECT_EQ(Tool("lang " + path + " DlgFind").out, "300\n");
  EXPECT_EQ(Tool("lang " + path + " 7").out, "\n");
  EXPECT_EQ(Tool("str 80").out, "Quill\n");
  EXPECT_EQ(Tool("str 80 " + path).out, "Quill EN\n");
  EXPECT_EQ(Tool("str 123").out, "(123)\n");
  EXPECT_EQ(Tool("str x").status, 2);
}

TEST(QuillTool, FailuresAndUsageErrorsHaveTheirOwnStatus) {
  EXPECT_EQ(Tool("hexdump /nonexistent/file").status, 1);
  EXPECT_EQ(Tool("").status, 2);
  EXPECT_EQ(Tool("frobnicate").status, 2);
  EXPECT_EQ(Tool("format %d notanumber").status, 2);
  EXPECT_EQ(Tool("format").status, 2);
  EXPECT_EQ(Tool("--version extra").status, 2);
}

TEST(QuillTool, VersionIsTheProgramsOne) {
  ToolRun run = Tool("--version");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "quill-tool " QUILL_VERSION_TEXT "\n");
  EXPECT_NE(RunTool("", true).out.find("--version"), std::string::npos);  // the usage names it
}

}  // namespace
