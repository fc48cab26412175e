// The crash report's text: every line in its place and form, for both processors.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "foundation/diagnostics.h"
#include "frame/crash_report.h"

namespace {

struct Recorded {
  std::string text;
  const void* dumped = nullptr;
  int dumpCount = 0;
};

std::string Report(const CrashFacts& facts, Recorded* recorded = nullptr) {
  Recorded local;
  Recorded* r = recorded ? recorded : &local;
  CrashReportSink sink = {
      [](void* context, const char* text) { static_cast<Recorded*>(context)->text += text; },
      [](void* context, const void* address, int count) {
        auto* r = static_cast<Recorded*>(context);
        r->dumped = address;
        r->dumpCount = count;
        // The dump's lines as DEBUG.TXT holds them, so their place in the report shows.
        const unsigned char* bytes = static_cast<const unsigned char*>(address);
        for (int start = 0; start < count; start += 16) {
          char line[80];
          FormatDumpLine(bytes + start, count - start < 16 ? count - start : 16,
                         static_cast<unsigned>(start), line);
          r->text += line;
        }
      },
      r};
  WriteCrashReport(facts, sink);
  return r->text;
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

TEST(CrashReport, WritesTheSevenPartsInOrderForThe32BitProcessor) {
  unsigned char code[256];
  for (int i = 0; i < 256; ++i)
    code[i] = static_cast<unsigned char>(i);
  CrashFacts facts = {};
  facts.code = 0xC0000094u;
  facts.address = 0x401A2Bu;
  facts.codeBytes = code;
  facts.parameterCount = 2;
  facts.parameters[0] = 1;
  facts.parameters[1] = 0xDEADBEEFu;
  facts.general[0] = 0x10;
  facts.general[1] = 0xFFFFFFFFu;
  facts.general[2] = 0x12345678u;
  facts.general[3] = 0;
  facts.general[4] = 0xABCu;
  facts.general[5] = 0x7FFE0000u;
  facts.sp = 0x0012FF40u;
  facts.bp = 0x0012FF80u;
  facts.ip = 0x401A2Bu;
  facts.flags = 0x10246u;
  for (int i = 0; i < kCrashStackWords; ++i)
    facts.stack[i] = 0x1000u * static_cast<unsigned>(i) + 7;
  Recorded recorded;
  std::string text = Report(facts, &recorded);

  EXPECT_EQ(recorded.dumped, code);
  EXPECT_EQ(recorded.dumpCount, 256);
  std::string dump = text.substr(text.find(":\r\n") + 3);
  dump = dump.substr(0, dump.find("ExcepInfo:"));
  EXPECT_EQ(std::count(dump.begin(), dump.end(), '\n'), 16);
  EXPECT_EQ(dump.substr(0, 7), "0000: 0");
  EXPECT_NE(dump.find("00F0: F0 F1"), std::string::npos);

  EXPECT_EQ(text.substr(0, text.find(":\r\n") + 3),
            "Exception Int Divide By Zero\r\n"
            "ExcepAddr 401A2B:\r\n");
  EXPECT_EQ(text.substr(text.find("ExcepInfo:")),
            "ExcepInfo: 00000001 DEADBEEF\r\n"
            "EAX:00000010 EBX:FFFFFFFF ECX:12345678 EDX:00000000 ESI:00000ABC EDI:7FFE0000\r\n"
            "ESP:0012FF40 EBP:0012FF80 EIP:00401A2B EFlags:00010246\r\n"
            "Stack: 00000007 00001007 00002007 00003007 00004007 00005007 00006007 00007007 "
            "00008007 00009007\r\n");
}

TEST(CrashReport, The64BitProcessorGivesItsRegistersInTheSameOrderAndForm) {
  unsigned char code[256] = {0x48, 0xF7, 0xF9};
  CrashFacts facts = {};
  facts.code = 0xC0000005u;
  facts.address = 0x7FF6A1B2C3D4ull;
  facts.codeBytes = code;
  facts.parameterCount = 2;
  facts.parameters[0] = 1;
  facts.parameters[1] = 0x10;
  facts.wide = true;
  for (int i = 0; i < 6; ++i)
    facts.general[i] = 0x1111111111111111ull * static_cast<unsigned>(i + 1);
  facts.sp = 0x22FE00;
  facts.bp = 0;
  facts.ip = 0x7FF6A1B2C3D4ull;
  facts.flags = 0x246;
  facts.stack[0] = 0xFEDCBA9876543210ull;
  std::string text = Report(facts);
  EXPECT_EQ(text.substr(0, text.find(":\r\n") + 3),
            "Exception Access Violation\r\n"
            "ExcepAddr 7FF6A1B2C3D4:\r\n");
  EXPECT_EQ(text.substr(text.find("ExcepInfo:")),
            "ExcepInfo: 0000000000000001 0000000000000010\r\n"
            "RAX:1111111111111111 RBX:2222222222222222 RCX:3333333333333333 "
            "RDX:4444444444444444 RSI:5555555555555555 RDI:6666666666666666\r\n"
            "RSP:000000000022FE00 RBP:0000000000000000 RIP:00007FF6A1B2C3D4 EFlags:00000246\r\n"
            "Stack: FEDCBA9876543210 0000000000000000 0000000000000000 0000000000000000 "
            "0000000000000000 0000000000000000 0000000000000000 0000000000000000 "
            "0000000000000000 0000000000000000\r\n");
}

TEST(CrashReport, ParameterLinesFollowTheRecordsCount) {
  CrashFacts facts = {};
  unsigned char code[256] = {};
  facts.codeBytes = code;
  facts.code = 0xE0000001u;
  auto infoLine = [&] {
    std::string text = Report(facts);
    size_t start = text.find("ExcepInfo:");
    return text.substr(start, text.find("\r\n", start) + 2 - start);
  };
  EXPECT_EQ(infoLine(), "ExcepInfo:\r\n");
  // A record claims at most fifteen; a larger count is not read past them.
  facts.parameterCount = 99;
  for (int i = 0; i < kCrashMaxParameters; ++i)
    facts.parameters[i] = static_cast<unsigned>(i);
  std::string line = infoLine();
  EXPECT_EQ(std::count(line.begin(), line.end(), ' '), kCrashMaxParameters);
  EXPECT_NE(line.find(" 0000000E\r\n"), std::string::npos);
}

}  // namespace
