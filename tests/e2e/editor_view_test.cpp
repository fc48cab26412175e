// The editor window as a user meets it: a Korean file from the command line is shown on the cell
// grid, typed into with the keyboard and saved back in its own encoding.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "tests/e2e/e2e_support.h"

namespace {

// A line of Hangul and ASCII in EUC-KR: 한 C7D1, 글 B1DB, 가 B0A1.
const char kKoreanFile[] = "\xC7\xD1\xB1\xDB int main;\r\n/* \xB0\xA1 */ return 0;\r\n";

TEST(EditorView, KoreanFileIsShownTypedIntoAndSavedInItsEncoding) {
  std::wstring exe = PrepareFreshCopy(L"editor-view");
  std::wstring path = FolderOf(exe) + L"korean.c";
  WriteBytes(path, kKoreanFile);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(ClassName(editor), L"Quill");
  EXPECT_NE(WindowText(editor).find(L"korean.c"), std::wstring::npos);
  SetForegroundWindow(quill.Frame());
  SetFocus(editor);
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"editor-view-loaded.bmp");
  EXPECT_EQ(quill.StatusText(0), L"\tCol 1, Ln 1");
  EXPECT_EQ(quill.StatusText(3), L"\tEUC-KR  CRLF");

  // End goes behind the last character: two wide syllables take four columns.
  Press(VK_END);
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 15, Ln 1");
  EXPECT_EQ(quill.StatusText(1), L"");
  // Left steps back over a whole character; typing inserts there.
  Press(VK_HOME);
  Press(VK_RIGHT);
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 3, Ln 1");
  TypeText(L"x");
  Press(VK_DOWN);  // line 2 starts with "/* ": column 3 is not inside a wide character
  Press(VK_END);
  TypeText(L"y");
  TypeText(L"\xAC00");  // U+AC00 가, typed as a finished character
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 22, Ln 2");
  EXPECT_EQ(quill.StatusText(1), L"\tModified");
  SaveScreenshot(ScreenshotFolder() + L"editor-view-typed.bmp");

  Key(VK_CONTROL, false);
  Press('S');
  Key(VK_CONTROL, true);
  Settle();
  EXPECT_EQ(quill.StatusText(1), L"");
  EXPECT_EQ(ReadBytes(path),
            "\xC7\xD1x\xB1\xDB int main;\r\n/* \xB0\xA1 */ return 0;y\xB0\xA1\r\n");
  // Saved: closing asks nothing.
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// Closing a modified document asks message 85; Cancel keeps the window and the text.
TEST(EditorView, ClosingAModifiedDocumentAsksFirst) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-close");
  std::wstring path = FolderOf(exe) + L"plain.txt";
  WriteBytes(path, "abc\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  PostMessageW(editor, WM_CHAR, L'z', 0);
  Settle();
  EXPECT_EQ(quill.StatusText(1), L"\tModified");
  PostMessageW(editor, WM_CLOSE, 0, 0);
  HWND box = WaitForWindow(quill, L"");
  ASSERT_NE(box, nullptr);
  SaveScreenshot(ScreenshotFolder() + L"editor-view-close.bmp");
  PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
  Settle();
  EXPECT_TRUE(IsWindow(editor));
  EXPECT_EQ(ReadBytes(path), "abc\r\n");
  // No now: the window goes and the file stays as it was.
  PostMessageW(editor, WM_CLOSE, 0, 0);
  box = WaitForWindow(quill, L"");
  ASSERT_NE(box, nullptr);
  PostMessageW(box, WM_COMMAND, IDNO, 0);
  Settle();
  EXPECT_FALSE(IsWindow(editor));
  EXPECT_EQ(ReadBytes(path), "abc\r\n");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// The wheel moves the top line by the configured number of lines, never above the first, and
// the caret follows the view when it would leave it.
TEST(EditorView, WheelScrollsByTheConfiguredLines) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-wheel");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"QUILL.INI", "[Config]\r\nWheelScrollLines=3\r\n");
  std::string lines;
  for (int i = 0; i < 100; ++i)
    lines += "line " + std::to_string(i + 1) + "\r\n";
  WriteBytes(folder + L"lines.txt", lines);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + folder + L"lines.txt\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  PostMessageW(editor, WM_MOUSEWHEEL, MAKEWPARAM(0, 240), 0);  // up, at the top already
  PostMessageW(editor, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)), 0);
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 1, Ln 4");
  PostMessageW(editor, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-240)), 0);
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 1, Ln 10");
  SaveScreenshot(ScreenshotFolder() + L"editor-view-wheel.bmp");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// An unfinished syllable of the input method stands in the text until the next one replaces it;
