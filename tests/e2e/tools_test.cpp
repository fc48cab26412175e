// The Tools menu's windows driven as a user drives them: the keys open them, typing changes what
// they show, Escape closes them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/e2e/e2e_support.h"

namespace {

const wchar_t kIntCalcCaption[] = L"\xC815\xC218 \xACC4\xC0B0\xAE30";  // 정수 계산기
const wchar_t kErrorLookupCaption[] =
    L"Win32 \xC624\xB958 \xCF54\xB4DC \xCC3E\xAE30";  // Win32 오류 코드 찾기

// Another process's edit text: WM_GETTEXT is copied across, GetWindowText is not under Wine.
std::wstring EditText(HWND dialog, int id) {
  std::wstring buffer(4096, L'\0');
  LRESULT length = SendMessageW(GetDlgItem(dialog, id), WM_GETTEXT, buffer.size(),
                                reinterpret_cast<LPARAM>(buffer.data()));
  buffer.resize(length > 0 ? static_cast<size_t>(length) : 0);
  return buffer;
}

// Every visible window of Quill's process with this caption.
std::vector<HWND> WindowsTitled(const QuillProcess& quill, const std::wstring& caption) {
  DWORD process = 0;
  GetWindowThreadProcessId(quill.Frame(), &process);
  std::vector<HWND> found;
  for (HWND window = GetTopWindow(nullptr); window; window = GetWindow(window, GW_HWNDNEXT)) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == process && IsWindowVisible(window) && WindowText(window) == caption)
      found.push_back(window);
  }
  return found;
}

