#include "calc/math_expression.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <string>

#include "calc/math_lexer.h"
#include "calc/math_number.h"

namespace {

struct Result {
  uint32_t error;
  int32_t value;
};

Result Eval(const std::string& text) {
  Result result{99, 12345};
  CalcMathExpression(text.c_str(), 0, 0, &result.error, &result.value);
  return result;
}

int32_t Value(const std::string& text) {
  Result result = Eval(text);
  EXPECT_EQ(result.error, kMathOk) << text;
  return result.value;
}

uint32_t Error(const std::string& text) {
  return Eval(text).error;
}

TEST(CalcMathExpression, KeepsTheProgramsOwnEvaluationOrder) {
  // A continuation returns at a weaker operator and its caller does not compare again.
  EXPECT_EQ(Value("1 == 1 * 1 + 1"), 2);
  EXPECT_EQ(Value("0 == 1 << 1 < 2"), 1);     // ((0 == (1 << 1)) < 2) in this order
  EXPECT_EQ(Value("1 | 2 * 3 + 4 ^ 1"), 10);  // ((1 | (2*3)) + 4) ^ 1 = 11 ^ 1
  EXPECT_EQ(Value("2 & 3 * 4 - 1 == 9"), 0);  // ((2 & 12) - 1) == 9 is -1 == 9
  // Where C's order is reached, the result is C's.
  EXPECT_EQ(Value("1 + 2 * 3 - 4"), 3);
  EXPECT_EQ(Value("2 + 3 * 4 - 5 * 6"), -16);
  EXPECT_EQ(Value("100 - 10 - 1"), 89);
  EXPECT_EQ(Value("2 * 3 * 4 + 1"), 25);
  EXPECT_EQ(Value("1 + 2 * 3 * 4"), 25);
  EXPECT_EQ(Value("1 || 0 && 0"), 1);
  EXPECT_EQ(Value("(1 + 2) * (3 + 4)"), 21);
  EXPECT_EQ(Value("0x23 & (45 | 13) + ~123 + 'A' + 0123"), 1);
}

TEST(CalcMathExpression, ErrorCodes) {
  EXPECT_EQ(Error(""), kMathIncomplete);
  EXPECT_EQ(Error("1 +"), kMathIncomplete);
  EXPECT_EQ(Error("1 + !"), kMathIncomplete);
  EXPECT_EQ(Error("(1+2"), kMathMissingParen);
  EXPECT_EQ(Error("((1)"), kMathMissingParen);
  EXPECT_EQ(Error("1+2)"), kMathStrayParen);
  EXPECT_EQ(Error("1+2*3)"), kMathStrayParen);
  EXPECT_EQ(Error("1 = 2"), kMathUnknownOperator);
  EXPECT_EQ(Error("1 ! 2"), kMathUnknownOperator);
  EXPECT_EQ(Error("1 2"), kMathUnknownOperator);
  EXPECT_EQ(Error("abc"), kMathUnknownFunction);
  EXPECT_EQ(Error("1 + x"), kMathUnknownFunction);
  EXPECT_EQ(Error("\xB0\xA1"), kMathUnknownFunction);
  EXPECT_EQ(Error("1/0"), kMathDivideByZero);
  EXPECT_EQ(Error("5 % (3 - 3)"), kMathDivideByZero);
  EXPECT_EQ(Error("0 && 1/0"), kMathDivideByZero);  // no short-circuit
  EXPECT_EQ(Error("1 || 1%0"), kMathDivideByZero);
  EXPECT_EQ(Error("sqrt(-4)"), kMathOverflow);
}

TEST(CalcMathExpression, OnePrefixPerOperandAndSignsOnlyOnLiterals) {
  EXPECT_EQ(Error("!!1"), kMathSyntax);
  EXPECT_EQ(Error("-~1"), kMathSyntax);
  EXPECT_EQ(Error("-(3)"), kMathSyntax);
  EXPECT_EQ(Error("~(int)1"), kMathUnknownFunction);  // a sub-expression beginning with "int"
  EXPECT_EQ(Value("~-1"), 0);
  EXPECT_EQ(Value("!0"), 1);
  EXPECT_EQ(Value("!-7"), 0);
  EXPECT_EQ(Value("++5"), 6);
  EXPECT_EQ(Value("--5"), 4);
  EXPECT_EQ(Value("++2147483647"), INT_MIN);
  EXPECT_EQ(Value("1 - -5"), 6);
  EXPECT_EQ(Value("1---5"), -3);  // 1 - (--5)
  EXPECT_EQ(Value("~(1|2)"), -4);
}

TEST(CalcMathExpression, CastsAndSquareRoot) {
  EXPECT_EQ(Value("(unsigned char)-1"), 255);
  EXPECT_EQ(Value("(unsigned short)-1"), 65535);
  EXPECT_EQ(Value("(char)200"), -56);
  EXPECT_EQ(Value("(char)0x17F"), 127);
  EXPECT_EQ(Value("(short)0x18000"), -32768);
  EXPECT_EQ(Value("(INT)5"), 5);
  EXPECT_EQ(Value("(Unsigned Char)(256 + 7)"), 7);
  EXPECT_EQ(Error("( int )5"), kMathUnknownFunction);  // a parenthesis, then the name "int"
  EXPECT_EQ(Value("sqrt(17)"), 4);
  EXPECT_EQ(Value("SQRT (16) + 1"), 5);
  EXPECT_EQ(Value("sqrt(2147483647)"), 46340);
  EXPECT_EQ(Error("sqrt"), kMathIncomplete);
  EXPECT_EQ(Error("sqrtx"), kMathUnknownFunction);
  EXPECT_EQ(Error("sqrt 4"), kMathUnknownFunction);
  EXPECT_EQ(Error("sqrt-4"), kMathSyntax);
  EXPECT_EQ(Error("sqrt(-1 * 4)"), kMathOverflow);
}

TEST(CalcMathExpression, IntegerSquareRootIsTheFloor) {
  for (uint32_t x : {0u, 1u, 2u, 3u, 4u, 15u, 16u, 17u, 99u, 100u, 65535u, 65536u, 1000000u,
                     0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    uint64_t root = MathIntegerSqrt(x);
    EXPECT_LE(root * root, x) << x;
    EXPECT_GT((root + 1) * (root + 1), x) << x;
  }
  for (uint32_t x = 0; x < 70000; ++x)
    ASSERT_EQ(MathIntegerSqrt(x), static_cast<uint32_t>(std::sqrt(static_cast<double>(x)))) << x;
}

TEST(CalcMathExpression, NumbersAndSuffixes) {
  EXPECT_EQ(Value("0"), 0);
  EXPECT_EQ(Value("0123"), 83);
  EXPECT_EQ(Value("0x1F + 0XaB"), 0x1F + 0xAB);
  EXPECT_EQ(Value("-010"), -10);  // with a sign the number is decimal
  EXPECT_EQ(Value("+7"), 7);
  EXPECT_EQ(Value("4294967296"), 0);  // digits wrap at 32 bits
  EXPECT_EQ(Value("4294967295"), -1);
  EXPECT_EQ(Value("-2147483648"), INT_MIN);
  EXPECT_EQ(Value("5UL + 5ul + 5L + 5u"), 20);
  EXPECT_EQ(Error("5LU"), kMathUnknownOperator);
  EXPECT_EQ(Error("5ULL"), kMathUnknownOperator);
  EXPECT_EQ(Error("0129"), kMathUnknownOperator);   // octal 012, then '9'
  EXPECT_EQ(Error("-0x10"), kMathUnknownOperator);  // -0, then 'x'
  EXPECT_EQ(Error("0x"), kMathSyntax);
  EXPECT_EQ(Error("0xg"), kMathSyntax);
  EXPECT_EQ(Error("-"), kMathSyntax);
  EXPECT_EQ(Error("1 + +"), kMathSyntax);
}

TEST(CalcMathExpression, CharacterConstants) {
  EXPECT_EQ(Value("'A'"), 65);
  EXPECT_EQ(Value("'AB'"), 0x4142);
  EXPECT_EQ(Value("'ABCD'"), 0x41424344);
  EXPECT_EQ(Value("'\\n'"), 0x5C6E);                         // no escapes
  EXPECT_EQ(Value("'\xFF'"), 255);                           // bytes are unsigned
  EXPECT_EQ(Value("'\xB0\xA1'"), 0xB0A1);                    // Hangul pasted in the ANSI code page
  EXPECT_EQ(Error("1+\xEA\xB0\x80"), kMathUnknownFunction);  // cannot start an operand
  EXPECT_EQ(Value("' '"), 32);
  EXPECT_EQ(Error("'ABCDE'"), kMathSyntax);
  EXPECT_EQ(Error("''"), kMathSyntax);
  EXPECT_EQ(Error("'"), kMathIncomplete);
  EXPECT_EQ(Error("'AB"), kMathIncomplete);
}

TEST(CalcMathExpression, OperatorSemantics) {
  EXPECT_EQ(Value("1 << 33"), 2);
  EXPECT_EQ(Value("1 << 31"), INT_MIN);
  EXPECT_EQ(Value("-8 >> 1"), -4);
  EXPECT_EQ(Value("-1 >> 31"), -1);
  EXPECT_EQ(Value("0x40000000 >> 34"), 0x10000000);
  EXPECT_EQ(Value("7 / -2"), -3);
  EXPECT_EQ(Value("-7 % 3"), -1);
  EXPECT_EQ(Value("-2147483648 / -1"), INT_MIN);
  EXPECT_EQ(Value("-2147483648 % -1"), 0);
  EXPECT_EQ(Value("2147483647 + 1"), INT_MIN);
  EXPECT_EQ(Value("65536 * 65536"), 0);
  EXPECT_EQ(Value("-2147483648 - 1"), INT_MAX);
  EXPECT_EQ(Value("-1 < 1"), 1);  // signed comparisons
  EXPECT_EQ(Value("0xFFFFFFFF > 0"), 0);
  EXPECT_EQ(Value("5 && 3"), 1);
  EXPECT_EQ(Value("5 && 0"), 0);
  EXPECT_EQ(Value("0 || 7"), 1);
  EXPECT_EQ(Value("0 || 0"), 0);
  EXPECT_EQ(Value("\t1\r\n+\x01 2 "), 3);  // every byte from 1 to 32 is a blank
}

TEST(CalcMathExpression, ContinuationAndStopPosition) {
  uint32_t error = 77;
  int32_t value = 1;
  const char text[] = "+ 2 * 3";
  EXPECT_EQ(CalcMathExpression(text, 0, 1, &error, &value), text + sizeof text - 1);
  EXPECT_EQ(error, kMathOk);
  EXPECT_EQ(value, 7);
  // A continuation leaves a closing parenthesis to its caller.
  const char inner[] = "* 4) + 1";
  value = 3;
  EXPECT_EQ(CalcMathExpression(inner, 1, 1, &error, &value), inner + 3);
  EXPECT_EQ(value, 12);
  // A fresh call consumes it.
  EXPECT_EQ(CalcMathExpression(inner + 2, 1, 0, &error, &value), inner + 4);
  EXPECT_EQ(value, 4);
  // On error the accumulated value is left.
  CalcMathExpression("7 + 1 / 0", 0, 0, &error, &value);
  EXPECT_EQ(error, kMathDivideByZero);
  EXPECT_EQ(value, 7);
}

std::string Nested(int depth) {
  return std::string(static_cast<size_t>(depth), '(') + "1" +
         std::string(static_cast<size_t>(depth), ')');
}

TEST(CalcMathExpression, NestingIsBoundedInsteadOfExhaustingTheStack) {
  EXPECT_EQ(Value(Nested(kMathMaxDepth)), 1);
  EXPECT_EQ(Error(Nested(kMathMaxDepth + 1)), kMathOverflow);
  EXPECT_EQ(Error(std::string(100000, '(')), kMathOverflow);
  // Every precedence level open at once, at every depth: the deepest stack the bound allows.
  std::string chain;
  for (int i = 0; i < kMathMaxDepth; ++i)
    chain += "1||1&&1|1^1&1==1<1<<1+1*(";
  chain += "1" + std::string(kMathMaxDepth, ')');
  EXPECT_EQ(Error(chain), kMathOk);
}

TEST(CalcMathExpression, LongInputsFinishQuickly) {
  const std::string inputs[] = {
      std::string(2047, '('),
      std::string(2047, ' '),
      "1" + std::string(2046, ' '),
      std::string(1023, '~') + "1",
      [] {
        std::string s = "1";
        while (s.size() < 2040)
          s += "*1+1<<1";
        return s;
      }(),
      "'" + std::string(2046, 'A'),
  };
  for (const std::string& input : inputs) {
    auto start = std::chrono::steady_clock::now();
    Eval(input);
    auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_LT(elapsed, std::chrono::milliseconds(100)) << input.substr(0, 20);
  }
}

TEST(CalcMathExpression, NumberParserStopsAtTheFirstForeignDigit) {
  int32_t value = 5;
  const char* text = "  010";
  EXPECT_EQ(ParseMathNumber(text, &value), text + 5);
  EXPECT_EQ(value, 8);
  text = "0x1Fg";
  EXPECT_EQ(ParseMathNumber(text, &value), text + 4);
  EXPECT_EQ(value, 31);
  EXPECT_NE(ParseMathNumber("-1", &value), nullptr);
  EXPECT_EQ(value, -1);
  EXPECT_EQ(ParseMathNumber("abc", &value), nullptr);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(ParseMathNumber("0x", &value), nullptr);
  EXPECT_EQ(ParseMathNumber("- 1", &value), nullptr);
}

}  // namespace
