// A project for F1 in the real program, shared by the end-to-end test and bench/f1: one console
// target whose C options give /I to the cross compiler's Windows headers, and main.c, which
// includes <windows.h> and puts each name to look up at the start of a line of its own.
#pragma once
#include <windows.h>

#include <string>

#include "tests/e2e/quill_driver.h"

std::wstring Wide(const std::string& utf8);

// The MinGW headers of this machine as Wine sees them.
extern const wchar_t kMingwHeaders[];

class F1Scenario {
 public:
  explicit F1Scenario(const std::wstring& name);

  // Starts Quill on the project.
  bool Start();
  // Opens main.c from the project tree; its editor window, or null.
  HWND OpenSource();
  // Puts the caret on `word` in main.c and presses F1 on the keyboard; returns once handled.
  void PressF1On(HWND editor, const std::string& word);
  // The same through the command that F1 gives, sent so that it returns when the look-up is
  // done: the seconds it took.
  double CommandF1On(HWND editor, const std::string& word);
  // The "Parser Window" child, or null.
  HWND ParserWindow() const;
  // The parser window's whole text, as Ctrl+A and Ctrl+C copy it.
  std::wstring WindowCopy();
  // quill-tool lookup over the same project, file and word: its standard output.
  std::string Lookup(const std::string& word) const;
  void Shot(const std::wstring& name) const;

  QuillProcess& quill() { return quill_; }
  const std::wstring& folder() const { return folder_; }
  const std::wstring& source() const { return source_; }
  static const char kSource[];

 private:
  void CaretOn(HWND editor, const std::string& word);
  std::wstring exe_, folder_, project_, source_;
  QuillProcess quill_;
};