// only the finished character stays.
TEST(EditorView, CompositionIsShownInPlaceAndReplaced) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-ime");
  std::wstring path = FolderOf(exe) + L"ime.txt";
  WriteBytes(path, "ab\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  const LPARAM compositionString = 0x0008, compositionResult = 0x0800;
  PostMessageW(editor, WM_KEYDOWN, VK_RIGHT, 0);
  PostMessageW(editor, WM_IME_STARTCOMPOSITION, 0, 0);
  PostMessageW(editor, WM_IME_COMPOSITION, 0x3131, compositionString);  // ㄱ
  PostMessageW(editor, WM_IME_COMPOSITION, 0xAC00, compositionString);  // 가
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 2, Ln 1");  // the caret stays in front of it
  SaveScreenshot(ScreenshotFolder() + L"editor-view-composing.bmp");
  PostMessageW(editor, WM_IME_COMPOSITION, 0xAC01, compositionString);  // 각
  PostMessageW(editor, WM_IME_COMPOSITION, 0xAC01, compositionResult);
  PostMessageW(editor, WM_CHAR, 0xAC01, 0);
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 4, Ln 1");
  PostMessageW(quill.Frame(), WM_COMMAND, 82, 0);
  Settle();
  EXPECT_EQ(ReadBytes(path),
            "a\xEA\xB0\x81"
            "b\r\n");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// A click places the caret (a click below the text lands on the last line), a drag selects, and
// a typed character replaces the selection.
TEST(EditorView, ClickAndDragSelect) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-mouse");
  std::wstring path = FolderOf(exe) + L"mouse.txt";
  WriteBytes(path, "one\r\ntwo\r\nthree\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 600));
  PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(1, 600));
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 1, Ln 3");
  PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
  PostMessageW(editor, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1, 600));
  PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(1, 600));
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"editor-view-drag.bmp");
  PostMessageW(editor, WM_CHAR, L'q', 0);
  PostMessageW(quill.Frame(), WM_COMMAND, 82, 0);
  Settle();
  EXPECT_EQ(ReadBytes(path), "qthree\r\n");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// 200,000 lines are more than a scroll bar's 16-bit range holds: positions are tenths of lines.
TEST(EditorView, LongDocumentScrollsWithAScale) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-scale");
  std::string lines;
  lines.reserve(200000 * 8);
  for (int i = 0; i < 200000; ++i)
    lines += "l" + std::to_string(i) + "\r\n";
  std::wstring path = FolderOf(exe) + L"long.txt";
  WriteBytes(path, lines);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  // The scroll bar's positions are not readable from another process under Wine; where the
  // thumb takes the view shows the scale: a click at the top then lands on that line.
  auto thumbTo = [&](int position) {
    PostMessageW(editor, WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, position), 0);
    PostMessageW(editor, WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position), 0);
    PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
    PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(1, 1));
    Settle();
    return quill.StatusText(0);
  };
  EXPECT_EQ(thumbTo(10000), L"\tCol 1, Ln 100001");
  EXPECT_EQ(thumbTo(19999), L"\tCol 1, Ln 199991");
  PostMessageW(quill.Frame(), WM_COMMAND, 93, 0);  // Ctrl+End
  Settle();
  EXPECT_EQ(quill.StatusText(0), L"\tCol 8, Ln 200000");
  SaveScreenshot(ScreenshotFolder() + L"editor-view-scale.bmp");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// A bitmap font file of the program's own format draws the characters it has glyphs for; the
