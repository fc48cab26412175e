#include "foundation/unicode.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string ToUtf8(const std::u16string& text) {
  std::string out(
      static_cast<size_t>(Utf16ToUtf8(text.data(), static_cast<int>(text.size()), nullptr, 0)),
      '\0');
  Utf16ToUtf8(text.data(), static_cast<int>(text.size()), out.data(), static_cast<int>(out.size()));
  return out;
}

std::u16string ToUtf16(const std::string& text) {
  std::u16string out(
      static_cast<size_t>(Utf8ToUtf16(text.data(), static_cast<int>(text.size()), nullptr, 0)),
      u'\0');
  Utf8ToUtf16(text.data(), static_cast<int>(text.size()), out.data(), static_cast<int>(out.size()));
  return out;
}

TEST(Unicode, RoundTripsEveryPlane) {
  std::u16string text = u"A\u00e9\ud55c\uae00\U0001F600\uffff";
  EXPECT_EQ(ToUtf8(text), "A\xc3\xa9\xed\x95\x9c\xea\xb8\x80\xf0\x9f\x98\x80\xef\xbf\xbf");
  EXPECT_EQ(ToUtf16(ToUtf8(text)), text);
}

TEST(Unicode, MalformedInputBecomesReplacementCharacters) {
  // Lone surrogates, in either order.
  EXPECT_EQ(ToUtf8(std::u16string{0xDC00, 0xD800}), "\xef\xbf\xbd\xef\xbf\xbd");
  // A stray continuation, an overlong form, a truncated sequence, an encoded surrogate.
  EXPECT_EQ(ToUtf16("\x80"), u"\ufffd");
  EXPECT_EQ(ToUtf16("\xc0\xafx"), u"\ufffd\ufffdx");
  EXPECT_EQ(ToUtf16("a\xe2\x82"), u"a\ufffd\ufffd");
  EXPECT_EQ(ToUtf16("\xed\xa0\x80"), u"\ufffd\ufffd\ufffd");
  EXPECT_EQ(ToUtf16("\xf4\x90\x80\x80"), u"\ufffd\ufffd\ufffd\ufffd");
}

TEST(Unicode, ShortTargetsGetWhatFits) {
  char small[3];
  EXPECT_EQ(Utf16ToUtf8(u"\ud55c\ud55c", 2, small, 3), 3);
  EXPECT_EQ(std::string(small, 3), "\xed\x95\x9c");
  EXPECT_EQ(Utf16ToUtf8(u"abc", -1, nullptr, 0), 3);
  EXPECT_EQ(Utf8ToUtf16("abc", -1, nullptr, 0), 3);
}

}  // namespace
