#include "frame/crash_filter.h"

#include <windows.h>

#include "foundation/diagnostics.h"
#include "frame/crash_report.h"

namespace {

void LogLine(void*, const char* text) {
  DebugLog("%s", text);
}

void LogDump(void*, const void* address, int count) {
  DebugDump(address, count);
}

// The report is best effort: the code bytes and the stack are read as they are, unguarded.
LONG WINAPI CrashFilter(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD* record = pointers->ExceptionRecord;
  const CONTEXT* context = pointers->ContextRecord;
  CrashFacts facts = {};
  facts.code = record->ExceptionCode;
  facts.address = reinterpret_cast<uintptr_t>(record->ExceptionAddress);
  facts.codeBytes = record->ExceptionAddress;
  facts.parameterCount = static_cast<int>(record->NumberParameters);
  if (facts.parameterCount > kCrashMaxParameters) facts.parameterCount = kCrashMaxParameters;
  for (int i = 0; i < facts.parameterCount; ++i)
    facts.parameters[i] = record->ExceptionInformation[i];
#ifdef _WIN64
  facts.wide = true;
  const uint64_t general[6] = {context->Rax, context->Rbx, context->Rcx,
                               context->Rdx, context->Rsi, context->Rdi};
  facts.sp = context->Rsp;
  facts.bp = context->Rbp;
  facts.ip = context->Rip;
#else
  facts.wide = false;
  const uint64_t general[6] = {context->Eax, context->Ebx, context->Ecx,
                               context->Edx, context->Esi, context->Edi};
  facts.sp = context->Esp;
  facts.bp = context->Ebp;
  facts.ip = context->Eip;
#endif
  for (int i = 0; i < 6; ++i)
    facts.general[i] = general[i];
  facts.flags = context->EFlags;
  const volatile uintptr_t* stack =
      reinterpret_cast<const volatile uintptr_t*>(static_cast<uintptr_t>(facts.sp));
  for (int i = 0; i < kCrashStackWords; ++i)
    facts.stack[i] = stack[i];
  WriteCrashReport(facts, CrashReportSink{LogLine, LogDump, nullptr});
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

void InstallCrashReport() {
  SetUnhandledExceptionFilter(CrashFilter);
}
