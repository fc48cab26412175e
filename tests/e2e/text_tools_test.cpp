// The text tools as a user meets them: lines sorted through the menu command and its dialog and
// taken back by one undo, the string code view of a selected syllable, and a system of three
// equations typed into the equation calculator.
#include <gtest/gtest.h>

#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

const wchar_t kSortCaption[] = L"\xC904 \xC815\xB82C";                           // 줄 정렬
const wchar_t kCodeCaption[] = L"\xBB38\xC790\xC5F4 \xCF54\xB4DC \xBCF4\xAE30";  // 문자열 코드 보기
const wchar_t kEquationsCaption[] =
    L"\xC5F0\xB9BD \xBC29\xC815\xC2DD \xACC4\xC0B0\xAE30";  // 연립 방정식 계산기

std::wstring EditText(HWND dialog, int id) {
  std::wstring buffer(8192, L'\0');
  LRESULT length = SendMessageW(GetDlgItem(dialog, id), WM_GETTEXT, buffer.size(),
                                reinterpret_cast<LPARAM>(buffer.data()));
  buffer.resize(length > 0 ? static_cast<size_t>(length) : 0);
  return buffer;
}

// Typed keys reach the window one by one: the output once it holds `part`, or as it is after
// five seconds.
std::wstring OutputOnceSettled(HWND dialog, const std::wstring& part) {
  for (int i = 0; i < 50; ++i) {
    std::wstring text = EditText(dialog, 101);
    if (text.find(part) != std::wstring::npos) return text;
    Sleep(100);
  }
  return EditText(dialog, 101);
}

// Quill started on `bytes` in a fresh folder, the keyboard in its editor.
struct Started {
  std::wstring exe, folder, path;
  QuillProcess quill;
  HWND editor = nullptr;
  bool Start(const wchar_t* name, const std::string& bytes) {
    exe = PrepareFreshCopy(name);
    folder = FolderOf(exe);
    path = folder + L"text.txt";
    WriteBytes(path, bytes);
    if (!quill.Start(exe, L"\"" + path + L"\"")) return false;
    Settle();
    editor = OnlyChild(quill);
    if (!editor) return false;
    FocusEditor(quill, editor);
    return true;
  }
};

TEST(TextTools, SortsTheSelectedLinesDescendingWithoutDuplicatesAndUndoes) {
  Started s;
  ASSERT_TRUE(s.Start(L"tools-sort", "b\nc\na\nc\nd\n"));
  // Lines 2 to 4 selected from the keyboard: the selection ends at the start of line 5.
  Press(VK_DOWN);
  for (int i = 0; i < 3; ++i)
    Chord({VK_SHIFT}, VK_DOWN);
  Settle();
  PostMessageW(s.quill.Frame(), WM_COMMAND, 26, 0);
  HWND dialog = WaitForWindow(s.quill, kSortCaption);
  ASSERT_NE(dialog, nullptr);
  Settle();
  SendMessageW(GetDlgItem(dialog, 101), BM_CLICK, 0, 0);  // descending
  SendMessageW(GetDlgItem(dialog, 104), BM_CLICK, 0, 0);  // without duplicates
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"tools-sort-dialog.bmp");
  SendMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
  ASSERT_TRUE(WaitUntilGone(dialog));
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"tools-sort-sorted.bmp");
  FocusEditor(s.quill, s.editor);
  Chord({VK_CONTROL}, 'S');
  Settle();
  EXPECT_EQ(ReadBytes(s.path), "b\nc\na\nd\n");
  EXPECT_EQ(Setting(s.folder + L"QUILL.INI", L"Config", L"SortOrder"), "1");
  EXPECT_EQ(Setting(s.folder + L"QUILL.INI", L"Config", L"SortUniqueFg"), "1");
  // One undo gives the lines back as they were.
  Chord({VK_CONTROL}, 'Z');
  Chord({VK_CONTROL}, 'S');
  Settle();
  EXPECT_EQ(ReadBytes(s.path), "b\nc\na\nc\nd\n");
}

TEST(TextTools, StringCodeViewShowsTheSelectedSyllable) {
  Started s;
  ASSERT_TRUE(s.Start(L"tools-strcode", "\xEF\xBB\xBF\xEA\xB0\x80\n"));  // 가 with a mark
  Chord({VK_SHIFT}, VK_END);
  Settle();
  PostMessageW(s.quill.Frame(), WM_COMMAND, 29, 0);
  HWND view = WaitForWindow(s.quill, kCodeCaption);
  ASSERT_NE(view, nullptr);
  Settle();
  EXPECT_EQ(EditText(view, 100), L"\xAC00");
  std::wstring codes = EditText(view, 101);
  for (const wchar_t* line : {L"UTF-16: AC00\r\n", L"UTF-8: EA B0 80\r\n", L"EUC-KR: B0 A1\r\n",
                              L"\xC870\xD569\xD615: 88 61\r\n"}) {
    EXPECT_NE(codes.find(line), std::wstring::npos) << line;
  }
  SaveScreenshot(ScreenshotFolder() + L"tools-strcode.bmp");
}

TEST(TextTools, EquationCalculatorSolvesATypedSystem) {
  Started s;
  ASSERT_TRUE(s.Start(L"tools-lineq", "\n"));
  PostMessageW(s.quill.Frame(), WM_COMMAND, 25, 0);
  HWND calculator = WaitForWindow(s.quill, kEquationsCaption);
  ASSERT_NE(calculator, nullptr);
  Settle();
  TypeText(L"2x + y - z = 8");
  Press(VK_RETURN);
  TypeText(L"-3x - y + 2z = -11");
  Press(VK_RETURN);
  TypeText(L"-2x + y + 2z = -3");
  Settle();
  EXPECT_EQ(OutputOnceSettled(calculator, L"z = "), L"x = 2\r\ny = 3\r\nz = -1\r\n");
  SaveScreenshot(ScreenshotFolder() + L"tools-equations.bmp");
  // A dependent third equation: no single answer, and which one follows from the others.
  Chord({VK_SHIFT}, VK_HOME);
  TypeText(L"4x + 2y - 2z = 16");
  Settle();
  std::wstring dependent = OutputOnceSettled(calculator, L"\xC2DD\xC740");   // 식은
  EXPECT_EQ(dependent.substr(0, 2), L"\xD574\xAC00") << "no single answer";  // 해가
  EXPECT_NE(dependent.find(L"\xC2DD\xC740"), std::wstring::npos);
}

}  // namespace
