// Random but valid key and mouse input played twice: through `quill-tool keys`, which runs the
// editor's own key handling without a window, and into Quill.exe as real input. The two saved
// files must be the same bytes, Quill must live through it and leak nothing.
//
// QUILL_MONKEY_EVENTS (default 300) and QUILL_MONKEY_SEED (default 1) choose the run; bench/monkey
// runs the long one.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "tests/e2e/e2e_support.h"

namespace {

// Syllables that EUC-KR holds, so that every save keeps its encoding without a question.
const wchar_t kHangul[] = L"가나다라마바사아자차카타파하한글국어문자열";
const char kAscii[] = "abcxyzABC019 ;(){}*/_=+\"'#";

enum Kind { kText, kKey, kClick, kShiftClick, kDoubleClick, kDrag, kWait };

struct Event {
  Kind kind;
  std::wstring text;
  WORD key = 0;
  bool shift = false, control = false;
  int row = 0, column = 0, row2 = 0, column2 = 0;
  int ms = 0;
};

int EnvNumber(const char* name, int fallback) {
  const char* value = getenv(name);
  return value && *value ? atoi(value) : fallback;
}

std::string Utf8(const std::wstring& text) {
  int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr,
                                 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), &out[0], size,
                      nullptr, nullptr);
  return out;
}

std::string KeyName(WORD key) {
  switch (key) {
    case VK_RETURN:
      return "Enter";
    case VK_BACK:
      return "Back";
    case VK_TAB:
      return "Tab";
    case VK_DELETE:
      return "Delete";
    case VK_INSERT:
      return "Insert";
    case VK_HOME:
      return "Home";
    case VK_END:
      return "End";
    case VK_LEFT:
      return "Left";
    case VK_RIGHT:
      return "Right";
    case VK_UP:
      return "Up";
    case VK_DOWN:
      return "Down";
    case VK_PRIOR:
      return "PageUp";
    case VK_NEXT:
      return "PageDown";
  }
  return std::string(1, static_cast<char>(key));
}

std::string ScriptLine(const Event& e) {
  switch (e.kind) {
    case kText:
      return "text " + Utf8(e.text);
    case kKey:
      return std::string("key ") + (e.control ? "Ctrl+" : "") + (e.shift ? "Shift+" : "") +
             KeyName(e.key);
    case kClick:
      return "click " + std::to_string(e.row) + " " + std::to_string(e.column);
    case kShiftClick:
      return "shiftclick " + std::to_string(e.row) + " " + std::to_string(e.column);
    case kDoubleClick:
      return "dblclick " + std::to_string(e.row) + " " + std::to_string(e.column);
    case kDrag:
      return "drag " + std::to_string(e.row) + " " + std::to_string(e.column) + " " +
             std::to_string(e.row2) + " " + std::to_string(e.column2);
    case kWait:
      return "wait " + std::to_string(e.ms);
  }
  return "";
}

// The generator: typing, line ends, deletions, caret moves and selections, blocks and column
// blocks, shifts, runs of undo and redo, the clipboard, case changes, bookmarks, saves and the
// mouse. Dialogs and the clock (date, find, go to line) stay out: they are tested on their own.
class Monkey {
 public:
  Monkey(unsigned seed, int rows, int columns) : random_(seed), rows_(rows), columns_(columns) {}

  std::vector<Event> Run(int count) {
    while (static_cast<int>(events_.size()) < count)
      Step();
    return events_;
  }

