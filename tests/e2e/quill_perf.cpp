// How fast the real Quill.exe answers a user, measured from outside: the time from starting the
// program to the first painted screen of a 50 MB file, and the time that 100 keystrokes, and 100
// Enter presses with their undos, take at the end of a 1,000,000-line document, each beside a
// reference measured in the same run, rounds interleaved.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/e2e/e2e_support.h"

namespace {

struct Spread {
  double min;
  double median;
};

Spread SpreadOf(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return {seconds.front(), seconds[seconds.size() / 2]};
}

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

// Quill open on a document of `lines` numbered lines with the caret at its end.
struct OpenDocument {
  QuillProcess quill;
  HWND editor = nullptr;
};

bool OpenAtTheEnd(const std::wstring& scenario, int lines, OpenDocument* open) {
  std::wstring exe = PrepareFreshCopy(scenario);
  std::wstring path = FolderOf(exe) + L"lines.txt";
  WriteBytes(path, NumberedLines(lines));
  if (!open->quill.Start(exe, L"\"" + path + L"\"", 120000)) return false;
  open->editor = OnlyChild(open->quill);
  if (!open->editor) return false;
  EndOfText(open->quill, open->editor);
  return true;
}

// Seconds that 100 typed characters take, each handled and its line painted before the next.
double HundredKeystrokes(OpenDocument* open) {
  LARGE_INTEGER start = Now();
  for (int i = 0; i < 100; ++i) {
    SendMessageW(open->editor, WM_CHAR, L'a' + i % 26, 0);
    WaitUntilPainted(open->editor);
  }
  return Seconds(start, Now());
}

// Seconds that 100 Enter presses and then 100 undos take, each painted before the next: every
// one changes the lines below the caret, so the comment states are brought up to date again.
double HundredEntersAndUndos(OpenDocument* open) {
  LARGE_INTEGER start = Now();
  for (int i = 0; i < 100; ++i) {
    SendMessageW(open->editor, WM_CHAR, L'\r', 0);
    WaitUntilPainted(open->editor);
  }
  for (int i = 0; i < 100; ++i) {
    SendMessageW(open->quill.Frame(), WM_COMMAND, 70, 0);
    WaitUntilPainted(open->editor);
  }
  return Seconds(start, Now());
}

constexpr int kRounds = 7;

void PrintRatio(const char* what, Spread ours, const char* reference, Spread theirs,
                const char* target) {
  printf(
      "%s: min %.3f s, median %.3f s; %s: min %.3f s, median %.3f s; ratio of minima %.2f, "
      "of medians %.2f (%s)\n",
      what, ours.min, ours.median, reference, theirs.min, theirs.median,
      theirs.min > 0 ? ours.min / theirs.min : 0.0,
      theirs.median > 0 ? ours.median / theirs.median : 0.0, target);
}

}  // namespace

int main() {
  std::string large = LargeKoreanSource();
  std::vector<double> empty;
  std::vector<double> loaded;
  for (int round = 0; round < kRounds; ++round) {
    empty.push_back(StartToFirstPaint(L"perf-start-empty", nullptr));
    loaded.push_back(StartToFirstPaint(L"perf-start-50mb", &large));
  }
  OpenDocument shortDocument;
  OpenDocument longDocument;
  if (!OpenAtTheEnd(L"perf-keys-10", 10, &shortDocument) ||
      !OpenAtTheEnd(L"perf-keys-1m", 1000000, &longDocument)) {
    printf("could not open the documents\n");
    return 1;
  }
  std::vector<double> keysShort;
  std::vector<double> keysLong;
  std::vector<double> entersShort;
  std::vector<double> entersLong;
  for (int round = 0; round < kRounds; ++round) {
    keysShort.push_back(HundredKeystrokes(&shortDocument));
    keysLong.push_back(HundredKeystrokes(&longDocument));
    entersShort.push_back(HundredEntersAndUndos(&shortDocument));
    entersLong.push_back(HundredEntersAndUndos(&longDocument));
  }
  Report("after typing", longDocument.quill.StatusText(0));
  // The documents are modified: the processes are ended without the question.
  printf("%d interleaved rounds each\n", kRounds);
  Spread loadedSpread = SpreadOf(loaded);
  Spread keysLongSpread = SpreadOf(keysLong);
  Spread entersLongSpread = SpreadOf(entersLong);
  PrintRatio("start to first paint, 50 MB EUC-KR C source", loadedSpread, "start without a file",
             SpreadOf(empty), "target 0.6 s");
  PrintRatio("100 keystrokes at the end of 1,000,000 lines", keysLongSpread,
             "at the end of 10 lines", SpreadOf(keysShort), "target 1 s");
  PrintRatio("100 Enter and 100 undos at the end of 1,000,000 lines", entersLongSpread,
             "at the end of 10 lines", SpreadOf(entersShort), "target 0.4 s");
  bool met = loadedSpread.min > 0 && loadedSpread.min <= 0.6 && keysLongSpread.min > 0 &&
             keysLongSpread.min <= 1.0 && entersLongSpread.min > 0 && entersLongSpread.min <= 0.4;
  return met ? 0 : 1;
}
