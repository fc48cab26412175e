#include <string>

#include "csource/makefile_pp.h"
#include "tests/csource/csource_fixture.h"

// The compiler options a project's makefile gives, read the way the build tool reads them.
using MakefileTest = CSourceTest;

TEST_F(MakefileTest, MacrosConditionsAndCompilerOptions) {
  Write("VC9/CONSOLE.mak",
        "C_OPTION=/nologo $(ADD_C_OPT) /DCOMPILER=9\n"
        "!IF $(LEVEL) > 2 # high\n"
        "C_OPTION = $(C_OPTION) /DHIGH\n"
        "!ElseIf defined(LEVEL)\n"
        "C_OPTION = $(C_OPTION) /DLOW\n"
        "!endif\n"
        "!include $(VCPATH)/CONSOLE.mak\n"
        "\tcl $(C_OPTION) $*.c\n");
  std::string mak = Write("prj/t.mak",
                          "LEVEL=1\n"
                          "ADD_C_OPT=/DNODEFAULTLIB /DNAME=1 /I..\\inc /I. \\\n /Isub\n"
                          "!INCLUDE $(VCPATH)\\CONSOLE.mak\n"
                          "!endif\n");
  TextBuffer sink;
  InitText(&sink, 1);
  std::string vc = folder_ + "/VC9";
  char* options = ReadCompilerOptions(vc.c_str(), mak.c_str(), &sink);
  ASSERT_NE(options, nullptr);
  EXPECT_STREQ(options, "/nologo /DNODEFAULTLIB /DNAME=1 /I..\\inc /I.   /Isub /DCOMPILER=9 /DLOW");
  EXPECT_EQ(std::string(TextOf(&sink)), "Unexpected '#endif'\r\n");
  char includes[4096] = "";
  ScanCompilerOptions(&table_, options, (folder_ + "/prj").c_str(), includes, sizeof includes);
  EXPECT_EQ(std::string(includes), folder_ + "/inc;" + folder_ + "/prj;" + folder_ + "/prj/sub");
  EXPECT_EQ(Body("NODEFAULTLIB"), "");
  EXPECT_STREQ(Find("NAME")->source, "MAKEFILE");
  EXPECT_EQ(Body("NAME"), "1");
  EXPECT_EQ(Body("LOW"), "");
  // Once a quote is seen the option runs to the end of the text.
  ScanCompilerOptions(&table_, "/DQ=\"a/b\" /DLATE /I C:/abs", "/p", includes, sizeof includes);
  EXPECT_EQ(Body("Q"), "\"a/b\"");
  EXPECT_EQ(Find("LATE"), nullptr);
  FreeMem(options);
  FreeText(&sink);
}

TEST_F(MakefileTest, MacrosThatGrowWithoutEndAreCutOff) {
  auto options = [this](const std::string& text) {
    std::string mak = Write("grow.mak", text);
    TextBuffer sink;
    InitText(&sink, 1);
    char* block = ReadCompilerOptions(folder_.c_str(), mak.c_str(), &sink);
    std::string result = block ? block : "(null)";
    FreeMem(block);
    FreeText(&sink);
    return result;
  };
  // A macro doubled on every line would reach 2^60 bytes: it stops near 64 KB.
  std::string doubling = "X=ab\n";
  for (int i = 0; i < 60; ++i)
    doubling += "X=$(X)$(X)\n";
  std::string grown = options(doubling + "C_OPTION=$(X)\n");
  EXPECT_GE(grown.size(), size_t{1} << 16);
  EXPECT_LT(grown.size(), size_t{1} << 18);
  EXPECT_EQ(grown.substr(0, 6), "ababab");
  // Two macros naming each other twice over would take 2^32 references: the expansion ends.
  std::string mutual = options("A=$(B)x$(B)\nB=$(A)$(A)\nC_OPTION=$(A)\n");
  EXPECT_GT(mutual.size(), size_t{1000});
  EXPECT_EQ(mutual.find_first_not_of('x'), std::string::npos);
  // A makefile that includes itself twice would be read 2^16 times: 64 reads, then one message.
  std::string self =
      Write("self.mak", "N=$(N)n\n!include self.mak\n!include self.mak\nC_OPTION=$(N)\n");
  TextBuffer sink;
  InitText(&sink, 1);
  char* block = ReadCompilerOptions(folder_.c_str(), self.c_str(), &sink);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::string(block), std::string(64, 'n'));
  std::string messages = TextOf(&sink);
  EXPECT_EQ(messages.find("too many makefiles"), messages.rfind("too many makefiles"));
  EXPECT_NE(messages.find("too many makefiles"), std::string::npos);
  FreeMem(block);
  FreeText(&sink);
}
