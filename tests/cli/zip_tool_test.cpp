// quill-tool zip checked by tools no one here wrote: `unzip -t` tests every member and Python's
// zipfile reads names, flags, times and bytes back.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/tool_run.h"

namespace {

bool Have(const char* program) {
  return std::system((std::string("command -v ") + program + " >/dev/null 2>&1").c_str()) == 0;
}

void Write(const std::string& path, const std::string& bytes, time_t stamp) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  utimbuf times = {stamp, stamp};
  utime(path.c_str(), &times);
}

std::string Noise(size_t size) {
  std::string s(size, '\0');
  uint32_t seed = 5;
  for (char& c : s) {
    seed = seed * 1103515245u + 12345u;
    c = static_cast<char>(seed >> 16);
  }
  return s;
}

class ZipTool : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = std::filesystem::canonical(testing::TempDir()).string() + "/quill_zip_tool";
    std::filesystem::remove_all(root_);
    folder_ = root_ + "/proj";
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(root_); }
  std::string root_, folder_;
};

TEST_F(ZipTool, ArchivesTheProjectForUnzipAndPython) {
  if (!Have("unzip") || !Have("python3")) GTEST_SKIP() << "unzip or python3 is not installed";
  // 2021-03-04 05:06:08 local time: an even second, which the archive keeps exactly.
  tm local = {};
  local.tm_year = 121, local.tm_mon = 2, local.tm_mday = 4;
  local.tm_hour = 5, local.tm_min = 6, local.tm_sec = 8, local.tm_isdst = -1;
  time_t stamp = mktime(&local);
  std::string source;
  for (int i = 0; i < 20000; ++i)
    source += "int value" + std::to_string(i % 500) + " = " + std::to_string(i) + ";\r\n";
  Write(folder_ + "/main.c", source, stamp);
  Write(folder_ + "/src/데이터.bin", Noise(300000), stamp);
  Write(folder_ + "/empty.h", "", stamp);
  Write(root_ + "/shared/common.h", "#define SHARED 1\n", stamp);
  Write(folder_ + "/p.prj",
        "[Head]\r\nInfo=Quill Project File 1.00\r\n"
        "[Target00]\r\nInfo=app 0 0 0 0\r\nFile00=main.c\r\nFile01=src/데이터.bin\r\n"
        "File02=empty.h\r\nFile03=gone.c\r\nFile04=./main.c\r\nFile05=" +
            root_ + "/shared/common.h\r\nFile06=\r\n[Target01]\r\nInfo=\r\n",
        stamp);
  ToolRun run = RunTool("zip " + folder_ + "/p.prj", true);
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find("skipped " + folder_ + "/gone.c"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(folder_ + "/p.zip\n5 files, 1 skipped\n"), std::string::npos) << run.out;

  std::string archive = folder_ + "/p.zip";
  EXPECT_EQ(std::system(("unzip -tq " + archive + " >/dev/null").c_str()), 0);
  std::string out = root_ + "/out";
  std::string script =
      "import sys, zipfile\n"
      "z = zipfile.ZipFile(sys.argv[1])\n"
      "for i in z.infolist():\n"
      "    print(i.filename, i.flag_bits & 0x800, i.compress_type, '%d-%d-%d %d:%d:%d' % "
      "i.date_time)\n"
      "z.extractall(sys.argv[2])\n";
  std::ofstream(root_ + "/check.py") << script;
  ToolRun python{{}, -1};
  FILE* pipe = popen(("python3 " + root_ + "/check.py " + archive + " " + out).c_str(), "r");
  ASSERT_TRUE(pipe);
  char buffer[256];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
    python.out.append(buffer, n);
  EXPECT_EQ(pclose(pipe), 0);
  std::string shared = root_.substr(1) + "/shared/common.h";
  EXPECT_EQ(python.out,
            "p.prj 0 8 2021-3-4 5:6:8\n"
            "main.c 0 8 2021-3-4 5:6:8\n"
            "src/데이터.bin 2048 0 2021-3-4 5:6:8\n"  // noise does not shrink: stored
            "empty.h 0 0 2021-3-4 5:6:8\n"
            "ROOT/" +
                shared + " 0 0 2021-3-4 5:6:8\n");
  EXPECT_EQ(ReadFile(out + "/main.c"), source);
  EXPECT_EQ(ReadFile(out + "/src/데이터.bin"), Noise(300000));
  EXPECT_EQ(ReadFile(out + "/empty.h"), "");
  EXPECT_EQ(ReadFile(out + "/p.prj"), ReadFile(folder_ + "/p.prj"));
  EXPECT_EQ(ReadFile(out + "/ROOT/" + shared), "#define SHARED 1\n");
}

TEST_F(ZipTool, AnExistingArchiveIsKeptUnlessForced) {
  std::ofstream(folder_ + "/p.prj", std::ios::binary)
      << "[Head]\r\nInfo=Quill Project File 1.00\r\n[Target00]\r\nInfo=\r\n";
  std::ofstream(folder_ + "/p.zip") << "old";
  ToolRun run = RunTool("zip " + folder_ + "/p.prj", true);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("exists; --force overwrites it"), std::string::npos) << run.out;
  EXPECT_EQ(ReadFile(folder_ + "/p.zip"), "old");

  chmod((folder_ + "/p.zip").c_str(), 0444);
  run = RunTool("zip --force " + folder_ + "/p.prj", true);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("cannot be written (error 5)"), std::string::npos) << run.out;
  EXPECT_EQ(ReadFile(folder_ + "/p.zip"), "old");

  chmod((folder_ + "/p.zip").c_str(), 0644);
  run = RunTool("zip --force --output " + root_ + "/other.zip " + folder_ + "/p.prj", true);
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(ReadFile(folder_ + "/p.zip"), "old");
  EXPECT_EQ(ReadFile(root_ + "/other.zip").substr(0, 4), "PK\3\4");
  EXPECT_EQ(RunTool("zip", true).status, 2);
  EXPECT_EQ(RunTool("zip a.prj b.prj", true).status, 2);
}

}  // namespace
