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
std::string CrashAndRead(const wchar_t* mode) {
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
  if (WaitForSingleObject(process.hProcess, 2000) == WAIT_TIMEOUT)
    TerminateProcess(process.hProcess, 99);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return DebugLogSince(start);
}

std::string LineStartingWith(const std::string& text, const std::string& prefix) {
  size_t at = text.find(prefix);
  if (at == std::string::npos) return "<none>";
  return text.substr(at, text.find("\r\n", at) - at);
}

TEST(CrashReport, EachFaultLeavesItsNameParametersCodeRegistersAndStack) {
  struct Case {
    const wchar_t* mode;
    const char* name;
    const char* info;
  } cases[] = {
      {L"divide", "Exception Int Divide By Zero", "ExcepInfo:"},
      // Writing (1) at address 0x10.
      {L"access", "Exception Access Violation", "ExcepInfo: 0000000000000001 0000000000000010"},
      {L"bare", "Exception Unknown", "ExcepInfo:"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string report = CrashAndRead(c.mode);
    ASSERT_EQ(report.substr(0, report.find("\r\n")), c.name) << report;
    EXPECT_EQ(LineStartingWith(report, "ExcepInfo:"), c.info);
    // 256 bytes of code at the address, 16 lines between the address and the parameters.
    size_t dump = report.find("\r\n", report.find("ExcepAddr ")) + 2;
    std::string lines = report.substr(dump, report.find("ExcepInfo:") - dump);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 16) << lines;
    EXPECT_EQ(lines.substr(0, 5), "0000:");
    EXPECT_NE(lines.find("\r\n00F0:"), std::string::npos);
    // Six 64-bit registers; then RSP, RBP, RIP and the flags; ten stack words.
    std::string registers = LineStartingWith(report, "RAX:");
    EXPECT_EQ(registers.size(), 6 * 21 - 1u) << registers;
    EXPECT_EQ(registers.substr(registers.size() - 20, 4), "RDI:");
    std::string pointers = LineStartingWith(report, "RSP:");
    ASSERT_EQ(pointers.size(), 3 * 21 + 15u) << pointers;
    EXPECT_EQ(pointers.substr(62, 7), " EFlags");
    EXPECT_EQ(LineStartingWith(report, "Stack:").size(), 6 + 10 * 17u);
    // The instruction pointer is the exception's address.
    std::string address = LineStartingWith(report, "ExcepAddr ");
    std::string digits = address.substr(10, address.size() - 11);
    std::string ip = pointers.substr(46, 16);
    EXPECT_EQ(ip.substr(16 - digits.size()), digits);
    if (c.mode == std::wstring(L"divide")) {
      // The code there is the division (F7 /7, idiv), after at most a REX prefix.
      EXPECT_TRUE(lines.compare(5, 3, " F7") == 0 || lines.compare(5, 2, " 4") == 0) << lines;
    }
  }
}

}  // namespace
