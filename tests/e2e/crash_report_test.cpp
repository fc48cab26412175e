// A fault that no handler takes leaves its report in DEBUG.TXT: the test program installs the
// same filter as Quill.exe and faults on purpose; the report is read here, from outside.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "tests/e2e/quill_driver.h"

namespace {

// Runs the crash program with `mode` and returns what it added to DEBUG.TXT. The system's own
// handling follows the report (under Wine its debugger may keep the process a while): once the
// report's last line is there, the program is given a moment and then ended.
std::string CrashAndRead(const wchar_t* mode, DWORD* exitCode) {
  long long start = DebugLogSize();
  std::wstring line = L"\"" + ProgramFolder() + L"quill-crash.exe\" " + mode;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process))
    return "<not started>";
  for (int waited = 0; waited < 15000; waited += 100) {
    if (DebugLogSince(start).find("Stack:") != std::string::npos ||
        WaitForSingleObject(process.hProcess, 100) == WAIT_OBJECT_0)
      break;
  }
  if (WaitForSingleObject(process.hProcess, 2000) == WAIT_TIMEOUT) {
    TerminateProcess(process.hProcess, 99);
    WaitForSingleObject(process.hProcess, 5000);
  }
  GetExitCodeProcess(process.hProcess, exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return DebugLogSince(start);
}

std::string LineStartingWith(const std::string& text, const std::string& prefix) {
  size_t at = text.find(prefix);
  if (at == std::string::npos) return "<none>";
  return text.substr(at, text.find("\r\n", at) - at);
}

TEST(CrashReport, IntegerDivisionByZeroLeavesTheReportAndTheCodeDump) {
  DWORD exitCode = 0;
  std::string report = CrashAndRead(L"divide", &exitCode);
  ASSERT_EQ(report.substr(0, 30), "Exception Int Divide By Zero\r\n") << report;
  std::string address = LineStartingWith(report, "ExcepAddr ");
  ASSERT_EQ(address.back(), ':');
  // 256 bytes of code, 16 lines, then the rest in order.
  size_t dump = report.find("\r\n", report.find("ExcepAddr ")) + 2;
  size_t info = report.find("ExcepInfo:");
  ASSERT_NE(info, std::string::npos);
  std::string lines = report.substr(dump, info - dump);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 16) << lines;
  EXPECT_EQ(lines.substr(0, 5), "0000:");
  EXPECT_NE(lines.find("00F0:"), std::string::npos);
  // The dump is the code at the address: the division instruction (F7 /7, idiv) comes first,
  // after at most a REX prefix.
  std::string first = lines.substr(5, 9);
  EXPECT_TRUE(first.rfind(" F7", 0) == 0 || first.rfind(" 4", 0) == 0) << first;

  std::string registers = LineStartingWith(report, "RAX:");
  EXPECT_EQ(registers.size(), 6 * 21 - 1u) << registers;
  EXPECT_NE(registers.find(" RDI:"), std::string::npos);
  std::string pointers = LineStartingWith(report, "RSP:");
  EXPECT_EQ(pointers.substr(0, 4 + 16 + 5), LineStartingWith(report, "RSP:").substr(0, 25));
  // The instruction pointer is the exception's address.
  std::string ip = pointers.substr(pointers.find("RIP:") + 4, 16);
  std::string addressDigits = address.substr(10, address.size() - 11);
  EXPECT_EQ(ip.substr(16 - addressDigits.size()), addressDigits);
  EXPECT_NE(pointers.find(" EFlags:"), std::string::npos);
  std::string stack = LineStartingWith(report, "Stack:");
  EXPECT_EQ(stack.size(), 6 + 10 * 17u) << stack;
}

TEST(CrashReport, AccessViolationGivesItsTwoParametersAndBareExceptionNone) {
  struct Case {
    const wchar_t* mode;
    const char* name;
    const char* info;
  } cases[] = {
      // Writing (1) at address 0x10.
      {L"access", "Exception Access Violation\r\n", "ExcepInfo: 0000000000000001 0000000000000010"},
      {L"bare", "Exception Unknown\r\n", "ExcepInfo:"},
  };
  for (const Case& c : cases) {
    DWORD exitCode = 0;
    std::string report = CrashAndRead(c.mode, &exitCode);
    EXPECT_EQ(report.substr(0, strlen(c.name)), c.name) << report;
    EXPECT_EQ(LineStartingWith(report, "ExcepInfo:"), c.info);
    EXPECT_NE(LineStartingWith(report, "Stack:"), "<none>");
  }
}

}  // namespace
