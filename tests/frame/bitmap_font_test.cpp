// The bitmap font file: its header gives the cell, the glyphs follow in a fixed order.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "frame/bitmap_font.h"
#include "tests/support/klib_test.h"

namespace {

std::vector<unsigned char> Header(int width, int height) {
  std::vector<unsigned char> data(kBitmapFontHeaderSize, 0);
  data[18] = static_cast<unsigned char>(width);
  data[19] = static_cast<unsigned char>(width >> 8);
  data[20] = static_cast<unsigned char>(height);
  data[21] = static_cast<unsigned char>(height >> 8);
  return data;
}

TEST(BitmapFont, HeaderGivesTheCellOfHalfTheFullWidth) {
  std::vector<unsigned char> data = Header(16, 16);
  BitmapFont font;
  ASSERT_TRUE(ParseBitmapFont(data.data(), data.size(), &font));
  EXPECT_EQ(BitmapFontCellWidth(font), 8);
  EXPECT_EQ(font.height, 16);

  data = Header(0x0112, 20);  // the high byte counts: 274 is too wide
  EXPECT_FALSE(ParseBitmapFont(data.data(), data.size(), &font));
  data = Header(1, 16);
  EXPECT_FALSE(ParseBitmapFont(data.data(), data.size(), &font));
  data = Header(16, 0);
  EXPECT_FALSE(ParseBitmapFont(data.data(), data.size(), &font));
  data = Header(16, 16);
  EXPECT_FALSE(ParseBitmapFont(data.data(), 21, &font));
}

TEST(BitmapFont, GlyphsLieAfterTheHeaderHalfWidthFirstThenHangul) {
  // 12 x 14 cells: half-width glyphs are 6 wide (1 byte a row), full-width 12 (2 bytes a row).
  std::vector<unsigned char> data = Header(12, 14);
  size_t halfBlock = 256 * 1 * 14;
  data.resize(kBitmapFontHeaderSize + halfBlock + 2 * 2 * 14, 0);
  data[kBitmapFontHeaderSize + 'A' * 14] = 0x80;             // 'A', first row, leftmost pixel
  data[kBitmapFontHeaderSize + halfBlock + 2 * 14 + 1] = 1;  // U+AC01, first row, second byte
  BitmapFont font;
  ASSERT_TRUE(ParseBitmapFont(data.data(), data.size(), &font));

  int rowBytes = 0, width = 0;
  const unsigned char* glyph = BitmapFontGlyph(font, u'A', &rowBytes, &width);
  ASSERT_NE(glyph, nullptr);
  EXPECT_EQ(rowBytes, 1);
  EXPECT_EQ(width, 6);
  EXPECT_EQ(glyph[0], 0x80);

  glyph = BitmapFontGlyph(font, u'\uAC01', &rowBytes, &width);
  ASSERT_NE(glyph, nullptr);
  EXPECT_EQ(rowBytes, 2);
  EXPECT_EQ(width, 12);
  EXPECT_EQ(glyph[1], 1);

  // The file stops after two syllables; other units have no glyph.
  EXPECT_EQ(BitmapFontGlyph(font, u'\uAC02', &rowBytes, &width), nullptr);
  EXPECT_EQ(BitmapFontGlyph(font, u'\u4E00', &rowBytes, &width), nullptr);
  EXPECT_EQ(BitmapFontGlyph(font, u'\u0100', &rowBytes, &width), nullptr);
}

TEST(BitmapFont, TruncatedHalfWidthBlockHasNoGlyphPastTheEnd) {
  std::vector<unsigned char> data = Header(16, 16);
  data.resize(kBitmapFontHeaderSize + 16 * 33, 0);  // glyphs 0-32 only
  BitmapFont font;
  ASSERT_TRUE(ParseBitmapFont(data.data(), data.size(), &font));
  int rowBytes, width;
  EXPECT_NE(BitmapFontGlyph(font, u' ', &rowBytes, &width), nullptr);
  EXPECT_EQ(BitmapFontGlyph(font, u'!', &rowBytes, &width), nullptr);
}

class BitmapFontFileTest : public KLibTest {};

TEST_F(BitmapFontFileTest, LoadsByBaseNameAndRefusesEmptyMissingOrBad) {
  std::string folder = testing::TempDir();
  for (char& c : folder) {
    if (c == '\\') c = '/';
  }
  if (!folder.empty() && folder.back() == '/') folder.pop_back();
  std::vector<unsigned char> data = Header(16, 16);
  std::ofstream(folder + "/QuillTestFont.fnt", std::ios::binary)
      .write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
  std::ofstream(folder + "/QuillBadFont.fnt", std::ios::binary) << "short";

  BitmapFont font;
  unsigned char* file = LoadBitmapFontFile(folder.c_str(), "QuillTestFont", &font, 1007);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(BitmapFontCellWidth(font), 8);
  FreeMem(file);
  EXPECT_EQ(LoadBitmapFontFile(folder.c_str(), "", &font, 1007), nullptr);
  EXPECT_EQ(LoadBitmapFontFile(folder.c_str(), "QuillNoSuchFont", &font, 1007), nullptr);
  EXPECT_EQ(LoadBitmapFontFile(folder.c_str(), "QuillBadFont", &font, 1007), nullptr);
  std::remove((folder + "/QuillTestFont.fnt").c_str());
  std::remove((folder + "/QuillBadFont.fnt").c_str());
}

}  // namespace
