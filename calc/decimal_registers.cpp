#include "calc/decimal_registers.h"

namespace {

DecimalNumber g_registers[kDecimalRegisterCount];
int g_lastRegister = kNoDecimalRegister;
bool g_binaryOutput = false;

}  // namespace

DecimalNumber* DecimalRegister(int index) {
  return &g_registers[index];
}

int LastDecimalRegister() {
  return g_lastRegister;
}

void SetLastDecimalRegister(int index) {
  g_lastRegister = index;
}

bool DecimalBinaryOutput() {
  return g_binaryOutput;
}

void SetDecimalBinaryOutput(bool on) {
  g_binaryOutput = on;
}

void ResetDecimalCalcState() {
  for (DecimalNumber& value : g_registers)
    value = kDecimalZero;
  g_lastRegister = kNoDecimalRegister;
  g_binaryOutput = false;
}
