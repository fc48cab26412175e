#include "frame/crash_report.h"

#include "foundation/formatter.h"

namespace {

struct ExceptionNameEntry {
  uint32_t first, last;
  const char* name;
};

constexpr ExceptionNameEntry kExceptionNames[] = {
    {0x80000003u, 0x80000003u, "Breakpoint"},
    {0x80000004u, 0x80000004u, "Single Step"},
    {0xC0000005u, 0xC0000005u, "Access Violation"},
    {0xC0000006u, 0xC0000006u, "In Page Error"},
    {0xC000001Du, 0xC000001Du, "Illegal Instruction"},
    {0xC0000025u, 0xC0000025u, "Noncontinuable Exception"},
    {0xC0000026u, 0xC0000026u, "Invalid Disposition"},
    {0xC000008Cu, 0xC000008Cu, "Array Bounds Exceeded"},
    // Denormal operand, divide by zero, inexact result, invalid operation, overflow, stack
    // check and underflow.
    {0xC000008Du, 0xC0000093u, "Float Error"},
    {0xC0000094u, 0xC0000094u, "Int Divide By Zero"},
    {0xC0000095u, 0xC0000095u, "Int Overflow"},
    {0xC0000096u, 0xC0000096u, "Priv Instruction"},
    {0xC00000FDu, 0xC00000FDu, "Stack Overflow"},
};

// A word of the machine: 8 hexadecimal digits on the 32-bit processor, 16 on the 64-bit one.
int FormatWord(char* dest, int size, const char* prefix, uint64_t value, bool wide) {
  if (wide)
    return FormatStr(dest, size, "%s%016llX", prefix, static_cast<unsigned long long>(value));
  return FormatStr(dest, size, "%s%08X", prefix, static_cast<unsigned>(value));
}

// "Title:" followed by " word" for each value, as one line.
void WriteWordLine(const CrashReportSink& sink, const char* title, const uint64_t* values,
                   int count, bool wide) {
  char line[kCrashMaxParameters * 17 + 32];
  int length = FormatStr(line, sizeof line, "%s", title) - 1;
  for (int i = 0; i < count; ++i)
    length +=
        FormatWord(line + length, static_cast<int>(sizeof line) - length, " ", values[i], wide) - 1;
  FormatStr(line + length, static_cast<int>(sizeof line) - length, "\r\n");
  sink.line(sink.context, line);
}

}  // namespace

const char* ExceptionName(uint32_t code) {
  for (const ExceptionNameEntry& entry : kExceptionNames) {
    if (code >= entry.first && code <= entry.last) return entry.name;
  }
  return "Unknown";
}

void WriteCrashReport(const CrashFacts& facts, const CrashReportSink& sink) {
  char line[256];
  FormatStr(line, sizeof line, "Exception %s\r\n", ExceptionName(facts.code));
  sink.line(sink.context, line);
  FormatStr(line, sizeof line, "ExcepAddr %llX:\r\n",
            static_cast<unsigned long long>(facts.address));
  sink.line(sink.context, line);
  sink.dump(sink.context, facts.codeBytes, kCrashDumpBytes);

  int count = facts.parameterCount;
  if (count < 0) count = 0;
  if (count > kCrashMaxParameters) count = kCrashMaxParameters;
  WriteWordLine(sink, "ExcepInfo:", facts.parameters, count, facts.wide);

  static const char* const kNames32[] = {"EAX:", " EBX:", " ECX:", " EDX:", " ESI:", " EDI:"};
  static const char* const kNames64[] = {"RAX:", " RBX:", " RCX:", " RDX:", " RSI:", " RDI:"};
  const char* const* names = facts.wide ? kNames64 : kNames32;
  int length = 0;
  for (int i = 0; i < 6; ++i)
    length += FormatWord(line + length, static_cast<int>(sizeof line) - length, names[i],
                         facts.general[i], facts.wide) -
              1;
  FormatStr(line + length, static_cast<int>(sizeof line) - length, "\r\n");
  sink.line(sink.context, line);

  length = 0;
  const uint64_t values[3] = {facts.sp, facts.bp, facts.ip};
  static const char* const kPointers32[] = {"ESP:", " EBP:", " EIP:"};
  static const char* const kPointers64[] = {"RSP:", " RBP:", " RIP:"};
  for (int i = 0; i < 3; ++i)
    length += FormatWord(line + length, static_cast<int>(sizeof line) - length,
                         (facts.wide ? kPointers64 : kPointers32)[i], values[i], facts.wide) -
              1;
  FormatStr(line + length, static_cast<int>(sizeof line) - length, " EFlags:%08X\r\n", facts.flags);
  sink.line(sink.context, line);

  WriteWordLine(sink, "Stack:", facts.stack, kCrashStackWords, facts.wide);
}