TEST(Tools, IntegerCalculatorFollowsTheSelectionAndTheTyping) {
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareFreshCopy(L"tools-calc")));
  PostMessageW(quill.Frame(), WM_COMMAND, 79, 0);
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  FocusEditor(quill, editor);
  TypeText(L"0x10+3*2");
  Chord({VK_SHIFT}, VK_HOME);
  Settle();

  Chord({VK_CONTROL}, VK_F7);
  HWND first = WaitForWindow(quill, kIntCalcCaption);
  ASSERT_NE(first, nullptr);
  Settle();
  EXPECT_EQ(EditText(first, 100), L"0x10+3*2");
  EXPECT_EQ(EditText(first, 101), L"= 22\r\n= 0x16");
  SaveScreenshot(ScreenshotFolder() + L"tools-int-calc.bmp");

  // The result follows each typed character; an unfinished expression says so.
  SendMessageW(GetDlgItem(first, 100), EM_SETSEL, 0, -1);
  TypeText(L"1+2*");
  Settle();
  EXPECT_EQ(EditText(first, 101), L"\xACC4\xC0B0\xC2DD \xBBF8\xC644\xC131");  // 계산식 미완성
  TypeText(L"3");
  Settle();
  EXPECT_EQ(EditText(first, 101), L"= 7\r\n= 0x7");
  // An emptied input shows the example.
  SendMessageW(GetDlgItem(first, 100), EM_SETSEL, 0, -1);
  Press(VK_BACK);
  Settle();
  EXPECT_EQ(EditText(first, 101), L"Ex)\r\n0x23 & (45 | 13) + ~123 + 'A' + 0123\r\n");

  // A second calculator opens beside the first, cascaded.
  PostMessageW(quill.Frame(), WM_COMMAND, 46, 0);
  Settle();
  std::vector<HWND> calculators = WindowsTitled(quill, kIntCalcCaption);
  ASSERT_EQ(calculators.size(), 2u);
  HWND second = calculators[0] == first ? calculators[1] : calculators[0];
  RECT firstRect, secondRect;
  GetWindowRect(first, &firstRect);
  GetWindowRect(second, &secondRect);
  EXPECT_EQ(secondRect.left - firstRect.left, 24);
  EXPECT_EQ(secondRect.top - firstRect.top, 24);
  // Not narrower than its minimum however it is sized.
  SetWindowPos(second, nullptr, 0, 0, 20, 20, SWP_NOMOVE | SWP_NOZORDER);
  Settle();
  GetWindowRect(second, &secondRect);
  EXPECT_GE(secondRect.right - secondRect.left, 150);
  EXPECT_GE(secondRect.bottom - secondRect.top, 70);
  // The output still fills what is left under the input.
  RECT client, output;
  GetClientRect(second, &client);
  GetWindowRect(GetDlgItem(second, 101), &output);
  MapWindowPoints(nullptr, second, reinterpret_cast<POINT*>(&output), 2);
  EXPECT_LT(client.right - output.right, 12);
  EXPECT_LT(client.bottom - output.bottom, 12);
  SaveScreenshot(ScreenshotFolder() + L"tools-int-calc-two.bmp");

  SetForegroundWindow(second);
  SetFocus(GetDlgItem(second, 100));
  Settle();
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(second));
  EXPECT_TRUE(IsWindow(first));
  PostMessageW(first, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(WaitUntilGone(first));
  PostMessageW(quill.Frame(), WM_CLOSE, 0, 0);
  HWND save = WaitForWindow(quill, L"");  // the typed document is not saved
  ASSERT_NE(save, nullptr);
  PostMessageW(save, WM_COMMAND, IDNO, 0);
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

TEST(Tools, ErrorLookupShowsTheSystemTextInOneWindow) {
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareFreshCopy(L"tools-errmsg")));
  PostMessageW(quill.Frame(), WM_COMMAND, 24, 0);
  HWND lookup = WaitForWindow(quill, kErrorLookupCaption);
  ASSERT_NE(lookup, nullptr);
  SetForegroundWindow(lookup);
  SetFocus(GetDlgItem(lookup, 100));
  Settle();
  TypeText(L"5");
  Press(VK_RETURN);
  Settle();
  std::wstring denied = EditText(lookup, 101);
  EXPECT_FALSE(denied.empty());
  SaveScreenshot(ScreenshotFolder() + L"tools-error-lookup.bmp");
  // Hexadecimal reads the same code; an unknown code empties the output.
  SendMessageW(GetDlgItem(lookup, 100), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"0x5"));
  PostMessageW(lookup, WM_COMMAND, IDOK, 0);
  Settle();
  EXPECT_EQ(EditText(lookup, 101), denied);
  SendMessageW(GetDlgItem(lookup, 100), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"99999"));
  PostMessageW(lookup, WM_COMMAND, IDOK, 0);
  Settle();
  EXPECT_EQ(EditText(lookup, 101), L"");

  // The command again brings the same window back.
  PostMessageW(quill.Frame(), WM_COMMAND, 24, 0);
  Settle();
  EXPECT_EQ(WindowsTitled(quill, kErrorLookupCaption).size(), 1u);
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(lookup));
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