// others are left out of its cells (a glyph of no pixels draws nothing).
TEST(EditorView, BitmapFontDrawsItsGlyphs) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-bitmap-font");
  std::wstring folder = FolderOf(exe);
  std::string font(24 + 256 * 16, '\0');
  font[18] = 16;  // two-column cell 16 pixels wide
  font[20] = 16;  // 16 high
  for (int row = 0; row < 16; ++row)
    font[24 + 'A' * 16 + row] = '\xFF';  // 'A' a solid block
  WriteBytes(folder + L"blocky.fnt", font);
  WriteBytes(folder + L"QUILL.INI", "[Config]\r\nUseSelfFontFg=1\r\nSelfFontName=blocky\r\n");
  WriteBytes(folder + L"font.txt", "A B\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + folder + L"font.txt\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  SaveScreenshot(ScreenshotFolder() + L"editor-view-bitmap-font.bmp");
  auto pixel = [editor](int column) {
    POINT point = {6 + column * 8 + 4, 8};  // the middle of the cell, behind the margin
    ClientToScreen(editor, &point);
    HDC screen = GetDC(nullptr);
    COLORREF colour = GetPixel(screen, point.x, point.y);
    ReleaseDC(nullptr, screen);
    return colour;
  };
  COLORREF blank = pixel(1);
  EXPECT_NE(pixel(0), blank);  // A: every pixel set
  EXPECT_EQ(pixel(2), blank);  // B: no pixel set, where a system font's B has its middle bar
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

}  // namespace

namespace {

// A file that could not be read still leaves its window: an empty document under its name.
TEST(EditorView, AFailedOpenLeavesAnEmptyDocument) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-failed-open");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"binary.dat",
             std::string("\x01\x02\x00\x00\x03\x04\x00\x00\x05", 9) + std::string(200, '\0'));
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  ASSERT_TRUE(quill.DropFiles({folder + L"binary.dat"}, POINT{200, 200}));
  HWND box = WaitForWindow(quill, L"");  // not a text file: open anyway?
  ASSERT_NE(box, nullptr);
  PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
  Settle();
  bool shown = false;
  for (HWND child : Children(quill))
    shown = shown || WindowText(child).find(L"binary.dat") != std::wstring::npos;
  EXPECT_TRUE(shown);
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  EXPECT_EQ(ReadBytes(folder + L"binary.dat").size(), 209u);
}

// Insert toggles overwrite typing (a block caret, the state named in the status bar); a line
// wider than the window brings a horizontal scroll bar; a window made wide enough again shows
// its text from column 0.
TEST(EditorView, OverwriteTypingWideLinesAndResizing) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-overwrite");
  std::wstring path = FolderOf(exe) + L"wide.txt";
  WriteBytes(path, std::string(100, 'x') +
                       "\r\nab\xB0\xA1"
                       "cd\r\n");  // 가 in EUC-KR
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  FocusEditor(quill, editor);
  Press(VK_DOWN);
  Press(VK_HOME);
  Press(VK_RIGHT);
  Press(VK_INSERT);
  Settle();
  EXPECT_NE(quill.StatusText(3).find(L"\xACB9\xCCD0\xC4F0\xAE30"), std::wstring::npos)
      << std::string(quill.StatusText(3).begin(), quill.StatusText(3).end());
  TypeText(L"XY");  // over "b" and the whole syllable
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"editor-view-overwrite.bmp");
  PostMessageW(quill.Frame(), WM_COMMAND, 82, 0);  // save
  Settle();
  EXPECT_EQ(ReadBytes(path), std::string(100, 'x') + "\r\naXYcd\r\n");
  Chord({VK_CONTROL}, 'Z');
  Settle();
  PostMessageW(quill.Frame(), WM_COMMAND, 82, 0);
  Settle();
  EXPECT_EQ(ReadBytes(path), std::string(100, 'x') +
                                 "\r\naX\xB0\xA1"
                                 "cd\r\n");
  Press(VK_INSERT);
  Settle();
  EXPECT_EQ(quill.StatusText(3).find(L"\xACB9\xCCD0\xC4F0\xAE30"), std::wstring::npos);

  // Narrow: the first line is wider than the window.
  PostMessageW(editor, WM_SYSCOMMAND, SC_RESTORE, 0);
  Settle();
  SetWindowPos(editor, nullptr, 0, 0, 360, 240, SWP_NOZORDER | SWP_NOACTIVATE);
  Settle();
  EXPECT_NE(GetWindowLongW(editor, GWL_STYLE) & WS_HSCROLL, 0);
  auto narrowAtTheEnd = [&] {
    PostMessageW(editor, WM_SYSCOMMAND, SC_RESTORE, 0);
    Settle();
    SetWindowPos(editor, nullptr, 0, 0, 360, 240, SWP_NOZORDER | SWP_NOACTIVATE);
    FocusEditor(quill, editor);
    Press(VK_UP);
    Press(VK_END);
    Settle();
  };
  // A click at the left edge tells which column is shown there.
  auto leftColumn = [&] {
    PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(7, 1));
    PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(7, 1));
    Settle();
    return quill.StatusText(0);
  };
  narrowAtTheEnd();
  EXPECT_NE(GetWindowLongW(editor, GWL_STYLE) & WS_HSCROLL, 0);
  SaveScreenshot(ScreenshotFolder() + L"editor-view-hscroll.bmp");
  // Wide again: the caret at column 100 fits, so the text shows from column 0.
  PostMessageW(editor, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  Settle();
  EXPECT_EQ(leftColumn(), L"\tCol 1, Ln 1");
  EXPECT_EQ(GetWindowLongW(editor, GWL_STYLE) & WS_HSCROLL, 0);
  // The same after a restart, which brings back the sideways place kept for the file.
  narrowAtTheEnd();
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  QuillProcess again;
  ASSERT_TRUE(again.Start(exe, L"\"" + path + L"\""));
  Settle();
  editor = OnlyChild(again);
  ASSERT_NE(editor, nullptr);
  PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(7, 1));
  PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(7, 1));
  Settle();
  EXPECT_EQ(again.StatusText(0), L"\tCol 1, Ln 1");
  EXPECT_EQ(again.CloseAndWait(10000), 0);
}

