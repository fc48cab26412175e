// quill-tool png on the committed samples: every colour type, bit depth, filter and interlace,
// each compared with ImageMagick's decoding of the same file (tests/images/gen_png_samples.py).
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/tool_run.h"

namespace {

struct Sample {
  const char* file;
  int width, height;
  const char* sha256;
};
const Sample kSamples[] = {
#include "tests/images/png_samples.inc"
};

std::string SamplePath(const char* name) {
  std::string here = __FILE__;
  return here.substr(0, here.rfind("/cli/")) + "/images/data/" + name;
}

TEST(PngTool, AgreesWithImageMagickOnEverySample) {
  EXPECT_GE(sizeof kSamples / sizeof kSamples[0], 50u);
  for (const Sample& s : kSamples) {
    ToolRun run = Tool("png '" + SamplePath(s.file) + "'");
    EXPECT_EQ(run.status, 0) << s.file;
    EXPECT_EQ(run.out,
              std::to_string(s.width) + " " + std::to_string(s.height) + " " + s.sha256 + "\n")
        << s.file;
  }
}

TEST(PngTool, BadFilesFailWithAReason) {
  std::string good = ReadFile(SamplePath("rgba8_adam7.png"));
  std::string path = testing::TempDir() + "quill_png_bad.png";
  struct Case {
    std::string data, message;
  };
  std::string crc = good;
  crc[40] ^= 1;
  const Case kCases[] = {
      {good.substr(0, good.size() / 2), "the file ends early"},
      {crc, "a chunk's CRC is wrong"},
      {"GIF89a", "not a PNG file"},
  };
  for (const Case& c : kCases) {
    FILE* file = fopen(path.c_str(), "wb");
    fwrite(c.data.data(), 1, c.data.size(), file);
    fclose(file);
    ToolRun run = RunTool("png '" + path + "'", true);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "quill-tool: " + path + ": " + c.message + "\n");
  }
  std::remove(path.c_str());
  EXPECT_EQ(Tool("png").status, 2);
  EXPECT_EQ(Tool("png /nonexistent/x.png").status, 1);
}

}  // namespace
