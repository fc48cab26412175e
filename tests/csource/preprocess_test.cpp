#include <string>

#include "csource/condition.h"
#include "csource/macro_expand.h"
#include "csource/preprocessor.h"
#include "csource/syntax_error.h"
#include "tests/csource/csource_fixture.h"

namespace {

// Expands `text` with the macros of `table`; "!" marks an unfinished call.
std::string Expand(SymbolTable* table, const std::string& text, std::string* messages = nullptr) {
  TextBuffer buffer;
  TextBuffer sink;
  InitText(&buffer, 1);
  InitText(&sink, 1);
  AppendText(&buffer, text.c_str());
  SourcePlace place = {&sink, "t.c", 7};
  size_t stopped;
  int unfinished = ExpandMacros(table, &buffer, 0, &stopped, &place);
  std::string result = TextOf(&buffer);
  if (unfinished) result += "!" + std::to_string(stopped);
  if (messages) *messages = TextOf(&sink);
  FreeText(&buffer);
  FreeText(&sink);
  return result;
}

}  // namespace

using PreprocessTest = CSourceTest;

TEST_F(PreprocessTest, DefinesObjectAndFunctionLikeMacros) {
  Write("a.c",
        "#define F (x)\n"
        "#define G(a, b)  a   +  b\n"
        "#define E() 1\n"
        "#define BAD(a, b\n"
        "#define MAX(a,b) ((a)>(b)?(a):(b))\n");
  EXPECT_EQ(Parse("a.c"), "[a.c #4] Syntex Error (574)\r\n");
  const SymbolRecord* f = Find("F", kSymbolMacro);
  ASSERT_NE(f, nullptr);
  EXPECT_STREQ(f->params, "");
  EXPECT_STREQ(f->body, "(x)");
  EXPECT_STREQ(Find("G")->params, "a, b");
  EXPECT_STREQ(Find("G")->body, "a + b");
  EXPECT_EQ(Find("G")->line, 2u);
  EXPECT_TRUE(IsFunctionLikeMacro(Find("E")));
  EXPECT_STREQ(Find("BAD")->params, "a, b");
  EXPECT_STREQ(Find("BAD")->body, "");
}

TEST_F(PreprocessTest, ExpansionFollowsC) {
  Write("a.c",
        "#define F (x)\n#define G(a,b) a+b\n#define STR(a) #a\n#define CAT(a,b) a ## b\n"
        "#define ID(x) x\n#define TWICE(x) ID(x) ID(x)\n#define V(...) f(__VA_ARGS__)\n"
        "#define N (4+4)*2\n#define ONE 1\n");
  Parse("a.c");
  EXPECT_EQ(Expand(&table_, "F(1)"), "(x)(1)");
  EXPECT_EQ(Expand(&table_, "G(1, (2,3))"), "1+(2,3)");
  EXPECT_EQ(Expand(&table_, "G (ONE,N) \"N\" 'N' 12N #N"), "1+(4+4)*2 \"N\" 'N' 12N #N");
  EXPECT_EQ(Expand(&table_, "STR( a \"b\\n\" ) CAT(O, NE) CAT(1, 2)"), "\"a \\\"b\\\\n\\\"\" 1 12");
  EXPECT_EQ(Expand(&table_, "ID(ID(ONE)) TWICE(N)"), "1 (4+4)*2 (4+4)*2");
  EXPECT_EQ(Expand(&table_, "V(1, 2) V()"), "f(1, 2) f()");
  EXPECT_EQ(Expand(&table_, "G;G;"), "G;G;");  // not a call: left alone
  EXPECT_EQ(Expand(&table_, "x G(1,"), "x G(1,!2");
  EXPECT_EQ(Expand(&table_, "x G  "), "x G  !2");
  std::string messages;
  EXPECT_EQ(Expand(&table_, "G(1)", &messages), "1+b");
  EXPECT_EQ(messages, "[t.c #7] Syntex Error (971)\r\n");
}