 private:
  int Pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random_); }
  void Key(WORD key, bool control = false, bool shift = false) {
    Event e{kKey};
    e.key = key;
    e.control = control;
    e.shift = shift;
    events_.push_back(e);
  }
  void Wait(int ms) {
    Event e{kWait};
    e.ms = ms;
    events_.push_back(e);
  }
  // A cell of the text area that is not where the button last went down, so that two separate
  // presses never make a double click (the system compares each press with the one before it,
  // wherever the button was let go).
  void Cell(int* row, int* column, bool press) {
    do {
      *row = Pick(rows_ < 12 ? rows_ : 12);
      *column = Pick(columns_ < 40 ? columns_ : 40);
    } while (*row == lastRow_ && *column == lastColumn_);
    if (!press) return;
    lastRow_ = *row;
    lastColumn_ = *column;
  }
  void Mouse(Kind kind) {
    Event e{kind};
    Cell(&e.row, &e.column, true);
    if (kind == kDrag) Cell(&e.row2, &e.column2, false);
    events_.push_back(e);
  }
  void Text() {
    Event e{kText};
    int length = 1 + Pick(6);
    for (int i = 0; i < length; ++i) {
      if (Pick(3) == 0)
        e.text += kHangul[Pick(static_cast<int>(wcslen(kHangul)))];
      else
        e.text += static_cast<wchar_t>(kAscii[Pick(static_cast<int>(sizeof kAscii - 1))]);
    }
    events_.push_back(e);
  }
  void Step() {
    static const WORD kMoves[] = {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_HOME, VK_END};
    int roll = Pick(100);
    if (roll < 24) return Text();
    if (roll < 32) return Key(VK_RETURN);
    if (roll < 38) return Key(VK_BACK);
    if (roll < 42) return Key(VK_DELETE);
    if (roll < 56) return Key(kMoves[Pick(6)], false, Pick(2) == 0);
    if (roll < 58) return Key(Pick(2) ? VK_PRIOR : VK_NEXT, false, Pick(2) == 0);
    if (roll < 60) return Key(Pick(2) ? VK_HOME : VK_END, true, Pick(2) == 0);
    if (roll < 63) return Key(Pick(2) ? VK_LEFT : VK_RIGHT, true);
    if (roll < 64) return Key(Pick(2) ? VK_UP : VK_DOWN, true);
    if (roll < 70) {  // a run of undos, sometimes redone
      for (int i = 1 + Pick(4); i > 0; --i)
        Key('Z', true);
      if (Pick(2)) Key('Y', true);
      return;
    }
    if (roll < 72) return Key('Y', true);
    if (roll < 74) return Key('C', true);
    if (roll < 76) return Key('X', true);
    if (roll < 79) return Key('V', true);
    if (roll < 81) return Key(Pick(2) ? 'I' : 'U', true, true);
    if (roll < 83) {  // Tab presses apart, as a person makes them: two quick ones are one
      Wait(500);
      Key(VK_TAB, false, Pick(3) == 0);
      return Wait(500);
    }
    if (roll < 86) {  // Ctrl+O C / K (column or line blocks), Ctrl+O O, Ctrl+K E / F
      static const WORD kSecond[][2] = {{'O', 'C'}, {'O', 'K'}, {'O', 'O'}, {'K', 'E'}, {'K', 'F'}};
      int which = Pick(5);
      Key(kSecond[which][0], true);
      return Key(kSecond[which][1]);
    }
    if (roll < 87) return Key(VK_INSERT);
    if (roll < 88) return Key(VK_BACK, true);
    if (roll < 89) return Key(static_cast<WORD>('1' + Pick(3)), true, Pick(2) == 0);
    if (roll < 90) return Pick(4) ? Text() : Key('A', true);  // rare: it empties the text soon
    if (roll < 91) return Key('S', true);
    if (roll < 95) return Mouse(kClick);
    if (roll < 96) return Mouse(kShiftClick);
    if (roll < 98) return Mouse(kDrag);
    Mouse(kDoubleClick);
  }

  std::mt19937 random_;
  int rows_, columns_;
  int lastRow_ = -1, lastColumn_ = -1;
  std::vector<Event> events_;
};

// The caret's place in the editor's client area, as its thread has it.
RECT CaretRect(HWND editor) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(editor, nullptr), &info);
  return info.rcCaret;
}

void KeyWith(WORD key, bool control, bool shift) {
  if (control) Key(VK_CONTROL, false);
  if (shift) Key(VK_SHIFT, false);
  Press(key);
  if (shift) Key(VK_SHIFT, true);
  if (control) Key(VK_CONTROL, true);
}

struct Geometry {
  int left, cellWidth, cellHeight;
};

// The left button at the cell's left edge (the window rounds to the nearest cell boundary, so a
// pixel either way lands on the same cell), half a line down.
void Button(HWND editor, const Geometry& g, int row, int column, DWORD flags) {
  POINT point = {g.left + column * g.cellWidth, row * g.cellHeight + g.cellHeight / 2};
  ClientToScreen(editor, &point);
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx =
      (point.x * 65536 + GetSystemMetrics(SM_CXSCREEN) / 2) / GetSystemMetrics(SM_CXSCREEN);
  input.mi.dy =
      (point.y * 65536 + GetSystemMetrics(SM_CYSCREEN) / 2) / GetSystemMetrics(SM_CYSCREEN);
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags;
  SendInput(1, &input, sizeof input);
}

void Click(HWND editor, const Geometry& g, int row, int column) {
  Button(editor, g, row, column, MOUSEEVENTF_LEFTDOWN);
  Button(editor, g, row, column, MOUSEEVENTF_LEFTUP);
}

