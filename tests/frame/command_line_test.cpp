// The command line's one argument and the started-with-file flag.
#include <gtest/gtest.h>

#include <string>

#include "foundation/path.h"
#include "frame/command_line.h"

namespace {

struct Parsed {
  std::string path;
  bool withFile;
};

Parsed Parse(const char* line) {
  char path[kPathSize];
  bool withFile = ParseCommandLine(line, path);
  return {path, withFile};
}

TEST(FrameCommandLine, TakesTheFirstArgumentInEitherQuoteOrUpToABlank) {
  Parsed p = Parse("\"C:\\Program Files\\Quill\\Quill.exe\" \"C:\\My Docs\\a b.c\" second");
  EXPECT_EQ(p.path, "C:/My Docs/a b.c");
  EXPECT_TRUE(p.withFile);

  p = Parse("Quill.exe 'd:\\src\\x y.h'");
  EXPECT_EQ(p.path, "d:/src/x y.h");

  // Unquoted: anything below 33 ends it, a tab as well as a blank.
  p = Parse("Quill.exe   c:\\a.txt\tb.txt");
  EXPECT_EQ(p.path, "c:/a.txt");

  // A quote that never closes takes the rest of the line.
  p = Parse("Quill.exe \"c:\\open end.txt");
  EXPECT_EQ(p.path, "c:/open end.txt");
}

TEST(FrameCommandLine, NoArgumentLeavesTheFlagClear) {
  EXPECT_EQ(Parse("\"C:\\Quill\\Quill.exe\"").path, "");
  EXPECT_FALSE(Parse("\"C:\\Quill\\Quill.exe\"   ").withFile);
  EXPECT_FALSE(Parse("Quill.exe \"\"").withFile);
  EXPECT_FALSE(Parse("").withFile);
  EXPECT_FALSE(Parse(nullptr).withFile);
}

TEST(FrameCommandLine, AProjectFileInAnyCaseLeavesTheFlagClear) {
  Parsed p = Parse("Quill.exe C:\\Work\\GAME.PRJ");
  EXPECT_EQ(p.path, "C:/Work/GAME.PRJ");
  EXPECT_FALSE(p.withFile);
  EXPECT_FALSE(Parse("Quill.exe a.Prj").withFile);
  // Only the extension counts: not a folder named .prj, nor a longer extension.
  EXPECT_TRUE(Parse("Quill.exe c:\\x.prj\\notes").withFile);
  EXPECT_TRUE(Parse("Quill.exe game.prjx").withFile);
  EXPECT_TRUE(Parse("Quill.exe prj").withFile);
  EXPECT_TRUE(IsProjectPath("a/b.c/game.prj"));
  EXPECT_FALSE(IsProjectPath("a/b.prj/game"));
}

TEST(FrameCommandLine, ALongArgumentIsCutWithoutBreakingACharacter) {
  std::string name(800, 'a');
  Parsed p = Parse(("Quill.exe " + name).c_str());
  EXPECT_EQ(p.path.size(), size_t{kPathSize - 1});

  // 778 ASCII bytes and then a three-byte Hangul syllable: the syllable would end at byte 781.
  std::string hangul = std::string(778, 'b') + "\xED\x95\x9C" + "tail";
  p = Parse(("Quill.exe " + hangul).c_str());
  EXPECT_EQ(p.path, std::string(778, 'b'));

  // A syllable that fits whole is kept.
  hangul = std::string(776, 'b') + "\xED\x95\x9C" + "tail";
  p = Parse(("Quill.exe " + hangul).c_str());
  EXPECT_EQ(p.path, std::string(776, 'b') + "\xED\x95\x9C");
}

}  // namespace
