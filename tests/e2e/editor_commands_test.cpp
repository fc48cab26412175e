// The editor's commands as a user gives them: chords and prefixes typed on the keyboard, the
// dialogs they open filled in with keys, and the results checked in the file on disk, the status
// bar, the settings file and the clipboard.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

constexpr int kFindField = 101;
constexpr int kByteOrderMark = 112;
constexpr int kPathField = 101;
constexpr int kFirstLabel = 201;
constexpr int kEncodingList = 103;

// A fresh copy of Quill in its own folder with `file` holding `bytes` and, when given, settings.
class Scenario {
 public:
  Scenario(const std::wstring& name, const std::wstring& file, const std::string& bytes,
           const std::string& settings = "")
      : exe_(PrepareFreshCopy(name)), folder_(FolderOf(exe_)), path_(folder_ + file) {
    WriteBytes(path_, bytes);
    if (!settings.empty()) WriteBytes(Ini(), settings);
  }

  // Starts Quill on the file and puts the keyboard focus into its editor.
  bool Start(bool withFile = true) {
    if (!quill_.Start(exe_, withFile ? L"\"" + path_ + L"\"" : L"")) return false;
    Settle();
    return withFile ? Focus() : true;
  }
  bool Focus() {
    editor_ = OnlyChild(quill_);
    if (!editor_) return false;
    FocusEditor(quill_, editor_);
    return true;
  }

  QuillProcess& quill() { return quill_; }
  HWND editor() const { return editor_; }
  const std::wstring& folder() const { return folder_; }
  const std::wstring& path() const { return path_; }
  std::wstring Ini() const { return folder_ + L"QUILL.INI"; }
  std::string Bytes() const { return ReadBytes(path_); }
  std::wstring Caret() const { return quill_.StatusText(0); }
  std::wstring Message() const { return quill_.StatusText(2); }
  void Shot(const std::wstring& name) const {
    SaveScreenshot(ScreenshotFolder() + L"commands-" + name + L".bmp");
  }
  // File > Open with `path` typed into the file dialog; false when the dialog did not come and go.
  bool OpenThroughMenu(const std::wstring& path) {
    Chord({VK_MENU}, 'F');
    Press('O');
    HWND open = WaitForWindow(quill_, L"");
    if (!open) return false;
    Settle();
    TypeText(path);
    Press(VK_RETURN);
    bool gone = WaitUntilGone(open);
    Settle();
    return gone;
  }
  // Ctrl+S, then the time to write.
  void Save() {
    Chord({VK_CONTROL}, 'S');
    Settle();
  }

 private:
  std::wstring exe_, folder_, path_;
  QuillProcess quill_;
  HWND editor_ = nullptr;
};

// The dialog with `caption`, after the keys that open it; its screenshot is taken.
HWND Dialog(Scenario& scenario, const std::wstring& caption, const std::wstring& shot) {
  HWND dialog = WaitForWindow(scenario.quill(), caption);
  if (dialog) {
    Settle();
    scenario.Shot(shot);
  }
  return dialog;
}

// The text in a drop-down combo box's edit field.
std::wstring FieldText(HWND dialog, int id) {
  wchar_t text[300] = L"";
  SendMessageW(GetDlgItem(dialog, id), WM_GETTEXT, 300, reinterpret_cast<LPARAM>(text));
  return text;
}

