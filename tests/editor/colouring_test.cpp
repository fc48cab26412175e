// The C colouring of single lines and the comment state carried between them.
#include "editor/colouring.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <utility>
#include <vector>

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
  std::string Runs(const std::u16string& line, bool startsInComment = false,
                   bool* endsInComment = nullptr) {
    bool ends = ColourLine(&runs_, line.data(), static_cast<int>(line.size()), 0, startsInComment);
    if (endsInComment) *endsInComment = ends;
    std::string text;
    for (int i = 0; i < runs_->count; ++i) {
      if (i) text += ' ';
      text += std::to_string(runs_->entries[i].start) + ":" +
              std::to_string(runs_->entries[i].colourClass);
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

// The scanner as it was before the table-driven one: each unit classified through the character
// classes and each word looked up along the lists. The fast scanner must cut every line the same.
namespace unit_by_unit {

bool PairAt(const char16_t* text, int length, int at, char16_t first, char16_t second) {
  return at + 1 < length && text[at] == first && text[at + 1] == second;
}

int LiteralEnd(const char16_t* text, int length, int at) {
  char16_t quote = text[at++];
  while (at < length) {
    if (text[at] == u'\\') {
      at += 2;
    } else if (text[at++] == quote) {
      return at;
    }
  }
  return length;
}

bool InList(std::initializer_list<const char*> list, const char16_t* word, int length) {
  for (const char* entry : list) {
    if (std::u16string(word, length) == std::u16string(entry, entry + strlen(entry))) return true;
  }
  return false;
}

int WordClass(const char16_t* word, int length) {
  if (InList(
          {"void",        "char",     "int",        "float",    "short",    "long",     "double",
           "signed",      "unsigned", "__int64",    "_asm",     "union",    "enum",     "struct",
           "typedef",     "auto",     "const",      "static",   "extern",   "register", "volatile",
           "if",          "else",     "for",        "do",       "while",    "switch",   "case",
           "break",       "continue", "default",    "inline",   "return",   "goto",     "sizeof",
           "__stdcall",   "__cdecl",  "__fastcall", "__DATE__", "__TIME__", "__LINE__", "__FILE__",
           "__FUNCTION__"},
          word, length))
    return kClassKeyword;
  if (IsNumber(word, length)) return kClassConst;
  if (IsDecimalDigit(word[0])) return kClassWrongWord;
  for (int i = 0; i < length; ++i) {
    if (!IsIdentifierChar(word[i])) return kClassWrongWord;
  }
  return kClassUserWord;
}

bool Colour(std::vector<std::pair<int, int>>* runs, const char16_t* line, int length,
            bool inComment) {
  auto set = [runs](int start, int colourClass) {
    if (!runs->empty() && runs->back().first == start) {
      runs->back().second = colourClass;
    } else {
      runs->emplace_back(start, colourClass);
    }
  };
  runs->clear();
  if (length <= 0) return inComment;
  if (inComment) set(0, kClassRemark);
  bool onlyBlanks = true;
  int at = 0;
  while (at < length) {
    if (inComment) {
      onlyBlanks = false;
      for (; at < length; ++at) {
        if (PairAt(line, length, at, u'*', u'/')) {
          at += 2;
          inComment = false;
          set(at, kClassNormal);
          break;
        }
      }
      continue;
    }
    char16_t unit = line[at];
    if (IsBlank(unit)) {
      ++at;
    } else if (unit == u'#' && onlyBlanks) {
      onlyBlanks = false;
      int word = at + 1;
      while (word < length && IsBlank(line[word]))
        ++word;
      int wordLength = 0;
      while (word + wordLength < length && wordLength < 9 &&
             IsIdentifierChar(line[word + wordLength]))
        ++wordLength;
      bool known = InList({"include", "define", "undef", "if", "ifdef", "ifndef", "else", "elif",
                           "endif", "pragma", "error", "line"},
                          line + word, wordLength);
      set(at, known ? kClassPreProc : kClassWrongWord);
      int end = at + 1;
      while (end < length && !PairAt(line, length, end, u'/', u'/') &&
             !PairAt(line, length, end, u'/', u'*'))
        ++end;
      set(end, kClassNormal);
      at = end;
    } else if (PairAt(line, length, at, u'/', u'/')) {
      set(at, kClassRemark);
      break;
    } else if (PairAt(line, length, at, u'/', u'*')) {
      set(at, kClassRemark);
      at += 2;
      inComment = true;
      onlyBlanks = false;
    } else if (unit == u'"' || unit == u'\'') {
      set(at, kClassConst);
      at = LiteralEnd(line, length, at);
      set(at, kClassNormal);
      onlyBlanks = false;
    } else if (IsSeparator(unit)) {
      ++at;
      onlyBlanks = false;
    } else {
      int start = at;
      while (at < length && IsWordChar(line[at]))
        ++at;
      set(start, WordClass(line + start, at - start));
      set(at, kClassNormal);
      onlyBlanks = false;
    }
  }
  return inComment;
}

bool Scan(const char16_t* line, int length, bool inComment) {
  for (int at = 0; at < length;) {
    if (inComment) {
      if (PairAt(line, length, at, u'*', u'/')) {
        inComment = false;
        at += 2;
      } else {
        ++at;
      }
    } else if (line[at] == u'"' || line[at] == u'\'') {
      at = LiteralEnd(line, length, at);
    } else if (PairAt(line, length, at, u'/', u'/')) {
      break;
    } else if (PairAt(line, length, at, u'/', u'*')) {
      inComment = true;
      at += 2;
    } else {
      ++at;
    }
  }
  return inComment;
}

}  // namespace unit_by_unit

// Random lines built from the units and words every rule turns on, both start states.
TEST_F(Colouring, SameRunsAsTheUnitByUnitScanner) {
  const char16_t units[] = u" \t#/*\"'\\;.aefilnrtux_$0179LUXx\x7F\x80\xAC00";
  const char16_t* words[] = {u"int",          u"__FUNCTION__", u"define", u"include",
                             u"include_next", u"elif",         u"0x1FUL", u"10l",
                             u"sizeof",       u"/*",           u"*/",     u"//"};
  std::mt19937 random(25);
  std::vector<std::pair<int, int>> expected;
  for (int round = 0; round < 40000; ++round) {
    std::u16string line;
    int parts = static_cast<int>(random() % 24);
    for (int i = 0; i < parts; ++i) {
      if (random() % 4 == 0) {
        line += words[random() % (sizeof words / sizeof words[0])];
      } else {
        line += units[random() % (sizeof units / sizeof units[0] - 1)];
      }
    }
    int length = static_cast<int>(line.size());
    for (bool starts : {false, true}) {
      bool ends = ColourLine(&runs_, line.data(), length, 0, starts);
      bool expectedEnds = unit_by_unit::Colour(&expected, line.data(), length, starts);
      std::vector<std::pair<int, int>> got;
      for (int i = 0; i < runs_->count; ++i)
        got.emplace_back(runs_->entries[i].start, runs_->entries[i].colourClass);
      ASSERT_EQ(got, expected) << "line " << round << " starts " << starts;
      ASSERT_EQ(ends, expectedEnds) << "line " << round;
      ASSERT_EQ(ScanCommentState(line.data(), length, starts),
                unit_by_unit::Scan(line.data(), length, starts))
          << "line " << round;
    }
  }
}

TEST_F(Colouring, RunListGrowsAndOverwrites) {
  std::u16string many;
  for (int i = 0; i < 30; ++i)
    many += u"a ";
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
