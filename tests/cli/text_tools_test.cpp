// quill-tool's text tools from the outside: the line sort against GNU sort on the same lines, and
// the string code view's text.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "tests/support/tool_run.h"

namespace {

std::string Shell(const std::string& command) {
  std::string out;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return out;
  char buffer[4096];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
    out.append(buffer, n);
  pclose(pipe);
  return out;
}

// Random lines over an alphabet that meets every rule: capitals and small letters with the
// punctuation between them (folding must make capitals of small letters), digits, blanks,
// Hangul, a character above the surrogates and one beyond the basic plane.
std::string RandomLines(std::mt19937* random, int count, bool lettersAndDigits) {
  const std::vector<std::string> kAll = {"a",
                                         "b",
                                         "A",
                                         "B",
                                         "_",
                                         "[",
                                         "`",
                                         "0",
                                         "1",
                                         "9",
                                         " ",
                                         "가",
                                         "나",
                                         "\xEF\xBC\xA1",
                                         "\xF0\x9F\x98\x80"};
  const std::vector<std::string> kVersion = {"a", "b", "Z", "x", "1", "2", "9", "0"};
  const std::vector<std::string>& alphabet = lettersAndDigits ? kVersion : kAll;
  std::string text;
  for (int i = 0; i < count; ++i) {
    int length = static_cast<int>((*random)() % 6);
    std::string line;
    for (int k = 0; k < length; ++k) {
      std::string piece = alphabet[(*random)() % alphabet.size()];
      // Version order reads "01" as 1 and keeps equal values in their order: no leading zeros.
      if (lettersAndDigits && piece == "0" && (line.empty() || !isdigit(line.back()))) piece = "1";
      line += piece;
    }
    text += line + "\n";
  }
  return text;
}

TEST(SortTool, AgreesWithGnuSortWhereTheRulesAgree) {
  std::string path = testing::TempDir() + "quill_sort_oracle.txt";
  std::mt19937 random(23);
  struct Case {
    const char* ours;
    const char* theirs;
    bool version;
  };
  // Stable on both sides: equal keys keep their order, so -f and -u are compared exactly.
  const Case kCases[] = {
      {"", "", false},
      {"-r", "-r", false},
      {"-f", "-f", false},
      {"-u", "-u", false},
      {"-r -f -u", "-r -f -u", false},
      {"-n", "-V", true},
      {"-n -r -u", "-V -r -u", true},
  };
  for (const Case& c : kCases) {
    for (int round = 0; round < 3; ++round) {
      std::ofstream(path, std::ios::binary) << RandomLines(&random, 400, c.version);
      ToolRun run = Tool(std::string("sort ") + c.ours + " " + path);
      ASSERT_EQ(run.status, 0);
      std::string gnu = Shell("LC_ALL=C sort -s " + std::string(c.theirs) + " " + path);
      EXPECT_EQ(run.out, gnu) << c.ours << " round " << round;
    }
  }
  std::remove(path.c_str());
}

TEST(SortTool, OptionsAndFailures) {
  std::string path = testing::TempDir() + "quill_sort_block.txt";
  std::ofstream(path, std::ios::binary) << "x3\r\ny1\r\nz\r\nw2\r\n";
  // Keyed by column 1 (the digit), CR LF kept; "z" has an empty key.
  EXPECT_EQ(Tool("sort --block 1-2 " + path).out, "z\r\ny1\r\nw2\r\nx3\r\n");
  EXPECT_EQ(Tool("sort --block 2-1 " + path).status, 2);
  EXPECT_EQ(Tool("sort -q " + path).status, 2);
  EXPECT_EQ(Tool("sort " + path + ".missing").status, 1);
  std::remove(path.c_str());
}

TEST(StrcodeTool, PrintsTheViewsText) {
  ToolRun run = Tool("strcode 가");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("EUC-KR: B0 A1\r\n조합형: 88 61\r\n"), std::string::npos);
  std::string back = Tool("strcode '\\xB0\\xA1'").out;
  EXPECT_EQ(back.substr(0, back.find('\r')), "EUC-KR(으)로 읽으면: 가");
  EXPECT_EQ(Tool("strcode").status, 2);
}

}  // namespace
