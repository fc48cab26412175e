// The real calculators' process-wide state: the memory registers @a to @j, the register read
// last (which the running style's '=' stores into) and the binary-output flag. Shared by every
// calculator window; used from the user-interface thread only.
#pragma once

#include "calc/decimal_number.h"

constexpr int kDecimalRegisterCount = 10;
constexpr int kNoDecimalRegister = -1;

// Register 0 (@a) to 9 (@j).
DecimalNumber* DecimalRegister(int index);
int LastDecimalRegister();
void SetLastDecimalRegister(int index);
bool DecimalBinaryOutput();
void SetDecimalBinaryOutput(bool on);
// All registers zero, none read, binary output off: the state at start.
void ResetDecimalCalcState();
