// The inflate against streams made by Python's zlib, and against streams cut short or damaged.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/sha256.h"
#include "images/inflate.h"
#include "tests/support/klib_test.h"

namespace {

struct Vector {
  const char* name;
  const char* stream;
  size_t streamSize;
  size_t size;
  const char* sha256;
};
const Vector kVectors[] = {
#include "tests/images/inflate_vectors.inc"
};
const char kDictionaryStream[] = QUILL_DICTIONARY_STREAM;

std::string Digest(const uint8_t* data, size_t size) {
  Sha256 sha;
  Sha256Start(&sha);
  Sha256Add(&sha, data, size);
  uint8_t digest[32];
  Sha256Finish(&sha, digest);
  char hex[65];
  Sha256Hex(digest, hex);
  return hex;
}

const uint8_t* Bytes(const char* text) {
  return reinterpret_cast<const uint8_t*>(text);
}

const Vector& Find(const char* name) {
  for (const Vector& v : kVectors) {
    if (std::string(v.name) == name) return v;
  }
  ADD_FAILURE() << name;
  return kVectors[0];
}

class InflateTest : public KLibTest {};

TEST_F(InflateTest, ReproducesZlibStreams) {
  for (const Vector& v : kVectors) {
    std::vector<uint8_t> out(v.size + 1);
    size_t written = 99;
    EXPECT_EQ(InflateZlib(Bytes(v.stream), v.streamSize, out.data(), v.size, &written), kInflateOk)
        << v.name;
    EXPECT_EQ(written, v.size) << v.name;
    EXPECT_EQ(Digest(out.data(), written), v.sha256) << v.name;
    // One byte less room than the stream needs is refused, not overrun.
    if (v.size) {
      EXPECT_EQ(InflateZlib(Bytes(v.stream), v.streamSize, out.data(), v.size - 1, &written),
                kInflateTooLarge)
          << v.name;
    }
  }
}

TEST_F(InflateTest, StreamsCutShortAreTruncated) {
  for (const Vector& v : kVectors) {
    std::vector<uint8_t> out(v.size);
    size_t step = v.streamSize / 40 + 1;
    for (size_t cut = 0; cut < v.streamSize; cut += step) {
      size_t written;
      int status = InflateZlib(Bytes(v.stream), cut, out.data(), v.size, &written);
      EXPECT_EQ(status, kInflateTruncated) << v.name << " cut at " << cut;
    }
  }
}

TEST_F(InflateTest, DamagedStreamsFail) {
  const Vector& text = Find("text/9/default");
  std::vector<uint8_t> out(text.size);
  std::string stream(text.stream, text.streamSize);
  size_t written;
  std::string bad = stream;
  bad.back() = static_cast<char>(bad.back() ^ 1);
  EXPECT_EQ(InflateZlib(Bytes(bad.data()), bad.size(), out.data(), out.size(), &written),
            kInflateBadChecksum);
  struct Header {
    uint8_t cmf, flg;
  };
  // Method 7, window 2^16, check bits wrong, preset dictionary.
  for (Header h :
       {Header{0x77, 0x85}, Header{0x88, 0x98}, Header{0x78, 0x9D}, Header{0x78, 0xBB}}) {
    bad = stream;
    bad[0] = static_cast<char>(h.cmf), bad[1] = static_cast<char>(h.flg);
    EXPECT_EQ(InflateZlib(Bytes(bad.data()), bad.size(), out.data(), out.size(), &written),
              kInflateBadHeader)
        << int{h.cmf} << " " << int{h.flg};
  }
  size_t consumed;
  struct Raw {
    std::string data;
    int status;
  };
  const Raw kRaw[] = {
      {std::string("\x07", 1), kInflateBadData},  // block type 3
      {std::string("\x01\x05\x00\xfa\xff"
                   "abcde",
                   10),
       kInflateOk},  // stored, LEN and NLEN agree
      {std::string("\x01\x05\x00\xfb\xff"
                   "abcde",
                   10),
       kInflateBadData},
      {std::string("\x01\x05\x00\xfb\xff"
                   "ab",
                   7),
       kInflateBadData},
      {std::string("\x01\x05\x00\xfa\xff"
                   "ab",
                   7),
       kInflateTruncated},
      {std::string(kDictionaryStream, sizeof kDictionaryStream - 1), kInflateBadData},
      // A dynamic block whose code-length code is incomplete.
      {std::string("\x05\xe0\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff", 12), kInflateBadData},
  };
  for (const Raw& r : kRaw) {
    EXPECT_EQ(InflateRaw(Bytes(r.data.data()), r.data.size(), out.data(), out.size(), &written,
                         &consumed),
              r.status)
        << testing::PrintToString(r.data);
  }
}

TEST_F(InflateTest, Adler32) {
  EXPECT_EQ(Adler32(1, Bytes("Wikipedia"), 9), 0x11E60398u);
  std::vector<uint8_t> ones(100000, 0xFF);
  // Split anywhere, the sum continues.
  EXPECT_EQ(Adler32(Adler32(1, ones.data(), 12345), ones.data() + 12345, ones.size() - 12345),
            Adler32(1, ones.data(), ones.size()));
  EXPECT_EQ(Adler32(1, ones.data(), ones.size()), 0x149A302Cu);
}

}  // namespace
