// quill-tool rcalc from the outside.
#include <gtest/gtest.h>

#include "tests/support/tool_run.h"
#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace {

TEST(RcalcTool, ExpressionStyle) {
  ToolRun run = Tool("rcalc '0x0FF' '1/4'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "= 255\r\n= 0FF (Hex)\n= 250e-3\n");
  run = Tool("rcalc '2^0.5' 'Sqrt(4)'");
  EXPECT_EQ(run.status, 1);  // any failed input fails the run, every input is shown
  EXPECT_EQ(run.out, "지원하지 않는 계산\n= 2\r\n= 2 (Hex)\n");
}

TEST(RcalcTool, RunningStyleCarriesRegistersAndTheBinaryFlag) {
  ToolRun run = Tool("rcalc --running \"'a'+2 = @A\" b '@a' b '@a * 2'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "= 99\r\n= 63 (Hex)\r\n= 'c'\nBinary out On\n"
            "= 99\r\n= 63 (Hex)\r\n= 0110 0011 (Bin)\r\n= 'c'\nBinary out Off\n"
            "= 198\r\n= 0C6 (Hex)\n");
  EXPECT_EQ(Tool("rcalc --running '10mm, 254mil'").out, "계산식 오류 (문법 오류)\n");
}

TEST(RcalcTool, UsageErrors) {
  EXPECT_EQ(Tool("rcalc").status, 2);
  EXPECT_EQ(Tool("rcalc --running").status, 2);
}

}  // namespace