// The system caret of the editor's thread: its rectangle in client coordinates.
RECT CaretRect(HWND editor) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(editor, nullptr), &info);
  return info.rcCaret;
}

// After a font change the caret stands at once at its cell of the new size; a drag held below
// the window scrolls on; closing the last document empties the status bar.
TEST(EditorView, FontChangeDragAtTheEdgeAndTheLastClose) {
  std::wstring exe = PrepareFreshCopy(L"editor-view-font-drag");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"QUILL.INI", "[Config]\r\nEngFontSize=16\r\n");
  std::string lines;
  for (int i = 0; i < 200; ++i)
    lines += "line " + std::to_string(i + 1) + "\r\n";
  std::wstring path = folder + L"lines.txt";
  WriteBytes(path, lines);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + path + L"\""));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  FocusEditor(quill, editor);
  Press(VK_DOWN);
  Press(VK_DOWN);
  Settle();
  RECT before = CaretRect(editor);
  int oldHeight = before.bottom - before.top;
  ASSERT_GT(oldHeight, 0);
  EXPECT_EQ(before.top, 2 * oldHeight);

  PostMessageW(quill.Frame(), WM_COMMAND, 75, 0);  // options
  HWND sheet = WaitForWindow(quill, L"옵션 설정");
  ASSERT_NE(sheet, nullptr);
  Settle();
  HWND page = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
  ASSERT_NE(page, nullptr);
  SendDlgItemMessageW(page, 111, UDM_SETPOS32, 0, 28);  // the Latin font's size
  SetForegroundWindow(sheet);
  Settle();
  Press(VK_RETURN);  // OK: the focus goes back to the editor before the new font is made
  Settle();
  RECT after = CaretRect(editor);
  int newHeight = after.bottom - after.top;
  ASSERT_GT(newHeight, oldHeight);
  EXPECT_EQ(after.top, 2 * newHeight);
  SaveScreenshot(ScreenshotFolder() + L"editor-view-font.bmp");

  // Held a few pixels below the text area the selection goes on down, a line at a time.
  RECT client;
  GetClientRect(editor, &client);
  int below = (client.bottom / newHeight) * newHeight + 2;
  PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 1));
  PostMessageW(editor, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, below));
  Sleep(1500);
  PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(10, below));
  Settle();
  std::wstring place = quill.StatusText(0);
  int line = _wtoi(place.c_str() + place.find(L"Ln ") + 3);
  EXPECT_GT(line, client.bottom / newHeight + 10) << std::string(place.begin(), place.end());

  PostMessageW(editor, WM_CLOSE, 0, 0);
  Settle();
  EXPECT_TRUE(Children(quill).empty());
  EXPECT_EQ(quill.StatusText(0), L"");
  EXPECT_EQ(quill.StatusText(3), L"");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

}  // namespace
