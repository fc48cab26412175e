#include "calc/real_expression.h"

#include "calc/decimal_arith.h"
#include "calc/decimal_format.h"
#include "calc/decimal_functions.h"
#include "calc/decimal_parse.h"
#include "calc/math_expression.h"
#include "calc/math_lexer.h"
#include "foundation/formatter.h"

const char kRealExpressionExample[] =
    "Ex)\r\n(0x3FE + 0b0101) / 1,234.23e-6 + Sqrt(2) + Sin(Pi/2) / Cos(Pi/4) - Tan(Pi/3)\r\n"
    "ATan(Tan(PI/4))\r\n";

namespace {

enum class RealOperator { kPower, kMultiply, kDivide, kAdd, kSubtract };

struct RealBinaryOperator {
  char text;
  RealOperator op;
  int precedence;
};

const RealBinaryOperator kRealOperators[] = {
    {'^', RealOperator::kPower, 11},   {'*', RealOperator::kMultiply, 10},
    {'/', RealOperator::kDivide, 10},  {'+', RealOperator::kAdd, 9},
    {'-', RealOperator::kSubtract, 9},
};

struct RealFunction {
  const char* name;
  uint32_t (*apply)(DecimalNumber* x);
};

const RealFunction kRealFunctions[] = {
    {"sqrt", SqrtDecimal}, {"sin", SinDecimal},   {"cos", CosDecimal},
    {"tan", TanDecimal},   {"atan", ATanDecimal},
};

// What one evaluation may still spend on powers.
struct RealEvaluation {
  int powerSteps;
};

const RealBinaryOperator* ReadOperator(const char* text) {
  for (const RealBinaryOperator& candidate : kRealOperators) {
    if (*text == candidate.text) return &candidate;
  }
  return nullptr;
}

const char* Fail(const char* position, uint32_t* error, uint32_t code) {
  *error = code;
  return position;
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsLetterOrDigit(char c) {
  return IsLetter(c) || (c >= '0' && c <= '9');
}

const char* Evaluate(const char* text, int depth, int continuation, RealEvaluation* evaluation,
                     uint32_t* error, DecimalNumber* valueInOut);

// An optional function name, then a parenthesised sub-expression or an optionally signed literal.
const char* ReadOperand(const char* text, int depth, RealEvaluation* evaluation, uint32_t* error,
                        DecimalNumber* value) {
  const char* p = SkipMathBlanks(text);
  if (*p == '\0') return Fail(p, error, kMathIncomplete);
  const RealFunction* function = nullptr;
  if (IsLetter(*p)) {
    int length = 0;
    while (IsLetterOrDigit(p[length]))
      ++length;
    for (const RealFunction& candidate : kRealFunctions) {
      if (MatchMathPrefix(p, candidate.name) == length) function = &candidate;
    }
    if (function) {
      p = SkipMathBlanks(p + length);
      if (*p == '\0') return Fail(p, error, kMathIncomplete);
      if (*p != '(') return Fail(p, error, kMathSyntax);
    } else if (MatchMathPrefix(p, "e") != length && MatchMathPrefix(p, "pi") != length) {
      return Fail(p, error, kMathUnknownFunction);
    }
  }
  if (*p == '(') {
    if (depth >= kMathMaxDepth) return Fail(p, error, kMathOverflow);
    p = Evaluate(p + 1, depth + 1, 0, evaluation, error, value);
    if (*error == kMathOk && function) *error = function->apply(value);
    return p;
  }
  bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  *error = ParseDecimalNumber(&p, value);
  if (negative) NegateDecimal(value);
  return p;
}

uint32_t Apply(RealOperator op, DecimalNumber* left, const DecimalNumber& right,
               RealEvaluation* evaluation) {
  switch (op) {
    case RealOperator::kPower:
      return PowerDecimalWithin(left, right, &evaluation->powerSteps);
    case RealOperator::kMultiply:
      return MultiplyDecimal(left, right);
    case RealOperator::kDivide:
      return DivideDecimal(left, right);
    case RealOperator::kAdd:
      return AddDecimal(left, right);
    case RealOperator::kSubtract:
      return SubtractDecimal(left, right);
  }
  return kMathOk;
}

// The integer evaluator's loop over decimal values, with its order of evaluation (see
// CalcMathExpression).
const char* Evaluate(const char* text, int depth, int continuation, RealEvaluation* evaluation,
                     uint32_t* error, DecimalNumber* valueInOut) {
  *error = kMathOk;
  const char* p = text;
  DecimalNumber accumulator = kDecimalZero;
  if (continuation == 0) {
    p = ReadOperand(p, depth, evaluation, error, &accumulator);
  } else {
    accumulator = *valueInOut;
  }
  int lastPrecedence = 0;
  while (*error == kMathOk) {
    p = SkipMathBlanks(p);
    if (*p == '\0') {
      if (depth > 0) *error = kMathMissingParen;
      break;
    }
    if (*p == ')') {
      if (depth == 0) *error = kMathStrayParen;
      if (continuation == 0) ++p;
      break;
    }
    const RealBinaryOperator* op = ReadOperator(p);
    if (!op) {
      *error = kMathUnknownOperator;
      break;
    }
    if (continuation != 0 && lastPrecedence != 0 && op->precedence < lastPrecedence) break;
    ++p;
    lastPrecedence = op->precedence;
    DecimalNumber right = kDecimalZero;
    p = ReadOperand(p, depth, evaluation, error, &right);
    if (*error != kMathOk) break;
    const RealBinaryOperator* next = ReadOperator(SkipMathBlanks(p));
    if (next && next->precedence > lastPrecedence) {
      p = Evaluate(p, depth, 1, evaluation, error, &right);
      if (*error != kMathOk) break;
    }
    *error = Apply(op->op, &accumulator, right, evaluation);
  }
  *valueInOut = accumulator;
  return p;
}

}  // namespace

uint32_t EvaluateRealExpression(const char* text, char* buffer, int size) {
  if (*text == '\0') {
    FormatStr(buffer, size, "%s", kRealExpressionExample);
    return kMathOk;
  }
  RealEvaluation evaluation{kDecimalPowerSteps};
  uint32_t error = kMathOk;
  DecimalNumber value = kDecimalZero;
  Evaluate(text, 0, 0, &evaluation, &error, &value);
  if (error != kMathOk) {
    FormatMathError(buffer, size, error);
  } else {
    FormatDecimalResult(buffer, size, value);
  }
  return error;
}
