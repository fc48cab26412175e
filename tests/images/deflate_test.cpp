// The deflate through the program's inflate: every kind of block, the window's far edge, and the
// stop asked by the progress report.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "images/deflate.h"
#include "images/inflate.h"
#include "tests/support/klib_test.h"

namespace {

std::vector<uint8_t> Noise(size_t size, uint32_t seed) {
  std::vector<uint8_t> v(size);
  for (auto& b : v) {
    seed = seed * 1103515245u + 12345u;
    b = static_cast<uint8_t>(seed >> 16);
  }
  return v;
}

std::vector<uint8_t> Text(const std::string& s) {
  return std::vector<uint8_t>(s.begin(), s.end());
}

std::vector<uint8_t> Deflate(const std::vector<uint8_t>& in) {
  std::vector<uint8_t> out(DeflateBound(in.size()));
  size_t written = 0;
  EXPECT_EQ(DeflateRaw(in.data(), in.size(), out.data(), &written, nullptr), kDeflateOk);
  EXPECT_LE(written, out.size());
  out.resize(written);
  return out;
}

class DeflateTest : public KLibTest {};

TEST_F(DeflateTest, InflatesToItsInput) {
  std::string source;
  for (int i = 0; i < 4000; ++i)
    source += "for (int i = 0; i < " + std::to_string(i % 97) + "; ++i) total += table[i];\r\n";
  // The same 300 bytes again 32 KB later: a match just inside the window's far edge.
  std::vector<uint8_t> edge = Noise(33200, 7);
  std::copy(edge.begin(), edge.begin() + 300, edge.begin() + 32767);
  std::vector<uint8_t> allBytes(256 * 3);
  for (size_t i = 0; i < allBytes.size(); ++i)
    allBytes[i] = static_cast<uint8_t>(i * 7);
  struct Case {
    const char* name;
    std::vector<uint8_t> data;
    double maxRatio;  // compressed size over input size at most
  } cases[] = {
      {"empty", {}, 100},
      {"one byte", {'x'}, 100},
      {"run longer than a match", std::vector<uint8_t>(100000, 'a'), 0.01},
      {"source text over many blocks", Text(source), 0.15},
      {"noise in several stored chunks", Noise(200000, 1), 1.001},
      {"match at the window edge", edge, 1.001},
      {"every byte value", allBytes, 1.1},
      {"three bytes", Text("abc"), 100},
      {"short repeats", Text("abcabcabcabcabcabcab"), 1},
  };
  for (const Case& c : cases) {
    std::vector<uint8_t> packed = Deflate(c.data);
    std::vector<uint8_t> back(c.data.size() + 1);
    size_t written = 0, consumed = 0;
    ASSERT_EQ(
        InflateRaw(packed.data(), packed.size(), back.data(), back.size(), &written, &consumed),
        kInflateOk)
        << c.name;
    EXPECT_EQ(consumed, packed.size()) << c.name;
    back.resize(written);
    EXPECT_TRUE(back == c.data) << c.name;
    if (!c.data.empty())
      EXPECT_LE(static_cast<double>(packed.size()) / c.data.size(), c.maxRatio) << c.name;
  }
}

TEST_F(DeflateTest, StopsWhenTheProgressSaysSo) {
  std::vector<uint8_t> in = Noise(300000, 3);
  std::vector<uint8_t> out(DeflateBound(in.size()));
  struct Seen {
    int calls = 0;
    size_t last = 0;
  } seen;
  DeflateProgress progress = {[](void* context, size_t done) {
                                Seen* s = static_cast<Seen*>(context);
                                EXPECT_GT(done, s->last);
                                s->last = done;
                                return ++s->calls < 3;
                              },
                              &seen};
  size_t written = 1;
  EXPECT_EQ(DeflateRaw(in.data(), in.size(), out.data(), &written, &progress), kDeflateStopped);
  EXPECT_EQ(seen.calls, 3);
  EXPECT_EQ(written, 0u);
}

}  // namespace
