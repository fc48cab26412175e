// quill-tool lookup from the outside: a small source, -I and -D, and the real Windows headers of
// the cross compiler when they are installed.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

struct ToolRun {
  std::string out;
  int status;
};

ToolRun Tool(const std::string& arguments) {
  std::string command = std::string(QUILL_TOOL) + " " + arguments + " 2>/dev/null";
  FILE* pipe = popen(command.c_str(), "r");
  ToolRun run{{}, -1};
  if (!pipe) return run;
  char buffer[4096];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
    run.out.append(buffer, n);
  int raw = pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return run;
}

class LookupTool : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = testing::TempDir() + "quill_lookup_tool";
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ + "/inc");
    std::ofstream(folder_ + "/inc/defs.h") << "#define WIDTH (LEFT + 10)\n";
    std::ofstream(folder_ + "/x.c") << "#include <defs.h>\n#ifdef WIDE\n#define LEFT 100\n#endif\n"
                                       "int main(void) { return 0; }\n";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::string folder_;
};

TEST_F(LookupTool, ShowsMessagesThenTheDefinition) {
  ToolRun run = Tool("lookup " + folder_ + "/x.c WIDTH");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "'defs.h' not Found\r\n");

  run = Tool("lookup -I " + folder_ + "/inc -D WIDE -D LEFT=5 " + folder_ + "/x.c WIDTH");
  EXPECT_EQ(run.status, 0);
  // The source's own #define wins over the option's.
  EXPECT_EQ(run.out,
            "[defs.h #1]\r\n#define WIDTH (LEFT + 10)\r\n\r\n"
            "[Original Sentence]\r\n(100 + 10)\r\n\r\n[Result]\r\n=110\r\n\r\n");
  run = Tool("lookup -I " + folder_ + "/inc -D LEFT=5 " + folder_ + "/x.c LEFT");
  EXPECT_EQ(run.out, "[MAKEFILE]\r\n#define LEFT 5\r\n\r\n[Result]\r\n=5\r\n\r\n");
  EXPECT_EQ(Tool("lookup " + folder_ + "/x.c main").out,
            "'defs.h' not Found\r\n[x.c #5]\r\nint main(void);\r\n\r\n");
}

TEST_F(LookupTool, UsageAndMissingFiles) {
  EXPECT_EQ(Tool("lookup").status, 2);
  EXPECT_EQ(Tool("lookup " + folder_ + "/x.c").status, 2);
  EXPECT_EQ(Tool("lookup -I").status, 2);
  EXPECT_EQ(Tool("lookup " + folder_ + "/none.c WORD").status, 1);
}

TEST(LookupWindowsHeaders, FindsTheirDefinitions) {
  const std::string headers = "/usr/share/mingw-w64/include";
  if (!std::filesystem::exists(headers + "/windows.h")) GTEST_SKIP() << "no MinGW-w64 headers";
  // A name of this run's own: test runs of several checkouts share the temporary folder.
  std::string source = testing::TempDir() + "quill_lookup_windows_" +
                       std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) +
                       ".c";
  std::ofstream(source) << "#include <windows.h>\nint main(void) { return 0; }\n";
  auto lookup = [&](const char* word) {
    return Tool("lookup -I " + headers + " " + source + " " + word);
  };
  ToolRun run = lookup("CreateWindowExW");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("\r\ncallconv CreateWindowExW(DWORD dwExStyle,LPCWSTR lpClassName,"),
            std::string::npos)
      << run.out;
  EXPECT_NE(lookup("RECT").out.find("typedef struct tagRECT RECT;\r\n\r\n[windef.h #"),
            std::string::npos);
  EXPECT_NE(lookup("WM_CREATE").out.find("#define WM_CREATE 0x0001\r\n\r\n[Result]\r\n=1\r\n"),
            std::string::npos);
  EXPECT_NE(lookup("MAKEWORD").out.find("#define MAKEWORD(a,b) ((WORD)"), std::string::npos);
  EXPECT_NE(lookup("INVALID_HANDLE_VALUE").out.find("#define INVALID_HANDLE_VALUE ((HANDLE)"),
            std::string::npos);
  std::remove(source.c_str());
}

}  // namespace
