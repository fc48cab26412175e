#include "tools/error_lookup.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/klib_test.h"

namespace {

using ErrorLookupTest = KLibTest;

struct Lookup {
  int length;
  unsigned code;
  std::string text;
};

Lookup Look(const std::string& input) {
  char text[4096];
  Lookup result{};
  result.length = LookUpErrorText(input.c_str(), text, sizeof text, &result.code);
  result.text = text;
  return result;
}

TEST_F(ErrorLookupTest, TheCodeIsReadAsACInteger) {
  EXPECT_EQ(Look("5").code, 5u);
  EXPECT_EQ(Look("0x5").code, 5u);
  EXPECT_EQ(Look(" 010").code, 8u);
  EXPECT_EQ(Look("-1").code, 0xFFFFFFFFu);
  EXPECT_EQ(Look("abc").code, 0u);
  EXPECT_EQ(Look("12abc").code, 12u);
  EXPECT_EQ(Look(std::string(40, ' ') + "7").code, 0u);  // past the edit's 40 characters
  EXPECT_EQ(Look(std::string(39, ' ') + "7").code, 7u);
}

#ifdef _WIN32
TEST_F(ErrorLookupTest, TheSystemsTextAsItStands) {
  Lookup five = Look("5");
  EXPECT_GT(five.length, 0);
  EXPECT_EQ(five.length, static_cast<int>(five.text.size()));
  EXPECT_EQ(Look("0x5").text, five.text);
  EXPECT_EQ(five.text.substr(five.text.size() - 2), "\r\n");
  EXPECT_NE(Look("010").text, five.text);
  EXPECT_GT(Look("abc").length, 0);  // code 0 has a text of its own
  Lookup unknown = Look("99999");
  EXPECT_EQ(unknown.length, 0);
  EXPECT_EQ(unknown.text, "");
}
#else
TEST_F(ErrorLookupTest, ThisSystemHasNoMessageTable) {
  Lookup five = Look("5");
  EXPECT_EQ(five.length, -1);
  EXPECT_EQ(five.text, "");
}
#endif

}  // namespace
