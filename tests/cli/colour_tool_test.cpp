// quill-tool colour on a file opened as the editor opens it.
#include <gtest/gtest.h>

#include "tests/support/tool_run.h"

#include <cstdio>
#include <fstream>
#include <string>

namespace {

std::string Colour(const std::string& path, int* status) {
  ToolRun run = Tool("colour '" + path + "'");
  *status = run.status;
  return run.out;
}

TEST(ColourTool, EveryLineAsPaintedFromTheTop) {
  std::string path = testing::TempDir() + "quill_colour_tool.c";
  // EUC-KR bytes: a Hangul word is a wrong word; tabs are expanded before colouring.
  std::ofstream(path, std::ios::binary) << "/* open\r\n\r\n close */\tint \xC7\xD1 = 1;\r\n#  define X 1 // c\r\n";
  int status = -1;
  EXPECT_EQ(Colour(path, &status),
            "0:4\n"
            "\n"
            "0:4 9:1 16:2 19:1 20:6 21:1 24:5 25:1\n"
            "0:7 14:4\n");
  EXPECT_EQ(status, 0);
  std::remove(path.c_str());
  EXPECT_EQ(Colour(path, &status), "");
  EXPECT_EQ(status, 1);
}

}  // namespace
