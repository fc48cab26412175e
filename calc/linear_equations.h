// The linear equation calculator: a system typed as text, one equation a line ("2x + 3y - z = 5"),
// solved by Gaussian elimination with partial pivoting in the precision calculator's 28-digit
// decimal arithmetic.
#pragma once

constexpr int kMaxUnknowns = 16;
constexpr int kMaxEquations = 64;
// Owner of the solver's blocks.
constexpr int kOwnerEquations = 7120;

enum LinearResult : int {
  kLinearSolved = 0,
  kLinearEmpty = 1,         // no equation typed
  kLinearSyntax = 2,        // a line that is no linear equation, with its place
  kLinearTooLarge = 3,      // more unknowns or equations than the calculator takes
  kLinearInconsistent = 4,  // no solution
  kLinearNotUnique = 5,     // infinitely many solutions (or no unknown at all)
  kLinearArithmetic = 6,    // a value beyond the number type's range
};

// The calculator's answer for `text` (UTF-8; blank lines are skipped): each unknown as
// "name = value" in the order of first appearance, rounded to 27 significant digits, or a message;
// lines end in CR LF. A block the caller frees (null when memory ran out); *result says which.
// A term is a product of literals of the precision calculator (digits, 0x..., 'c') with at
// most one unknown: "2x", "-0.5 * y", "x/4", "1e3 z"; an unknown is a name of letters, digits and
// '_' (Hangul too) that does not start with a digit.
char* SolveLinearEquations(const char* text, int* result);
