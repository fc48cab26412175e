// The terminal over a real serial line: COM1 and COM2 are the two ends of a pseudo-terminal pair
// (serial_line.sh); Quill talks on COM1 and this test plays the device on COM2.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

const wchar_t kPortDialogCaption[] =
    L"\xD130\xBBF8\xB110 \xD3EC\xD2B8 \xC124\xC815";  // 터미널 포트 설정
const wchar_t kTerminalName[] = L"COM1,115200,0,8,0,0";
constexpr int kTerminalCommand = 39;

std::wstring ControlFolder() {
  wchar_t folder[MAX_PATH] = L"";
  GetEnvironmentVariableW(L"QUILL_SERIAL_CONTROL", folder, MAX_PATH);
  return folder;
}

bool WaitForFile(const std::wstring& path, DWORD timeoutMs) {
  for (DWORD waited = 0; waited < timeoutMs; waited += 50) {
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
    Sleep(50);
  }
  return false;
}

// The device's end of the line.
class Device {
 public:
  bool Open() {
    Close();
    handle_ = CreateFileW(L"\\\\.\\COM2", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                          0, nullptr);
    if (handle_ == INVALID_HANDLE_VALUE) return false;
    COMMTIMEOUTS timeouts = {MAXDWORD, MAXDWORD, 100, 0, 5000};
    SetCommTimeouts(handle_, &timeouts);
    return true;
  }
  void Close() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
  }
  ~Device() { Close(); }
  // Whatever comes within `ms` once `size` bytes came or it went quiet.
  std::string Read(size_t size, DWORD ms = 3000) {
    std::string got;
    for (DWORD start = GetTickCount(); got.size() < size && GetTickCount() - start < ms;) {
      char buffer[4096];
      DWORD n = 0;
      if (!ReadFile(handle_, buffer, sizeof buffer, &n, nullptr)) break;
      got.append(buffer, n);
    }
    return got;
  }
  bool Write(const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
      DWORD n = 0;
      DWORD chunk = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 4096));
      if (!WriteFile(handle_, bytes.data() + done, chunk, &n, nullptr)) return false;
      done += n;
    }
    return true;
  }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

std::wstring ComboText(HWND dialog, int id) {
  std::wstring text(64, L'\0');
  LRESULT n = SendDlgItemMessageW(dialog, id, WM_GETTEXT, text.size(),
                                  reinterpret_cast<LPARAM>(text.data()));
  text.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return text;
}

