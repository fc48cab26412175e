// The Win32 error lookup window's logic: a typed code and the system's text for it.
#pragma once

// The input edit holds at most this many characters.
constexpr int kErrorLookupInputSize = 40;

// Parses `input` (cut to the edit's size) as a C integer, looks the code up and writes the text
// in the internal form into `output`: the system's text as it stands, or empty when there is none.
// Returns the length, or -1 when this system has no message table (`output` is then empty).
int LookUpErrorText(const char* input, char* output, int size, unsigned* code);
