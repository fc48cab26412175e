// quill-tool find from the outside: where a search from the top ends, and what a replacement
// writes back.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

class FindTool : public ::testing::Test {
 protected:
  void SetUp() override { path_ = testing::TempDir() + "quill_find_tool.c"; }
  void TearDown() override { std::remove(path_.c_str()); }
  void Input(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
  std::string File() const {
    std::ifstream file(path_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  // stdout of `quill-tool find OPTIONS FILE PATTERN`; stderr is dropped.
  std::string Run(const std::string& options, const std::string& pattern) {
    std::string command = std::string(QUILL_TOOL) + " find " + options + " '" + path_ + "' '" +
                          pattern + "' 2>/dev/null";
    std::string out;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return "<no pipe>";
    char buffer[256];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
      out.append(buffer, n);
    int raw = pclose(pipe);
    status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return out;
  }
  std::string path_;
  int status_ = -1;
};

TEST_F(FindTool, SearchesFromTheTopWithCaseAndWholeWords) {
  Input("elif (x)\r\n\r\n\tif(X) x = 1;\r\n");
  EXPECT_EQ(Run("", "if"), "Col 5, Ln 1\n");
  EXPECT_EQ(status_, 0);
  EXPECT_EQ(Run("--word", "if"), "Col 11, Ln 3\n");  // behind the expanded tab
  EXPECT_EQ(Run("--case", "X"), "Col 13, Ln 3\n");
  EXPECT_EQ(Run("--case --word", "Elif"), "");
  EXPECT_EQ(status_, 1);
  EXPECT_EQ(Run("--up", "if"), "Col 11, Ln 3\n");  // the last one, from the end

  EXPECT_EQ(File(), "elif (x)\r\n\r\n\tif(X) x = 1;\r\n");
}

TEST_F(FindTool, ReplacesOnceOrAllAndSavesAsTheEditorDoes) {
  Input("a = a + b;  \nb = a;\n");
  EXPECT_EQ(Run("--replace aa", "a"), "1\n");
  EXPECT_EQ(File(), "aa = a + b;\nb = a;\n");  // saved: trailing blanks gone, LF kept
  EXPECT_EQ(Run("--all --word --replace 'a[0]'", "a"), "2\n");
  EXPECT_EQ(File(), "aa = a[0] + b;\nb = a[0];\n");
  EXPECT_EQ(Run("--all --case --replace x", "A"), "");
  EXPECT_EQ(status_, 1);  // nothing replaced: the file stays
  EXPECT_EQ(File(), "aa = a[0] + b;\nb = a[0];\n");
}

TEST_F(FindTool, UsageAndFailures) {
  Input("x\n");
  Run("--all", "x");
  EXPECT_EQ(status_, 2);
  Run("--bogus", "x");
  EXPECT_EQ(status_, 2);
  Run("", "");
  EXPECT_EQ(status_, 2);
  std::remove(path_.c_str());
  EXPECT_EQ(Run("", "x"), "");
  EXPECT_EQ(status_, 1);
}

}  // namespace
