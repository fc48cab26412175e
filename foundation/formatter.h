// The program's own printf: a thousands-separator flag, fixed-point integers, UTF-16 and
// code-page string conversions, and safe truncation into a bounded buffer.
//
//   flags   '-' left-justify   ',' group digits   '#' "0x" prefix   '0' zero fill
//   width   digits 1-9 (up to 1024)     '.N' / '.0N' fixed-point scale, the second keeps zeros
//   size    I64 or ll: a 64-bit integer argument
//   conv    c s ws U8s d u x X; anything else prints literally and uses up one argument
#pragma once
#include <cstdarg>

// Formats into `dest` (at most size - 1 characters and a terminator when size >= 1) and returns
// the size the whole output needs, terminator included.
int FormatText(char* dest, int size, const char* format, va_list args);

// The same with the arguments in place.
int FormatStr(char* dest, int size, const char* format, ...);
