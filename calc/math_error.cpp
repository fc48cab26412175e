#include "calc/math_expression.h"
#include "foundation/formatter.h"

namespace {

struct MathMessage {
  int id;
  const char* text;
};

// Indexed by error code. Codes 9 and 10 take ids 110 and 109: that crossing is the program's.
const MathMessage kMathMessages[] = {
    {0, nullptr},
    {102, "계산식 미완성"},
    {103, "계산식 오류 (문법 오류)"},
    {104, "')'부족"},
    {105, "뜬금없는 ')'"},
    {106, "지원하지 않는 연산자"},
    {111, "0으로 나눌 수 없음"},
    {107, "지원하지 않는 함수"},
    {108, "수가 범위를 벗어남"},
    {110, "변수명 오류"},
    {109, "지원하지 않는 계산"},
    {101, "계산식을 입력하세요."},
    {112, "계산 불가 (Overflow)"},
};
constexpr uint32_t kMathMessageCount = sizeof kMathMessages / sizeof kMathMessages[0];

// The string table's text of a math message id.
const char* MathMessageText(int id) {
  for (const MathMessage& message : kMathMessages) {
    if (message.id == id) return message.text;
  }
  return nullptr;
}

}  // namespace

int MathErrorStringId(uint32_t code) {
  return code < kMathMessageCount ? kMathMessages[code].id : 0;
}

void FormatMathError(char* buffer, int bufferSize, uint32_t code) {
  int id = MathErrorStringId(code);
  if (id == 0) {
    FormatStr(buffer, bufferSize, "MathExpErr: Code=%d", code);
    return;
  }
  FormatStr(buffer, bufferSize, "%s", MathMessageText(id));
}
