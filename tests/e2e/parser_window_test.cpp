// F1 in the real program: a source in a project whose target takes its include folder from /I
// (the cross compiler's own Windows headers), each name looked up from the keyboard and the Parser
// Window's text read back and compared with quill-tool lookup over the same project.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/e2e/e2e_support.h"
#include "tests/e2e/f1_scenario.h"
#include "tests/e2e/quill_driver.h"

namespace {

// A copy of the whole window joins its lines with CR LF and ends with none.
std::wstring WithoutTrailingLineEnds(std::wstring text) {
  while (text.size() >= 2 && text.compare(text.size() - 2, 2, L"\r\n") == 0)
    text.resize(text.size() - 2);
  return text;
}

}  // namespace

TEST(ParserWindow, F1ExplainsNamesFromTheWindowsHeadersAndIsNeverSaved) {
  F1Scenario scenario(L"parser-window");
  long long logStart = DebugLogSize();
  ASSERT_TRUE(scenario.Start());
  HWND source = scenario.OpenSource();
  ASSERT_NE(source, nullptr);

  // Nothing to explain on an empty line: no window comes.
  scenario.PressF1On(source, "");
  EXPECT_EQ(scenario.ParserWindow(), nullptr);

  // What the window must show is quill-tool's text; the reading's messages (quill-tool's whole
  // answer for a name that is nowhere) come with the first look-up only, as the table is kept.
  std::string messages = scenario.Lookup("NoSuchNameAnywhere");
  ASSERT_NE(messages.find("'mm_malloc.h' not Found\r\n"), std::string::npos) << messages;
  const struct {
    const char* word;
    const char* record;  // tells that the right record was found
  } kCases[] = {
      {"CreateWindowExW", "]\r\ncallconv CreateWindowExW(DWORD dwExStyle,LPCWSTR lpClassName,"},
      {"RECT", "typedef struct tagRECT RECT;"},
      {"WM_USER", "#define WM_USER 0x0400\r\n\r\n[Result]\r\n=1024"},
      {"Local", "[main.c #2]\r\nstruct Local {\r\n    int a;\r\n};"},
  };
  bool first = true;
  for (const auto& c : kCases) {
    std::string tool = scenario.Lookup(c.word);
    EXPECT_NE(tool.find(c.record), std::string::npos) << c.word << "\n" << tool;
    ASSERT_EQ(tool.compare(0, messages.size(), messages), 0) << c.word << "\n" << tool;
    double seconds = 0;
    if (first) {
      scenario.PressF1On(source, c.word);
    } else {
      seconds = scenario.CommandF1On(source, c.word);
    }
    ASSERT_NE(scenario.ParserWindow(), nullptr) << c.word;
    std::string expected = first ? tool : tool.substr(messages.size());
    EXPECT_EQ(WithoutTrailingLineEnds(scenario.WindowCopy()),
              WithoutTrailingLineEnds(Wide(expected)))
        << c.word;
    // The kept table answers at once; only one parser window, reused.
    EXPECT_LT(seconds, 1.0) << c.word;
    EXPECT_EQ(Children(scenario.quill()).size(), 3u) << c.word;
    first = false;
  }
  // Beside the source, across the bottom of the desk.
  scenario.CommandF1On(source, "RECT");
  FocusEditor(scenario.quill(), source);
  scenario.Shot(L"parser-window");
  RECT sourceRect, parserRect;
  GetWindowRect(source, &sourceRect);
  GetWindowRect(scenario.ParserWindow(), &parserRect);
  EXPECT_GT(parserRect.top, sourceRect.top);

  // F1 inside the angle brackets of the include line opens the header from the /I folder.
  scenario.PressF1On(source, "windows.h");
  bool opened = false;
  for (HWND child : Children(scenario.quill()))
    opened = opened || WindowText(child) == std::wstring(kMingwHeaders) + L"\\windows.h";
  EXPECT_TRUE(opened);

  // Typing into the parser window is allowed, but it is never offered for saving: closing asks
  // nothing and ends.
  FocusEditor(scenario.quill(), scenario.ParserWindow());
  TypeText(L"x");
  Settle();
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
  // Its place is kept for the next one, and the kept table was freed with the program.
  EXPECT_NE(Setting(scenario.folder() + L"QUILL.INI", L"DlgPos", L"ParserWindow"), "<none>");
  EXPECT_EQ(DebugLogSince(logStart).find("Leaked"), std::string::npos);
}
