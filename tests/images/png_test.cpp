// The PNG reader on small files built here: the pixel orders, and every way a file can be bad.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "images/inflate.h"
#include "images/png.h"
#include "tests/support/klib_test.h"

namespace {

void Put32(std::string* s, uint32_t v) {
  for (int shift = 24; shift >= 0; shift -= 8)
    s->push_back(static_cast<char>(v >> shift));
}

std::string Chunk(const char* type, const std::string& body) {
  std::string chunk;
  Put32(&chunk, static_cast<uint32_t>(body.size()));
  std::string typed = type + body;
  chunk += typed;
  Put32(&chunk, Crc32(0, reinterpret_cast<const uint8_t*>(typed.data()), typed.size()));
  return chunk;
}

std::string Header(uint32_t width, uint32_t height, int depth, int colour, int interlace = 0) {
  std::string body;
  Put32(&body, width);
  Put32(&body, height);
  body += {static_cast<char>(depth), static_cast<char>(colour), 0, 0, static_cast<char>(interlace)};
  return Chunk("IHDR", body);
}

// A zlib stream of one stored block.
std::string Zlib(const std::string& data) {
  std::string z = "\x78\x01\x01";
  uint16_t len = static_cast<uint16_t>(data.size());
  z += {static_cast<char>(len), static_cast<char>(len >> 8), static_cast<char>(~len),
        static_cast<char>(~len >> 8)};
  z += data;
  Put32(&z, Adler32(1, reinterpret_cast<const uint8_t*>(data.data()), data.size()));
  return z;
}

const std::string kSignature("\x89PNG\r\n\x1a\n", 8);

// 2x2 RGBA, rows filtered None and Up: (200,100,50,128) (0,0,255,255) / (10,20,30,0) (1,2,3,255).
std::string Scanlines() {
  return std::string(
      "\0\xc8\x64\x32\x80\x00\x00\xff\xff"
      "\x02\x42\xb0\xec\x80\x01\x02\x04\x00",
      18);
}

std::string File(const std::string& middle) {
  return kSignature + Header(2, 2, 8, 6) + middle + Chunk("IEND", "");
}

int Decode(const std::string& file, PngPixelOrder order, PngImage* image) {
  return DecodePng(reinterpret_cast<const uint8_t*>(file.data()), file.size(), order, image);
}

int Status(const std::string& file) {
  PngImage image;
  int status = Decode(file, kPngRgbaStraight, &image);
  EXPECT_TRUE(status == kPngOk || image.pixels == nullptr);
  FreePngImage(&image);
  return status;
}

class PngTest : public KLibTest {};

TEST_F(PngTest, PixelOrders) {
  std::string file = File(Chunk("IDAT", Zlib(Scanlines())));
  PngImage image;
  ASSERT_EQ(Decode(file, kPngRgbaStraight, &image), kPngOk);
  ASSERT_EQ(image.width, 2);
  ASSERT_EQ(image.height, 2);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(image.pixels), 16),
            std::string("\xc8\x64\x32\x80\x00\x00\xff\xff\x0a\x14\x1e\x00\x01\x02\x03\xff", 16));
  FreePngImage(&image);
  ASSERT_EQ(Decode(file, kPngBgraPremultiplied, &image), kPngOk);
  // 200*128/255 = 100.4, 100*128/255 = 50.2, 50*128/255 = 25.1; transparent is black.
  EXPECT_EQ(std::string(reinterpret_cast<char*>(image.pixels), 16),
            std::string("\x19\x32\x64\x80\xff\x00\x00\xff\x00\x00\x00\x00\x03\x02\x01\xff", 16));
  EXPECT_EQ(image.pixels[1], 0xFF0000FFu);  // 0xAARRGGBB for a DIB section
  FreePngImage(&image);
}

TEST_F(PngTest, ChunkLayout) {
  std::string data = Zlib(Scanlines());
  std::string split =
      Chunk("IDAT", data.substr(0, 5)) + Chunk("IDAT", "") + Chunk("IDAT", data.substr(5));
  EXPECT_EQ(Status(File(split)), kPngOk);
  EXPECT_EQ(Status(File(Chunk("teXt", "a") + split + Chunk("zzZz", "b"))), kPngOk);
  std::string gap =
      Chunk("IDAT", data.substr(0, 5)) + Chunk("teXt", "a") + Chunk("IDAT", data.substr(5));
  EXPECT_EQ(Status(File(gap)), kPngBadChunk);
  EXPECT_EQ(Status(File(Chunk("ZZZZ", "") + split)), kPngBadChunk);
  EXPECT_EQ(Status(File("")), kPngBadChunk);
  EXPECT_EQ(Status(File(split + Header(2, 2, 8, 6))), kPngBadChunk);
  EXPECT_EQ(Status(kSignature + Chunk("IDAT", data) + Chunk("IEND", "")), kPngBadHeader);
  std::string badSignature = File(split);
  badSignature[1] = 'p';
  EXPECT_EQ(Status(badSignature), kPngNotPng);
}

