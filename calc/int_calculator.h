// What the integer calculator window shows for its input.
#pragma once
#include <cstdint>

// The input edit is read into a buffer of this size; longer input is cut.
constexpr int kIntCalcInputSize = 2048;

extern const char kIntCalcExample[];

// Writes the output text for `input` (cut to the buffer) and returns the evaluator's error code;
// an empty input shows the example and returns 0.
uint32_t FormatIntCalcOutput(const char* input, char* output, int size);
