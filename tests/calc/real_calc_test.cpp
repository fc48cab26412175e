// The real calculator's literals, both input styles and the result text.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>

#include "calc/decimal_number.h"
#include "calc/decimal_parse.h"
#include "calc/decimal_registers.h"
#include "calc/math_expression.h"
#include "calc/real_expression.h"
#include "calc/running_calc.h"
#include "tests/support/klib_test.h"

namespace {

// Error messages come from the string table: the library is up.
class RealCalc : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    ResetDecimalCalcState();
  }
  void TearDown() override {
    ResetDecimalCalcState();
    KLibTest::TearDown();
  }

  std::string Expression(const std::string& text, uint32_t* error = nullptr) {
    char buffer[1024];
    uint32_t code = EvaluateRealExpression(text.c_str(), buffer, sizeof buffer);
    if (error) *error = code;
    return buffer;
  }
  std::string Running(const std::string& text, uint32_t* error = nullptr) {
    char buffer[1024];
    uint32_t code = EvaluateRunningCalc(text.c_str(), buffer, sizeof buffer);
    if (error) *error = code;
    return buffer;
  }
  uint32_t Code(const std::string& text, bool running = false) {
    uint32_t error = 0;
    running ? Running(text, &error) : Expression(text, &error);
    return error;
  }
};

uint32_t Parse(const char* text, DecimalNumber* out, const char** end = nullptr) {
  const char* p = text;
  uint32_t error = ParseDecimalNumber(&p, out);
  if (end) *end = p;
  return error;
}

TEST_F(RealCalc, LiteralForms) {
  DecimalNumber value;
  const char* end = nullptr;
  EXPECT_EQ(Parse("1,234.23e-6+", &value, &end), kMathOk);
  EXPECT_EQ(*end, '+');
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("0.00123423")), 0);
  EXPECT_EQ(Parse(".5", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, kDecimalHalf), 0);
  EXPECT_EQ(Parse("000.0254", &value), kMathOk);
  EXPECT_EQ(memcmp(&value, &kDecimalMil, sizeof value), 0);
  // The 29th digit is dropped, not rounded.
  EXPECT_EQ(Parse("11111111111111111111111111119", &value), kMathOk);
  const DecimalNumber kCut = DecimalConstant("11111111111111111111111111110");
  EXPECT_EQ(memcmp(&value, &kCut, sizeof value), 0);
  EXPECT_EQ(Parse("PI", &value), kMathOk);
  EXPECT_EQ(memcmp(&value, &kDecimalPi, sizeof value), 0);
  EXPECT_EQ(Parse("Mil", &value), kMathOk);
  EXPECT_EQ(memcmp(&value, &kDecimalMil, sizeof value), 0);
  EXPECT_EQ(Parse("E", &value), kMathOk);
  EXPECT_EQ(memcmp(&value, &kDecimalE, sizeof value), 0);
  EXPECT_EQ(Parse("1.2.3", &value), kMathSyntax);
  EXPECT_EQ(Parse("1e", &value), kMathSyntax);
  EXPECT_EQ(Parse("x", &value), kMathSyntax);
  EXPECT_EQ(Parse("1e16384", &value), kMathOutOfRange);
  EXPECT_EQ(Parse("0.1e16383", &value), kMathOk);
  EXPECT_EQ(Parse("10e16383", &value), kMathOutOfRange);  // the exponents' sum
}

TEST_F(RealCalc, BinaryLiteralsAreNinetySixBitTwosComplement) {
  DecimalNumber value;
  EXPECT_EQ(Parse("0xFF", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("-1")), 0);
  EXPECT_EQ(Parse("0x0FF", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("255")), 0);
  EXPECT_EQ(Parse("0x80", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("-128")), 0);
  EXPECT_EQ(Parse("0x1,0000", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("65536")), 0);
  EXPECT_EQ(Parse("0b0101", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("5")), 0);
  EXPECT_EQ(Parse("0b1", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("-1")), 0);
  EXPECT_EQ(Parse("0x", &value), kMathSyntax);
  EXPECT_EQ(Parse(("0x" + std::string(24, 'F')).c_str(), &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("-1")), 0);
  EXPECT_EQ(Parse(("0x1" + std::string(24, '0')).c_str(), &value), kMathOutOfRange);
  // 2^96 - 1 has 29 digits.
  EXPECT_EQ(Parse(("0x0" + std::string(24, 'F')).c_str(), &value), kMathOutOfRange);
  EXPECT_EQ(Parse(("0x0" + std::string(23, 'F')).c_str(), &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("4951760157141521099596496895")), 0);
  EXPECT_EQ(Parse(("0b1" + std::string(96, '0')).c_str(), &value), kMathOutOfRange);
  EXPECT_EQ(Parse("'AB'", &value), kMathOk);
  EXPECT_EQ(CompareDecimal(value, DecimalConstant("16706")), 0);
  EXPECT_EQ(Parse("''", &value), kMathSyntax);
  EXPECT_EQ(Parse("'abcdefghijklm'", &value), kMathSyntax);
  EXPECT_EQ(Parse("'abc", &value), kMathSyntax);
}

