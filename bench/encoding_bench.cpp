// The line converters against iconv on the same data in the same run: a corpus of at least 50 MB
// of real Korean prose and C source with Korean comments (tests/encoding/data, made by Python's
// codecs), in EUC-KR and in Johab, converted to UTF-16 and back. iconv converts the whole buffer
// in one call; the program converts line by line, as the document loader and saver do.
#include <iconv.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "encoding/line_convert.h"
#include "foundation/library.h"

namespace {

constexpr size_t kCorpusBytes = 50u << 20;

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string Corpus(const std::string& dataDir, const char* encoding) {
  std::string prose = ReadFile(dataDir + "/korean_" + encoding + ".txt");
  std::string source = ReadFile(dataDir + "/source_" + encoding + ".c");
  std::string corpus;
  corpus.reserve(kCorpusBytes + prose.size() + source.size());
  while (corpus.size() < kCorpusBytes)
    corpus += prose + source;
  return corpus;
}

// Line starts and lengths without the CR LF.
std::vector<std::pair<size_t, int>> Lines(const std::string& data) {
  std::vector<std::pair<size_t, int>> lines;
  for (size_t start = 0; start < data.size();) {
    size_t end = data.find("\r\n", start);
    if (end == std::string::npos) end = data.size();
    lines.emplace_back(start, static_cast<int>(end - start));
    start = end + 2;
  }
  return lines;
}

using Decode = int (*)(const char*, int, char16_t*, int);
using Encode = int (*)(const char16_t*, int, char*, int);

// Decodes every line, then encodes every line back; returns the bytes written back. The buffers
// are sized as the loader and the saver size them: no byte makes more than one unit, and no unit
// more than two bytes (plus the terminator Johab writes).
size_t RoundTripByLines(const std::string& data, const std::vector<std::pair<size_t, int>>& lines,
                        Decode decode, Encode encode, std::vector<char16_t>* units,
                        std::vector<char>* bytes) {
  size_t written = 0;
  for (const auto& line : lines) {
    const char* text = data.data() + line.first;
    if (units->size() < static_cast<size_t>(line.second)) units->resize(line.second);
    int count = decode(text, line.second, units->data(), line.second);
    size_t size = 2 * static_cast<size_t>(count) + 2;
    if (bytes->size() < size) bytes->resize(size);
    written +=
        static_cast<size_t>(encode(units->data(), count, bytes->data(), static_cast<int>(size)));
  }
  return written;
}

size_t IconvRoundTrip(const std::string& data, const char* charset, std::vector<char>* wide,
                      std::vector<char>* back) {
  iconv_t in = iconv_open("UTF-16LE", charset);
  iconv_t out = iconv_open(charset, "UTF-16LE");
  wide->resize(data.size() * 2 + 16);
  back->resize(data.size() + 16);
  char* source = const_cast<char*>(data.data());
  size_t sourceLeft = data.size();
  char* target = wide->data();
  size_t targetLeft = wide->size();
  iconv(in, &source, &sourceLeft, &target, &targetLeft);
  size_t wideBytes = wide->size() - targetLeft;
  source = wide->data();
  sourceLeft = wideBytes;
  target = back->data();
  targetLeft = back->size();
  iconv(out, &source, &sourceLeft, &target, &targetLeft);
  iconv_close(in);
  iconv_close(out);
  return back->size() - targetLeft;
}

void Measure(const char* name, const std::string& data, const char* iconvCharset, Decode decode,
             Encode encode, double target) {
  std::vector<std::pair<size_t, int>> lines = Lines(data);
  std::vector<char16_t> units;
  std::vector<char> bytes;
  std::vector<char> wide;
  std::vector<char> back;
  size_t ours = 0;
  size_t theirs = 0;
  auto timed = [](auto work) {
    auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  Spread ourSpread;
  Spread theirSpread;
  Interleave(
      9,
      [&] {
        return timed([&] { ours = RoundTripByLines(data, lines, decode, encode, &units, &bytes); });
      },
      [&] { return timed([&] { theirs = IconvRoundTrip(data, iconvCharset, &wide, &back); }); },
      &ourSpread, &theirSpread);
  double megabytes = static_cast<double>(data.size()) / (1 << 20);
  printf("%-6s %5.1f MB round trip, 9 interleaved runs:", name, megabytes);
  PrintSpread("  Quill", ourSpread);
  PrintSpread("   iconv", theirSpread);
  printf("   ratio of minima %.2f, of medians %.2f (target %.1f)\n",
         ourSpread.min / theirSpread.min, ourSpread.median / theirSpread.median, target);
  // Both wrote back the text without its line ends.
  if (ours + 2 * lines.size() < theirs - 2 || ours > theirs)
    printf("       (sizes differ: %zu vs %zu)\n", ours, theirs);
}

}  // namespace

int main(int argc, char** argv) {
  std::string dataDir = argc > 1 ? argv[1] : "tests/encoding/data";
  InitKLib(nullptr, nullptr);
  std::string eucKr = Corpus(dataDir, "euckr");
  std::string johab = Corpus(dataDir, "johab");
  if (eucKr.empty() || johab.empty()) {
    fprintf(stderr, "no corpus in %s\n", dataDir.c_str());
    return 1;
  }
  Measure("EUC-KR", eucKr, "CP949", EucKrLineToUtf16, Utf16LineToEucKr, 0.8);
  Measure("Johab", johab, "JOHAB", JohabLineToUtf16, Utf16LineToJohab, 1.0);
  CloseKLib();
  return 0;
}
