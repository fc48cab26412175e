// quill-tool command of the precision real calculator.
#include <cstdio>
#include <cstring>

#include "calc/math_expression.h"
#include "calc/real_expression.h"
#include "calc/running_calc.h"
#include "cli/tool.h"

// Each EXPR is one input, as if typed into the input edit (cut to its size); registers and the
// binary-output flag carry from one to the next.
int RunRcalcCommand(int argc, char** argv) {
  bool running = false;
  int first = 0;
  if (argc > 0 && strcmp(argv[0], "--running") == 0) {
    running = true;
    first = 1;
  }
  if (first >= argc) return kExitUsage;
  int status = kExitOk;
  for (int i = first; i < argc; ++i) {
    char input[kRealCalcInputSize];
    snprintf(input, sizeof input, "%s", argv[i]);
    char output[1024];
    uint32_t error = running ? EvaluateRunningCalc(input, output, sizeof output)
                             : EvaluateRealExpression(input, output, sizeof output);
    fputs(output, stdout);
    fputc('\n', stdout);
    if (error != kMathOk) {
      fprintf(stderr, "quill-tool: rcalc: error code %u in \"%s\"\n", error, input);
      status = kExitFailed;
    }
  }
  return status;
}