TEST_F(PreprocessTest, AMacroThatNamesItselfStopsAndIsReportedOnceWhenLookedUp) {
  Write("a.c",
        "#define A B + A\n#define B A\n#define SELF SELF\n#define f(x) f(x) + g\n"
        "#define g f\n#define H2 H1 H1\n#define H1 H0 H0\n#define H0 x\n"
        "int v1 = A, v2 = SELF, v3 = f(1), v4 = A;\n");
  // Headers name macros after themselves on purpose: reading them says nothing.
  EXPECT_EQ(Parse("a.c"), "");
  EXPECT_EQ(Expand(&table_, "A"), "A + A");
  EXPECT_EQ(Expand(&table_, "f(2)"), "f(2) + f");
  EXPECT_EQ(Expand(&table_, "H2"), "x x x x");

  // Looking one up: the chain once and the word about it once, in every look-up.
  DefinitionCache cache;
  InitDefinitionCache(&cache);
  std::string path = folder_ + "/a.c";
  auto show = [&](const char* word) {
    TextBuffer result;
    InitText(&result, 1);
    ShowDefinition(&cache, path.c_str(), word, &result, nullptr);
    std::string text = TextOf(&result);
    FreeText(&result);
    return text;
  };
  auto count = [](const std::string& text, const std::string& part) {
    int n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
      ++n;
    return n;
  };
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(show("SELF"),
              "[a.c #3]\r\n#define SELF SELF\r\n\r\n[a.c #3] Recursive macro 'SELF'\r\n");
    std::string a = show("A");
    EXPECT_EQ(a.rfind("[a.c #1]\r\n#define A B + A\r\n\r\n", 0), 0u) << a;
    EXPECT_EQ(count(a, "[Original Sentence]"), 1) << a;
    EXPECT_EQ(count(a, "[a.c #1] Recursive macro 'A'\r\n"), 1) << a;
    EXPECT_EQ(count(a, "[a.c #2] Recursive macro 'B'\r\n"), 1) << a;
    std::string call = show("f(1)");
    EXPECT_EQ(count(call, "[Original Sentence]"), 1) << call;
    EXPECT_EQ(count(call, "Recursive macro 'f'"), 1) << call;
    EXPECT_EQ(show("H2"),
              "[a.c #6]\r\n#define H2 H1 H1\r\n\r\n[Original Sentence]\r\nx x x x\r\n\r\n");
  }
  EXPECT_EQ(cache.parses, 1);
  FreeDefinitionCache(&cache);

  // Doubling names: cut off with a message, not exhausted memory.
  std::string chain;
  for (int i = 1; i <= 40; ++i)
    chain += "#define D" + std::to_string(i) + " D" + std::to_string(i - 1) + " D" +
             std::to_string(i - 1) + "\n";
  Write("b.c", chain + "D40\n");
  EXPECT_EQ(Parse("b.c").substr(0, 36), "[b.c #41] Macro expansion too long\r\n");
}

TEST_F(PreprocessTest, ConditionsWithDefinedExpansionAndErrors) {
  Write("a.c", "#define FOO 3\n#define TWO 2\n#define P(x) (x*TWO)\n");
  Parse("a.c");
  auto eval = [this](const std::string& text, std::string* messages = nullptr) {
    TextBuffer sink;
    InitText(&sink, 1);
    int value = EvalCondition(&table_, text.c_str(), text.size(), "t.c", 5, &sink);
    if (messages) *messages = TextOf(&sink);
    FreeText(&sink);
    return value;
  };
  std::string messages;
  EXPECT_EQ(eval("UNDEFINED_NAME", &messages), 0);
  EXPECT_EQ(messages, "");
  EXPECT_EQ(eval("defined FOO && FOO > 2"), 1);
  EXPECT_EQ(eval("defined(FOO) && (FOO > 2)"), 1);
  EXPECT_EQ(eval("defined ( BAR ) || FOO > 3"), 0);
  EXPECT_EQ(eval("P(FOO) == 6 /* six */ // comment"), 1);
  EXPECT_EQ(eval("0x10UL + 1LL == 17 && 'A' == 65"), 1);
  EXPECT_EQ(eval("__has_builtin(x) || 1"), 1);
  EXPECT_EQ(eval("FOO \\\n + 1 == 4 /* unclosed"), 1);
  {
    LogCapture log;
    EXPECT_EQ(eval("1 +", &messages), 0);
    EXPECT_EQ(messages, "[t.c #5] Syntex Error (1426)\r\n");
    EXPECT_NE(log.Text().find("t.c #5 CalcMathExpression('1 +') Err="), std::string::npos)
        << log.Text();
  }
  // The conditional operator, and "&&" and "||" that leave their right side unevaluated.
  const struct {
    const char* text;
    int value;
  } kShortCircuits[] = {
      {"defined __cplusplus ? __cplusplus >= 201402L : defined FOO", 1},
      {"(defined NOPE ? NOPE : 0) < 201112 && !(0 || (3 < NOPE + (5 <= NOPE)))", 1},
      {"1 ? TWO ? 3 : 4 : 5", 3},
      {"0 ? 1 : 0 ? 2 : 7", 7},
      {"(FOO > 2 ? 0 : 1) ? 10 : 20", 20},
      {"defined NOPE && 10 / NOPE > 1", 0},
      {"!defined NOPE || 10 / NOPE > 1", 1},
      {"(0 && 1 / 0) + 4", 4},
      {"'?' == 63 && ':' == 58", 1},
      {"L'\\0' - 1 > 0 || u'a' == 97", 1},
  };
  for (const auto& c : kShortCircuits) {
    EXPECT_EQ(eval(c.text, &messages), c.value) << c.text;
    EXPECT_EQ(messages, "") << c.text;
  }
  LogCapture quiet;
  EXPECT_EQ(eval("1 && 10 / 0", &messages), 0);
  EXPECT_EQ(messages, "[t.c #5] Syntex Error (1426)\r\n");
  EXPECT_EQ(eval("1 ? 2", &messages), 0);
  EXPECT_EQ(messages, "[t.c #5] Syntex Error (1426)\r\n");
  eval("defined(FOO", &messages);
  EXPECT_EQ(messages.substr(0, 30), "[t.c #5] Syntex Error (1153)\r\n");
  eval("P(1", &messages);
  EXPECT_EQ(messages.substr(0, 30), "[t.c #5] Syntex Error (1418)\r\n");
}

