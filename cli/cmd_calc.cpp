// quill-tool command of the integer calculator.
#include <cstdio>
#include <cstring>

#include "calc/int_calculator.h"
#include "calc/math_expression.h"
#include "cli/tool.h"

// The arguments are joined with blanks, as if typed into the input edit.
int RunCalcCommand(int argc, char** argv) {
  if (argc < 1) return kExitUsage;
  char input[kIntCalcInputSize];
  size_t length = 0;
  for (int i = 0; i < argc && length < sizeof input - 1; ++i) {
    if (i > 0) input[length++] = ' ';
    size_t part = strlen(argv[i]);
    if (part > sizeof input - 1 - length) part = sizeof input - 1 - length;
    memcpy(input + length, argv[i], part);
    length += part;
  }
  input[length] = '\0';
  char output[256];
  uint32_t error = FormatIntCalcOutput(input, output, sizeof output);
  fputs(output, stdout);
  fputc('\n', stdout);
  if (error == kMathOk) return kExitOk;
  fprintf(stderr, "quill-tool: calc: error code %u\n", error);
  return kExitFailed;
}
