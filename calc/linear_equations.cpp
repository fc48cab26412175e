#include "calc/linear_equations.h"

#include <cstring>

#include "calc/decimal_arith.h"
#include "calc/decimal_number.h"
#include "calc/decimal_parse.h"
#include "calc/math_expression.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/text_builder.h"

namespace {

// Digits of a result that are shown: the 28th carries the elimination's rounding.
constexpr int kShownDigits = 27;
// A difference this many decimal places below the larger of its two operands is what rounding
// left of a cancellation: it is made zero, so that dependent equations leave rows of zeros.
constexpr int kZeroPlaces = 25;

struct Name {
  const char* text;
  int length;
};

struct System {
  Name names[kMaxUnknowns];
  int unknowns;
  int equations;
  int lineOf[kMaxEquations];  // the equation's number among the typed ones (from 1)
  // equations x (kMaxUnknowns + 1): coefficients, then the right-hand constant.
  DecimalNumber cells[kMaxEquations][kMaxUnknowns + 1];
  // The rows as typed, for the residual, and where each row of `cells` came from.
  DecimalNumber original[kMaxEquations][kMaxUnknowns + 1];
  int origin[kMaxEquations];
};

struct Failure {
  int result;
  int equation;  // from 1
  int column;    // character from 1, for a syntax error
  uint32_t mathError;
};

bool IsNameStart(char c) {
  auto u = static_cast<unsigned char>(c);
  return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || u == '_' || u >= 0x80;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
  return IsDigit(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f');
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

// The character number of `at` in a line starting at `line` (UTF-8 continuation bytes uncounted).
int CharacterColumn(const char* line, const char* at) {
  int column = 1;
  for (const char* p = line; p < at; ++p) {
    if ((static_cast<unsigned char>(*p) & 0xC0) != 0x80) ++column;
  }
  return column;
}

// One literal at *p. A decimal number is cut where a letter other than its exponent begins, so
// that "2x" and "2ex" read 2 and leave the name; "0x" and "0b" lead a binary literal only when
// a digit of it follows.
uint32_t ReadLiteral(const char** p, DecimalNumber* value) {
  const char* s = *p;
  bool binary = s[0] == '0' && (((s[1] | 0x20) == 'x' && IsHexDigit(s[2])) ||
                                ((s[1] | 0x20) == 'b' && (s[2] == '0' || s[2] == '1')));
  if (binary || s[0] == '\'') return ParseDecimalNumber(p, value);
  const char* end = s;
  while (IsDigit(*end) || *end == '.' || *end == ',')
    ++end;
  if ((*end | 0x20) == 'e') {
    const char* exponent = end + 1;
    if (*exponent == '+' || *exponent == '-') ++exponent;
    if (IsDigit(*exponent)) {
      end = exponent;
      while (IsDigit(*end))
        ++end;
    }
  }
  size_t length = static_cast<size_t>(end - s);
  auto* copy = static_cast<char*>(AllocMem(length + 1, kOwnerEquations));
  if (!copy) return kMathOverflow;
  memcpy(copy, s, length);
  copy[length] = '\0';
  const char* cursor = copy;
  uint32_t error = ParseDecimalNumber(&cursor, value);
  if (!error && *cursor) error = kMathSyntax;
  *p = error ? s + (cursor - copy) : end;
  FreeMem(copy);
  return error;
}

bool IsLiteralStart(const char* p) {
  return IsDigit(*p) || (*p == '.' && IsDigit(p[1])) || *p == '\'';
}

int FindName(System* system, const char* text, int length, Failure* failure) {
  for (int i = 0; i < system->unknowns; ++i) {
    if (system->names[i].length == length && memcmp(system->names[i].text, text, length) == 0)
      return i;
  }
  if (system->unknowns == kMaxUnknowns) {
    failure->result = kLinearTooLarge;
    return -1;
  }
  system->names[system->unknowns] = {text, length};
  return system->unknowns++;
}

// Reads one equation (the line from `line` to `end`) into row `row`: every term moved to the
// left, the constant to the right.
bool ReadEquation(System* system, int row, const char* line, const char* end, Failure* failure) {
  DecimalNumber* cells = system->cells[row];
  for (int i = 0; i <= kMaxUnknowns; ++i)
    cells[i] = kDecimalZero;
  const char* p = line;
  int side = 1;  // -1 right of '='
  bool sawEquals = false;
  bool first = true;
  auto fail = [&](int result, uint32_t mathError) {
    failure->result = result;
    failure->column = CharacterColumn(line, p);
    failure->mathError = mathError;
    return false;
  };
  for (;;) {
    while (p < end && IsBlank(*p))
      ++p;
    if (p == end || *p == '=') {
      if (first) return fail(kLinearSyntax, 0);  // a side with no term
      if (p == end) break;
      if (sawEquals) return fail(kLinearSyntax, 0);
      sawEquals = true;
      side = -1;
      first = true;
      ++p;
      continue;
    }
    bool negative = side < 0;
    if (*p == '+' || *p == '-') {
      if (*p == '-') negative = !negative;
      ++p;
      while (p < end && IsBlank(*p))
        ++p;
    } else if (!first) {
      return fail(kLinearSyntax, 0);
    }
    first = false;
    DecimalNumber coefficient = kDecimalOne;
    int unknown = -1;
    bool any = false;
    bool divide = false;
    for (;;) {
      while (p < end && IsBlank(*p))
        ++p;
      if (p < end && IsLiteralStart(p)) {
        DecimalNumber value;
        const char* start = p;
        uint32_t error = ReadLiteral(&p, &value);
        if (p > end) p = end;
        if (error) {
          if (error == kMathSyntax) return fail(kLinearSyntax, 0);
          p = start;
          return fail(kLinearArithmetic, error);
        }
        error = divide ? DivideDecimal(&coefficient, value) : MultiplyDecimal(&coefficient, value);
        if (error) return fail(kLinearArithmetic, error);
      } else if (p < end && IsNameStart(*p) && !divide) {
        if (unknown >= 0) return fail(kLinearSyntax, 0);  // a product of unknowns
        const char* start = p;
        while (p < end && (IsNameStart(*p) || IsDigit(*p)))
          ++p;
        unknown = FindName(system, start, static_cast<int>(p - start), failure);
        if (unknown < 0) {
          p = start;
          return fail(kLinearTooLarge, 0);
        }
      } else {
        return fail(kLinearSyntax, 0);
      }
      any = true;
      divide = false;
      while (p < end && IsBlank(*p))
        ++p;
      if (p < end && (*p == '*' || *p == '/')) {
        divide = *p == '/';
        ++p;
        continue;
      }
      // "2x" and "2 x": a product without its sign.
      if (p < end && (IsLiteralStart(p) || IsNameStart(*p))) continue;
      break;
    }
    if (!any) return fail(kLinearSyntax, 0);
    if (negative) NegateDecimal(&coefficient);
    // The constant goes to the other side.
    DecimalNumber* cell = unknown >= 0 ? &cells[unknown] : &cells[kMaxUnknowns];
    uint32_t error =
        unknown >= 0 ? AddDecimal(cell, coefficient) : SubtractDecimal(cell, coefficient);
    if (error) return fail(kLinearArithmetic, error);
  }
  if (!sawEquals) return fail(kLinearSyntax, 0);
  return true;
}

// cell -= product, a cancellation flushed to zero.
uint32_t SubtractCancelling(DecimalNumber* cell, const DecimalNumber& product) {
  DecimalNumber old = *cell;
  uint32_t error = SubtractDecimal(cell, product);
  if (error || IsDecimalZero(*cell) || IsDecimalZero(old) || IsDecimalZero(product)) return error;
  int larger = DecimalExponent(old) > DecimalExponent(product) ? DecimalExponent(old)
                                                               : DecimalExponent(product);
  if (DecimalExponent(*cell) < larger - kZeroPlaces) *cell = kDecimalZero;
  return 0;
}

void SwapRows(System* system, int a, int b) {
  if (a == b) return;
  DecimalNumber row[kMaxUnknowns + 1];
  memcpy(row, system->cells[a], sizeof row);
  memcpy(system->cells[a], system->cells[b], sizeof row);
  memcpy(system->cells[b], row, sizeof row);
  int line = system->lineOf[a];
  system->lineOf[a] = system->lineOf[b];
  system->lineOf[b] = line;
  line = system->origin[a];
  system->origin[a] = system->origin[b];
  system->origin[b] = line;
}

// "0.d1 d2 ... x 10^e" rounded to 27 digits, written plainly while that takes no more than 28
// digits before or 10 zeros after the point, otherwise as "d.ddd" and an exponent.
void AppendValue(TextBuilder* out, const DecimalNumber& value) {
  DecimalParts parts;
  UnpackDecimal(value, &parts);
  DecimalNumber rounded = value;
  if (!IsDecimalZero(value) && parts.digits[kShownDigits] >= 5) {
    uint8_t digits[kShownDigits + 1];
    digits[0] = 0;
    memcpy(digits + 1, parts.digits, kShownDigits);
    int i = kShownDigits;
    while (digits[i] == 9)
      digits[i--] = 0;
    ++digits[i];  // stops at the leading zero at the latest
    if (StoreDecimal(parts.negative, parts.exponent + 1, digits, kShownDigits + 1, false, &rounded))
      rounded = value;
  }
  if (IsDecimalZero(rounded)) {
    out->Append('0');
    return;
  }
  UnpackDecimal(rounded, &parts);
  int count = kShownDigits;
  while (count > 1 && parts.digits[count - 1] == 0)
    --count;
  if (parts.negative) out->Append('-');
  int exponent = parts.exponent;
  if (exponent > 0 && exponent <= kDecimalDigits) {
    for (int i = 0; i < exponent; ++i)
      out->Append(static_cast<char>('0' + (i < count ? parts.digits[i] : 0)));
    if (count > exponent) {
      out->Append('.');
      for (int i = exponent; i < count; ++i)
        out->Append(static_cast<char>('0' + parts.digits[i]));
    }
  } else if (exponent <= 0 && exponent > -10) {
    out->Append("0.");
    for (int i = 0; i < -exponent; ++i)
      out->Append('0');
    for (int i = 0; i < count; ++i)
      out->Append(static_cast<char>('0' + parts.digits[i]));
  } else {
    out->Append(static_cast<char>('0' + parts.digits[0]));
    if (count > 1) {
      out->Append('.');
      for (int i = 1; i < count; ++i)
        out->Append(static_cast<char>('0' + parts.digits[i]));
    }
    out->Format("e%d", exponent - 1);
  }
}

void AppendMessage(TextBuilder* out, int id, int a, int b = 0) {
  out->Format(GetStr(id), a, b);
  out->Append("\r\n");
}

void AppendMathFailure(TextBuilder* out, int equation, uint32_t code) {
  char message[128];
  FormatMathError(message, sizeof message, code);
  out->Format(GetStr(417), equation, message);
  out->Append("\r\n");
}

// A sum kept as two numbers, the second holding what rounding took from the first, so that a
// residual of nearly cancelling exact products keeps its digits.
struct WideSum {
  DecimalNumber high;
  DecimalNumber low;
};

uint32_t AddWide(WideSum* sum, const DecimalNumber& value) {
  DecimalNumber total = sum->high;
  uint32_t error = AddDecimal(&total, value);
  DecimalNumber taken = total;  // what of `value` went into the total
  if (!error) error = SubtractDecimal(&taken, sum->high);
  DecimalNumber kept = total;
  if (!error) error = SubtractDecimal(&kept, taken);
  DecimalNumber lost = sum->high;
  if (!error) error = SubtractDecimal(&lost, kept);
  DecimalNumber rest = value;
  if (!error) error = SubtractDecimal(&rest, taken);
  if (!error) error = AddDecimal(&lost, rest);
  if (!error) error = AddDecimal(&sum->low, lost);
  sum->high = total;
  return error;
}

// The first 14 digits and the rest: each product of two halves is exact in 28 digits.
void Split(const DecimalNumber& value, DecimalNumber* high, DecimalNumber* low) {
  DecimalParts parts;
  UnpackDecimal(value, &parts);
  for (int i = kDecimalDigits / 2; i < kDecimalDigits; ++i)
    parts.digits[i] = 0;
  *high = kDecimalZero;
  if (!IsDecimalZero(value))
    StoreDecimal(parts.negative, parts.exponent, parts.digits, kDecimalDigits, false, high);
  *low = value;
  SubtractDecimal(low, *high);
}

// b - A x of the typed row, to about twice the number type's digits.
uint32_t Residual(const System* system, int row, const DecimalNumber* x, DecimalNumber* out) {
  const DecimalNumber* cells = system->original[row];
  WideSum sum = {cells[kMaxUnknowns], kDecimalZero};
  uint32_t error = 0;
  for (int k = 0; k < system->unknowns && !error; ++k) {
    DecimalNumber a[2];
    DecimalNumber b[2];
    Split(cells[k], &a[0], &a[1]);
    Split(x[k], &b[0], &b[1]);
    for (int i = 0; i < 4 && !error; ++i) {
      DecimalNumber product = a[i / 2];
      error = MultiplyDecimal(&product, b[i % 2]);
      NegateDecimal(&product);
      if (!error) error = AddWide(&sum, product);
    }
  }
  *out = sum.high;
  if (!error) error = AddDecimal(out, sum.low);
  return error;
}

// Solves with the eliminated rows for right-hand sides `y` (in the rows' order, changed in
// place): the multipliers kept left of each pivot, then back substitution.
uint32_t Substitute(const System* system, const int* pivotColumn, int rank, DecimalNumber* y,
                    DecimalNumber* solution, int* failedRow) {
  uint32_t error = 0;
  for (int p = 0; p < rank && !error; ++p) {
    for (int row = p + 1; row < system->equations && !error; ++row) {
      const DecimalNumber& factor = system->cells[row][pivotColumn[p]];
      if (IsDecimalZero(factor)) continue;
      DecimalNumber product = factor;
      error = MultiplyDecimal(&product, y[p]);
      if (!error) error = SubtractDecimal(&y[row], product);
      *failedRow = row;
    }
  }
  for (int row = rank - 1; row >= 0 && !error; --row) {
    const DecimalNumber* cells = system->cells[row];
    DecimalNumber value = y[row];
    for (int k = pivotColumn[row] + 1; k < system->unknowns && !error; ++k) {
      DecimalNumber product = cells[k];
      error = MultiplyDecimal(&product, solution[k]);
      if (!error) error = SubtractDecimal(&value, product);
    }
    if (!error) error = DivideDecimal(&value, cells[pivotColumn[row]]);
    solution[pivotColumn[row]] = value;
    *failedRow = row;
  }
  return error;
}

// Forward elimination with partial pivoting, then the check of the rows left without a pivot,
// then back substitution.
int Solve(System* system, DecimalNumber* solution, TextBuilder* out) {
  int n = system->unknowns;
  int m = system->equations;
  int pivotColumn[kMaxEquations] = {};
  int rank = 0;
  memcpy(system->original, system->cells, sizeof system->cells);
  for (int row = 0; row < m; ++row)
    system->origin[row] = row;
  for (int column = 0; column < n && rank < m; ++column) {
    int best = -1;
    DecimalNumber bestSize = kDecimalZero;
    for (int row = rank; row < m; ++row) {
      DecimalNumber size = system->cells[row][column];
      if (IsDecimalZero(size)) continue;
      AbsDecimal(&size);
      if (best < 0 || CompareDecimal(size, bestSize) > 0) {
        best = row;
        bestSize = size;
      }
    }
    if (best < 0) continue;
    SwapRows(system, rank, best);
    const DecimalNumber* pivot = system->cells[rank];
    for (int row = rank + 1; row < m; ++row) {
      DecimalNumber* cells = system->cells[row];
      if (IsDecimalZero(cells[column])) continue;
      DecimalNumber factor = cells[column];
      uint32_t error = DivideDecimal(&factor, pivot[column]);
      for (int k = column + 1; k <= kMaxUnknowns && !error; ++k) {
        if (k >= n && k < kMaxUnknowns) continue;
        DecimalNumber product = factor;
        error = MultiplyDecimal(&product, pivot[k]);
        if (!error) error = SubtractCancelling(&cells[k], product);
      }
      if (error) {
        AppendMathFailure(out, system->lineOf[row], error);
        return kLinearArithmetic;
      }
      cells[column] = factor;  // kept for solving again with a correction's right side
    }
    pivotColumn[rank++] = column;
  }
  // Rows without a pivot read 0 = constant.
  for (int row = rank; row < m; ++row) {
    if (!IsDecimalZero(system->cells[row][kMaxUnknowns])) {
      AppendMessage(out, 414, system->lineOf[row]);
      return kLinearInconsistent;
    }
  }
  if (n == 0 || rank < n) {
    if (n == 0) {
      AppendMessage(out, 418, 0);
    } else {
      AppendMessage(out, 415, n, rank);
    }
    for (int row = rank; row < m; ++row)
      AppendMessage(out, 416, system->lineOf[row]);
    return kLinearNotUnique;
  }
  DecimalNumber y[kMaxEquations];
  for (int row = 0; row < rank; ++row)
    y[row] = system->cells[row][kMaxUnknowns];
  int failedRow = 0;
  uint32_t error = 0;
  // The constants are eliminated already: back substitution alone.
  for (int row = rank - 1; row >= 0 && !error; --row) {
    const DecimalNumber* cells = system->cells[row];
    DecimalNumber value = y[row];
    for (int k = pivotColumn[row] + 1; k < n && !error; ++k) {
      DecimalNumber product = cells[k];
      error = MultiplyDecimal(&product, solution[k]);
      if (!error) error = SubtractDecimal(&value, product);
    }
    if (!error) error = DivideDecimal(&value, cells[pivotColumn[row]]);
    solution[pivotColumn[row]] = value;
    failedRow = row;
  }
  if (error) {
    AppendMathFailure(out, system->lineOf[failedRow], error);
    return kLinearArithmetic;
  }
  // Two corrections from residuals of twice the digits win back what the elimination rounded
  // away. A correction that fails (a residual out of range) leaves the answer as it is.
  for (int round = 0; round < 2; ++round) {
    DecimalNumber r[kMaxEquations];
    DecimalNumber correction[kMaxUnknowns];
    uint32_t failed = 0;
    for (int row = 0; row < m && !failed; ++row)
      failed = Residual(system, system->origin[row], solution, &r[row]);
    if (!failed) failed = Substitute(system, pivotColumn, rank, r, correction, &failedRow);
    for (int k = 0; k < n && !failed; ++k)
      failed = AddDecimal(&solution[k], correction[k]);
  }
  return kLinearSolved;
}

}  // namespace

char* SolveLinearEquations(const char* text, int* result) {
  TextBuilder out(kOwnerEquations);
  auto* system = static_cast<System*>(AllocMem(sizeof(System), kOwnerEquations));
  if (!system) return nullptr;
  memset(system, 0, sizeof *system);
  Failure failure = {kLinearSolved, 0, 0, 0};
  int typed = 0;
  for (const char* line = text; *line && failure.result == kLinearSolved;) {
    const char* end = line;
    while (*end && *end != '\n')
      ++end;
    const char* p = line;
    while (p < end && IsBlank(*p))
      ++p;
    if (p < end) {
      ++typed;
      if (system->equations == kMaxEquations) {
        failure.result = kLinearTooLarge;
      } else if (ReadEquation(system, system->equations, line, end, &failure)) {
        system->lineOf[system->equations++] = typed;
      } else {
        failure.equation = typed;
      }
    }
    line = *end ? end + 1 : end;
  }
  int status = failure.result;
  if (status == kLinearSyntax) {
    AppendMessage(&out, 411, failure.equation, failure.column);
  } else if (status == kLinearTooLarge) {
    AppendMessage(&out, system->equations == kMaxEquations ? 413 : 412,
                  system->equations == kMaxEquations ? kMaxEquations : kMaxUnknowns);
  } else if (status == kLinearArithmetic) {
    AppendMathFailure(&out, failure.equation, failure.mathError);
  } else if (system->equations == 0) {
    status = kLinearEmpty;
    AppendMessage(&out, 410, 0);
  } else {
    DecimalNumber solution[kMaxUnknowns];
    status = Solve(system, solution, &out);
    for (int i = 0; status == kLinearSolved && i < system->unknowns; ++i) {
      out.Append(system->names[i].text, static_cast<size_t>(system->names[i].length));
      out.Append(" = ");
      AppendValue(&out, solution[i]);
      out.Append("\r\n");
    }
  }
  FreeMem(system);
  *result = status;
  return out.Release();
}