TEST_F(PreprocessTest, DirectivesAndActiveRegions) {
  Write("a.c",
        "#if UNDEFINED_NAME\nint no1;\n#elif 1\nint yes1;\n#else\nint no2;\n#endif\n"
        "#ifdef NOPE\n# if 1/0\n# endif\nint no3;\n#else\nint yes2;\n#endif\n"
        "#ifndef NOPE\nint yes3; // int no4;\n#endif\n"
        "#define GONE 1\n#undef GONE\n#ifdef GONE\nint no5;\n#endif\n"
        "int yes4; /* int no6;\n int no7; */ int yes5;\n"
        "#pragma anything \\\n int no8;\n"
        "#endif\n#error whatever\n");
  LogCapture quiet;
  EXPECT_EQ(Parse("a.c"), "[a.c #9] Syntex Error (1426)\r\n[a.c #27] Unexpected '#endif'\r\n");
  for (const char* name : {"yes1", "yes2", "yes3", "yes4", "yes5"})
    EXPECT_NE(Find(name), nullptr) << name;
  for (const char* name : {"no1", "no2", "no3", "no4", "no5", "no6", "no7", "no8", "GONE"})
    EXPECT_EQ(Find(name), nullptr) << name;
  EXPECT_EQ(Find("yes5")->line, 24u);
}

TEST_F(PreprocessTest, SixtyThreeLevelsPassTheSixtyFourthDropsTheFile) {
  std::string deep;
  for (int i = 0; i < 63; ++i)
    deep += "#if 1\n";
  Write("ok.h", deep + "int inner63;\n" + std::string(63 * 7, ' ') + "\n");
  std::string endifs;
  for (int i = 0; i < 63; ++i)
    endifs += "#endif\n";
  Write("ok.h", deep + "int inner63;\n" + endifs);
  Write("deep.h", "int before;\n" + deep + "#if 1\nint inner64;\n" + endifs + "#endif\n");
  Write("a.c", "#include \"ok.h\"\n#include \"deep.h\"\nint after;\n");
  EXPECT_EQ(Parse("a.c"), "[deep.h #65] '#if' is too deep\r\n");
  EXPECT_NE(Find("inner63"), nullptr);
  EXPECT_EQ(Find("before"), nullptr);  // the dropped file is not scanned at all
  EXPECT_EQ(Find("inner64"), nullptr);
  EXPECT_NE(Find("after"), nullptr);
}

TEST_F(PreprocessTest, EachFaultyConditionIsReportedOnceARun) {
  Write("h.h", "#if 1/0\n#endif\n#if 3/0\n#endif\n");
  Write("a.c",
        "#if 1/0\n#endif\n#if 1 / 0\n#endif\n#if 1/0\n#elif 1/0\n#endif\n#include \"h.h\"\n"
        "#if 2/0\n#endif\n");
  LogCapture quiet;
  EXPECT_EQ(Parse("a.c"),
            "[a.c #1] Syntex Error (1426)\r\n[a.c #3] Syntex Error (1426)\r\n"
            "[h.h #3] Syntex Error (1426)\r\n[a.c #9] Syntex Error (1426)\r\n");
  FreeSymbolTable(&table_);
  EXPECT_EQ(Parse("a.c").substr(0, 30),
            "[a.c #1] Syntex Error (1426)\r\n");  // a new run says it again
}

