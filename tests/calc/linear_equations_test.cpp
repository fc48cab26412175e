// The linear equation calculator: answers against Python's exact fractions to 27 significant
// digits, and the messages of systems without one answer or with bad input.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calc/decimal_arith.h"
#include "calc/decimal_number.h"
#include "calc/decimal_parse.h"
#include "calc/linear_equations.h"
#include "foundation/memory.h"
#include "tests/support/klib_test.h"

namespace {

struct Vector {
  const char* system;
  std::vector<const char*> exact;
};

const Vector kVectors[] = {
#include "tests/calc/linear_vectors.inc"
};

class LinearEquationsTest : public KLibTest {
 protected:
  std::string Solve(const std::string& text, int* result = nullptr) {
    int status = -1;
    char* out = SolveLinearEquations(text.c_str(), &status);
    EXPECT_NE(out, nullptr);
    std::string answer = out ? out : "";
    FreeMem(out);
    if (result) *result = status;
    return answer;
  }
};

DecimalNumber Number(std::string text) {
  bool negative = !text.empty() && text[0] == '-';
  if (negative) text.erase(0, 1);
  // The exact value has 40 digits; the number type keeps 28 of them.
  const char* cursor = text.c_str();
  DecimalNumber value = kDecimalZero;
  EXPECT_EQ(ParseDecimalNumber(&cursor, &value), 0u) << text;
  if (negative) NegateDecimal(&value);
  return value;
}

TEST_F(LinearEquationsTest, AgreesWithExactFractionsTo27Digits) {
  for (const Vector& v : kVectors) {
    int result = -1;
    std::string answer = Solve(v.system, &result);
    ASSERT_EQ(result, kLinearSolved) << v.system << "\n" << answer;
    size_t at = 0;
    for (const char* exact : v.exact) {
      size_t equals = answer.find(" = ", at);
      size_t end = answer.find("\r\n", at);
      ASSERT_NE(equals, std::string::npos) << answer;
      DecimalNumber ours = Number(answer.substr(equals + 3, end - equals - 3));
      DecimalNumber theirs = Number(exact);
      DecimalNumber difference = ours;
      ASSERT_EQ(SubtractDecimal(&difference, theirs), 0u);
      // |ours - exact| below one unit of the exact value's 27th digit.
      EXPECT_TRUE(IsDecimalZero(difference) ||
                  DecimalExponent(difference) <= DecimalExponent(theirs) - 27)
          << v.system << "\n"
          << answer << "exact " << exact;
      at = end + 2;
    }
  }
}

TEST_F(LinearEquationsTest, ShowsTheAnswerInTheOrderOfTheNames) {
  // Blank lines skipped; both sides may hold terms; a name of Hangul; literals of the real
  // calculator, case folded hex; "2x", "x/4", "0.5 * y" and an exponent before a name.
  EXPECT_EQ(Solve("\n  y + 값 = 3 \r\n\n값 - y = 1\n"), "y = 1\r\n값 = 2\r\n");
  EXPECT_EQ(Solve("2x + 3y - z = 5\nx - y + 2z = 3\n3x + y + z = 10"),
            "x = 4.6\r\ny = -2\r\nz = -1.8\r\n");
  EXPECT_EQ(Solve("0x10 x = x/4 + 0.5 * 2e1ex\nex = 1,000"),
            "x = 634.920634920634920634920635\r\nex = 1000\r\n");
  EXPECT_EQ(Solve("3x = 1"), "x = 0.333333333333333333333333333\r\n");
  EXPECT_EQ(Solve("3x = 2"), "x = 0.666666666666666666666666667\r\n");
  EXPECT_EQ(Solve("x = 1e-20\ny = -1.5e40"), "x = 1e-20\r\ny = -1.5e40\r\n");
  // Coefficients far beyond binary floating point cancel exactly.
  EXPECT_EQ(Solve("1e1000x + y = 2e1000\nx - y = 1"), "x = 2\r\ny = 1\r\n");
}

TEST_F(LinearEquationsTest, SaysWhyThereIsNoSingleAnswer) {
  struct Case {
    const char* system;
    int result;
    const char* message;
  };
  const Case kCases[] = {
      {"x = x + 1", kLinearInconsistent,
       "해가 없습니다: 1번째 식이 다른 식들과 맞지 않습니다.\r\n"},
      // The larger coefficients lead: the first equation is the one left over.
      {"x + y = 1\n2x + 2y = 3", kLinearInconsistent,
       "해가 없습니다: 1번째 식이 다른 식들과 맞지 않습니다.\r\n"},
      {"x + y + z = 1\n2x + 2y + 2z = 2", kLinearNotUnique,
       "해가 하나로 정해지지 않습니다: 미지수 3개에 독립인 식이 1개입니다.\r\n"
       "1번째 식은 다른 식들에서 나옵니다.\r\n"},
      {"0 = 0", kLinearNotUnique, "미지수가 없습니다.\r\n1번째 식은 다른 식들에서 나옵니다.\r\n"},
      {"", kLinearEmpty, "한 줄에 식 하나씩 입력하세요. 예) 2x + 3y - z = 5\r\n"},
      {"x + y = 1\n2x + = 3", kLinearSyntax, "2번째 식 6번째 글자: 구문 오류\r\n"},
      {"x + y 1", kLinearSyntax, "1번째 식 8번째 글자: 구문 오류\r\n"},
      {"x y = 1", kLinearSyntax, "1번째 식 3번째 글자: 구문 오류\r\n"},
      {"값 = 1 = 2", kLinearSyntax, "1번째 식 7번째 글자: 구문 오류\r\n"},
      {"x / y = 1", kLinearSyntax, "1번째 식 5번째 글자: 구문 오류\r\n"},
      {"x / 0 = 1", kLinearArithmetic, nullptr},
      {"1e16000 * 1e16000 x = 1", kLinearArithmetic, nullptr},
  };
  for (const Case& c : kCases) {
    int result = -1;
    std::string answer = Solve(c.system, &result);
    EXPECT_EQ(result, c.result) << c.system << "\n" << answer;
    if (c.message) EXPECT_EQ(answer, c.message) << c.system;
  }
  // More equations than unknowns, two of them following from the others: still one answer.
  std::string dependent = Solve("x + y = 1\n2x + 2y = 2\nx - y = 0\n3x + 3y = 3");
  EXPECT_EQ(dependent, "x = 0.5\r\ny = 0.5\r\n");
}

TEST_F(LinearEquationsTest, BadInputGetsAClearAnswerQuickly) {
  // Seventeen unknowns; 16 are taken.
  std::string system;
  for (int i = 0; i < 17; ++i)
    system += "v" + std::to_string(i) + " = " + std::to_string(i) + "\n";
  int result = -1;
  EXPECT_EQ(Solve(system, &result), "미지수는 16개까지입니다.\r\n");
  EXPECT_EQ(result, kLinearTooLarge);
  system.clear();
  for (int i = 0; i < 16; ++i)
    system += "v" + std::to_string(i) + " = " + std::to_string(i) + "\n";
  EXPECT_EQ(Solve(system, &result).substr(0, 7), "v0 = 0\r");
  EXPECT_EQ(result, kLinearSolved);
  // A 2,048-character line: a long coefficient and a long name.
  std::string line = std::string(1000, '1') + "x + " + std::string(1000, 'y') + " = 0";
  Solve(line + "\nx = 1", &result);
  EXPECT_EQ(result, kLinearSolved);
  // Sixty-five equations.
  system.clear();
  for (int i = 0; i < 65; ++i)
    system += "x = 1\n";
  EXPECT_EQ(Solve(system, &result), "식은 64개까지입니다.\r\n");
}

}  // namespace