void Play(HWND editor, const Geometry& g, const Event& e) {
  switch (e.kind) {
    case kText:
      TypeText(e.text);
      break;
    case kKey:
      KeyWith(e.key, e.control, e.shift);
      break;
    case kClick:
      Click(editor, g, e.row, e.column);
      break;
    case kShiftClick:
      Key(VK_SHIFT, false);
      Click(editor, g, e.row, e.column);
      Key(VK_SHIFT, true);
      break;
    case kDoubleClick:
      Click(editor, g, e.row, e.column);
      Click(editor, g, e.row, e.column);
      break;
    case kDrag:
      Button(editor, g, e.row, e.column, MOUSEEVENTF_LEFTDOWN);
      Button(editor, g, e.row2, e.column2, 0);
      Button(editor, g, e.row2, e.column2, MOUSEEVENTF_LEFTUP);
      break;
    case kWait:
      Sleep(static_cast<DWORD>(e.ms));
      return;
  }
  Sleep(15);  // input as fast as a quick typist, not faster than the window paints
}

// Runs quill-tool.exe beside the test program; its exit status, -1 when it did not run.
int RunTool(const std::wstring& arguments) {
  std::wstring command = L"\"" + ProgramFolder() + L"quill-tool.exe\" " + arguments;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process))
    return -1;
  WaitForSingleObject(process.hProcess, 600000);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  return static_cast<int>(code);
}

std::string EucKr(const std::wstring& text) {
  int size = WideCharToMultiByte(949, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0,
                                 nullptr, nullptr);
  std::string out(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(949, 0, text.c_str(), static_cast<int>(text.size()), &out[0], size, nullptr,
                      nullptr);
  return out;
}

TEST(Monkey, RandomInputLeavesTheTextTheCoreLeaves) {
  const int events = EnvNumber("QUILL_MONKEY_EVENTS", 300);
  const unsigned seed = static_cast<unsigned>(EnvNumber("QUILL_MONKEY_SEED", 1));
  std::wstring exe = PrepareFreshCopy(L"monkey");
  std::wstring folder = FolderOf(exe);
  std::string start = EucKr(
      L"/* monkey */\r\n#include <stdio.h>\r\n\r\nint main(void)\r\n{\r\n    printf(\"한글\");\r\n"
      L"    return 0;\r\n}\r\n");
  WriteBytes(folder + L"window.c", start);
  WriteBytes(folder + L"core.c", start);

  // Both sides start with an empty clipboard: what an earlier scenario copied would be pasted
  // into the window only.
  if (OpenClipboard(nullptr)) {
    EmptyClipboard();
    CloseClipboard();
  }

  long long logStart = DebugLogSize();
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + folder + L"window.c\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  SendMessageW(quill.Child(77), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(editor), 0);
  FocusEditor(quill, editor);

  // The cell grid, from where the caret stands at column 0 and column 1 of the first line.
  KeyWith(VK_HOME, true, false);
  Settle();
  RECT home = CaretRect(editor);
  KeyWith(VK_RIGHT, false, false);
  Settle();
  RECT next = CaretRect(editor);
  KeyWith(VK_HOME, true, false);
  Geometry g = {home.left, next.left - home.left, home.bottom - home.top};
  ASSERT_GT(g.cellWidth, 0);
  ASSERT_GT(g.cellHeight, 0);
  RECT client;
  GetClientRect(editor, &client);
  int rows = client.bottom / g.cellHeight;
  int columns = (client.right - g.left) / g.cellWidth;

  std::vector<Event> script = Monkey(seed, rows, columns).Run(events);
  std::string text = "page " + std::to_string(rows) + " " + std::to_string(columns) +
                     "\nkey Ctrl+Home\nkey Right\nkey Ctrl+Home\n";
  for (const Event& e : script)
    text += ScriptLine(e) + "\n";
  text += "key Ctrl+S\n";
  WriteBytes(folder + L"monkey.txt", text);

  DWORD began = GetTickCount();
  for (const Event& e : script)
    Play(editor, g, e);
  KeyWith('S', true, false);
  Settle();
  DWORD windowMs = GetTickCount() - began;
  bool wide = (GetWindowLongW(editor, GWL_STYLE) & WS_HSCROLL) != 0;
  SaveScreenshot(ScreenshotFolder() + L"monkey.bmp");
  EXPECT_TRUE(quill.Running());
  EXPECT_EQ(quill.CloseAndWait(10000), 0);

  ASSERT_EQ(RunTool(L"keys \"" + folder + L"core.c\" \"" + folder + L"monkey.txt\""), 0);
  std::string window = ReadBytes(folder + L"window.c");
  std::string core = ReadBytes(folder + L"core.c");
  EXPECT_EQ(window, core) << "seed " << seed << ", " << events << " events, script in "
                          << Utf8(folder) << "monkey.txt"
                          << (wide ? " (the horizontal bar showed: the page differs by a line)"
                                   : "");
  EXPECT_EQ(DebugLogSince(logStart).find(">>>Leaked Memory"), std::string::npos);
  printf("monkey: seed %u, %d events, %.1f s in the window, %zu bytes, %s\n", seed, events,
         windowMs / 1000.0, window.size(), window == core ? "no difference" : "DIFFERENT");
}

}  // namespace
