#include <string>

#include "csource/parse_source.h"
#include "tests/csource/csource_fixture.h"

using DeclarationTest = CSourceTest;

TEST_F(DeclarationTest, TypedefsAndTags) {
  Write("a.c",
        "typedef struct tagPOINT { int x; int y; } POINT, *PPOINT;\n"
        "typedef struct { int a; } ANON;\n"
        "typedef void (__stdcall TIMECB)(int id);\n"
        "typedef long (__stdcall *WNDPROC)(int, int);\n"
        "union U { int i; char c; } u1, *pu;\n"
        "enum E { A = 1, B };\n"
        "struct tagPOINT;\n"
        "struct tagPOINT pt;\n"
        "typedef int NOSEMI\n");
  EXPECT_EQ(Parse("a.c"), "[a.c #9] Syntex Error (1355)\r\n");
  EXPECT_EQ(Find("tagPOINT", kSymbolStruct)->line, 1u);
  EXPECT_EQ(Body("tagPOINT"), "{\r\n    int x;\r\n    int y;\r\n}");
  EXPECT_EQ(Find("POINT")->kind, kSymbolTypedef);
  EXPECT_EQ(Body("POINT"), "struct tagPOINT");
  EXPECT_EQ(Body("PPOINT"), "struct tagPOINT *");
  EXPECT_EQ(Body("ANON"), "struct {\r\n    int a;\r\n}");
  EXPECT_EQ(Body("TIMECB"), "void (__stdcall)(int id)");
  EXPECT_EQ(Body("WNDPROC"), "long (__stdcall *)(int, int)");
  EXPECT_EQ(Find("U")->kind, kSymbolUnion);
  EXPECT_EQ(Body("pu"), "union U *");
  EXPECT_EQ(Find("E")->kind, kSymbolEnum);
  EXPECT_EQ(Body("E"), "{\r\n    A = 1,\r\n    B\r\n}");
  EXPECT_EQ(Body("pt"), "struct tagPOINT");
}

TEST_F(DeclarationTest, FunctionsCallingConventionsAndVariables) {
  Write("a.c",
        "extern \"C\" {\n"
        "__declspec(dllimport) long __stdcall Create(int style, const char *name);\n"
        "int plain(void), counter = 3, *table[4];\n"
        "static int (*pick(int n))(void) { return 0; }\n"
        "int (__cdecl *hook)(int);\n"
        "}\n"
        "extern \"C++\" { class X { }; }\n"
        "extern int shared;\n"
        "int;\n"
        "int broken(\n");
  EXPECT_EQ(Parse("a.c"),
            "[a.c #7] Syntex Error (1699)\r\n[a.c #9] Syntex Error (1269)\r\n"
            "[a.c #10] Syntex Error (1269)\r\n");
  const SymbolRecord* create = Find("Create");
  ASSERT_NE(create, nullptr);
  EXPECT_EQ(create->kind, kSymbolCallConv);
  EXPECT_STREQ(create->params, "int style, const char *name");
  EXPECT_STREQ(create->body, "__declspec(dllimport) long __stdcall");
  EXPECT_EQ(Find("plain")->kind, kSymbolFunction);
  EXPECT_EQ(Body("plain"), "int plain(void)");
  EXPECT_EQ(Find("counter")->kind, kSymbolVariable);
  EXPECT_EQ(Body("counter"), "int");
  EXPECT_EQ(Body("table"), "int *[4]");
  EXPECT_EQ(Find("pick")->kind, kSymbolFunction);
  EXPECT_EQ(Find("hook")->kind, kSymbolVariable);
  EXPECT_EQ(Body("hook"), "int (__cdecl *)(int)");
  EXPECT_EQ(Find("X"), nullptr);
  EXPECT_EQ(Body("shared"), "extern int");
}

