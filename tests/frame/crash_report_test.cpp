// The crash report's text: every line in its place and form, for both processors.
#include <gtest/gtest.h>

#include <string>

#include "frame/crash_report.h"

namespace {

// The report with the dump (whose lines are the diagnostics' own) as a marker in its place.
std::string Report(const CrashFacts& facts) {
  struct Recorded {
    std::string text;
    const CrashFacts* facts;
  } recorded = {"", &facts};
  CrashReportSink sink = {
      [](void* context, const char* text) { static_cast<Recorded*>(context)->text += text; },
      [](void* context, const void* address, int count) {
        auto* r = static_cast<Recorded*>(context);
        r->text += "<dump " + std::to_string(count) +
                   (address == r->facts->codeBytes ? " at the code>\r\n" : " elsewhere>\r\n");
      },
      &recorded};
  WriteCrashReport(facts, sink);
  return recorded.text;
}

TEST(CrashReport, NamesEveryExceptionOfTheTableAndUnknownForTheRest) {
  struct {
    uint32_t code;
    const char* name;
  } cases[] = {
      {0x80000003u, "Breakpoint"},
      {0x80000004u, "Single Step"},
      {0xC0000005u, "Access Violation"},
      {0xC0000006u, "In Page Error"},
      {0xC000001Du, "Illegal Instruction"},
      {0xC0000025u, "Noncontinuable Exception"},
      {0xC0000026u, "Invalid Disposition"},
      {0xC000008Cu, "Array Bounds Exceeded"},
      {0xC000008Du, "Float Error"},
      {0xC0000090u, "Float Error"},
      {0xC0000093u, "Float Error"},
      {0xC0000094u, "Int Divide By Zero"},
      {0xC0000095u, "Int Overflow"},
      {0xC0000096u, "Priv Instruction"},
      {0xC00000FDu, "Stack Overflow"},
      {0xC0000097u, "Unknown"},
      {0xC000008Bu, "Unknown"},
      {0x80000002u, "Unknown"},
      {0xE06D7363u, "Unknown"},
      {0u, "Unknown"},
  };
  for (const auto& c : cases)
    EXPECT_STREQ(ExceptionName(c.code), c.name) << std::hex << c.code;
}

TEST(CrashReport, WritesTheSevenPartsInOrderForEitherProcessor) {
  static const unsigned char code[256] = {0xF7, 0xF9};
  struct {
    bool wide;
    uint32_t exception;
    uint64_t address, high;
    const char* expected;
  } cases[] = {
      {false, 0xC0000094u, 0x401A2Bu, 0,
       "Exception Int Divide By Zero\r\n"
       "ExcepAddr 401A2B:\r\n"
       "<dump 256 at the code>\r\n"
       "ExcepInfo: 00000001 DEADBEEF\r\n"
       "EAX:00000010 EBX:00000011 ECX:00000012 EDX:00000013 ESI:00000014 EDI:00000015\r\n"
       "ESP:0012FF40 EBP:0012FF80 EIP:00401A2B EFlags:00010246\r\n"
       "Stack: 00000007 00001007 00002007 00003007 00004007 00005007 00006007 00007007 "
       "00008007 00009007\r\n"},
      // The 64-bit processor: its registers in the same order, every word 16 digits wide.
      {true, 0xC0000005u, 0x7FF6A1B2C3D4ull, 0xFEDC000000000000ull,
       "Exception Access Violation\r\n"
       "ExcepAddr 7FF6A1B2C3D4:\r\n"
       "<dump 256 at the code>\r\n"
       "ExcepInfo: 0000000000000001 FEDC0000DEADBEEF\r\n"
       "RAX:FEDC000000000010 RBX:FEDC000000000011 RCX:FEDC000000000012 RDX:FEDC000000000013 "
       "RSI:FEDC000000000014 RDI:FEDC000000000015\r\n"
       "RSP:FEDC00000012FF40 RBP:FEDC00000012FF80 RIP:00007FF6A1B2C3D4 EFlags:00010246\r\n"
       "Stack: FEDC000000000007 FEDC000000001007 FEDC000000002007 FEDC000000003007 "
       "FEDC000000004007 FEDC000000005007 FEDC000000006007 FEDC000000007007 FEDC000000008007 "
       "FEDC000000009007\r\n"},
  };
  for (const auto& c : cases) {
    CrashFacts facts = {};
    facts.wide = c.wide;
    facts.code = c.exception;
    facts.address = facts.ip = c.address;
    facts.codeBytes = code;
    facts.parameterCount = 2;
    facts.parameters[0] = 1;
    facts.parameters[1] = c.high | 0xDEADBEEFu;
    for (int i = 0; i < 6; ++i)
      facts.general[i] = c.high | (0x10u + static_cast<unsigned>(i));
    facts.sp = c.high | 0x12FF40u;
    facts.bp = c.high | 0x12FF80u;
    facts.flags = 0x10246u;
    for (int i = 0; i < kCrashStackWords; ++i)
      facts.stack[i] = c.high | (0x1000u * static_cast<unsigned>(i) + 7);
    EXPECT_EQ(Report(facts), c.expected);
  }
}

TEST(CrashReport, ParameterLineFollowsTheRecordsCountUpToFifteen) {
  static const unsigned char code[256] = {};
  CrashFacts facts = {};
  facts.codeBytes = code;
  for (int i = 0; i < kCrashMaxParameters; ++i)
    facts.parameters[i] = static_cast<unsigned>(i);
  struct {
    int count;
    std::string line;
  } cases[] = {
      {0, "ExcepInfo:\r\n"},
      {1, "ExcepInfo: 00000000\r\n"},
      {99,
       "ExcepInfo: 00000000 00000001 00000002 00000003 00000004 00000005 00000006 00000007 "
       "00000008 00000009 0000000A 0000000B 0000000C 0000000D 0000000E\r\n"},
  };
  for (const auto& c : cases) {
    facts.parameterCount = c.count;
    std::string text = Report(facts);
    size_t start = text.find("ExcepInfo:");
    EXPECT_EQ(text.substr(start, text.find("\r\n", start) + 2 - start), c.line);
  }
}

}  // namespace
