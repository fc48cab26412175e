// quill-tool detect on the Korean samples and on files that are not text.
#include <gtest/gtest.h>

#include "tests/support/tool_run.h"

#include <cstdio>
#include <fstream>
#include <string>

namespace {

std::string DataPath(const char* name) {
  std::string here = __FILE__;
  return here.substr(0, here.rfind("/cli/")) + "/encoding/data/" + name;
}

std::string Detect(const std::string& path, int* status) {
  ToolRun run = Tool("detect '" + path + "'");
  *status = run.status;
  return run.out;
}

TEST(DetectTool, NamesTheEncodingAndTheMark) {
  int status = -1;
  EXPECT_EQ(Detect(DataPath("korean_euckr.txt"), &status), "EUCKR\n");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Detect(DataPath("korean_johab.txt"), &status), "JOHAP\n");
  EXPECT_EQ(Detect(DataPath("korean_utf16bom.txt"), &status), "UTF16 BOM\n");
  EXPECT_EQ(Detect(DataPath("korean_utf8bom.txt"), &status), "UTF8 BOM\n");
  EXPECT_EQ(Detect(DataPath("source_utf8.c"), &status), "UTF8\n");
  // Several files: one line each, in order; an unreadable one ends the run with status 1.
  EXPECT_EQ(Detect(DataPath("source_johab.c") + "' '" + DataPath("source_euckr.c"), &status),
            "JOHAP\nEUCKR\n");
  EXPECT_EQ(status, 0);
  std::string missing =
      DataPath("source_utf8.c") + "' '/nonexistent' '" + DataPath("source_euckr.c");
  EXPECT_EQ(Detect(missing, &status), "UTF8\n");
  EXPECT_EQ(status, 1);
}

TEST(DetectTool, EmptyMissingAndBinaryFiles) {
  std::string empty = testing::TempDir() + "quill_detect_empty.txt";
  std::ofstream(empty, std::ios::binary).close();
  int status = -1;
  EXPECT_EQ(Detect(empty, &status), "NONE\n");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Detect(empty + ".missing", &status), "");
  EXPECT_EQ(status, 1);
  // Bytes that pass no test take the default for unrecognised files.
  std::string binary = testing::TempDir() + "quill_detect_binary.bin";
  std::ofstream(binary, std::ios::binary) << std::string("\x80\xFF\x80\xFF\x01\x02", 6);
  EXPECT_EQ(Detect(binary, &status), "EUCKR\n");
  std::remove(empty.c_str());
  std::remove(binary.c_str());
}

}  // namespace
