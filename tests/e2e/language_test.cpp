// Choosing the language from the options sheet: English at once in the menu (its mnemonics),
// the dialogs and the status bar, still English after a restart with the English help, and back
// to Korean. Screenshots of the menu and of three dialogs in each language.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

constexpr int kLanguageList = 302;
constexpr int kFindLabel = 201;
constexpr int kHelpText = 100;

std::wstring ControlText(HWND dialog, int id) {
  wchar_t text[4096] = L"";
  SendMessageW(GetDlgItem(dialog, id), WM_GETTEXT, 4096, reinterpret_cast<LPARAM>(text));
  return text;
}

void Shot(const std::wstring& name) {
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"language-" + name + L".bmp");
}

// The options sheet's third page with `language` chosen in its list, then OK. Returns the entries
// the list offered.
std::vector<std::wstring> ChooseLanguage(const QuillProcess& quill, const std::wstring& sheetTitle,
                                         const std::wstring& okText, const std::wstring& language,
                                         const std::wstring& shot) {
  std::vector<std::wstring> offered;
  PostMessageW(quill.Frame(), WM_COMMAND, 75, 0);
  HWND sheet = WaitForWindow(quill, sheetTitle);
  EXPECT_NE(sheet, nullptr) << "no options sheet titled "
                            << std::string(sheetTitle.begin(), sheetTitle.end());
  if (!sheet) return offered;
  // The sheet's own buttons too.
  EXPECT_EQ(ControlText(sheet, IDOK), okText);
  SendMessageW(sheet, PSM_SETCURSEL, 2, 0);
  Settle();
  HWND page = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
  HWND list = GetDlgItem(page, kLanguageList);
  int count = static_cast<int>(SendMessageW(list, CB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    wchar_t text[64] = L"";
    SendMessageW(list, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text));
    offered.push_back(text);
  }
  SendMessageW(list, CB_SELECTSTRING, static_cast<WPARAM>(-1),
               reinterpret_cast<LPARAM>(language.c_str()));
  Shot(shot);
  SendMessageW(sheet, WM_COMMAND, IDOK, 0);
  WaitUntilGone(sheet);
  Settle();
  return offered;
}

// Opens the find dialog with Ctrl+F in the document, checks its caption and first label, closes it.
void CheckFindDialog(const QuillProcess& quill, HWND editor, const std::wstring& caption,
                     const std::wstring& label, const std::wstring& shot) {
  FocusEditor(quill, editor);
  Chord({VK_CONTROL}, 'F');
  HWND find = WaitForWindow(quill, caption);
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(ControlText(find, kFindLabel), label);
  Shot(shot);
  PostMessageW(find, WM_COMMAND, IDCANCEL, 0);
  WaitUntilGone(find);
}

// The menu bar's translation shows in its mnemonics: Alt+E, E is "R&eplace..." in English (the
// Korean edit menu has no E).
HWND ReplaceThroughTheMenu(const QuillProcess& quill, HWND editor, const std::wstring& shot) {
  FocusEditor(quill, editor);
  Chord({VK_MENU}, 'E');
  Shot(shot);
  Press('E');
  return WaitForWindow(quill, L"Replace", 2000);
}

std::wstring OverwriteStatus(const QuillProcess& quill) {
  for (int part = 0; part < 4; ++part) {
    std::wstring text = quill.StatusText(part);
    if (text.find(L"Overwrite") != std::wstring::npos ||
        text.find(L"겹쳐쓰기") != std::wstring::npos)
      return text.substr(text.rfind(L"  ") + 2);
  }
  return L"<none>";
}

TEST(Language, ChosenOnTheOptionsSheetKeptOverARestartAndDroppedAgain) {
  std::wstring exe = PrepareFreshCopy(L"language-choice");
  std::wstring folder = FolderOf(exe);
  CreateDirectoryW((folder + L"LANGUAGE").c_str(), nullptr);
  for (const wchar_t* file : {L"English.lng", L"English.Help.rtf"}) {
    ASSERT_TRUE(CopyFileW((ProgramFolder() + L"LANGUAGE\\" + file).c_str(),
                          (folder + L"LANGUAGE\\" + file).c_str(), FALSE));
  }
  std::wstring ini = folder + L"QUILL.INI";
  {
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(exe));
    PostMessageW(quill.Frame(), WM_COMMAND, 79, 0);
    Settle();
    HWND editor = OnlyChild(quill);
    ASSERT_NE(editor, nullptr);
    Shot(L"korean-menu-bar");
    CheckFindDialog(quill, editor, L"찾기", L"찾을 내용(&N)", L"korean-find");

    std::vector<std::wstring> offered =
        ChooseLanguage(quill, L"옵션 설정", L"확인", L"English", L"korean-options");
    EXPECT_EQ(offered, (std::vector<std::wstring>{L"Korean", L"English"}));
    EXPECT_EQ(Setting(ini, L"Config", L"Language"), "English");

    // At once: the menu, the dialogs opened from now on, the status texts.
    HWND replace = ReplaceThroughTheMenu(quill, editor, L"english-edit-menu");
    ASSERT_NE(replace, nullptr);
    EXPECT_EQ(ControlText(replace, 113), L"Replace &All");
    Shot(L"english-replace");
    PostMessageW(replace, WM_COMMAND, IDCANCEL, 0);
    WaitUntilGone(replace);
    CheckFindDialog(quill, editor, L"Find", L"Fi&nd what:", L"english-find");
    FocusEditor(quill, editor);
    Press(VK_INSERT);
    Settle();
    EXPECT_EQ(OverwriteStatus(quill), L"Overwrite");
    Press(VK_INSERT);
    EXPECT_EQ(quill.CloseAndWait(10000), 0);
  }
  {
    // After a restart: still English, and the help window shows the English help.
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(exe));
    PostMessageW(quill.Frame(), WM_COMMAND, 79, 0);
    Settle();
    HWND editor = Children(quill).empty() ? nullptr : Children(quill).front();
    ASSERT_NE(editor, nullptr);
    CheckFindDialog(quill, editor, L"Find", L"Fi&nd what:", L"english-find-restarted");
    PostMessageW(quill.Frame(), WM_COMMAND, 43, 0);
    HWND help = WaitForWindow(quill, L"Help");
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(ControlText(help, kHelpText).substr(0, 10), L"Quill Help");
    Shot(L"english-help");
    PostMessageW(help, WM_COMMAND, IDCANCEL, 0);
    WaitUntilGone(help);

    // Back to Korean: the sheet itself is English now, and Korean is stored as no language.
    std::vector<std::wstring> offered =
        ChooseLanguage(quill, L"Options", L"&OK", L"Korean", L"english-options");
    EXPECT_EQ(offered, (std::vector<std::wstring>{L"Korean", L"English"}));
    EXPECT_EQ(Setting(ini, L"Config", L"Language"), "");
    CheckFindDialog(quill, editor, L"찾기", L"찾을 내용(&N)", L"korean-find-again");
    Shot(L"korean-menu-bar-again");
    PostMessageW(quill.Frame(), WM_COMMAND, 43, 0);
    HWND koreanHelp = WaitForWindow(quill, L"도움말");
    ASSERT_NE(koreanHelp, nullptr);
    EXPECT_EQ(ControlText(koreanHelp, kHelpText).substr(0, 9), L"Quill 도움말");
    Shot(L"korean-help");
    PostMessageW(koreanHelp, WM_COMMAND, IDCANCEL, 0);
    WaitUntilGone(koreanHelp);
    EXPECT_EQ(quill.CloseAndWait(10000), 0);
  }
}

}  // namespace
