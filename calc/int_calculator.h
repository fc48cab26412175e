// What the integer calculator window shows for its input.
#pragma once
#include <cstdint>

// The input edit is read into a buffer of this size; longer input is cut.
constexpr int kIntCalcInputSize = 2048;

extern const char kIntCalcExample[];

// Writes the output text for `input` (cut to the buffer) and returns the evaluator's error code;
// an empty input shows the example and returns 0.
uint32_t FormatIntCalcOutput(const char* input, char* output, int size);

// The calculator windows' background runs from the first colour at the top row to the second at
// the bottom row (colour values as the system takes them: red in the low byte).
constexpr uint32_t kCalcBackTop = 0xFADCC8;
constexpr uint32_t kCalcBackBottom = 0xDCA178;
// The colour of `row` in a fill `height` rows high; rows outside it take the nearer end.
uint32_t CalcBackColour(int row, int height);

// Each further calculator window opens this far right and down of the one before; the cascade
// starts over after kCalcCascadeSteps windows so that none walks off the screen.
constexpr int kCalcCascadeStep = 24;
constexpr int kCalcCascadeSteps = 8;
// The offset of a new window when `open` windows of its kind are already open.
int CalcCascadeOffset(int open);
