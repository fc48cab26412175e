// How fast the real Quill.exe answers a user, measured from outside: the time from starting the
// program to the first painted screen of a 50 MB file, and the time that 100 keystrokes at the
// end of a 1,000,000-line document take, each beside a reference measured in the same run.
#include <windows.h>

#include <cstdio>
#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

double Seconds(LARGE_INTEGER from, LARGE_INTEGER to) {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(to.QuadPart - from.QuadPart) / static_cast<double>(frequency.QuadPart);
}

LARGE_INTEGER Now() {
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return now;
}

// Returns once the window has handled what was sent to it and has nothing left to paint.
void WaitUntilPainted(HWND window) {
  for (int i = 0; i < 100000; ++i) {
    DWORD_PTR ignored;
    SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_BLOCK, 60000, &ignored);
    if (!GetUpdateRect(window, nullptr, FALSE)) return;
    Sleep(1);
  }
}

// 50 MB of C in EUC-KR, a Hangul comment on every line.
std::string LargeKoreanSource() {
  std::string text;
  text.reserve(52 << 20);
  char line[128];
  for (int i = 0; text.size() < (50u << 20); ++i) {
    snprintf(line, sizeof line, "/* \xC7\xD1\xB1\xDB %d */ static int value%d = %d * 2;\r\n", i, i,
             i);
    text += line;
  }
  return text;
}

std::string NumberedLines(int count) {
  std::string text;
  text.reserve(static_cast<size_t>(count) * 14);
  for (int i = 1; i <= count; ++i)
    text += "line " + std::to_string(i) + "\r\n";
  return text;
}

// The caret's place after Ctrl+End, as the status bar shows it: proof of what was loaded.
std::wstring EndOfText(QuillProcess& quill, HWND editor) {
  SendMessageW(quill.Frame(), WM_COMMAND, 93, 0);
  WaitUntilPainted(editor);
  return quill.StatusText(0);
}

void Report(const char* what, const std::wstring& status) {
  printf("  (%s: caret at%ls)\n", what, status.c_str());
}

// Seconds from starting Quill (on `file`, or on nothing) to its first painted screen.
double StartToFirstPaint(const std::wstring& scenario, const std::string* file) {
  std::wstring exe = PrepareFreshCopy(scenario);
  std::wstring path = FolderOf(exe) + L"perf.c";
  if (file) WriteBytes(path, *file);
  QuillProcess quill;
  LARGE_INTEGER start = Now();
  if (!quill.Start(exe, file ? L"\"" + path + L"\"" : L"", 120000)) return -1;
  WaitUntilPainted(quill.Frame());
  HWND editor = OnlyChild(quill);
  if (editor) WaitUntilPainted(editor);
  double seconds = Seconds(start, Now());
  if (editor) Report("after loading", EndOfText(quill, editor));
  quill.CloseAndWait(30000);
  return seconds;
}

// Seconds that 100 typed characters take at the end of a document of `lines` lines, each
// handled and its line painted before the next.
double HundredKeystrokesAtTheEnd(const std::wstring& scenario, int lines) {
  std::wstring exe = PrepareFreshCopy(scenario);
  std::wstring path = FolderOf(exe) + L"lines.txt";
  WriteBytes(path, NumberedLines(lines));
  QuillProcess quill;
  if (!quill.Start(exe, L"\"" + path + L"\"", 120000)) return -1;
  HWND editor = OnlyChild(quill);
  if (!editor) return -1;
  EndOfText(quill, editor);
  LARGE_INTEGER start = Now();
  for (int i = 0; i < 100; ++i) {
    SendMessageW(editor, WM_CHAR, L'a' + i % 26, 0);
    WaitUntilPainted(editor);
  }
  double seconds = Seconds(start, Now());
  Report("after typing", quill.StatusText(0));
  // The document is modified: the process is ended without the question.
  return seconds;
}

}  // namespace

int main() {
  std::string large = LargeKoreanSource();
  double empty = StartToFirstPaint(L"perf-start-empty", nullptr);
  double loaded = StartToFirstPaint(L"perf-start-50mb", &large);
  double shortDocument = HundredKeystrokesAtTheEnd(L"perf-keys-10", 10);
  double longDocument = HundredKeystrokesAtTheEnd(L"perf-keys-1m", 1000000);
  printf(
      "start to first paint, 50 MB EUC-KR C source: %.2f s (target 3 s); "
      "start without a file %.2f s; ratio %.1f\n",
      loaded, empty, empty > 0 ? loaded / empty : 0.0);
  printf(
      "100 keystrokes at the end of 1,000,000 lines: %.3f s (target 1 s); "
      "at the end of 10 lines %.3f s; ratio %.2f\n",
      longDocument, shortDocument, shortDocument > 0 ? longDocument / shortDocument : 0.0);
  bool met = loaded > 0 && loaded <= 3.0 && longDocument > 0 && longDocument <= 1.0;
  return met ? 0 : 1;
}
