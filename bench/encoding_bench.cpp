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

template <typename Work>
double BestSeconds(Work work) {
  double best = 1e30;
  for (int run = 0; run < 3; ++run) {
    auto start = std::chrono::steady_clock::now();
    work();
    std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    if (took.count() < best) best = took.count();
  }
  return best;
}

using Decode = int (*)(const char*, int, char16_t*, int);
using DecodeCount = int (*)(const char*, int);
using Encode = int (*)(const char16_t*, int, char*, int);
using EncodeCount = int (*)(const char16_t*, int);

// Decodes every line, then encodes every line back; returns the bytes written back.
size_t RoundTripByLines(const std::string& data, const std::vector<std::pair<size_t, int>>& lines,
                        DecodeCount decodeCount, Decode decode, EncodeCount encodeCount,
                        Encode encode, std::vector<char16_t>* units, std::vector<char>* bytes) {
  size_t written = 0;
  for (const auto& line : lines) {
    const char* text = data.data() + line.first;
    int count = decodeCount(text, line.second);
    units->resize(static_cast<size_t>(count));
    count = decode(text, line.second, units->data(), count);
    int size = encodeCount(units->data(), count) + 1;
    bytes->resize(static_cast<size_t>(size));
    written += static_cast<size_t>(encode(units->data(), count, bytes->data(), size));
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

void Measure(const char* name, const std::string& data, const char* iconvCharset,
             DecodeCount decodeCount, Decode decode, EncodeCount encodeCount, Encode encode,
             double target) {
  std::vector<std::pair<size_t, int>> lines = Lines(data);
  std::vector<char16_t> units;
  std::vector<char> bytes;
  std::vector<char> wide;
  std::vector<char> back;
  size_t ours = 0;
  size_t theirs = 0;
  double ourSeconds = BestSeconds([&] {
    ours = RoundTripByLines(data, lines, decodeCount, decode, encodeCount, encode, &units, &bytes);
  });
  double theirSeconds =
      BestSeconds([&] { theirs = IconvRoundTrip(data, iconvCharset, &wide, &back); });
  double megabytes = static_cast<double>(data.size()) / (1 << 20);
  printf(
      "%-6s %6.1f MB round trip: Quill %6.3f s (%6.1f MB/s)   iconv %6.3f s (%6.1f MB/s)   ratio "
      "%.2f (target %.1f)\n",
      name, megabytes, ourSeconds, megabytes / ourSeconds, theirSeconds, megabytes / theirSeconds,
      ourSeconds / theirSeconds, target);
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
  Measure("EUC-KR", eucKr, "CP949", EucKrLineToUtf16Count, EucKrLineToUtf16, Utf16LineToEucKrCount,
          Utf16LineToEucKr, 1.5);
  Measure("Johab", johab, "JOHAB", JohabLineToUtf16Count, JohabLineToUtf16, Utf16LineToJohabCount,
          Utf16LineToJohab, 2.0);
  CloseKLib();
  return 0;
}
