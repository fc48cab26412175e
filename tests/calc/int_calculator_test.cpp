#include "calc/int_calculator.h"

#include <gtest/gtest.h>

#include <string>

#include "calc/math_expression.h"
#include "tests/support/klib_test.h"

namespace {

std::string Output(const std::string& input, uint32_t* error = nullptr) {
  char buffer[128];
  uint32_t code = FormatIntCalcOutput(input.c_str(), buffer, sizeof buffer);
  if (error) *error = code;
  return buffer;
}

class CalcIntCalculator : public KLibTest {};

TEST_F(CalcIntCalculator, ShowsTheExampleTheValueOrTheMessage) {
  EXPECT_EQ(Output(""), "Ex)\r\n0x23 & (45 | 13) + ~123 + 'A' + 0123\r\n");
  EXPECT_EQ(Output("1+2"), "= 3\r\n= 0x3");
  EXPECT_EQ(Output("-1"), "= -1\r\n= 0xFFFFFFFF");
  EXPECT_EQ(Output("-2147483648"), "= -2147483648\r\n= 0x80000000");
  EXPECT_EQ(Output("0x23 & (45 | 13) + ~123 + 'A' + 0123"), "= 1\r\n= 0x1");
  uint32_t error = 0;
  EXPECT_EQ(Output("1 = 2", &error), "지원하지 않는 연산자");
  EXPECT_EQ(error, kMathUnknownOperator);
  EXPECT_EQ(Output(" "), "계산식 미완성");  // only an empty edit shows the example
}

TEST_F(CalcIntCalculator, InputIsCutToTheEditsBuffer) {
  std::string input = "1";
  while (input.size() < kIntCalcInputSize - 1)
    input += " ";
  EXPECT_EQ(Output(input + ")"), "= 1\r\n= 0x1");
  EXPECT_EQ(Output(input.substr(0, input.size() - 1) + ")"), "뜬금없는 ')'");
}

// The background runs channel by channel from the top colour to the bottom one.
TEST(CalcWindowLook, BackgroundRunsFromTopToBottomColour) {
  struct Case {
    int row, height;
    uint32_t colour;
  };
  const Case cases[] = {
      {0, 100, 0xFADCC8},
      {99, 100, 0xDCA178},
      {-5, 100, 0xFADCC8},
      {500, 100, 0xDCA178},
      {0, 1, 0xFADCC8},
      {0, 0, 0xFADCC8},
      {1, 3, 0xEBBFA0},   // halfway, each byte cut toward
                          // the top colour
      {1, 31, 0xF9DBC6},  // 1/30 of the way
  };
  for (const Case& c : cases) {
    EXPECT_EQ(CalcBackColour(c.row, c.height), c.colour) << c.row << "/" << c.height;
  }
  // Every channel moves one way only, so no row is darker than the one below it.
  for (int row = 1; row < 300; ++row) {
    uint32_t above = CalcBackColour(row - 1, 300), here = CalcBackColour(row, 300);
    for (int shift = 0; shift < 24; shift += 8) {
      EXPECT_GE((above >> shift) & 0xFF, (here >> shift) & 0xFF) << row;
    }
  }
}

TEST(CalcWindowLook, CascadeStepsAndStartsOver) {
  const int kOpen[][2] = {
      {0, 0}, {-1, 0}, {1, 1}, {3, 3}, {kCalcCascadeSteps, 0}, {kCalcCascadeSteps + 1, 1}};
  for (const auto& c : kOpen)
    EXPECT_EQ(CalcCascadeOffset(c[0]), c[1] * kCalcCascadeStep) << c[0];
}

}  // namespace