TEST_F(RealCalc, ExpressionStyle) {
  EXPECT_EQ(Expression(""), kRealExpressionExample);
  EXPECT_EQ(Expression("1 + 2 * 3 ^ 2"), "= 19\r\n= 13 (Hex)");
  EXPECT_EQ(Expression("-pi + Sqrt(4)"),
            "= -1.141592653589793238462643383\r\n= -1 (Hex)\r\n= F (Hex)");
  EXPECT_EQ(Code("2^0.5"), kMathUnsupported);
  EXPECT_EQ(Code("2^-1"), kMathUnsupported);
  // Large powers that stay in range, to the digits their repeated products share with Python's
  // decimal module.
  EXPECT_EQ(Expression("1.0001^30000").substr(0, 23), "= 20.082524519410365787");
  EXPECT_EQ(Expression("1.00001^100000").substr(0, 23), "= 2.7182682371744896680");
  EXPECT_EQ(Expression("1.0001^20000*1.0001^20000").substr(0, 21), "= 54.5872322228029922");
  EXPECT_EQ(Code("1.0001^2147483647"), kMathUnsupported);  // e^214741: out of range
  EXPECT_EQ(Code("Sqrt(-1)"), kMathOverflow);
  EXPECT_EQ(Expression("Sqrt(-1)"), "계산 불가 (Overflow)");
  EXPECT_EQ(Code("1/0"), kMathDivideByZero);
  EXPECT_EQ(Code("(1+2"), kMathMissingParen);
  EXPECT_EQ(Code("1+2)"), kMathStrayParen);
  EXPECT_EQ(Code("1 % 2"), kMathUnknownOperator);
  EXPECT_EQ(Code("1 +"), kMathIncomplete);
  EXPECT_EQ(Code("sin"), kMathIncomplete);
  EXPECT_EQ(Code("sin 1"), kMathSyntax);
  EXPECT_EQ(Code("sinx(1)"), kMathUnknownFunction);
  EXPECT_EQ(Code("log(1)"), kMathUnknownFunction);
  EXPECT_EQ(Code("-(3)"), kMathSyntax);
  EXPECT_EQ(Code("10mm"), kMathUnknownOperator);
  EXPECT_EQ(Code("Tan(Pi/2)"), kMathOk);  // the folded cosine is not exactly zero
  EXPECT_EQ(Code(std::string(300, '(') + "1" + std::string(300, ')')), kMathOverflow);
}

TEST_F(RealCalc, RunningStyle) {
  EXPECT_EQ(Running(""), kRunningCalcExample);
  EXPECT_EQ(Running("1 + 2 * 3"), "= 9\r\n= 09 (Hex)");  // strictly left to right
  EXPECT_EQ(Running("10mm"), "= 393.7007874015748031496062992\r\n= 189 (Hex)");
  EXPECT_EQ(Running("254mil"), "= 6.4516\r\n= 6 (Hex)");
  EXPECT_EQ(Code("10mm, 254mil", true), kMathSyntax);
  EXPECT_EQ(Running("'a'+2 = @A"), "= 99\r\n= 63 (Hex)\r\n= 'c'");
  EXPECT_EQ(CompareDecimal(*DecimalRegister(0), DecimalConstant("99")), 0);
  EXPECT_EQ(Running("2^16 + @A -1"), "= 65,634\r\n= 1 0062 (Hex)\r\n= '  b'");
  EXPECT_EQ(Code("@k", true), kMathBadVariable);
  EXPECT_EQ(Code("1 = 5", true), kMathBadVariable);
  EXPECT_EQ(Code("1 = @b = 2", true), kMathBadVariable);
  EXPECT_EQ(CompareDecimal(*DecimalRegister(1), kDecimalOne), 0);  // stored before the error
  EXPECT_EQ(Running("-5 * 2"), "= -10\r\n= -0A (Hex)\r\n= F6 (Hex)");
  // An operator at the end is followed by a literal without digits.
  for (const char* text : {"1 +", "1 =", "2 ^ ", "1 * 2 -", "5mm +", "  "})
    EXPECT_EQ(Code(text, true), kMathSyntax) << text;
  EXPECT_EQ(Code("1 ? 2", true), kMathSyntax);
  EXPECT_EQ(Code("1\n", true), kMathSyntax);  // only space and tab are blanks
}

TEST_F(RealCalc, BinaryFlagTogglesAndChangesNothingElse) {
  Running("7 = @c");
  EXPECT_EQ(Running("b"), "Binary out On");
  EXPECT_EQ(CompareDecimal(*DecimalRegister(2), DecimalConstant("7")), 0);
  EXPECT_EQ(Expression("255"), "= 255\r\n= 0FF (Hex)\r\n= 0000 1111 1111 (Bin)");
  EXPECT_EQ(Expression("-2"), "= -2\r\n= -2 (Hex)\r\n= E (Hex)\r\n= 1110 (Bin)");
  EXPECT_EQ(Running("Bother"), "Binary out Off");
  EXPECT_EQ(Expression("255"), "= 255\r\n= 0FF (Hex)");
}

