#include "tools/bin2src_options.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>

#include "foundation/settings.h"
#include "tests/support/settings_file.h"

namespace {

class Bin2SrcOptionsTest : public SettingsFileTest {
 protected:
  Bin2SrcOptionsTest() : SettingsFileTest("quill_b2s_options.ini") {}
};

TEST_F(Bin2SrcOptionsTest, SavedOptionsComeBackUnderTheirKeys) {
  Bin2SrcOptions options;
  SetDefaultBin2SrcOptions(&options);
  strcpy(options.binFile, "C:/data/한글.bin");
  strcpy(options.saveFile, "C:/out/table.asm");
  options.type = kBin2SrcAsm;
  options.dataExp = kBin2SrcUnsigned;
  options.dataSize = 2;
  options.endian = 1;
  strcpy(options.dataForm, "%u");
  strcpy(options.skipBytes, "0x10");
  options.lineLen = 8;
  options.openEditor = 0;
  ASSERT_TRUE(SaveBin2SrcOptions(options));

  char value[64];
  ReadStr(kConfigSection, "Bin2SrcDataSize", value, sizeof value);
  EXPECT_STREQ(value, "2");
  ReadStr(kConfigSection, "Bin2Src1LineLen", value, sizeof value);
  EXPECT_STREQ(value, "8");
  ReadStr(kConfigSection, "Bin2SrcSkipBytes", value, sizeof value);
  EXPECT_STREQ(value, "0x10");

  Bin2SrcOptions loaded;
  LoadBin2SrcOptions(&loaded);
  EXPECT_STREQ(loaded.binFile, options.binFile);
  EXPECT_STREQ(loaded.saveFile, options.saveFile);
  EXPECT_EQ(loaded.type, kBin2SrcAsm);
  EXPECT_EQ(loaded.dataExp, kBin2SrcUnsigned);
  EXPECT_EQ(loaded.dataSize, 2);
  EXPECT_EQ(loaded.endian, 1);
  EXPECT_STREQ(loaded.dataForm, "%u");
  EXPECT_STREQ(loaded.skipBytes, "0x10");
  EXPECT_EQ(loaded.lineLen, 8u);
  EXPECT_EQ(loaded.openEditor, 0);
}

// Keys that are missing or out of their radio group load as the dialog's first choice, whatever
// the record held before; the number format follows the data size.
TEST_F(Bin2SrcOptionsTest, BadOrMissingKeysFallBackAndTheFormatFollows) {
  Bin2SrcOptions options;
  memset(&options, 0x55, sizeof options);
  LoadBin2SrcOptions(&options);
  EXPECT_STREQ(options.dataForm, "0x%02X");
  EXPECT_EQ(options.lineLen, 16u);
  EXPECT_EQ(options.openEditor, 1);
  std::ofstream(path_, std::ios::binary) << "[Config]\r\nBin2SrcType=7\r\nBin2SrcDataExp=-1\r\n"
                                            "Bin2SrcDataSize=1\r\nBin2SrcEndian=3\r\n";
  LoadBin2SrcOptions(&options);
  EXPECT_EQ(options.type, kBin2SrcC);
  EXPECT_EQ(options.dataExp, kBin2SrcHex);
  EXPECT_EQ(options.dataSize, 1);
  EXPECT_EQ(options.endian, 0);
  EXPECT_STREQ(options.dataForm, "0x%04X");
  EXPECT_STREQ(options.binFile, "");
}

}  // namespace
