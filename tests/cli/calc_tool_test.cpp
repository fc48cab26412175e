// quill-tool's calculator, binary-to-source and error-lookup commands from the outside.
#include <gtest/gtest.h>

#include "tests/support/tool_run.h"
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

TEST(CalcTool, ShowsWhatTheIntegerCalculatorShows) {
  ToolRun run = Tool("calc '1 == 1 * 1 + 1'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "= 2\r\n= 0x2\n");
  EXPECT_EQ(Tool("calc 2 + 3 '*' 4").out, "= 14\r\n= 0xE\n");  // arguments joined by blanks
  EXPECT_EQ(Tool("calc -1").out, "= -1\r\n= 0xFFFFFFFF\n");
  EXPECT_EQ(Tool("calc ''").out, "Ex)\r\n0x23 & (45 | 13) + ~123 + 'A' + 0123\r\n\n");
}

TEST(CalcTool, AnExpressionErrorShowsItsMessageAndFails) {
  ToolRun run = Tool("calc '(1+2'");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "')'부족\n");
  EXPECT_EQ(Tool("calc 'sqrt(-4)'").out, "계산 불가 (Overflow)\n");
  EXPECT_EQ(Tool("calc").status, 2);
}

class Bin2SrcTool : public ::testing::Test {
 protected:
  void SetUp() override {
    input_ = testing::TempDir() + "quill_tool_b2s.bin";
    std::ofstream(input_, std::ios::binary) << "ABCDE";
    for (const char* extension : {".c", ".asm", ".java", ".out"})
      std::remove(Stem(extension).c_str());
  }
  void TearDown() override {
    std::remove(input_.c_str());
    for (const char* extension : {".c", ".asm", ".java", ".out"})
      std::remove(Stem(extension).c_str());
  }
  std::string Stem(const char* extension) {
    return testing::TempDir() + "quill_tool_b2s" + extension;
  }
  std::string input_;
};

TEST_F(Bin2SrcTool, ConvertsBesideTheInputAndOverwritesOnlyWhenForced) {
  ToolRun run = Tool("bin2src --line-len 2 " + input_);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, Stem(".c") + "\n");
  const std::string kC =
      "static CONST BYTE quill_tool_b2s[]=\r\n    {\r\n"
      "    0x41,0x42,\r\n    0x43,0x44,\r\n    0x45,\r\n    };\r\n";
  EXPECT_EQ(ReadFile(Stem(".c")), kC);
  std::ofstream(input_, std::ios::binary) << "Z";
  EXPECT_EQ(Tool("bin2src " + input_).status, 1);
  EXPECT_EQ(ReadFile(Stem(".c")), kC);
  EXPECT_EQ(Tool("bin2src --force " + input_).status, 0);
  EXPECT_EQ(ReadFile(Stem(".c")),
            "static CONST BYTE quill_tool_b2s[]=\r\n    {\r\n    0x5A,\r\n    };\r\n");
}

TEST_F(Bin2SrcTool, OptionsOfTheDialog) {
  // OUT takes the language's extension too.
  ToolRun run = Tool("bin2src --lang asm --size 2 --swap --skip 1 " + input_ + " " + Stem(".out"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, Stem(".asm") + "\n");
  EXPECT_EQ(ReadFile(Stem(".asm")), "\tdw\t4243h,4445h\r\n");
  EXPECT_EQ(Tool("bin2src --lang java --form signed --size 4 --format '%d ' " + input_).status, 0);
  EXPECT_EQ(ReadFile(Stem(".java")),
            "static final int quill_tool_b2s[]=\r\n    {\r\n    1145258561 ,69 ,\r\n    };\r\n");
}

TEST_F(Bin2SrcTool, FailuresAndUsageErrors) {
  EXPECT_EQ(Tool("bin2src /nonexistent/in.bin").status, 1);
  EXPECT_EQ(Tool("bin2src --format %s " + input_).status, 1);
  EXPECT_EQ(Tool("bin2src").status, 2);
  EXPECT_EQ(Tool("bin2src --lang pascal " + input_).status, 2);
  EXPECT_EQ(Tool("bin2src --size 3 " + input_).status, 2);
  EXPECT_EQ(Tool("bin2src --lang java --form unsigned " + input_).status, 2);
  EXPECT_EQ(Tool("bin2src --line-len 99999999 " + input_).status, 2);
  EXPECT_EQ(Tool("bin2src --line-len " + input_).status, 2);
  EXPECT_EQ(Tool("bin2src a b c").status, 2);
}

TEST(ErrMsgTool, NeedsTheWindowsMessageTable) {
  ToolRun run = Tool("errmsg 5");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(Tool("errmsg").status, 2);
}

}  // namespace