TEST_F(RealCalc, ResultText) {
  EXPECT_EQ(Expression("0"), "= 0");
  EXPECT_EQ(Expression("0.5"), "= 500e-3");
  EXPECT_EQ(Expression("-0.0254"), "= -25.4e-3");
  EXPECT_EQ(Expression("0.00254"), "= 2.54e-3");
  EXPECT_EQ(Expression("0.000254"), "= 254e-6");
  EXPECT_EQ(Expression("1234567.5"), "= 1,234,567.5\r\n= 12 D687 (Hex)");
  EXPECT_EQ(Expression("65536"), "= 65,536\r\n= 1 0000 (Hex)");
  EXPECT_EQ(Expression("32768"), "= 32,768\r\n= 0 8000 (Hex)");
  EXPECT_EQ(Expression("45217"), "= 45,217\r\n= 0 B0A1 (Hex)\r\n= '가'");
  EXPECT_EQ(Expression("1e30"),
            "= 100,000,000,000,000,000,000,000,000e4\r\n= 0C 9F2C 9CD0 4674 EDEA 4000 0000 (Hex)"
            "\r\n= '  ,  Ft檣@   '");
  EXPECT_EQ(Expression("1e40"), "= 100,000,000,000,000,000,000,000,000e14\r\n= Over (Hex)");
  // The 112-bit edge: 2^112 is 5192296858534827628530496329220096.
  EXPECT_EQ(Expression("5192296858534827628530496329e6").substr(0, 89),
            "= 519,229,685,853,482,762,853,049,632.9e7\r\n"
            "= 0 FFFF FFFF FFFF FFFF FFFF FFFC A440 (Hex)\r\n");
  EXPECT_EQ(Expression("5192296858534827628530496330e6"),
            "= 519,229,685,853,482,762,853,049,633e7\r\n= Over (Hex)");
  EXPECT_EQ(Expression("1.5").substr(0, 18), "= 1.5\r\n= 1 (Hex)");
}

// What a user may paste into either style: each gets a value or a message of the table.
TEST_F(RealCalc, PastedInputGetsAValueOrAMessage) {
  const std::string kDeep = std::string(10000, '(') + "1" + std::string(10000, ')');
  struct Case {
    std::string text;
    uint32_t expression;
    uint32_t running;
  };
  const Case kCases[] = {
      {kDeep, kMathOverflow, kMathSyntax},
      {std::string(kRealCalcInputSize - 1, '9'), kMathOk, kMathOk},
      {"1" + std::string(16383, '0'), kMathOutOfRange, kMathOutOfRange},
      {"1+\xEA\xB0\x80", kMathSyntax, kMathSyntax},  // UTF-8 Hangul where a literal belongs
      {"\xB0\xA1 + 1", kMathSyntax, kMathSyntax},    // the same in the ANSI code page
      {"1 \xB0\xA1", kMathUnknownOperator, kMathSyntax},
      {"'" + std::string(13, 'x') + "'", kMathSyntax, kMathSyntax},  // over 96 bits
      {"'\xB0\xA1", kMathSyntax, kMathSyntax},                       // no closing quote
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(Code(c.text), c.expression) << c.text.substr(0, 40);
    EXPECT_EQ(Code(c.text, true), c.running) << c.text.substr(0, 40);
  }
  // Hangul in a character literal is its code-page bytes, shown back as the character.
  EXPECT_EQ(Expression("'\xB0\xA1'"), Expression("45217"));
  EXPECT_EQ(Running("'\xB0\xA1'"), "= 45,217\r\n= 0 B0A1 (Hex)\r\n= '가'");
}

TEST_F(RealCalc, EveryInputFinishesInTime) {
  const std::string kInputs[] = {
      "1.0001^20000*1.0001^20000",
      "1.00001^100000",
      "0.9999999^2147483647",
      [] {
        std::string s = "1";
        while (s.size() < kRealCalcInputSize - 20)
          s += "*1.00001^99999";
        return s;
      }(),
      "Tan(" + std::string(250, '(') + "1.5" + std::string(250, ')') + ")",
      [] {
        std::string s = "1";
        while (s.size() < kRealCalcInputSize - 20)
          s += "+ATan(Tan(1.5))";
        return s;
      }(),
      [] {
        std::string s = "1";
        while (s.size() < kRealCalcInputSize - 20)
          s += "/Sqrt(7)";
        return s;
      }(),
  };
  // 150 ms an evaluation leaves the sanitizer build (about 20 times slower than the program's)
  // twice what the budget of repeated multiplications costs it.
  for (const std::string& input : kInputs) {
    for (bool running : {false, true}) {
      auto start = std::chrono::steady_clock::now();
      Code(input, running);
      EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150))
          << input.substr(0, 30);
    }
  }
}

}  // namespace
