// The encoding settings with their defaults and bad values, and the case of a word.
#include "encoding/encoding_settings.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "encoding/text_encoding.h"
#include "encoding/word_case.h"
#include "foundation/settings.h"
#include "tests/support/settings_file.h"

namespace {

class EncodingSettings : public SettingsFileTest {
 protected:
  EncodingSettings() : SettingsFileTest("quill_encoding_settings.ini") {}
};

TEST_F(EncodingSettings, DefaultsWithoutAFile) {
  EXPECT_EQ(ReadUnrecognisedEncoding(), EUCKR);
  ImportChoice choice = ReadImportChoice();
  EXPECT_EQ(choice.encoding, ENCODING_DETECT);
  EXPECT_EQ(choice.tabSize, 8);
}

TEST_F(EncodingSettings, ValuesAndOutOfRangeValues) {
  WriteSettings("[Config]\r\nUnrecognzFileForm=1\r\nImportHanCode=4\r\nImportTabSize=4\r\n");
  EXPECT_EQ(ReadUnrecognisedEncoding(), JOHAP);
  EXPECT_EQ(ReadImportChoice().encoding, UTF16);
  EXPECT_EQ(ReadImportChoice().tabSize, 4);
  WriteSettings("[Config]\r\nUnrecognzFileForm=0\r\nImportHanCode=9\r\n");
  EXPECT_EQ(ReadUnrecognisedEncoding(), EUCKR);
  EXPECT_EQ(ReadImportChoice().encoding, ENCODING_DETECT);
  WriteSettings("[Config]\r\nUnrecognzFileForm=junk\r\n");
  EXPECT_EQ(ReadUnrecognisedEncoding(), EUCKR);
}

TEST_F(EncodingSettings, ImportChoiceIsWrittenBack) {
  WriteImportChoice({JOHAP, 3});
  ImportChoice choice = ReadImportChoice();
  EXPECT_EQ(choice.encoding, JOHAP);
  EXPECT_EQ(choice.tabSize, 3);
}

TEST(WordCase, UpperAndLowerBeyondAscii) {
  std::u16string word = u"abc_é가ａω";
  UpperCaseWord(&word[0], static_cast<int>(word.size()));
  EXPECT_EQ(word, u"ABC_É가ＡΩ");
  LowerCaseWord(&word[0], static_cast<int>(word.size()));
  EXPECT_EQ(word, u"abc_é가ａω");
  // Only the given units change.
  std::u16string part = u"abc";
  UpperCaseWord(&part[0], 2);
  EXPECT_EQ(part, u"ABc");
}

}  // namespace
