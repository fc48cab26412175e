// The running style of the real calculator: strictly left to right, memory registers, mm and mil.
#pragma once
#include <cstdint>

extern const char kRunningCalcExample[];

// Writes the result text, the error's message, the example (empty input) or the binary-output
// switch's answer (input beginning with 'b') into the buffer and returns the error code.
uint32_t EvaluateRunningCalc(const char* text, char* buffer, int size);