// The longest text among a message box's controls: its message.
std::wstring BoxText(HWND box) {
  std::wstring longest;
  auto take = [](HWND child, LPARAM found) -> BOOL {
    wchar_t text[512];
    SendMessageW(child, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    std::wstring* kept = reinterpret_cast<std::wstring*>(found);
    if (wcslen(text) > kept->size()) *kept = text;
    return TRUE;
  };
  EnumChildWindows(box, take, reinterpret_cast<LPARAM>(&longest));
  return longest;
}

std::wstring ComboText(HWND dialog, int id, int index) {
  HWND combo = GetDlgItem(dialog, id);
  LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, index, 0);
  if (length < 0) return L"<none>";
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  SendMessageW(combo, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

// The three prefixes: each shows its reminder, and the second key (plain or with Ctrl) changes
// case, saves, or is taken for what it means alone once the prefix is gone.
TEST(EditorCommands, PrefixesChangeCaseAndSave) {
  Scenario scenario(L"commands-prefix", L"case.c", "abc def\r\nxyz\r\n");
  ASSERT_TRUE(scenario.Start());
  Chord({VK_CONTROL}, 'K');
  Settle();
  EXPECT_EQ(scenario.Message(), L"^K ... E:Lowcase, F:Uppercase, S:Save");
  scenario.Shot(L"prefix-k");
  Press('F');  // upper-cases the word at the caret; no 'f' is typed
  Settle();
  EXPECT_EQ(scenario.Message(), L"");
  Chord({VK_CONTROL}, VK_RIGHT);  // to "def"
  Chord({VK_CONTROL}, 'K');
  Chord({VK_CONTROL}, 'F');  // Ctrl+K, Ctrl+F upper-cases too
  Chord({VK_CONTROL}, 'K');
  Press('E');  // ... and Ctrl+K E lower-cases it again
  Press(VK_HOME);
  Chord({VK_CONTROL}, 'O');
  Settle();
  EXPECT_EQ(scenario.Message(), L"^O ... O:Change Case, C:Column Block, K:Line Block, F:Fill Char");
  Press('O');  // flips the character's case and steps right
  Chord({VK_CONTROL}, 'O');
  Chord({VK_CONTROL}, 'O');  // Ctrl+O, Ctrl+O does the same
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 3, Ln 1");
  EXPECT_EQ(scenario.quill().StatusText(1), L"\tModified");
  Chord({VK_CONTROL}, 'Q');
  Settle();
  EXPECT_EQ(scenario.Message(), L"^Q ... A:Replace, F:Find");
  Press(VK_ESCAPE);  // no second key of Ctrl+Q: the prefix ends and the key does nothing
  Settle();
  EXPECT_EQ(scenario.Message(), L"");
  Chord({VK_CONTROL}, 'K');
  Press('S');
  Settle();
  EXPECT_EQ(scenario.Bytes(), "abC def\r\nxyz\r\n");
  EXPECT_EQ(scenario.quill().StatusText(1), L"");
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Bookmarks, scrolling by a line, word moves and Ctrl+Backspace, brace matching, the date, and
// undo and redo, all from the keyboard.
TEST(EditorCommands, BookmarksScrollingWordsBracesDateAndUndo) {
  std::string text = "alpha beta gamma\r\nf(a[1]) {x}\r\n";
  for (int i = 3; i <= 200; ++i)
    text += "line " + std::to_string(i) + "\r\n";
  Scenario scenario(L"commands-moves", L"moves.c", text);
  ASSERT_TRUE(scenario.Start());

  // Ctrl+Down takes the caret along when its line leaves the view; Ctrl+Up leaves it.
  Chord({VK_CONTROL}, VK_DOWN);
  Chord({VK_CONTROL}, VK_DOWN);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 3");
  Chord({VK_CONTROL}, VK_UP);
  Chord({VK_CONTROL}, VK_UP);
  Chord({VK_CONTROL}, VK_UP);  // at the top already
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 3");

  // Bookmark 2 on line 3; Ctrl+End, then Ctrl+2 comes back.
  Chord({VK_CONTROL, VK_SHIFT}, '2');
  Settle();
  EXPECT_EQ(scenario.Message(), L"Bookmark: 2");
  Chord({VK_CONTROL}, VK_END);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 9, Ln 200");
  Chord({VK_CONTROL}, '2');
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 3");
  scenario.Shot(L"bookmark");
  Chord({VK_CONTROL}, '5');  // never set: nothing moves
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 3");

  // Words: Ctrl+Right twice, Ctrl+Left once, then Ctrl+Backspace deletes back to "beta".
  Chord({VK_CONTROL}, VK_HOME);
  Chord({VK_CONTROL}, VK_RIGHT);
  Chord({VK_CONTROL}, VK_RIGHT);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 12, Ln 1");
  Chord({VK_CONTROL}, VK_LEFT);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 7, Ln 1");
  Press(VK_END);
  Chord({VK_CONTROL}, VK_BACK);  // "gamma" goes
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 12, Ln 1");

  // Alt+] from the opening parenthesis goes to its partner and Alt+[ comes back.
  Press(VK_DOWN);
  Press(VK_HOME);
  Press(VK_RIGHT);
  Chord({VK_MENU}, VK_OEM_6);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 7, Ln 2");
  Chord({VK_MENU}, VK_OEM_4);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 2, Ln 2");

  // F5 writes the date and time at the caret; Ctrl+Z takes it back, Ctrl+Y brings it again.
  Press(VK_END);
  Press(VK_F5);
  Settle();
  SYSTEMTIME now;
  GetLocalTime(&now);
  std::wstring year = std::to_wstring(now.wYear) + L"-";
  EXPECT_EQ(scenario.Caret(), L"\tCol 28, Ln 2");  // "yyyy-mm-dd hh:mm" behind 11 columns
  Chord({VK_CONTROL}, 'Z');
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 12, Ln 2");
  Chord({VK_CONTROL}, 'Y');
  scenario.Save();
  std::string saved = scenario.Bytes();
  std::string line2 = saved.substr(saved.find("\r\n") + 2);
  line2 = line2.substr(0, line2.find("\r\n"));
  EXPECT_EQ(saved.substr(0, saved.find("\r\n")), "alpha beta");
  EXPECT_EQ(line2.substr(0, 11 + year.size()),
            "f(a[1]) {x}" + std::string(year.begin(), year.end()));
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Column and line blocks: the fill dialog fills a rectangle, is refused without a column block,
// and line blocks shift and take continuation backslashes.
TEST(EditorCommands, BlocksFillShiftAndContinue) {
  Scenario scenario(L"commands-blocks", L"blocks.c", "aaaa\r\nbbbb\r\ncccc\r\n");
  ASSERT_TRUE(scenario.Start());

  // Ctrl+O F before a column block is chosen: message 117.
  Chord({VK_CONTROL}, 'O');
  Press('F');
  HWND refusal = Dialog(scenario, L"", L"fill-refused");
  ASSERT_NE(refusal, nullptr);
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(refusal));

  // Ctrl+O C, a 2 x 3 rectangle from column 2, Ctrl+O F and '*'.
  Chord({VK_CONTROL}, 'O');
  Chord({VK_CONTROL}, 'C');
  Press(VK_RIGHT);
  Chord({VK_SHIFT}, VK_DOWN);
  Chord({VK_SHIFT}, VK_DOWN);
  Chord({VK_SHIFT}, VK_RIGHT);
  Chord({VK_SHIFT}, VK_RIGHT);
  Settle();
  scenario.Shot(L"column-block");
  Chord({VK_CONTROL}, 'O');
  Press('F');
  HWND fill = Dialog(scenario, L"채울 문자", L"fill");
  ASSERT_NE(fill, nullptr);
  Press(VK_RETURN);  // nothing typed yet: the dialog stays
  Settle();
  EXPECT_TRUE(IsWindow(fill));
  TypeText(L"*");
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(fill));
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "a**a\r\nb**b\r\nc**c\r\n");

  // Back to line blocks: select all, shift right (Ctrl+Shift+I, then Tab) and left once.
  Chord({VK_CONTROL}, 'O');
  Chord({VK_CONTROL}, 'K');
  Chord({VK_CONTROL}, 'A');
  Chord({VK_CONTROL, VK_SHIFT}, 'I');
  Press(VK_TAB);
  Chord({VK_CONTROL, VK_SHIFT}, 'U');
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "    a**a\r\n    b**b\r\n    c**c\r\n");

  // Ctrl+Shift+\ adds a backslash to every selected line, and a second time takes them away.
  Chord({VK_CONTROL, VK_SHIFT}, VK_OEM_5);
  scenario.Save();
  std::string continued = scenario.Bytes();
  EXPECT_EQ(std::count(continued.begin(), continued.end(), '\\'), 3) << continued;
  Chord({VK_CONTROL, VK_SHIFT}, VK_OEM_5);
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "    a**a\r\n    b**b\r\n    c**c\r\n");
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Find and replace through their dialogs; F3 repeats; the options and both histories are in the
// settings file and come back in the next run.
TEST(EditorCommands, FindAndReplaceKeepTheirHistories) {
  Scenario scenario(L"commands-find", L"find.c", "one two\r\ntwo three\r\nfour two\r\n");
  ASSERT_TRUE(scenario.Start());
  Chord({VK_CONTROL}, 'F');
  HWND find = Dialog(scenario, L"찾기", L"find");
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(FieldText(find, kFindField), L"one");  // the word at the caret
  TypeText(L"two");                                // replaces the proposal, which stands selected
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(find));
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 8, Ln 1");
  Press(VK_F3);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 4, Ln 2");

  // Ctrl+Q A: the replace dialog, "2" for every "two" from the top.
  Chord({VK_CONTROL}, 'Q');
  Press('A');
  HWND replace = Dialog(scenario, L"바꾸기", L"replace");
  ASSERT_NE(replace, nullptr);
  EXPECT_EQ(FieldText(replace, kFindField), L"two");  // the selection
  Press(VK_TAB);                                      // Tab goes on to the replacement
  TypeText(L"2");
  Chord({VK_MENU}, 'B');  // from the top
  Chord({VK_MENU}, 'A');  // replace all
  EXPECT_TRUE(WaitUntilGone(replace));
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "one 2\r\n2 three\r\nfour 2\r\n");
  EXPECT_EQ(Setting(scenario.Ini(), L"FindTextHistory", L"0"), "two");
  EXPECT_EQ(Setting(scenario.Ini(), L"ExchangeTextHistory", L"0"), "2");
  EXPECT_EQ(Setting(scenario.Ini(), L"FindText", L"Origin"), "1");
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);

  // The next run: F3 with nothing searched yet opens the dialog, whose list remembers "two";
  // an emptied field keeps the dialog open.
  ASSERT_TRUE(scenario.Start());
  Press(VK_F3);
  HWND again = Dialog(scenario, L"찾기", L"find-history");
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(ComboText(again, kFindField, 0), L"two");
  Press(VK_DELETE);
  Press(VK_RETURN);
  Settle();
  EXPECT_TRUE(IsWindow(again));
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(again));
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Undo gives back exactly what was there: an un-indent of lines with fewer blanks than the
// shift, a case-insensitive replace-all that met three spellings (one Ctrl+Z), and typing taken
// back a line at a time. Find upward finds the word above the caret.
TEST(EditorCommands, UndoGivesBackTheExactText) {
  const std::string original = "Name\r\n  name\r\nNAME\r\n";
  Scenario scenario(L"commands-undo", L"undo.c", original);
  ASSERT_TRUE(scenario.Start());
  Chord({VK_CONTROL}, 'A');
  Chord({VK_SHIFT}, VK_TAB);
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "Name\r\nname\r\nNAME\r\n");
  Chord({VK_CONTROL}, 'Z');
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), original);

  Chord({VK_CONTROL}, 'H');
  HWND replace = Dialog(scenario, L"바꾸기", L"undo-replace");
  ASSERT_NE(replace, nullptr);
  TypeText(L"name");
  Press(VK_TAB);
  TypeText(L"id");
  Chord({VK_MENU}, 'B');
  Chord({VK_MENU}, 'A');
  EXPECT_TRUE(WaitUntilGone(replace));
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "id\r\n  id\r\nid\r\n");
  Chord({VK_CONTROL}, 'Z');
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), original);

  // Upward from the end of the text: the last "name" first, then the one above it.
  Chord({VK_CONTROL}, VK_END);
  Chord({VK_CONTROL}, 'F');
  HWND find = Dialog(scenario, L"찾기", L"find-upward");
  ASSERT_NE(find, nullptr);
  TypeText(L"name");
  Chord({VK_MENU}, 'U');
  Chord({VK_MENU}, 'R');
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(find));
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 5, Ln 3");
  Press(VK_F3);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 7, Ln 2");

  // Three typed lines, one Ctrl+Z: only the last goes.
  Chord({VK_CONTROL}, VK_HOME);
  TypeText(L"x");
  Press(VK_RETURN);
  TypeText(L"y");
  Press(VK_RETURN);
  TypeText(L"z");
  Chord({VK_CONTROL}, 'Z');
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "x\r\ny\r\nName\r\n  name\r\nNAME\r\n");
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Go to line: a number moves the caret to the line's start, clamped to the last line; an empty
// document asks nothing.
TEST(EditorCommands, GoToLine) {
  Scenario scenario(L"commands-goto", L"goto.c", "1\r\n2\r\n3\r\n4\r\n");
  ASSERT_TRUE(scenario.Start());
  Press(VK_END);
  Chord({VK_CONTROL}, 'G');
  HWND go = Dialog(scenario, L"줄 번호로 가기", L"goto");
  ASSERT_NE(go, nullptr);
  TypeText(L"3");
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(go));
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 3");
  Chord({VK_CONTROL}, 'G');
  go = WaitForWindow(scenario.quill(), L"줄 번호로 가기");
  ASSERT_NE(go, nullptr);
  TypeText(L"999");
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(go));
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 4");

  Chord({VK_CONTROL}, 'N');
  Settle();
  Chord({VK_CONTROL}, 'G');
  EXPECT_EQ(WaitForWindow(scenario.quill(), L"줄 번호로 가기", 1500), nullptr);
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// A file with tabs, opened through File > Open, asks for their width; the width expands them, is
// remembered as the default, and with the check box kept compresses the spaces back into tabs on
// saving. An untitled document saved with Ctrl+S asks for a name, "cpp" added when none is given.
TEST(EditorCommands, TabSizeAndSaveAsDialogs) {
  Scenario scenario(L"commands-tab", L"tabs.c", "a\tb\r\n");
  ASSERT_TRUE(scenario.Start(false));
  SetForegroundWindow(scenario.quill().Frame());
  Settle();
  ASSERT_TRUE(scenario.OpenThroughMenu(scenario.path()));
  HWND dialog = Dialog(scenario, L"탭 크기", L"tab-size");
  ASSERT_NE(dialog, nullptr);
  TypeText(L"40");  // out of range: refused, the dialog stays
  Press(VK_RETURN);
  Settle();
  EXPECT_TRUE(IsWindow(dialog));
  TypeText(L"4");
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(dialog));
  ASSERT_TRUE(scenario.Focus());
  Press(VK_END);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 6, Ln 1");
  TypeText(L"c");
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "a\tbc\r\n");
  EXPECT_EQ(Setting(scenario.Ini(), L"Config", L"DefTabSize"), "4");

  Chord({VK_CONTROL}, 'N');
  Settle();
  TypeText(L"x");
  Chord({VK_CONTROL}, 'S');
  HWND saveAs = Dialog(scenario, L"다른 이름으로 저장", L"save-as");
  ASSERT_NE(saveAs, nullptr);
  TypeText(scenario.folder() + L"fresh");
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(saveAs));
  Settle();
  EXPECT_EQ(ReadBytes(scenario.folder() + L"fresh.cpp"), "x\r\n");
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// A Johab file opened through the open-other-format dialog, then saved as UTF-8 with a mark
// through the save-in-other-format dialog; the encodings are chosen from drop-down lists by
// their names, and the mark is offered for the Unicode encodings only.
TEST(EditorCommands, OtherFormatDialogsOpenJohabAndSaveUtf8) {
  // 한글 in Johab is D0 65 8B 69.
  Scenario scenario(L"commands-format", L"johab.txt", "\xD0\x65\x8B\x69 x\r\n");
  ASSERT_TRUE(scenario.Start(false));
  SetForegroundWindow(scenario.quill().Frame());
  Settle();
  Chord({VK_MENU}, 'F');
  Press('I');
  HWND open = Dialog(scenario, L"다른 형식 열기", L"import");
  ASSERT_NE(open, nullptr);
  // The file is chosen through the "..." button's open dialog.
  Press(VK_TAB);
  Press(VK_SPACE);
  HWND browse = WaitForWindow(scenario.quill(), L"불러올 파일명을 입력하세요.");
  ASSERT_NE(browse, nullptr);
  Settle();
  TypeText(scenario.path());
  Press(VK_RETURN);
  ASSERT_TRUE(WaitUntilGone(browse));
  Settle();
  wchar_t chosen[MAX_PATH] = L"";
  SendMessageW(GetDlgItem(open, kPathField), WM_GETTEXT, MAX_PATH,
               reinterpret_cast<LPARAM>(chosen));
  EXPECT_EQ(std::wstring(chosen), scenario.path());
  const wchar_t* const names[] = {L"JOHAP", L"EUCKR", L"UTF8", L"UTF16"};
  EXPECT_EQ(ComboText(open, kEncodingList, 0), L"자동 판별");
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(ComboText(open, kEncodingList, i + 1), names[i]);
  Chord({VK_MENU}, 'K');
  Press('J');
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(open));
  ASSERT_TRUE(scenario.Focus());
  EXPECT_NE(WindowText(scenario.editor()).find(L"johab.txt"), std::wstring::npos);
  Press(VK_END);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 7, Ln 1");  // two wide syllables, a blank and x
  EXPECT_EQ(Setting(scenario.Ini(), L"Config", L"ImportHanCode"), "1");

  Chord({VK_MENU}, 'F');
  Press('P');
  HWND save = Dialog(scenario, L"다른 형식으로 저장", L"save-other");
  ASSERT_NE(save, nullptr);
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(save, kByteOrderMark)));  // Johab has no mark
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(ComboText(save, kEncodingList, i), names[i]);
  std::wstring copy = scenario.folder() + L"utf8.txt";
  TypeText(copy);  // the document's path stands selected and is replaced
  Chord({VK_MENU}, 'K');
  Press('U');  // the first name with U
  Settle();
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(save, kByteOrderMark)));
  Chord({VK_MENU}, 'M');
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(save));
  Settle();
  EXPECT_EQ(ReadBytes(copy), "\xEF\xBB\xBF\xED\x95\x9C\xEA\xB8\x80 x\r\n");
  EXPECT_EQ(scenario.Bytes(), "\xD0\x65\x8B\x69 x\r\n");  // the document's own file is untouched
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Text goes both ways between Quill and another program through the clipboard as Unicode.
TEST(EditorCommands, ClipboardIsSharedWithOtherPrograms) {
  Scenario scenario(L"commands-clipboard", L"clip.c", "abc\r\n");
  ASSERT_TRUE(scenario.Start());
  const wchar_t kPasted[] = L"\xD55C\xAE00 1";  // 한글 1
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, sizeof kPasted);
  memcpy(GlobalLock(block), kPasted, sizeof kPasted);
  GlobalUnlock(block);
  SetClipboardData(CF_UNICODETEXT, block);
  CloseClipboard();

  Chord({VK_CONTROL}, 'V');
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 7, Ln 1");
  Chord({VK_CONTROL}, 'A');
  Chord({VK_CONTROL}, 'C');
  Settle();
  ASSERT_TRUE(OpenClipboard(nullptr));
  HANDLE data = GetClipboardData(CF_UNICODETEXT);
  std::wstring copied = data ? static_cast<const wchar_t*>(GlobalLock(data)) : L"<none>";
  if (data) GlobalUnlock(data);
  CloseClipboard();
  EXPECT_EQ(copied, std::wstring(kPasted) + L"abc");
  Chord({VK_CONTROL}, 'X');
  scenario.Save();
  EXPECT_EQ(scenario.Bytes(), "\r\n");  // one empty line stays
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Another program changes the file while Quill is in the background: coming back asks message
// 89 (naming the file as the title does), and OK loads the new text. Over unsaved edits the
// question warns that they go, and Enter keeps them. A file deleted meanwhile is reported once
// with message 115.
TEST(EditorCommands, FileChangedOnDiskIsReloaded) {
  Scenario scenario(L"commands-disk", L"disk.c", "old\r\n");
  ASSERT_TRUE(scenario.Start());
  HWND other = CreateWindowExW(0, L"STATIC", L"another program", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                               50, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(other, nullptr);
  auto background = [&] {
    SetForegroundWindow(other);
    Settle();
  };
  auto foreground = [&] {
    SetForegroundWindow(scenario.quill().Frame());
    Settle();
  };

  auto changeOnDisk = [&](const std::string& bytes, unsigned long long minutes) {
    WriteBytes(scenario.path(), bytes);
    FILETIME later;
    GetSystemTimeAsFileTime(&later);
    reinterpret_cast<ULARGE_INTEGER*>(&later)->QuadPart += 600000000ULL * minutes;
    HANDLE file = CreateFileW(scenario.path().c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                              OPEN_EXISTING, 0, nullptr);
    SetFileTime(file, nullptr, nullptr, &later);
    CloseHandle(file);
  };

  background();
  changeOnDisk("new text\r\n", 20);
  foreground();
  HWND question = Dialog(scenario, L"", L"changed-on-disk");
  ASSERT_NE(question, nullptr);
  EXPECT_NE(BoxText(question).find(L"'" + scenario.path() + L"' 파일이 변경되었습니다"),
            std::wstring::npos);
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(question));
  ASSERT_TRUE(scenario.Focus());
  Press(VK_END);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 9, Ln 1");

  // Quill's own dialog closing gives the frame back without the user having been away: a change
  // made meanwhile waits for the next return from another program.
  changeOnDisk("meanwhile\r\n", 30);
  Chord({VK_CONTROL}, 'G');
  HWND goTo = WaitForWindow(scenario.quill(), L"");
  ASSERT_NE(goTo, nullptr);
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(goTo));
  EXPECT_EQ(WaitForWindow(scenario.quill(), L"", 1500), nullptr);
  background();
  foreground();
  question = Dialog(scenario, L"", L"changed-meanwhile");
  ASSERT_NE(question, nullptr);
  Press(VK_ESCAPE);  // Cancel: "new text" stays
  EXPECT_TRUE(WaitUntilGone(question));
  ASSERT_TRUE(scenario.Focus());
  Press(VK_END);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 9, Ln 1");

  TypeText(L"!");
  Settle();
  EXPECT_EQ(scenario.quill().StatusText(1), L"\tModified");
  background();
  changeOnDisk("newer\r\n", 40);
  foreground();
  question = Dialog(scenario, L"", L"changed-under-edits");
  ASSERT_NE(question, nullptr);
  EXPECT_NE(BoxText(question).find(L"저장하지 않은 수정 내용이 모두 사라집니다"),
            std::wstring::npos);
  Press(VK_RETURN);  // Cancel
  EXPECT_TRUE(WaitUntilGone(question));
  ASSERT_TRUE(scenario.Focus());
  Press(VK_END);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 10, Ln 1");  // "new text!" is still there
  EXPECT_EQ(scenario.quill().StatusText(1), L"\tModified");

  background();
  DeleteFileW(scenario.path().c_str());
  foreground();
  HWND gone = Dialog(scenario, L"", L"deleted-on-disk");
  ASSERT_NE(gone, nullptr);
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(gone));
  background();
  foreground();
  EXPECT_EQ(WaitForWindow(scenario.quill(), L"", 1500), nullptr);  // told once only
  DestroyWindow(other);
  PostMessageW(scenario.quill().Frame(), WM_CLOSE, 0, 0);
  HWND save = WaitForWindow(scenario.quill(), L"");  // the edits are not saved
  ASSERT_NE(save, nullptr);
  PostMessageW(save, WM_COMMAND, IDNO, 0);
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// A language file renames the find dialog and its controls; a moved dialog opens at its new place
// next time, kept under "DlgPos".
TEST(EditorCommands, DialogsAreTranslatedAndKeepTheirPlace) {
  Scenario scenario(L"commands-dialogs", L"text.c", "text\r\n", "[Config]\r\nLanguage=English\r\n");
  CreateDirectoryW((scenario.folder() + L"LANGUAGE").c_str(), nullptr);
  WriteBytes(scenario.folder() + L"LANGUAGE\\English.lng",
             "FindDlg=600\r\n600=Find\r\n801=\"Find &what\"\r\n601=OK\r\n");
  ASSERT_TRUE(scenario.Start());
  Chord({VK_CONTROL}, 'F');
  HWND find = Dialog(scenario, L"Find", L"find-translated");
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(WindowText(GetDlgItem(find, IDOK)), L"OK");
  EXPECT_EQ(WindowText(GetDlgItem(find, kFirstLabel)), L"Find &what");
  SetWindowPos(find, nullptr, 123, 77, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  Settle();
  EXPECT_EQ(Setting(scenario.Ini(), L"DlgPos", L"FindDlg"), "123 77");
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(find));
  Chord({VK_CONTROL}, 'F');
  find = WaitForWindow(scenario.quill(), L"Find");
  ASSERT_NE(find, nullptr);
  RECT place;
  GetWindowRect(find, &place);
  EXPECT_EQ(place.left, 123);
  EXPECT_EQ(place.top, 77);
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(find));
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// The chords not met above: selecting to the text's ends, Ctrl+H, the plain second keys C, K and
// Ctrl+Q F, F1 on an include line, and Save As from the menu.
TEST(EditorCommands, RemainingChordsAndSecondKeys) {
  Scenario scenario(L"commands-rest", L"main.c", "#include \"other.h\"\r\nint x;\r\n");
  WriteBytes(scenario.folder() + L"other.h", "int other;\r\n");
  ASSERT_TRUE(scenario.Start());

  // Ctrl+Shift+End selects everything behind the caret, Ctrl+Shift+Home everything before it.
  Press(VK_DOWN);
  Chord({VK_CONTROL, VK_SHIFT}, VK_END);
  Chord({VK_CONTROL}, 'C');
  Settle();
  ASSERT_TRUE(OpenClipboard(nullptr));
  HANDLE data = GetClipboardData(CF_UNICODETEXT);
  std::wstring copied = data ? static_cast<const wchar_t*>(GlobalLock(data)) : L"<none>";
  if (data) GlobalUnlock(data);
  CloseClipboard();
  EXPECT_EQ(copied, L"int x;");
  Chord({VK_CONTROL, VK_SHIFT}, VK_HOME);
  Settle();
  EXPECT_EQ(scenario.Caret(), L"\tCol 1, Ln 1");

  // Ctrl+H and Ctrl+Q F open their dialogs; Escape leaves them.
  Chord({VK_CONTROL}, 'H');
  HWND replace = WaitForWindow(scenario.quill(), L"바꾸기");
  ASSERT_NE(replace, nullptr);
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(replace));
  Chord({VK_CONTROL}, 'Q');
  Press('F');
  HWND find = WaitForWindow(scenario.quill(), L"찾기");
  ASSERT_NE(find, nullptr);
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(find));

  // Ctrl+O C then a rectangle copies a column; Ctrl+O K makes the next copy whole lines again.
  Press(VK_HOME);  // a plain move ends the selection
  Chord({VK_CONTROL}, 'O');
  Press('C');
  Chord({VK_SHIFT}, VK_DOWN);
  Chord({VK_SHIFT}, VK_RIGHT);
  Chord({VK_CONTROL}, 'C');
  Chord({VK_CONTROL}, 'O');
  Press('K');
  Settle();
  ASSERT_TRUE(OpenClipboard(nullptr));
  data = GetClipboardData(CF_UNICODETEXT);
  copied = data ? static_cast<const wchar_t*>(GlobalLock(data)) : L"<none>";
  if (data) GlobalUnlock(data);
  CloseClipboard();
  EXPECT_EQ(copied, L"#\r\ni");

  // F1 inside the quotes opens the header in a window of its own.
  Chord({VK_CONTROL}, VK_HOME);
  for (int i = 0; i < 12; ++i)
    Press(VK_RIGHT);
  Press(VK_F1);
  Settle();
  ASSERT_EQ(Children(scenario.quill()).size(), 2u);
  HWND header = Children(scenario.quill())[0];
  EXPECT_NE(WindowText(header).find(L"other.h"), std::wstring::npos);
  scenario.Shot(L"open-under-caret");

  // Save As from the File menu writes the header under a new name and retitles its window.
  Chord({VK_MENU}, 'F');
  Press('A');
  HWND saveAs = Dialog(scenario, L"다른 이름으로 저장", L"save-as-menu");
  ASSERT_NE(saveAs, nullptr);
  TypeText(scenario.folder() + L"renamed.h");
  Press(VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(saveAs));
  Settle();
  EXPECT_EQ(ReadBytes(scenario.folder() + L"renamed.h"), "int other;\r\n");
  EXPECT_NE(WindowText(header).find(L"renamed.h"), std::wstring::npos);
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