// The whole document through the clipboard (Ctrl+A, Ctrl+C).
std::wstring DocumentText() {
  Chord({VK_CONTROL}, 'A');
  Chord({VK_CONTROL}, 'C');
  Settle();
  std::wstring copied = L"<none>";
  if (!OpenClipboard(nullptr)) return copied;
  if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
    copied = static_cast<const wchar_t*>(GlobalLock(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return copied;
}

// Bytes as the units of the same value, as the terminal types them.
std::wstring Wide(const std::string& text) {
  std::wstring units;
  for (unsigned char byte : text)
    units += static_cast<wchar_t>(byte);
  return units;
}

TEST(Terminal, TalksToADeviceOnCom1) {
  std::wstring control = ControlFolder();
  ASSERT_FALSE(control.empty()) << "run through serial_line.sh";
  long long logStart = DebugLogSize();
  QuillProcess quill;
  std::wstring exe = PrepareFreshCopy(L"terminal");
  ASSERT_TRUE(quill.Start(exe));

  // The dialog lists the ports that open, with the defaults chosen.
  PostMessageW(quill.Frame(), WM_COMMAND, kTerminalCommand, 0);
  HWND dialog = WaitForWindow(quill, kPortDialogCaption);
  ASSERT_NE(dialog, nullptr);
  Settle();
  EXPECT_EQ(ComboText(dialog, 100), L"COM1");
  EXPECT_GE(SendDlgItemMessageW(dialog, 100, CB_GETCOUNT, 0, 0), 2);
  EXPECT_EQ(ComboText(dialog, 101), L"115200");
  EXPECT_EQ(ComboText(dialog, 102), L"None");
  EXPECT_EQ(ComboText(dialog, 103), L"8");
  EXPECT_EQ(ComboText(dialog, 104), L"1");
  EXPECT_EQ(ComboText(dialog, 106), L"None");
  SaveScreenshot(ScreenshotFolder() + L"terminal-dialog.bmp");
  SendMessageW(dialog, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(WaitUntilGone(dialog));
  Settle();
  std::wstring ini = FolderOf(exe) + L"QUILL.INI";
  EXPECT_EQ(Setting(ini, L"Config", L"ComPort"), "1");
  EXPECT_EQ(Setting(ini, L"Config", L"Baudrate"), "115200");
  EXPECT_EQ(Setting(ini, L"Config", L"FlowCtrl"), "0");
  HWND terminal = OnlyChild(quill);
  ASSERT_NE(terminal, nullptr);
  EXPECT_EQ(WindowText(terminal), kTerminalName);

  // Typed keys go out as they are, nothing else.
  Device device;
  ASSERT_TRUE(device.Open());
  FocusEditor(quill, terminal);
  TypeText(L"AT");
  Press(VK_RETURN);
  EXPECT_EQ(device.Read(3), "AT\r");
  EXPECT_EQ(device.Read(1, 300), "");
  // A quiet line is no failure: its reads end by their time-out and start again.
  Sleep(2500);
  EXPECT_EQ(DebugLogSince(logStart).find("RecvData Overlapped Result"), std::string::npos)
      << DebugLogSince(logStart);

  // The answers' line ends as the device sends them.
  ASSERT_TRUE(device.Write("OK\r\na\r\nb\r\na\nb\r\na\r\r\nb\r\n"));
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"terminal-data.bmp");
  EXPECT_EQ(DocumentText(), L"OK\r\na\r\nb\r\na\r\nb\r\na\r\nb\r\n");
  device.Read(2, 300);  // the Ctrl+A and Ctrl+C characters went out too

  // A megabyte of lines arrives whole while the keys still answer.
  std::string lines;
  for (int i = 0; lines.size() < (1u << 20); ++i)
    lines += "line " + std::to_string(i) + " \x01\xFF\t of the megabyte\r\n";
  int lineCount = 0;
  for (char c : lines)
    lineCount += c == '\n';
  const std::wstring lastLine = L"\tCol 1, Ln " + std::to_wstring(7 + lineCount + 1);
  DWORD start = GetTickCount();
  ASSERT_TRUE(device.Write(lines));
  TypeText(L"x");
  EXPECT_EQ(device.Read(1, 5000), "x");
  // The caret follows the text: the status bar names the last line once it is in.
  while (quill.StatusText(0) != lastLine && GetTickCount() - start < 20000)
    Sleep(10);
  DWORD took = GetTickCount() - start;
  EXPECT_EQ(quill.StatusText(0), lastLine);
  EXPECT_LT(took, 4000u) << "1 MB took " << took << " ms";
  printf("1 MB of lines shown in %lu ms\n", static_cast<unsigned long>(took));
  std::wstring expected = L"OK\r\na\r\nb\r\na\r\nb\r\na\r\nb\r\n" + Wide(lines);
  std::wstring shown;
  for (int tries = 0; tries < 20 && shown.size() < expected.size(); ++tries)
    shown = DocumentText();
  EXPECT_TRUE(shown == expected) << shown.size() << " of " << expected.size() << " units shown";
  device.Read(1 << 20, 500);

  // The device goes and a new one comes under the same name: the port is opened again, with no
  // message.
  device.Close();
  WriteBytes(control + L"\\replug", "");
  ASSERT_TRUE(WaitForFile(control + L"\\replugged", 10000));
  Settle();
  EXPECT_EQ(WaitForWindow(quill, L"", 1000), nullptr) << "a message box came up";
  ASSERT_TRUE(device.Open());
  FocusEditor(quill, terminal);
  TypeText(L"Z");
  EXPECT_EQ(device.Read(1), "Z");

  // Closing the terminal gives the port back.
  EXPECT_TRUE(WaitForFile(control + L"\\held", 2000));
  PostMessageW(terminal, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntilGone(terminal));
  EXPECT_TRUE(WaitForFile(control + L"\\free", 5000));

  // Quitting with a terminal open closes its port too, and leaves nothing allocated.
  PostMessageW(quill.Frame(), WM_COMMAND, kTerminalCommand, 0);
  dialog = WaitForWindow(quill, kPortDialogCaption);
  ASSERT_NE(dialog, nullptr);
  SendMessageW(dialog, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(WaitUntilGone(dialog));
  EXPECT_TRUE(WaitForFile(control + L"\\held", 5000));
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  EXPECT_TRUE(WaitForFile(control + L"\\free", 5000));
  EXPECT_EQ(DebugLogSince(logStart).find(">>>Leaked Memory"), std::string::npos);
}

}  // namespace
