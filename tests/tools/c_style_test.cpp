// The coding-style converter: each rule on a small source, and on real code (the MinGW-w64
// headers of this machine and the program's own sources) the two promises: the tokens come out
// unchanged and in order, and a second conversion changes nothing.
#include "tools/c_style.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "foundation/text_builder.h"
#include "tests/support/klib_test.h"

namespace {

std::string Convert(const std::string& in, const CStyle& style) {
  TextBuffer out;
  InitText(&out, 1);
  EXPECT_TRUE(ConvertCStyle(in.data(), in.size(), style, &out));
  std::string text(TextOf(&out), out.length);
  FreeText(&out);
  return text;
}

// The token texts with the converter's own scanner, one a string.
std::vector<std::string> Tokens(const std::string& text) {
  std::vector<std::string> tokens;
  const char* p = text.data();
  const char* end = p + text.size();
  bool lineStart = true;
  while (p < end) {
    if (*p == '\r' || *p == '\n') {
      lineStart = true;
      ++p;
    } else if (static_cast<unsigned char>(*p) <= 32) {
      ++p;
    } else {
      int kind;
      const char* after = ScanCToken(p, end, lineStart, &kind);
      std::string token(p, after);
      tokens.push_back(token);
      p = after;
      lineStart = false;
    }
  }
  return tokens;
}

constexpr CStyle kSameLine = {false, 4, false, true, true, false};
constexpr CStyle kNextLineTabs = {true, 4, true, true, true, true};
constexpr CStyle kTight = {true, 2, false, false, false, false};

class CStyleTest : public KLibTest {};

TEST_F(CStyleTest, EachRuleOnASmallSource) {
  struct Case {
    const char* name;
    CStyle style;
    const char* in;
    const char* out;
  } cases[] = {
      {"brace joins its line, else joins the brace", kSameLine,
       "int f(void)\n{\nif(a){b();}\nelse\n{c();}\n}\n",
       "int f(void) {\n    if (a) { b(); } else { c(); }\n}\n"},
      {"next-line braces, tabs, one statement a line", kNextLineTabs,
       "int f(void) {\n  if (a) { b(); c(); } else x = 1;\n}\n",
       "int f(void)\n{\n\tif (a)\n\t{\n\t\tb();\n\t\tc();\n\t}\n\telse x = 1;\n}\n"},
      {"tight: no blanks after keywords or around operators", kTight,
       "while (a + b > c) x = y * -z;\n", "while(a+b>c) x=y*-z;\n"},
      {"prefix and pointer operators keep to their operand", kSameLine,
       "char**p=&q;int*r=*p;i=-1;j=!k;m=n++ + ++o;\n",
       "char **p = &q; int *r = *p; i = -1; j = !k; m = n++ + ++o;\n"},
      {"initialiser braces are not blocks", kNextLineTabs, "int a[] = {1, {2, 3}};\n",
       "int a[] = { 1, { 2, 3 } };\n"},
      {"a body without braces stands one level in", kSameLine, "if (a)\nb();\nc();\n",
       "if (a)\n    b();\nc();\n"},
      {"case labels and what they hold", kSameLine, "switch (k) {\ncase 1:\nx();\nbreak;\n}\n",
       "switch (k) {\n    case 1:\n        x();\n        break;\n}\n"},
      {"ternary colon spaced, label colon not", kSameLine, "a=b?c:d;\nend:return;\n",
       "a = b ? c : d;\nend: return;\n"},
      {"comments, strings and directives keep their bytes", kSameLine,
       "  #define A(x) ((x)+1) \\\n      + 2\nx=\"a  +  b\";/*  c  */y='\\'';// z  \n",
       "  #define A(x) ((x)+1) \\\n      + 2\nx = \"a  +  b\"; /*  c  */ y = '\\''; // z  \n"},
      {"tokens that would merge keep a blank", kTight,
       "a = b - -c; d = e / *f; g = h + +i; . . .;\n", "a=b- -c; d=e/ *f; g=h+ +i; . . .;\n"},
      {"a stray '#' is kept off the start of a line", kNextLineTabs, "f(){#x;}\n",
       "f()\n{ # x;\n}\n"},
      {"a stray backslash does not become a continuation", kSameLine, "a \\ \nb;\n", "a \\ \nb;\n"},
      {"an unclosed literal keeps its line end", kSameLine, "c = \"{\n{ x; }\n",
       "c = \"{\n{ x; }\n"},
      {"CRLF line ends and blank lines (two become one, at the top too)", kSameLine,
       "\r\n\r\n\r\na;\r\n\r\n\r\n\r\nb;\r\n", "\r\n\r\na;\r\n\r\nb;\r\n"},
      {"a UTF-8 mark before a directive", kSameLine, "\xEF\xBB\xBF#include <a.h>\nx=1;\n",
       "\xEF\xBB\xBF#include <a.h>\nx = 1;\n"},
      {"unbalanced braces and an unterminated comment", kSameLine, "}}\n{ x; /* open",
       "} } { x; /* open"},
  };
  for (const Case& c : cases) {
    std::string out = Convert(c.in, c.style);
    EXPECT_EQ(out, c.out) << c.name;
    EXPECT_EQ(Convert(out, c.style), out) << c.name << ": second conversion";
    EXPECT_EQ(Tokens(out), Tokens(c.in)) << c.name;
  }
  // A 65,535-byte line converts in one pass (no quadratic rescans) and keeps its tokens.
  std::string longLine;
  while (longLine.size() < 65535)
    longLine += "a+b,";
  std::string out = Convert(longLine, kSameLine);
  EXPECT_EQ(Tokens(out), Tokens(longLine));
}

TEST_F(CStyleTest, RealSourcesKeepTheirTokensAndConvertOnce) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  int index = 0;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator("/usr/share/mingw-w64/include", error)) {
    // Every fifth header keeps the run short under the sanitizers.
    if (entry.path().extension() == ".h" && index++ % 5 == 0) files.push_back(entry.path());
  }
  std::filesystem::path sources = std::filesystem::path(__FILE__).parent_path().parent_path();
  for (const char* folder : {"editor", "tools", "csource", "frame", "images"}) {
    for (const auto& entry : std::filesystem::directory_iterator(sources / folder, error)) {
      if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
        files.push_back(entry.path());
    }
  }
  if (files.size() < 50) GTEST_SKIP() << "the headers or the sources are not readable here";
  for (const auto& path : files) {
    std::ifstream file(path, std::ios::binary);
    std::string in((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::vector<std::string> tokens = Tokens(in);
    for (const CStyle& style : {kSameLine, kNextLineTabs, kTight}) {
      std::string out = Convert(in, style);
      ASSERT_EQ(Tokens(out), tokens) << path << " " << style.braceNextLine;
      ASSERT_EQ(Convert(out, style), out) << path << " " << style.braceNextLine;
    }
  }
}

}  // namespace