TEST_F(PngTest, DamagedFilesFailWithoutLeaks) {
  std::string good = File(Chunk("IDAT", Zlib(Scanlines())));
  // Every cut, and every single flipped bit past the signature, fails cleanly.
  for (size_t cut = 0; cut < good.size(); ++cut)
    EXPECT_NE(Status(good.substr(0, cut)), kPngOk) << cut;
  for (size_t bit = 64; bit < good.size() * 8; ++bit) {
    std::string bad = good;
    bad[bit / 8] = static_cast<char>(bad[bit / 8] ^ (1 << bit % 8));
    EXPECT_NE(Status(bad), kPngOk) << bit;
  }
  EXPECT_EQ(Status(good.substr(0, good.size() - 1)), kPngTruncated);
  std::string crc = good;
  crc[8 + 8 + 13] ^= 0x40;  // IHDR's CRC
  EXPECT_EQ(Status(crc), kPngBadCrc);
  std::string filter = Scanlines();
  filter[9] = 5;
  EXPECT_EQ(Status(File(Chunk("IDAT", Zlib(filter)))), kPngBadFilter);
  // One row short, one byte long.
  EXPECT_EQ(Status(File(Chunk("IDAT", Zlib(Scanlines().substr(9))))), kPngBadData);
  EXPECT_EQ(Status(File(Chunk("IDAT", Zlib(Scanlines() + "x")))), kPngBadData);
}

TEST_F(PngTest, HeadersAndLimits) {
  struct Case {
    uint32_t width, height;
    int depth, colour, interlace, status;
  };
  const Case kCases[] = {
      {0, 1, 8, 0, 0, kPngBadHeader},
      {1, 0, 8, 0, 0, kPngBadHeader},
      {1, 1, 4, 2, 0, kPngBadHeader},
      {1, 1, 16, 3, 0, kPngBadHeader},
      {1, 1, 3, 0, 0, kPngBadHeader},
      {1, 1, 8, 5, 0, kPngBadHeader},
      {1, 1, 8, 0, 2, kPngBadHeader},
      {0x80000000u, 1, 8, 0, 0, kPngBadHeader},
      {16385, 1, 8, 0, 0, kPngTooLarge},
      {16384, 16384, 1, 0, 0, kPngTooLarge},
      {8192, 4097, 8, 6, 1, kPngTooLarge},
      // Within the limits but with a few bytes of data where megabytes are due: refused before
      // the picture's memory is taken.
      {16384, 2048, 16, 6, 0, kPngBadData},
      {8192, 4096, 8, 2, 1, kPngBadData},
  };
  for (const Case& c : kCases) {
    std::string file = kSignature + Header(c.width, c.height, c.depth, c.colour, c.interlace) +
                       Chunk("IDAT", Zlib(std::string(100, '\0'))) + Chunk("IEND", "");
    EXPECT_EQ(Status(file), c.status)
        << c.width << "x" << c.height << " " << c.depth << "/" << c.colour;
  }
}

TEST_F(PngTest, Palettes) {
  auto paletted = [](int depth, const std::string& palette, const std::string& row) {
    return kSignature + Header(static_cast<uint32_t>(row.size() * 8 / depth), 1, depth, 3) +
           palette + Chunk("IDAT", Zlib(std::string(1, '\0') + row)) + Chunk("IEND", "");
  };
  std::string three = Chunk("PLTE", std::string(9, '\x7f'));
  using S = std::string;
  EXPECT_EQ(Status(paletted(8, three, S("\x00\x01\x02", 3))), kPngOk);
  EXPECT_EQ(Status(paletted(8, three, S("\x00\x03\x02", 3))), kPngBadPalette);
  EXPECT_EQ(Status(paletted(2, three, "\x1b")), kPngBadPalette);  // 0 1 2 3
  EXPECT_EQ(Status(paletted(2, three, "\x1a")), kPngOk);          // 0 1 2 2
  EXPECT_EQ(Status(paletted(8, "", S(1, 0))), kPngBadPalette);
  EXPECT_EQ(Status(paletted(8, Chunk("PLTE", std::string(8, '\0')), S(1, 0))), kPngBadPalette);
  EXPECT_EQ(Status(paletted(1, Chunk("PLTE", std::string(9, '\0')), S(1, 0))), kPngBadPalette);
  EXPECT_EQ(Status(paletted(8, three + three, S(1, 0))), kPngBadChunk);
  // Transparency longer than the palette is ignored, as common decoders do.
  PngImage image;
  std::string file = paletted(8, three + Chunk("tRNS", std::string("\x10\x20\x30\x40", 4)), "\x02");
  ASSERT_EQ(Decode(file, kPngRgbaStraight, &image), kPngOk);
  EXPECT_EQ(image.pixels[0] >> 24, 0xFFu);
  FreePngImage(&image);
  file = paletted(8, three + Chunk("tRNS", std::string("\x10\x20", 2)), S("\x01\x02", 2));
  ASSERT_EQ(Decode(file, kPngRgbaStraight, &image), kPngOk);
  EXPECT_EQ(image.pixels[0] >> 24, 0x20u);
  EXPECT_EQ(image.pixels[1] >> 24, 0xFFu);
  FreePngImage(&image);
}

}  // namespace