TEST_F(PreprocessTest, AnIncludeChainTooDeepIsReportedOnce) {
  // Two chains of distinct headers, each deeper than the limit.
  for (int i = 1; i <= kMaxIncludeDepth + 3; ++i) {
    std::string next = std::to_string(i + 1);
    Write("h" + std::to_string(i) + ".h",
          "int h" + std::to_string(i) + ";\n#include \"h" + next + ".h\"\n");
    Write("g" + std::to_string(i) + ".h",
          "int g" + std::to_string(i) + ";\n#include \"g" + next + ".h\"\n");
  }
  Write("a.c", "#include \"h1.h\"\n#include \"g1.h\"\nint after;\n");
  std::string deepest = std::to_string(kMaxIncludeDepth);
  EXPECT_EQ(Parse("a.c"), "[h" + deepest + ".h #2] '#include' is too deep\r\n");
  EXPECT_NE(Find(("h" + deepest).c_str()), nullptr);
  EXPECT_EQ(Find(("h" + std::to_string(kMaxIncludeDepth + 1)).c_str()), nullptr);
  EXPECT_NE(Find(("g" + deepest).c_str()), nullptr);
  EXPECT_NE(Find("after"), nullptr);
}

TEST_F(PreprocessTest, IncludesAreSearchedAndReadOnce) {
  Write("inc/once.h", "#ifdef SEEN\n#define TWICE\n#endif\n#define SEEN\nint fromOnce;\n");
  Write("inc/sub/angle.h", "#include \"../once.h\"\nint fromAngle;\n");
  Write("local.h", "int fromLocal;\n");
  // The same file by another spelling of its name: on a case-sensitive system a copy stands in.
  std::error_code ignored;
  std::filesystem::copy_file(folder_ + "/inc/once.h", folder_ + "/inc/ONCE.H", ignored);
  Write("a.c",
        "#include \"local.h\"\n#include <sub/angle.h>\n#include <ONCE.H>\n"
        "#include <local.h>\n#include \"missing.h\"\n#define HDR <once.h>\n#include HDR\n");
  ParseOptions options = {nullptr, (folder_ + "/inc").c_str(), nullptr, 0};
  std::string includes = folder_ + "/inc";
  options.includePaths = includes.c_str();
  EXPECT_EQ(Parse("a.c", &options), "'local.h' not Found\r\n'missing.h' not Found\r\n");
  EXPECT_NE(Find("fromLocal"), nullptr);
  EXPECT_NE(Find("fromAngle"), nullptr);
  EXPECT_NE(Find("SEEN"), nullptr);
  EXPECT_EQ(Find("TWICE"), nullptr);
  EXPECT_STREQ(Find("fromOnce")->source, "../once.h");
}

TEST_F(PreprocessTest, PredefinedMacrosByExtensionAndCompiler) {
  for (const char* name : {"a.CPP", "b.cxx", "c.c", "d.cpp"}) {
    Write(name, "#define X\n");
    FreeSymbolTable(&table_);
    Parse(name);
    bool cpp = name[0] == 'a' || name[0] == 'd';
    const SymbolRecord* record = Find("__cplusplus");
    EXPECT_EQ(record != nullptr, cpp) << name;
    if (record) EXPECT_STREQ(record->body, "199711");
    EXPECT_EQ(Find("_MSC_VER"), nullptr);
    EXPECT_STREQ(Body("_M_IX86").c_str(), "600");
    EXPECT_STREQ(Find("_M_IX86")->source, "CPU");
    EXPECT_STREQ(Body("_M_IX86_FP").c_str(), "0");
  }
  // The source overrides what was predefined.
  Write("e.c", "#undef _M_IX86\n#define _M_IX86_FP 2\n");
  FreeSymbolTable(&table_);
  Parse("e.c");
  EXPECT_EQ(Find("_M_IX86"), nullptr);
  EXPECT_EQ(Body("_M_IX86_FP"), "2");
}

TEST_F(PreprocessTest, ACallOverSeveralLinesKeepsItsFirstMarker) {
  Write("a.c",
        "#define CALL(a, b, c) int a; int b; int c;\n"
        "CALL(x1,\n"
        "     x2, // two\n"
        "     x3)\n"
        "int x4;\n");
  EXPECT_EQ(Parse("a.c"), "");
  EXPECT_EQ(Find("x1")->line, 2u);
  EXPECT_EQ(Find("x3")->line, 2u);
  EXPECT_EQ(Find("x4")->line, 5u);
}