TEST_F(DeclarationTest, ShowDefinitionFollowsTheChainAndComputes) {
  Write("x.c",
        "#define MAX(a,b) ((a)>(b)?(a):(b))\n"
        "#define N (4+4)*2\n"
        "typedef struct tagPOINT { int x; int y; } POINT, *PPOINT;\n"
        "#define LOOP1 LOOP2\n#define LOOP2 LOOP1\n"
        "typedef struct Node Node;\n");
  DefinitionCache cache;
  InitDefinitionCache(&cache);
  std::string path = folder_ + "/x.c";
  auto show = [&](const char* word) {
    TextBuffer result;
    InitText(&result, 1);
    EXPECT_TRUE(ShowDefinition(&cache, path.c_str(), word, &result, nullptr));
    std::string text = TextOf(&result);
    FreeText(&result);
    return text;
  };
  EXPECT_EQ(show("MAX"), "[x.c #1]\r\n#define MAX(a,b) ((a)>(b)?(a):(b))\r\n\r\n");
  EXPECT_EQ(show(" N "), "[x.c #2]\r\n#define N (4+4)*2\r\n\r\n[Result]\r\n=16\r\n\r\n");
  EXPECT_EQ(show("N+1"), "[Original Sentence]\r\n(4+4)*2+1\r\n\r\n[Result]\r\n=17\r\n\r\n");
  EXPECT_EQ(show("PPOINT"),
            "[x.c #3]\r\ntypedef struct tagPOINT * PPOINT;\r\n\r\n"
            "[x.c #3]\r\nstruct tagPOINT {\r\n    int x;\r\n    int y;\r\n};\r\n\r\n");
  EXPECT_EQ(show("_M_IX86"), "[CPU]\r\n#define _M_IX86 600\r\n\r\n[Result]\r\n=600\r\n\r\n");
  EXPECT_EQ(show("unknown"), "");
  EXPECT_EQ(show(""), "");
  for (int round = 0; round < 2; ++round) {  // round the cycle once, and said in each look-up
    EXPECT_EQ(show("LOOP1"),
              "[x.c #4]\r\n#define LOOP1 LOOP2\r\n\r\n[x.c #5]\r\n#define LOOP2 LOOP1\r\n\r\n"
              "[x.c #4] Recursive macro 'LOOP1'\r\n");
  }
  // A typedef of its own tag is no cycle worth a word.
  EXPECT_EQ(show("Node"), "[x.c #6]\r\ntypedef struct Node Node;\r\n\r\n");
  EXPECT_EQ(cache.parses, 1);  // no second parse without a change

  // A new time stamp parses again.
  Write("x.c", "#define N 5\n");
  std::filesystem::last_write_time(
      path, std::filesystem::last_write_time(path) + std::chrono::seconds(10));
  EXPECT_EQ(show("N"), "[x.c #1]\r\n#define N 5\r\n\r\n[Result]\r\n=5\r\n\r\n");
  EXPECT_EQ(cache.parses, 2);
  FreeDefinitionCache(&cache);
}

TEST_F(DeclarationTest, ShowDefinitionAnswersOddWordsAndFilesQuietly) {
  std::string binary;
  for (int i = 0; i < 4096; ++i)
    binary += static_cast<char>((i * 37) & 0xFF);
  Write("bin.h", binary);
  Write("a.h", "#include \"b.h\"\nint inA;\n");
  Write("b.h", "#include \"a.h\"\nint inB;\n");
  Write("x.c", "#include <gone.h>\n#include \"bin.h\"\n#include \"a.h\"\nint after;\n");
  DefinitionCache cache;
  InitDefinitionCache(&cache);
  std::string path = folder_ + "/x.c";
  ParseOptions options = {nullptr, "/no/such/folder;", nullptr, 0};
  auto show = [&](const char* source, const std::string& word) {
    TextBuffer result;
    InitText(&result, 1);
    EXPECT_TRUE(ShowDefinition(&cache, source, word.c_str(), &result, &options));
    std::string text = TextOf(&result);
    FreeText(&result);
    return text;
  };
  // A document without a file and no table yet: nothing to say, nothing read.
  EXPECT_EQ(show(nullptr, "after"), "");
  EXPECT_EQ(cache.parses, 0);
  // A missing folder, a binary header and an include cycle are read past.
  std::string first = show(path.c_str(), "after");
  EXPECT_EQ(first.rfind("'gone.h' not Found\r\n", 0), 0u) << first;
  EXPECT_NE(first.find("[x.c #4]\r\nvar after int;\r\n"), std::string::npos) << first;
  EXPECT_EQ(show(path.c_str(), "inA"), "[a.h #2]\r\nvar inA int;\r\n\r\n");
  EXPECT_EQ(show(path.c_str(), "inB"), "[b.h #2]\r\nvar inB int;\r\n\r\n");
  // The same table for a document without a file.
  EXPECT_EQ(show(nullptr, "inB"), "[b.h #2]\r\nvar inB int;\r\n\r\n");
  EXPECT_EQ(show(path.c_str(), "42"), "[Result]\r\n=42\r\n\r\n");
  EXPECT_EQ(show(path.c_str(), std::string(5000, 'w')), "");
  EXPECT_EQ(show(path.c_str(), "  \t "), "");
  EXPECT_EQ(cache.parses, 1);
  FreeDefinitionCache(&cache);
}
