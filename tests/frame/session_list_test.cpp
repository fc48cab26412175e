// The document list and frame placement kept between runs.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "foundation/path.h"
#include "foundation/settings.h"
#include "frame/session_list.h"
#include "tests/support/klib_test.h"

namespace {

class SessionListTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    path_ = testing::TempDir() + "quill_session_test.ini";
    for (char& c : path_) {
      if (c == '\\') c = '/';
    }
    std::remove(path_.c_str());
  }
  void TearDown() override {
    std::remove(path_.c_str());
    KLibTest::TearDown();
  }
  std::string Read(int index) {
    char text[1024];
    ReadFromFile(path_.c_str(), kDocListSection, index, text, sizeof text);
    return text;
  }
  std::string Contents() {
    std::ifstream in(path_, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
  }
  std::string path_;
};

TEST_F(SessionListTest, UntitledDocumentsTakeNoIndexAndTheListEndsEmpty) {
  SessionWindow windows[] = {
      {"c:/src/main.c", false, 0, 0, 400, 300, kShowMaximized},
      {"c:/src/NoName01.cpp", true, 10, 10, 400, 300, kShowNormal},
      {"c:/My Docs/read me.txt", false, -4, 20, 500, 200, kShowMinimized},
  };
  EXPECT_EQ(SaveSessionList(path_.c_str(), windows, 3), 2);
  EXPECT_EQ(Read(0), "\"c:/src/main.c\" 0 0 400 300 3");
  EXPECT_EQ(Read(1), "\"c:/My Docs/read me.txt\" -4 20 500 200 6");
  EXPECT_EQ(Contents().find("2=\r\n") != std::string::npos ||
                Contents().find("2=\n") != std::string::npos,
            true);
  EXPECT_EQ(SessionListLength(path_.c_str()), 2);

  SessionEntry entry;
  ASSERT_TRUE(ReadSessionEntry(path_.c_str(), 1, &entry));
  EXPECT_STREQ(entry.path, "c:/My Docs/read me.txt");
  EXPECT_EQ(entry.left, -4);
  EXPECT_EQ(entry.top, 20);
  EXPECT_EQ(entry.width, 500);
  EXPECT_EQ(entry.height, 200);
  EXPECT_EQ(entry.show, kShowMinimized);
}

TEST_F(SessionListTest, AShorterListEndsBeforeTheOldEntriesOfALongerOne) {
  SessionWindow three[] = {
      {"a.c", false, 0, 0, 1, 1, 1}, {"b.c", false, 0, 0, 1, 1, 1}, {"c.c", false, 0, 0, 1, 1, 1}};
  SaveSessionList(path_.c_str(), three, 3);
  SaveSessionList(path_.c_str(), three + 2, 1);
  EXPECT_EQ(SessionListLength(path_.c_str()), 1);
  EXPECT_EQ(Read(0), "\"c.c\" 0 0 1 1 1");
  EXPECT_EQ(Read(2), "\"c.c\" 0 0 1 1 1");  // left behind, but past the end
}

TEST_F(SessionListTest, TheProjectWindowGoesUnderItsOwnKeyAndAtMostAHundredAreLookedAt) {
  static char names[120][16];
  SessionWindow windows[120];
  windows[0] = {nullptr, false, 5, 6, 300, 400, kShowNormal};
  for (int i = 1; i < 120; ++i) {
    snprintf(names[i], sizeof names[i], "f%d.c", i);
    windows[i] = {names[i], false, i, i, 100, 100, kShowNormal};
  }
  EXPECT_EQ(SaveSessionList(path_.c_str(), windows, 120), 99);
  char text[64];
  ASSERT_TRUE(SetSettingsPath(path_.c_str()));
  ReadText(kDocListSection, kProjectKey, text, sizeof text, "");
  EXPECT_STREQ(text, "5 6 300 400 1");
  EXPECT_EQ(SessionListLength(path_.c_str()), 99);
  EXPECT_EQ(Read(98), "\"f99.c\" 99 99 100 100 1");
}

TEST(SessionEntryParse, QuotedPathsAreTakenWholeAndBadEntriesRefused) {
  SessionEntry entry;
  ASSERT_TRUE(ParseSessionEntry("\"d:/a b/c d.txt\" 1 2 3 4 1", &entry));
  EXPECT_STREQ(entry.path, "d:/a b/c d.txt");
  EXPECT_EQ(entry.height, 4);
  // Written by hand without quotes: the path ends at the first blank.
  ASSERT_TRUE(ParseSessionEntry("d:/plain.c -10 -20 30 40 3", &entry));
  EXPECT_STREQ(entry.path, "d:/plain.c");
  EXPECT_EQ(entry.top, -20);
  EXPECT_EQ(entry.show, 3);

  EXPECT_FALSE(ParseSessionEntry("\"d:/a.c\" 1 2 3 4", &entry));  // one number short
  EXPECT_FALSE(ParseSessionEntry("\"d:/a.c 1 2 3 4 1", &entry));  // no closing quote
  EXPECT_FALSE(ParseSessionEntry("\"\" 1 2 3 4 1", &entry));      // no path
  EXPECT_FALSE(ParseSessionEntry("\"d:/a.c\" 1 x 3 4 1", &entry));
  EXPECT_FALSE(ParseSessionEntry("", &entry));
  std::string tooLong = "\"" + std::string(kPathSize, 'p') + "\" 1 2 3 4 1";
  EXPECT_FALSE(ParseSessionEntry(tooLong.c_str(), &entry));
}

TEST(FramePlaceRules, ParsedAndKeptReachableOnTheScreen) {
  FramePlace place;
  ASSERT_TRUE(ParseFramePlace("1900 1060 1024 768", &place));
  FitFramePlace(&place, 1920, 1080, 23);
  EXPECT_EQ(place.left, 0);  // 1900 >= 1920 - 23
  EXPECT_EQ(place.top, 0);
  EXPECT_EQ(place.width, 1024);

  ASSERT_TRUE(ParseFramePlace("1896 1056 800 600", &place));
  FitFramePlace(&place, 1920, 1080, 23);
  EXPECT_EQ(place.left, 1896);  // one pixel short of the limit
  EXPECT_EQ(place.top, 1056);

  ASSERT_TRUE(ParseFramePlace("-8 -8 1040 784", &place));
  FitFramePlace(&place, 1024, 768, 23);
  EXPECT_EQ(place.left, -8);  // a maximised frame's negative corner is kept
  EXPECT_EQ(place.top, -8);

  EXPECT_FALSE(ParseFramePlace("10 20 30", &place));
  EXPECT_FALSE(ParseFramePlace("", &place));
}

}  // namespace
