// Matching in one line: case, whole words by the class of the pattern's first unit, rejected
// candidates skipped whole; and the search record's options and histories.
#include "editor/find_match.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "editor/search_request.h"
#include "foundation/settings.h"
#include "tests/support/settings_file.h"

namespace {

int Find(const std::u16string& line, const std::u16string& pattern, bool caseSensitive, bool wholeWord,
         int start = 0, int endLimit = -1) {
  int length = static_cast<int>(line.size());
  return MatchInLine(line.data(), length, start, endLimit < 0 ? length : endLimit, pattern.data(),
                     static_cast<int>(pattern.size()), MatchRules{caseSensitive, wholeWord});
}

TEST(FindMatch, CaseAndPlainMatches) {
  EXPECT_EQ(Find(u"Hello hello", u"hello", true, false), 6);
  EXPECT_EQ(Find(u"Hello hello", u"hello", false, false), 0);
  EXPECT_EQ(Find(u"ÉCOLE école", u"école", false, false), 0);
  EXPECT_EQ(Find(u"abc", u"abcd", false, false), -1);
  EXPECT_EQ(Find(u"abcabc", u"abc", true, false, 1), 3);
  EXPECT_EQ(Find(u"abcabc", u"abc", true, false, 1, 5), -1);  // the limit ends the candidates
  EXPECT_EQ(Find(u"abc", u"", true, false), -1);
}

TEST(FindMatch, WholeWordsByTheFirstUnitsClass) {
  EXPECT_EQ(Find(u"abab", u"ab", true, true), -1);  // the second candidate is skipped with the first
  EXPECT_EQ(Find(u"if(x)", u"if", true, true), 0);
  EXPECT_EQ(Find(u"elif", u"if", true, true), -1);
  EXPECT_EQ(Find(u"x = if", u"if", true, true), 4);  // a match that reaches the end of the line
  // A Hangul pattern: no word character may touch it, identifier characters included.
  EXPECT_EQ(Find(u"a한글 한글", u"한글", true, true), 4);
  EXPECT_EQ(Find(u"(한글)", u"한글", true, true), 1);
  // An identifier pattern next to Hangul is a whole word: Hangul is no identifier character.
  EXPECT_EQ(Find(u"한x한", u"x", true, true), 1);
  // A separator pattern has no test.
  EXPECT_EQ(Find(u"a->b", u"->", true, true), 1);
  // The unit after the limit still counts: the line goes on.
  EXPECT_EQ(Find(u"ab abc", u"ab", true, true, 3, 5), -1);
}

class SearchSettings : public SettingsFileTest {
 protected:
  SearchSettings() : SettingsFileTest("quill_search_settings.ini") {}
  std::string Entry(int index) {
    char buffer[800];
    return ReadHistory(kFindHistory, index, buffer, sizeof buffer) ? buffer : "<none>";
  }
};

TEST_F(SearchSettings, OptionsDefaultAndRoundTrip) {
  SearchRequest request = {};
  LoadSearchOptions(&request);
  EXPECT_EQ(request.direction, 1);
  EXPECT_EQ(request.caseSensitive + request.wholeWord + request.scope + request.origin, 0);
  request.caseSensitive = 1;
  request.origin = 1;
  SaveSearchOptions(&request);
  SearchRequest again = {};
  LoadSearchOptions(&again);
  EXPECT_EQ(again.caseSensitive, 1);
  EXPECT_EQ(again.origin, 1);
}

TEST_F(SearchSettings, HistoryNewestFirstWithoutDuplicatesAtMostFifty) {
  PushHistory(kFindHistory, u"alpha");
  PushHistory(kFindHistory, u"베타");
  PushHistory(kFindHistory, u"alpha");
  EXPECT_EQ(Entry(0), "alpha");
  EXPECT_EQ(Entry(1), "베타");
  EXPECT_EQ(Entry(2), "<none>");
  for (int i = 0; i < 60; ++i) PushHistory(kFindHistory, std::u16string(u"t" + std::u16string(1, u'0' + i % 10) + std::u16string(1, u'A' + i / 10)).c_str());
  EXPECT_EQ(Entry(0), "t9F");
  EXPECT_NE(Entry(49), "<none>");
  EXPECT_EQ(Entry(50), "<none>");
}

TEST(SearchText, CutTo259Units) {
  char16_t field[kSearchTextUnits];
  std::u16string longText(400, u'x');
  SetSearchText(field, longText.data(), 400);
  EXPECT_EQ(std::u16string(field).size(), 259u);
}

}  // namespace
