// Opening and saving a 50 MB EUC-KR C source (the MinGW-w64 headers with Korean comments from
// tests/encoding/data) through quill-tool convert, against iconv to UTF-16 and back on the same
// file, interleaved in the same run; wall time, and peak memory beside the floor of the blocks.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "bench/header_corpus.h"
#include "encoding/line_convert.h"
#include "foundation/library.h"
#include "foundation/memory.h"

namespace {

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// C text with a Korean comment line after every few lines, in EUC-KR, cut at a line end.
std::string Corpus(const std::string& dataDir) {
  std::string korean = ReadFile(dataDir + "/korean_euckr.txt");
  std::string headers = HeaderText();
  std::string text;
  if (korean.empty() || headers.empty()) return text;
  size_t comment = 0;
  size_t lines = 0;
  for (size_t start = 0, end; text.size() <= kCorpusBytes; start = end + 1) {
    if (start >= headers.size()) start = 0;
    end = headers.find('\n', start);
    if (end == std::string::npos) end = headers.size();
    // Without tabs and trailing blanks, opening and saving gives back the very same bytes.
    std::string line = headers.substr(start, end - start);
    for (char& c : line) {
      if (c == '\t') c = ' ';
    }
    while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
      line.pop_back();
    text += line + "\r\n";
    if (++lines % 8 == 0) {
      size_t next = korean.find("\r\n", comment);
      if (next == std::string::npos) next = comment = 0, next = korean.find("\r\n");
      std::string remark = korean.substr(comment, next - comment);
      while (!remark.empty() && remark.back() == ' ')
        remark.pop_back();
      text += "// " + remark + "\r\n";
      comment = next + 2;
    }
  }
  text.resize(text.rfind("\r\n", kCorpusBytes) + 2);
  return text;
}

struct RunResult {
  double seconds;
  long peakKilobytes;
  int status;
};

RunResult Run(const std::string& command) {
  auto start = std::chrono::steady_clock::now();
  pid_t child = fork();
  if (child == 0) {
    execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  rusage usage = {};
  wait4(child, &status, 0, &usage);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return {seconds, usage.ru_maxrss, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

// The bytes the system allocator takes for a request of `size` (glibc: a size word, 16-byte
// alignment, a 4-word minimum; blocks from 128 KB up are mapped pages of their own).
double ChunkBytes(double size, int pointer) {
  if (size >= 128 * 1024) return (static_cast<long long>(size + pointer + 4095) / 4096) * 4096.0;
  long long chunk = (static_cast<long long>(size) + pointer + 15) & ~15LL;
  return chunk < 4 * pointer ? 4 * pointer : static_cast<double>(chunk);
}

// A block of AllocMem: its head, the payload rounded, its trailer.
double BlockBytes(double request, int pointer) {
  double head = pointer == 4 ? 8 : 16;
  double trailer = (pointer == 4 ? 12 : 16) + 3.0 * pointer;
  double payload = static_cast<double>(((static_cast<long long>(request) + 3) & ~3LL) + 8);
  return ChunkBytes(head + payload + trailer, pointer);
}

// What an open and save of the corpus cannot do with less: the one read buffer of the whole file,
// the line table, a record for each non-empty line (its units and one spare, and three 16-bit
// words), the save buffer; the program's own pages (its peak on an empty file) come on top.
double FloorBytes(const std::string& corpus, int pointer) {
  double bytes = BlockBytes(static_cast<double>(corpus.size()) + 3, pointer);
  std::u16string units;
  long long lines = 0;
  for (size_t start = 0; start < corpus.size();) {
    size_t end = corpus.find("\r\n", start);
    if (end == std::string::npos) end = corpus.size();
    int count = static_cast<int>(end - start);
    ++lines;
    if (count > 0) {
      units.resize(static_cast<size_t>(count));
      int length = EucKrLineToUtf16(corpus.data() + start, count, units.data(), count);
      bytes += BlockBytes(2.0 * length + 10, pointer);
    }
    start = end + 2;
  }
  bytes += BlockBytes(static_cast<double>(lines + 1000) * pointer, pointer);
  bytes += BlockBytes(64 * 1024, pointer);
  return bytes;
}

struct Figures {
  Spread seconds;
  double peakKilobytes;
  bool ok;
};

void PrintPeak(const char* name, double peakKilobytes, double floorBytes, double baseKilobytes,
               double megabytes) {
  double floorMb = floorBytes / (1 << 20) + baseKilobytes / 1024.0;
  printf(
      "%s peak %.1f MB (%.2fx the file), floor %.1f MB (%.2fx: %.1f MB of blocks + %.1f MB of "
      "the program's own)\n",
      name, peakKilobytes / 1024.0, peakKilobytes / 1024.0 / megabytes, floorMb,
      floorMb / megabytes, floorBytes / (1 << 20), baseKilobytes / 1024.0);
}

}  // namespace

int main(int argc, char** argv) {
  std::string dataDir = argc > 1 ? argv[1] : "tests/encoding/data";
  InitKLib(nullptr, nullptr);
  std::string corpus = Corpus(dataDir);
  if (corpus.empty()) {
    fprintf(stderr, "no corpus: %s or %s missing\n", kHeaderFolder, dataDir.c_str());
    return 1;
  }
  std::string in = "/tmp/quill_document_bench.c";
  std::string out = in + ".out";
  std::string empty = "/tmp/quill_document_bench_empty.c";
  std::ofstream(in, std::ios::binary) << corpus;
  std::ofstream(empty, std::ios::binary) << "int x;\r\n";
  // A child's peak counts the pages it shares with its parent at the fork: the corpus is let go
  // before any run, and each output is compared with the input on disk.
  double floors[2] = {FloorBytes(corpus, 8), FloorBytes(corpus, 4)};
  double megabytes = static_cast<double>(corpus.size()) / (1 << 20);
  std::string().swap(corpus);
  std::string tool = QUILL_TOOL;
  const char* tool32 = getenv("QUILL_TOOL32");
  std::vector<std::string> tools = {tool};
  if (tool32) tools.push_back(tool32);
  // One pipeline: its peak is the larger of the two iconv processes', as wait4 reports it.
  std::string iconvCommand =
      "iconv -f CP949 -t UTF-16LE " + in + " | iconv -f UTF-16LE -t CP949 >" + out;
  for (size_t t = 0; t < tools.size(); ++t) {
    int pointer = t == 0 ? 8 : 4;
    std::string command = tools[t] + " convert " + in + " " + out;
    double peak = 0;
    double iconvPeak = 0;
    bool same = true;
    Spread ours;
    Spread theirs;
    Interleave(
        7,
        [&] {
          RunResult run = Run(command);
          same = same && run.status == 0 && ReadFile(out) == ReadFile(in);
          peak = run.peakKilobytes;
          return run.seconds;
        },
        [&] {
          RunResult run = Run(iconvCommand);
          iconvPeak = run.peakKilobytes;
          return run.seconds;
        },
        &ours, &theirs);
    double base = Run(tools[t] + " convert " + empty + " " + out).peakKilobytes;
    printf("open+save %.1f MB EUC-KR, %d-bit quill-tool, 7 interleaved runs:", megabytes,
           pointer * 8);
    PrintSpread("  Quill", ours);
    PrintSpread("   iconv", theirs);
    printf("   ratio of minima %.2f, of medians %.2f (target 1.5)%s\n", ours.min / theirs.min,
           ours.median / theirs.median, same ? "" : "   (quill-tool failed or changed the text)");
    PrintPeak("  Quill", peak, floors[t], base, megabytes);
    printf("  iconv peak %.1f MB\n", iconvPeak / 1024.0);
  }
  remove(in.c_str());
  remove(out.c_str());
  remove(empty.c_str());
  CloseKLib();
  return 0;
}
