#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "calc/math_expression.h"
#include "foundation/language.h"
#include "tests/support/klib_test.h"

namespace {

std::string Message(uint32_t code, int size = 256) {
  char buffer[256];
  FormatMathError(buffer, size, code);
  return buffer;
}

// The messages come from the string table, so the library is up.
class CalcMathError : public KLibTest {
 protected:
  void TearDown() override {
    UnloadLanguage();
    KLibTest::TearDown();
  }
};

TEST_F(CalcMathError, MessagesByCode) {
  const char* const kTexts[] = {
      "계산식 미완성",      "계산식 오류 (문법 오류)", "')'부족",
      "뜬금없는 ')'",       "지원하지 않는 연산자",    "0으로 나눌 수 없음",
      "지원하지 않는 함수", "수가 범위를 벗어남",      "변수명 오류",
      "지원하지 않는 계산", "계산식을 입력하세요.",    "계산 불가 (Overflow)",
  };
  for (uint32_t code = 1; code <= 12; ++code)
    EXPECT_EQ(Message(code), kTexts[code - 1]) << code;
}

TEST_F(CalcMathError, ALanguageFileTranslatesTheMessages) {
  std::string path = testing::TempDir() + "quill_math_error.lng";
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  std::ofstream(path, std::ios::binary) << "50104=Missing ')'\r\n";
  LoadLanguageFile(path.c_str());
  std::remove(path.c_str());
  EXPECT_EQ(Message(3), "Missing ')'");
  EXPECT_EQ(Message(4), "뜬금없는 ')'");
}

TEST_F(CalcMathError, OtherCodesAndTruncation) {
  EXPECT_EQ(Message(0), "MathExpErr: Code=0");
  EXPECT_EQ(Message(13), "MathExpErr: Code=13");
  EXPECT_EQ(Message(0xFFFFFFFFu), "MathExpErr: Code=-1");
  EXPECT_EQ(MathErrorStringId(13), 0);
  EXPECT_EQ(Message(13, 6), "MathE");
  EXPECT_EQ(Message(3, 3), "')");
}

}  // namespace
