// Comparing units without case: the system's lower case of every unit, taken once.
#pragma once

char16_t FoldCase(char16_t unit);
