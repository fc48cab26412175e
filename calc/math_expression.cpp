#include "calc/math_expression.h"

#include "calc/math_lexer.h"
#include "calc/math_number.h"

namespace {

enum class Prefix {
  kNone,
  kNot,
  kComplement,
  kIncrement,
  kDecrement,
  kSqrt,
  kInt,
  kChar,
  kShort,
  kUnsignedChar,
  kUnsignedShort
};

struct PrefixText {
  const char* text;
  Prefix prefix;
};

// Tested in this order; only one prefix is taken per operand.
const PrefixText kPrefixes[] = {
    {"!", Prefix::kNot},
    {"~", Prefix::kComplement},
    {"++", Prefix::kIncrement},
    {"--", Prefix::kDecrement},
    {"sqrt", Prefix::kSqrt},
    {"(int)", Prefix::kInt},
    {"(char)", Prefix::kChar},
    {"(short)", Prefix::kShort},
    {"(unsigned char)", Prefix::kUnsignedChar},
    {"(unsigned short)", Prefix::kUnsignedShort},
};

enum class Operator {
  kMultiply,
  kDivide,
  kRemainder,
  kAdd,
  kSubtract,
  kShiftLeft,
  kShiftRight,
  kLess,
  kGreater,
  kLessEqual,
  kGreaterEqual,
  kEqual,
  kNotEqual,
  kBitAnd,
  kBitXor,
  kBitOr,
  kAnd,
  kOr
};

struct BinaryOperator {
  const char* text;
  int length;
  Operator op;
  int precedence;
};

// Two-character operators come before their one-character prefixes.
const BinaryOperator kOperators[] = {
    {"<<", 2, Operator::kShiftLeft, 8}, {">>", 2, Operator::kShiftRight, 8},
    {"<=", 2, Operator::kLessEqual, 7}, {">=", 2, Operator::kGreaterEqual, 7},
    {"==", 2, Operator::kEqual, 6},     {"!=", 2, Operator::kNotEqual, 6},
    {"&&", 2, Operator::kAnd, 2},       {"||", 2, Operator::kOr, 1},
    {"*", 1, Operator::kMultiply, 10},  {"/", 1, Operator::kDivide, 10},
    {"%", 1, Operator::kRemainder, 10}, {"+", 1, Operator::kAdd, 9},
    {"-", 1, Operator::kSubtract, 9},   {"<", 1, Operator::kLess, 7},
    {">", 1, Operator::kGreater, 7},    {"&", 1, Operator::kBitAnd, 5},
    {"^", 1, Operator::kBitXor, 4},     {"|", 1, Operator::kBitOr, 3},
};

const BinaryOperator* ReadBinaryOperator(const char* text) {
  for (const BinaryOperator& candidate : kOperators) {
    if (text[0] == candidate.text[0] && (candidate.length == 1 || text[1] == candidate.text[1]))
      return &candidate;
  }
  return nullptr;
}

const char* Fail(const char* position, uint32_t* error, uint32_t code) {
  *error = code;
  return position;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsLetterOrDigit(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// `text` is just after the opening quote: one to four bytes, the first most significant.
const char* ReadCharConstant(const char* text, uint32_t* error, int32_t* value) {
  unsigned char bytes[4];
  int count = 0;
  const char* end = text;
  uint32_t code = ScanMathCharConstant(text, bytes, 4, &count, &end);
  if (code != kMathOk) return Fail(end, error, code);
  uint32_t packed = 0;
  for (int i = 0; i < count; ++i)
    packed = packed << 8 | bytes[i];
  *value = static_cast<int32_t>(packed);
  return end;
}

const char* ReadNumber(const char* text, uint32_t* error, int32_t* value) {
  const char* p = ParseMathNumber(text, value);
  if (!p) return Fail(SkipMathBlanks(text), error, kMathSyntax);
  const char* const kSuffixes[] = {"UL", "L", "U"};
  for (const char* suffix : kSuffixes) {
    if (int length = MatchMathPrefix(p, suffix)) return p + length;
  }
  return p;
}

// What follows a prefix: a parenthesised sub-expression, a character constant or a number.
const char* ReadPrimary(const char* text, int depth, uint32_t* error, int32_t* value) {
  const char* p = SkipMathBlanks(text);
  if (*p == '\0') return Fail(p, error, kMathIncomplete);
  if (*p == '(') {
    if (depth >= kMathMaxDepth) return Fail(p, error, kMathOverflow);
    return CalcMathExpression(p + 1, depth + 1, 0, error, value);
  }
  if (*p == '\'') return ReadCharConstant(p + 1, error, value);
  return ReadNumber(p, error, value);
}

int32_t SignExtend(uint32_t value, int bits) {
  uint32_t sign = 1u << (bits - 1);
  uint32_t low = value & ((sign << 1) - 1);
  return static_cast<int32_t>((low ^ sign) - sign);
}

int32_t ApplyPrefix(Prefix prefix, int32_t value, uint32_t* error) {
  uint32_t bits = static_cast<uint32_t>(value);
  switch (prefix) {
    case Prefix::kNot:
      return value == 0;
    case Prefix::kComplement:
      return static_cast<int32_t>(~bits);
    case Prefix::kIncrement:
      return static_cast<int32_t>(bits + 1);
    case Prefix::kDecrement:
      return static_cast<int32_t>(bits - 1);
    case Prefix::kSqrt:
      if (value < 0) {
        *error = kMathOverflow;
        return value;
      }
      return static_cast<int32_t>(MathIntegerSqrt(bits));
    case Prefix::kChar:
      return SignExtend(bits, 8);
    case Prefix::kShort:
      return SignExtend(bits, 16);
    case Prefix::kUnsignedChar:
      return static_cast<int32_t>(bits & 0xFF);
    case Prefix::kUnsignedShort:
      return static_cast<int32_t>(bits & 0xFFFF);
    case Prefix::kNone:
    case Prefix::kInt:
      break;
  }
  return value;
}

Prefix ReadPrefix(const char** cursor) {
  for (const PrefixText& candidate : kPrefixes) {
    if (int length = MatchMathPrefix(*cursor, candidate.text)) {
      *cursor += length;
      return candidate.prefix;
    }
  }
  return Prefix::kNone;
}

bool CanStartOperand(char c) {
  return c == '\0' || c == '(' || c == '+' || c == '-' || c == '\'' || IsDigit(c);
}

const char* ReadOperand(const char* text, int depth, uint32_t* error, int32_t* value) {
  const char* p = SkipMathBlanks(text);
  Prefix prefix = ReadPrefix(&p);
  if (prefix == Prefix::kSqrt) {
    const char* next = SkipMathBlanks(p);
    if (*next == '\0') return Fail(next, error, kMathIncomplete);
    if (IsLetterOrDigit(*next)) return Fail(next, error, kMathUnknownFunction);
    if (*next != '(') return Fail(next, error, kMathSyntax);
  } else if (prefix == Prefix::kNone && !CanStartOperand(*p)) {
    return Fail(p, error, kMathUnknownFunction);
  }
  p = ReadPrimary(p, depth, error, value);
  if (*error == kMathOk) *value = ApplyPrefix(prefix, *value, error);
  return p;
}

// >> keeps the sign without relying on the compiler's shift of negative values.
int32_t ShiftRightArithmetic(int32_t value, uint32_t count) {
  uint32_t bits = static_cast<uint32_t>(value);
  return static_cast<int32_t>(value < 0 ? ~(~bits >> count) : bits >> count);
}

int32_t ApplyOperator(Operator op, int32_t left, int32_t right, uint32_t* error) {
  uint32_t a = static_cast<uint32_t>(left);
  uint32_t b = static_cast<uint32_t>(right);
  switch (op) {
    case Operator::kMultiply:
      return static_cast<int32_t>(a * b);
    case Operator::kDivide:
    case Operator::kRemainder:
      if (right == 0) {
        *error = kMathDivideByZero;
        return left;
      }
      // INT_MIN / -1 traps on x86: the quotient wraps to INT_MIN, the remainder is 0.
      if (right == -1) return op == Operator::kDivide ? static_cast<int32_t>(0u - a) : 0;
      return op == Operator::kDivide ? left / right : left % right;
    case Operator::kAdd:
      return static_cast<int32_t>(a + b);
    case Operator::kSubtract:
      return static_cast<int32_t>(a - b);
    case Operator::kShiftLeft:
      return static_cast<int32_t>(a << (b & 31));
    case Operator::kShiftRight:
      return ShiftRightArithmetic(left, b & 31);
    case Operator::kLess:
      return left < right;
    case Operator::kGreater:
      return left > right;
    case Operator::kLessEqual:
      return left <= right;
    case Operator::kGreaterEqual:
      return left >= right;
    case Operator::kEqual:
      return left == right;
    case Operator::kNotEqual:
      return left != right;
    case Operator::kBitAnd:
      return static_cast<int32_t>(a & b);
    case Operator::kBitXor:
      return static_cast<int32_t>(a ^ b);
    case Operator::kBitOr:
      return static_cast<int32_t>(a | b);
    case Operator::kAnd:
      return left != 0 && right != 0;
    case Operator::kOr:
      return left != 0 || right != 0;
  }
  return left;
}

}  // namespace

// A continuation call returns at the first operator weaker than the last one it applied, and its
// caller takes that operator left-associatively without comparing precedences again: this order
// ("1 == 1 * 1 + 1" is 2) is the program's own and is kept.
const char* CalcMathExpression(const char* text, int depth, int continuation, uint32_t* errorOut,
                               int32_t* valueInOut) {
  *errorOut = kMathOk;
  const char* p = text;
  int32_t accumulator = 0;
  if (continuation == 0) {
    p = ReadOperand(p, depth, errorOut, &accumulator);
  } else {
    accumulator = *valueInOut;
  }
  int lastPrecedence = 0;
  while (*errorOut == kMathOk) {
    p = SkipMathBlanks(p);
    if (*p == '\0') {
      if (depth > 0) *errorOut = kMathMissingParen;
      break;
    }
    if (*p == ')') {
      if (depth == 0) *errorOut = kMathStrayParen;
      if (continuation == 0) ++p;
      break;
    }
    const BinaryOperator* op = ReadBinaryOperator(p);
    if (!op) {
      *errorOut = kMathUnknownOperator;
      break;
    }
    if (continuation != 0 && lastPrecedence != 0 && op->precedence < lastPrecedence) break;
    p += op->length;
    lastPrecedence = op->precedence;
    int32_t right = 0;
    p = ReadOperand(p, depth, errorOut, &right);
    if (*errorOut != kMathOk) break;
    const BinaryOperator* next = ReadBinaryOperator(SkipMathBlanks(p));
    if (next && next->precedence > lastPrecedence) {
      p = CalcMathExpression(p, depth, 1, errorOut, &right);
      if (*errorOut != kMathOk) break;
    }
    accumulator = ApplyOperator(op->op, accumulator, right, errorOut);
  }
  *valueInOut = accumulator;
  return p;
}
