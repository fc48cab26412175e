A
#define A B
#define B A
int A;
#include "missing.h"
extern "C" { int __stdcall f(int); }
#if 1/0
#elif 2
#else
#endif
