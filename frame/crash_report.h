// The post-mortem written into DEBUG.TXT when an exception escapes every handler: the exception's
// name, its address and the code bytes there, its parameters, the registers and the top of the
// stack. The text is made here from plain facts, so the format is the same in every build and a
// test can read it; the exception filter only gathers the facts (crash_filter.h).
#pragma once
#include <cstdint>

constexpr int kCrashMaxParameters = 15;
constexpr int kCrashStackWords = 10;
constexpr int kCrashDumpBytes = 256;

struct CrashFacts {
  uint32_t code;
  uint64_t address;
  const void* codeBytes;  // what the dump shows: the code at the exception address
  int parameterCount;
  uint64_t parameters[kCrashMaxParameters];
  // The 64-bit processor's registers (RAX...) instead of the 32-bit one's (EAX...); the stack
  // words and the parameters are then 64 bits wide too.
  bool wide;
  uint64_t general[6];  // AX, BX, CX, DX, SI, DI
  uint64_t sp, bp, ip;
  uint32_t flags;
  uint64_t stack[kCrashStackWords];  // from the stack pointer up
};

// Where the report goes: each line (with its "\r\n") and the dump of the code bytes.
struct CrashReportSink {
  void (*line)(void* context, const char* text);
  void (*dump)(void* context, const void* address, int count);
  void* context;
};

// The seven parts of the report, in order.
void WriteCrashReport(const CrashFacts& facts, const CrashReportSink& sink);
// The exception's name: "Access Violation", "Int Divide By Zero", ..., "Unknown".
const char* ExceptionName(uint32_t code);