TEST(Tools, PrecisionCalculatorKeepsRegistersAndItsStyle) {
  const wchar_t caption[] = L"\xC815\xBC00 \xC2E4\xC218 \xACC4\xC0B0\xAE30";  // 정밀 실수 계산기
  std::wstring exe = PrepareFreshCopy(L"tools-rcalc");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  SetForegroundWindow(quill.Frame());
  Settle();
  Chord({VK_SHIFT, VK_MENU}, 'Q');
  HWND calc = WaitForWindow(quill, caption);
  ASSERT_NE(calc, nullptr);
  SetForegroundWindow(calc);
  SetFocus(GetDlgItem(calc, 100));
  Settle();
  // The running style at first; an unset register reads 0, a stored one keeps its value.
  EXPECT_EQ(SendMessageW(GetDlgItem(calc, 102), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(EditText(calc, 101).substr(0, 3), L"Ex)");
  TypeText(L"2^16 + @A -1");
  Settle();
  EXPECT_EQ(EditText(calc, 101), L"= 65,535\r\n= 0 FFFF (Hex)");
  SaveScreenshot(ScreenshotFolder() + L"tools-real-calc.bmp");
  Chord({VK_CONTROL}, VK_BACK);
  Settle();
  EXPECT_EQ(EditText(calc, 100), L"");
  TypeText(L"5 = @B");
  Settle();
  EXPECT_EQ(EditText(calc, 101), L"= 5\r\n= 5 (Hex)");
  Chord({VK_CONTROL}, VK_BACK);
  TypeText(L"@b*2");
  Settle();
  EXPECT_EQ(EditText(calc, 101), L"= 10\r\n= 0A (Hex)");
  // Millimetres belong to the running style only; a click on the other style evaluates again,
  // and the choice is remembered when the window closes.
  Chord({VK_CONTROL}, VK_BACK);
  TypeText(L"10mm");
  Settle();
  EXPECT_EQ(EditText(calc, 101).substr(0, 12), L"= 393.700787");
  SendMessageW(GetDlgItem(calc, 103), BM_CLICK, 0, 0);
  Settle();
  EXPECT_EQ(EditText(calc, 101), L"\xC9C0\xC6D0\xD558\xC9C0 \xC54A\xB294 \xC5F0\xC0B0\xC790");
  PostMessageW(calc, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(WaitUntilGone(calc));
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  EXPECT_EQ(Setting(FolderOf(exe) + L"QUILL.INI", L"Config", L"DecimalCalcStyle"), "1");

  QuillProcess again;
  ASSERT_TRUE(again.Start(exe));
  PostMessageW(again.Frame(), WM_COMMAND, 47, 0);
  calc = WaitForWindow(again, caption);
  ASSERT_NE(calc, nullptr);
  Settle();
  EXPECT_EQ(SendMessageW(GetDlgItem(calc, 103), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(EditText(calc, 101).substr(0, 3), L"Ex)");
  EXPECT_EQ(again.CloseAndWait(10000), 0);
}

TEST(Tools, BinaryToSourceWritesTheArrayAndOpensIt) {
  std::wstring exe = PrepareFreshCopy(L"tools-bin2src");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"data.bin", std::string("\x01\x02\xFF\x10\x7F", 5));
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  PostMessageW(quill.Frame(), WM_COMMAND, 28, 0);
  HWND dialog = WaitForWindow(quill, L"");
  ASSERT_NE(dialog, nullptr);
  Settle();
  // The defaults: C, hexadecimal bytes, the endian pair off for one-byte elements.
  EXPECT_EQ(EditText(dialog, 108), L"0x%02X");
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, 118)));
  SendMessageW(GetDlgItem(dialog, 116), BM_CLICK, 0, 0);  // two bytes
  EXPECT_EQ(EditText(dialog, 108), L"0x%04X");
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, 118)));
  SendMessageW(GetDlgItem(dialog, 114), BM_CLICK, 0, 0);  // unsigned
  SendMessageW(GetDlgItem(dialog, 111), BM_CLICK, 0, 0);  // Java: no unsigned numbers
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, 114)));
  EXPECT_EQ(SendMessageW(GetDlgItem(dialog, 113), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(EditText(dialog, 108), L"%d");
  SendMessageW(GetDlgItem(dialog, 109), BM_CLICK, 0, 0);  // back to C
  SendMessageW(GetDlgItem(dialog, 112), BM_CLICK, 0, 0);  // hexadecimal
  SendMessageW(GetDlgItem(dialog, 115), BM_CLICK, 0, 0);  // one byte
  EXPECT_EQ(EditText(dialog, 108), L"0x%02X");

  std::wstring binary = folder + L"data.bin";
  SendMessageW(GetDlgItem(dialog, 100), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(binary.c_str()));
  SendMessageW(GetDlgItem(dialog, 106), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"2"));
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"tools-bin2src.bmp");
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(dialog));
  Settle();
  EXPECT_EQ(ReadBytes(folder + L"data.c"),
            "static CONST BYTE data[]=\r\n    {\r\n    0x01,0x02,\r\n    0xFF,0x10,\r\n"
            "    0x7F,\r\n    };\r\n");
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  std::wstring title = WindowText(editor);
  ASSERT_GE(title.size(), 6u);
  EXPECT_EQ(title.substr(title.size() - 6), L"data.c");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  std::wstring ini = folder + L"QUILL.INI";
  EXPECT_EQ(Setting(ini, L"Config", L"Bin2Src1LineLen"), "2");
}

}  // namespace