// Closing the frame asks about each modified document before any window closes: Yes saves it,
// Cancel keeps the frame and every document open (an unmodified one too), No lets it go unsaved.
TEST(EditorCommands, ClosingTheFrameAsksForEachModifiedDocument) {
  Scenario scenario(L"commands-close", L"first.c", "1\r\n");
  std::wstring second = scenario.folder() + L"second.c";
  std::wstring clean = scenario.folder() + L"clean.c";
  WriteBytes(second, "2\r\n");
  WriteBytes(clean, "3\r\n");
  ASSERT_TRUE(scenario.Start());
  TypeText(L"a");
  Settle();
  HWND first = scenario.editor();
  ASSERT_TRUE(scenario.OpenThroughMenu(second));
  TypeText(L"b");
  Settle();
  ASSERT_TRUE(scenario.OpenThroughMenu(clean));
  ASSERT_EQ(Children(scenario.quill()).size(), 3u);

  auto answer = [&](int button) {
    HWND box = WaitForWindow(scenario.quill(), L"");
    if (!box) return false;
    PostMessageW(box, WM_COMMAND, button, 0);
    return WaitUntilGone(box);
  };
  PostMessageW(scenario.quill().Frame(), WM_CLOSE, 0, 0);
  ASSERT_TRUE(answer(IDYES));  // clean.c asks nothing; second.c is saved
  ASSERT_TRUE(answer(IDCANCEL));
  Settle();
  EXPECT_TRUE(scenario.quill().Running());
  EXPECT_EQ(ReadBytes(second), "b2\r\n");
  EXPECT_EQ(Children(scenario.quill()).size(), 3u);
  EXPECT_TRUE(IsWindow(first));
  EXPECT_EQ(scenario.Bytes(), "1\r\n");

  PostMessageW(scenario.quill().Frame(), WM_CLOSE, 0, 0);
  ASSERT_TRUE(answer(IDNO));
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
  EXPECT_EQ(scenario.Bytes(), "1\r\n");
}

// File > Save All writes every modified document, after which closing asks nothing.
TEST(EditorCommands, SaveAllWritesEveryModifiedDocument) {
  Scenario scenario(L"commands-save-all", L"one.c", "1\r\n");
  std::wstring two = scenario.folder() + L"two.c";
  WriteBytes(two, "2\r\n");
  ASSERT_TRUE(scenario.Start());
  TypeText(L"a");
  ASSERT_TRUE(scenario.OpenThroughMenu(two));
  TypeText(L"b");
  Chord({VK_MENU}, 'F');
  Press('L');
  Settle();
  EXPECT_EQ(scenario.Bytes(), "a1\r\n");
  EXPECT_EQ(ReadBytes(two), "b2\r\n");
  EXPECT_EQ(scenario.quill().StatusText(1), L"");
  EXPECT_EQ(scenario.quill().CloseAndWait(), 0);
}

}  // namespace
