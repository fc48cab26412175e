// The calculators on the worst inputs of 2047 characters that we could build (deep parentheses,
// long sums, the largest powers that stay in range, many function calls), each timed and then
// handed with its result to bench/calc_reference.py, which evaluates the same expression with
// Python's decimal module at 28 digits (integers with Python's own) in the same run and prints
// both times, their ratio and how many leading digits agree.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "calc/decimal_registers.h"
#include "calc/math_expression.h"
#include "calc/real_expression.h"
#include "calc/running_calc.h"
#include "foundation/library.h"

namespace {

constexpr size_t kLongest = 2047;
// Python's parser refuses more than 200 open parentheses: the reference needs a little less than
// the calculators' own bound.
constexpr int kDeep = 190;

struct Input {
  char kind;  // 'i' integer evaluator, 'e' expression style, 'r' running style
  std::string name;
  std::string text;
};

// `start` and `piece` repeated, joined by `joint`, as long as the whole stays within 2047
// characters.
std::string Repeat(const std::string& piece, const std::string& joint,
                   const std::string& start = "") {
  std::string text = start + piece;
  while (text.size() + joint.size() + piece.size() <= kLongest)
    text += joint + piece;
  return text;
}

std::string Nested(int depth, const std::string& inner) {
  return std::string(depth, '(') + inner + std::string(depth, ')');
}

std::vector<Input> Inputs() {
  return {
      {'i', "parentheses 190 deep, 5 times", Repeat(Nested(kDeep, "7"), "+")},
      {'i', "long sum", Repeat("1234567", "+")},
      {'i', "products and quotients", Repeat("12345*6789/3", "-")},
      {'i', "sqrt calls", Repeat("sqrt(2147483647)", "+")},
      {'e', "parentheses 190 deep, 5 times",
       Repeat(Nested(kDeep, "1.000000000000000000000000001"), "*")},
      {'e', "long sum", Repeat("1234567.891011121314151617181", "+")},
      {'e', "powers near 1", Repeat("1.00001^99999", "*")},
      {'e', "largest power of 2 in range", "2^54400"},
      {'e', "1.0001^377000000", "1.0001^377000000"},
      {'e', "square roots", Repeat("Sqrt(2)", "+")},
      {'e', "sine, cosine, tangent, arc tangent",
       Repeat("Sin(0.5)+Cos(0.5)+Tan(0.5)+ATan(0.5)", "+")},
      {'r', "long chain", Repeat("0.5+1.25*3.5/7-0.125", "*")},
      {'r', "a large power, then a long chain",
       Repeat("*0.5+1.25/3.5-0.125", "", "1.00001^2147483647")},
  };
}

}  // namespace

int main(int argc, char** argv) {
  const char* reference = argc > 1 ? argv[1] : "bench/calc_reference.py";
  InitKLib(nullptr, nullptr);
  const char* table = "/tmp/quill_calc_bench.txt";
  FILE* out = fopen(table, "w");
  if (!out) return 1;
  for (const Input& input : Inputs()) {
    char result[1024] = "";
    double nanos = 0;
    if (input.kind == 'i') {
      int32_t value = 0;
      uint32_t error = 0;
      nanos = BestNanosPerIteration(
          200, [&](int) { CalcMathExpression(input.text.c_str(), 0, 0, &error, &value); });
      snprintf(result, sizeof result, "%s%d", error ? "error " : "", error ? error : value);
    } else {
      // The budget of repeated multiplications is per evaluation: every run pays it again.
      auto evaluate = input.kind == 'e' ? EvaluateRealExpression : EvaluateRunningCalc;
      nanos = BestNanosPerIteration(3, [&](int) {
        ResetDecimalCalcState();
        evaluate(input.text.c_str(), result, sizeof result);
      });
      for (char* p = result; *p; ++p) {
        if (*p == '\r' || *p == '\n') *p = '\0';
      }
    }
    fprintf(out, "%c\t%s\t%.0f\t%s\t%s\n", input.kind, input.name.c_str(), nanos, result,
            input.text.c_str());
  }
  fclose(out);
  CloseKLib();
  std::string command = std::string("python3 ") + reference + " " + table;
  int status = system(command.c_str());
  remove(table);
  return status == 0 ? 0 : 1;
}
