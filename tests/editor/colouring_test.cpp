// The C colouring of single lines and the comment state carried between them.
#include "editor/colouring.h"

#include <gtest/gtest.h>

#include <string>

#include "editor/char_class.h"
#include "editor/colour_settings.h"
#include "editor/colour_words.h"
#include "tests/support/klib_test.h"

namespace {

class Colouring : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    runs_ = NewColourRuns();
    ASSERT_NE(runs_, nullptr);
  }
  void TearDown() override {
    FreeColourRuns(runs_);
    KLibTest::TearDown();
  }
  // The runs as "column:class" pairs, the way quill-tool colour prints them.
  std::string Runs(const std::u16string& line, bool startsInComment = false, bool* endsInComment = nullptr) {
    bool ends = ColourLine(&runs_, line.data(), static_cast<int>(line.size()), 0, startsInComment);
    if (endsInComment) *endsInComment = ends;
    std::string text;
    for (int i = 0; i < runs_->count; ++i) {
      if (i) text += ' ';
      text += std::to_string(runs_->entries[i].start) + ":" + std::to_string(runs_->entries[i].colourClass);
    }
    return text;
  }
  ColourRuns* runs_ = nullptr;
};

TEST_F(Colouring, WordsNumbersAndWrongWords) {
  EXPECT_EQ(Runs(u"int x = 10;"), "0:2 3:1 4:3 5:1 8:5 10:1");
  EXPECT_EQ(Runs(u"1.5f"), "0:5 1:1 2:6 4:1");  // the number 1, then the wrong word 5f
  EXPECT_EQ(Runs(u"0x1F 0x 10UL 10lu"), "0:5 4:1 5:6 7:1 8:5 12:1 13:6 17:1");
  EXPECT_EQ(Runs(u"이름 name"), "0:6 2:1 3:3 7:1");
  EXPECT_EQ(Runs(u"Int __cdecl"), "0:3 3:1 4:2 11:1");  // built-in words are case-sensitive
  EXPECT_EQ(Runs(u"a$b _x"), "0:3 3:1 4:3 6:1");
  EXPECT_EQ(Runs(u""), "");
}

TEST_F(Colouring, PreprocessorLines) {
  // From the # up to the comment, then the comment.
  EXPECT_EQ(Runs(u"#  define X 1 // c"), "0:7 14:4");
  EXPECT_EQ(Runs(u"# foo"), "0:6 5:1");
  EXPECT_EQ(Runs(u"  #include <a.h> /* x */ y"), "2:7 17:4 24:1 25:3 26:1");
  // The directive word is cut at nine characters.
  EXPECT_EQ(Runs(u"#include_next <a.h>"), "0:6 19:1");
  // A # after anything but blanks is punctuation.
  EXPECT_EQ(Runs(u"x #define"), "0:3 1:1 3:3 9:1");
}

TEST_F(Colouring, LiteralsAndComments) {
  EXPECT_EQ(Runs(u"s = \"/* no\";"), "0:3 1:1 4:5 11:1");
  EXPECT_EQ(Runs(u"c = '\\'' + 1"), "0:3 1:1 4:5 8:1 11:5 12:1");
  EXPECT_EQ(Runs(u"\"open"), "0:5 5:1");
  bool ends = false;
  EXPECT_EQ(Runs(u"a /* b", false, &ends), "0:3 1:1 2:4");
  EXPECT_TRUE(ends);
  EXPECT_EQ(Runs(u"still */ int", true, &ends), "0:4 8:1 9:2 12:1");
  EXPECT_FALSE(ends);
  EXPECT_EQ(Runs(u"/*/ still", false, &ends), "0:4");
  EXPECT_TRUE(ends);
  // An empty line passes the state on.
  EXPECT_EQ(Runs(u"", true, &ends), "");
  EXPECT_TRUE(ends);
}

TEST_F(Colouring, CommentStateScan) {
  auto scan = [](const std::u16string& line, bool start) {
    return ScanCommentState(line.data(), static_cast<int>(line.size()), start);
  };
  EXPECT_TRUE(scan(u"x /* open", false));
  EXPECT_FALSE(scan(u"\"/*\" x", false));
  EXPECT_FALSE(scan(u"// /* not", false));
  EXPECT_FALSE(scan(u"*/ closed", true));
  EXPECT_TRUE(scan(u"/* a */ /* b", false));
  EXPECT_TRUE(scan(u"nothing", true));
}

TEST_F(Colouring, RunListGrowsAndOverwrites) {
  std::u16string many;
  for (int i = 0; i < 30; ++i) many += u"a ";
  EXPECT_EQ(ColourLine(&runs_, many.data(), static_cast<int>(many.size()), 0, false), false);
  EXPECT_EQ(runs_->count, 60);
  EXPECT_GE(runs_->capacity, 60);
  EXPECT_EQ(runs_->capacity % 20, 0);
  ColourRuns* list = runs_;
  SetColourClass(&list, 5, 2);
  list->count = 0;
  SetColourClass(&list, 5, 2);
  SetColourClass(&list, 5, 4);
  EXPECT_EQ(list->count, 1);
  EXPECT_EQ(list->entries[0].colourClass, 4);
  runs_ = list;
}

TEST(ColourWords, ListsAndNumberTest) {
  auto word = [](const std::u16string& text, bool (*test)(const char16_t*, int)) {
    return test(text.data(), static_cast<int>(text.size()));
  };
  EXPECT_TRUE(word(u"__FUNCTION__", IsBuiltinWord));
  EXPECT_TRUE(word(u"_asm", IsBuiltinWord));
  EXPECT_FALSE(word(u"class", IsBuiltinWord));
  EXPECT_FALSE(word(u"voi", IsBuiltinWord));
  EXPECT_TRUE(word(u"elif", IsDirective));
  EXPECT_FALSE(word(u"import", IsDirective));
  EXPECT_TRUE(word(u"0", IsNumber));
  EXPECT_TRUE(word(u"0XfFul", IsNumber));
  EXPECT_TRUE(word(u"10L", IsNumber));
  EXPECT_FALSE(word(u"10LU", IsNumber));
  EXPECT_FALSE(word(u"0x", IsNumber));
  EXPECT_FALSE(word(u"L", IsNumber));
  EXPECT_FALSE(word(u"0x1G", IsNumber));
}

TEST(CharClass, Boundaries) {
  EXPECT_TRUE(IsSeparator(u'!'));
  EXPECT_TRUE(IsSeparator(u'~'));
  EXPECT_FALSE(IsSeparator(u'_'));
  EXPECT_FALSE(IsSeparator(u'$'));
  EXPECT_TRUE(IsWordChar(u'가'));
  EXPECT_TRUE(IsWordChar(0x80));
  EXPECT_FALSE(IsWordChar(u' '));
  EXPECT_TRUE(IsBlank(32));
  EXPECT_FALSE(IsBlank(33));
  EXPECT_FALSE(IsIdentifierChar(u'가'));
}

class ColourSettingsTest : public KLibTest {};

TEST_F(ColourSettingsTest, KeysAndDefaults) {
  EXPECT_STREQ(ColourKey(0), "BkGround");
  EXPECT_STREQ(ColourKey(7), "PreProc");
  EXPECT_EQ(ColourKey(8), nullptr);
  EXPECT_EQ(DefaultColour(kClassNormal), 0x004600u);
  EXPECT_EQ(DefaultColour(kClassConst), 0xFF0000u);
  EXPECT_EQ(DefaultColour(kClassWrongWord), 0x000080u);
}

}  // namespace
