// The logo's source and placement, the cached copy's freshness, and which version is offered.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "frame/logo_rules.h"

namespace {

TEST(LogoRules, AddressComponents) {
  struct {
    const char* url;
    const char* last;  // null: none
    const char* beside;
  } cases[] = {
      {"http://quill.example/Logo.png", "Logo.png", "http://quill.example/Version.txt"},
      {"http://127.0.0.1:8080/a/b/Logo.png?v=2", "Logo.png",
       "http://127.0.0.1:8080/a/b/Version.txt"},
      {"http://host/dir/", nullptr, "http://host/dir/Version.txt"},
      {"http://host", nullptr, nullptr},
      {"http:/", nullptr, nullptr},
  };
  for (const auto& c : cases) {
    char name[64] = "untouched", beside[128] = "untouched";
    EXPECT_EQ(AddressLastComponent(c.url, name, sizeof name), c.last != nullptr) << c.url;
    if (c.last) {
      EXPECT_STREQ(name, c.last);
    }
    EXPECT_EQ(AddressBeside(c.url, "Version.txt", beside, sizeof beside), c.beside != nullptr)
        << c.url;
    if (c.beside) {
      EXPECT_STREQ(beside, c.beside);
    }
  }
  char tiny[8];
  EXPECT_FALSE(AddressLastComponent("http://host/Logo.png", tiny, sizeof tiny));
  EXPECT_FALSE(AddressBeside("http://host/Logo.png", "Version.txt", tiny, sizeof tiny));
}

TEST(LogoRules, ServerCopyIsNewerOnlyWhenItsDateIsLaterOrUnknown) {
  // Sun, 06 Nov 1994 08:49:37 GMT is 784111777.
  const char* date = "Sun, 06 Nov 1994 08:49:37 GMT";
  EXPECT_FALSE(ServerCopyIsNewer(date, 784111777));
  EXPECT_FALSE(ServerCopyIsNewer(date, 784111778));
  EXPECT_TRUE(ServerCopyIsNewer(date, 784111776));
  EXPECT_TRUE(ServerCopyIsNewer("", 784111777));
  EXPECT_TRUE(ServerCopyIsNewer("yesterday", 0));
  EXPECT_TRUE(ServerCopyIsNewer(nullptr, 0));
}

TEST(LogoRules, TheWindowIsThePicturePlusItsFrameCentredWithHalvesRoundedDown) {
  struct {
    int left, top, right, bottom, w, h;
    LogoRect expected;
  } cases[] = {
      {0, 0, 1024, 768, 360, 140, {330, 312, 364, 144}},
      {10, 20, 1035, 789, 360, 140, {340, 332, 364, 144}},  // odd spare: rounded down
      // A picture larger than the frame hangs over it on both sides, the extra pixel left/up.
      {0, 0, 100, 100, 201, 97, {-53, -1, 205, 101}},
      {-1000, 0, -500, 300, 0, 0, {-752, 148, 4, 4}},
  };
  for (const auto& c : cases) {
    LogoRect r = PlaceLogo(c.left, c.top, c.right, c.bottom, c.w, c.h);
    EXPECT_EQ(r.x, c.expected.x);
    EXPECT_EQ(r.y, c.expected.y);
    EXPECT_EQ(r.width, c.expected.width);
    EXPECT_EQ(r.height, c.expected.height);
  }
}

TEST(LogoRules, VersionsCompareByTheirNumbers) {
  struct {
    const char* a;
    const char* b;
    int order;
  } cases[] = {
      {"1.27", "1.27", 0},
      {"1.27", "1.28", -1},
      {"1.100", "1.27", 1},
      {"2", "1.99", 1},
      {"1.27.1", "1.27", 1},
      {"1.27.0", "1.27", 0},
      {"01.027", "1.27", 0},
      {"", "1.0", -1},
      {"1.", "0.1", -1},
      {"1..2", "0", -1},
      {"v1.3", "1.2", -1},
      {"x", "y", 0},
      {"99999999999999999999", "1", 1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CompareVersions(c.a, c.b), c.order) << c.a << " vs " << c.b;
    EXPECT_EQ(CompareVersions(c.b, c.a), -c.order) << c.b << " vs " << c.a;
  }
}

TEST(LogoRules, VersionOfferTakesTheVersionAndAWebPage) {
  const char* from = "http://127.0.0.1:8000/up/Version.txt";
  struct {
    const char* text;
    bool ok;
    const char* version;
    const char* page;
  } cases[] = {
      {"1.28\r\nhttp://quill.example/get.html\r\n", true, "1.28", "http://quill.example/get.html"},
      {"  2.0 \n", true, "2.0", "http://127.0.0.1:8000/up/"},
      {"1.30", true, "1.30", "http://127.0.0.1:8000/up/"},
      {"1.28\nhttps://secure.example/q\n", true, "1.28", "https://secure.example/q"},
      {"1.28\nC:\\Windows\\system32\\calc.exe\n", false, nullptr, nullptr},
      {"1.28\nfile:///etc/passwd\n", false, nullptr, nullptr},
      {"<html>Not Found</html>", false, nullptr, nullptr},
      {"", false, nullptr, nullptr},
      {"1.2345678901234567890123456789012345\n", false, nullptr, nullptr},
  };
  for (const auto& c : cases) {
    VersionOffer offer;
    ASSERT_EQ(ParseVersionOffer(c.text, strlen(c.text), from, &offer), c.ok) << c.text;
    if (!c.ok) continue;
    EXPECT_STREQ(offer.version, c.version);
    EXPECT_STREQ(offer.page, c.page);
  }
  // A zero byte inside the text is not part of a version.
  const char nul[] = "1.28\0junk\n";
  VersionOffer offer;
  EXPECT_FALSE(ParseVersionOffer(nul, sizeof nul - 1, from, &offer));
}

TEST(LogoRules, AVersionIsOfferedWhenNewerAndNotAskedBefore) {
  EXPECT_TRUE(ShouldOfferVersion("1.28", "1.27", ""));
  EXPECT_TRUE(ShouldOfferVersion("1.29", "1.27", "1.28"));
  EXPECT_FALSE(ShouldOfferVersion("1.28", "1.27", "1.28"));
  EXPECT_FALSE(ShouldOfferVersion("1.27", "1.27", ""));
  EXPECT_FALSE(ShouldOfferVersion("1.9", "1.27", ""));
}

}  // namespace
