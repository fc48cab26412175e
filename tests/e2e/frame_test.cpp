// The frame as a user meets it: it opens, shows its parts, and closes cleanly.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <iterator>

#include "tests/e2e/e2e_support.h"

namespace {

TEST(Frame, StartsWithItsMdiClientAndStatusBarAndClosesCleanly) {
  long long logStart = DebugLogSize();
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareFreshCopy(L"frame")));

  HWND frame = quill.Frame();
  EXPECT_EQ(WindowText(frame), L"Quill");
  RECT outer;
  GetWindowRect(frame, &outer);
  EXPECT_EQ(outer.right - outer.left, 1024);
  EXPECT_EQ(outer.bottom - outer.top, 768);

  HWND client = quill.Child(77);
  HWND status = quill.Child(78);
  ASSERT_NE(client, nullptr);
  ASSERT_NE(status, nullptr);
  EXPECT_EQ(ClassName(client), L"MDIClient");
  EXPECT_EQ(ClassName(status), L"msctls_statusbar32");

  // The status bar takes the bottom 21 pixels, the MDI client the rest.
  RECT frameClient, clientRect, statusRect;
  GetClientRect(frame, &frameClient);
  GetWindowRect(client, &clientRect);
  GetWindowRect(status, &statusRect);
  EXPECT_EQ(statusRect.bottom - statusRect.top, 21);
  EXPECT_EQ(statusRect.right - statusRect.left, frameClient.right);
  EXPECT_EQ(clientRect.bottom - clientRect.top, frameClient.bottom - 21);

  std::vector<int> edges = quill.StatusEdges();
  ASSERT_EQ(edges.size(), 4u);
  EXPECT_EQ(edges[0], 120);
  EXPECT_EQ(edges[1], 200);
  EXPECT_EQ(edges[2], frameClient.right - 150);  // the encoding part takes the rest
  EXPECT_EQ(edges[3], -1);

  SaveScreenshot(ScreenshotFolder() + L"frame.bmp");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  EXPECT_EQ(DebugLogSince(logStart).find(">>>Leaked Memory"), std::string::npos);
}

TEST(Frame, ExitCommandClosesTheFrame) {
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareFreshCopy(L"exit-command")));
  PostMessageW(quill.Frame(), WM_COMMAND, 85, 0);
  for (int i = 0; i < 200 && quill.Running(); ++i)
    Sleep(50);
  EXPECT_FALSE(quill.Running());
  EXPECT_EQ(quill.CloseAndWait(1000), 0);
}

// A language named in QUILL.INI beside the program is loaded at start; its screenshot shows the
// translated menu bar.
TEST(Frame, StartsInTheConfiguredLanguage) {
  std::wstring exe = PrepareFreshCopy(L"language");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"QUILL.INI", "[Config]\r\nLanguage=English\r\n");
  CreateDirectoryW((folder + L"LANGUAGE").c_str(), nullptr);
  WriteBytes(
      folder + L"LANGUAGE\\English.lng",
      "; Quill in English\r\n1=&File\r\n2=&Edit\r\n3=&Tools\r\n4=\"&Window\"\r\n85=E&xit\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  SaveScreenshot(ScreenshotFolder() + L"language.bmp");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// A settings file left read-only (copied from a CD, say) is made writable again at start.
TEST(Frame, ClearsTheReadOnlyAttributeOfItsSettingsFile) {
  std::wstring exe = PrepareFreshCopy(L"read-only-settings");
  std::wstring ini = FolderOf(exe) + L"QUILL.INI";
  WriteBytes(ini, "[Config]\r\n");
  SetFileAttributesW(ini.c_str(), FILE_ATTRIBUTE_READONLY);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  EXPECT_FALSE(GetFileAttributesW(ini.c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// Every chord of the key map, as the table in Quill.exe holds it.
TEST(Frame, AcceleratorTableHoldsEveryChord) {
  HMODULE quill =
      LoadLibraryExW((ProgramFolder() + L"Quill.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(quill, nullptr);
  HACCEL table = LoadAcceleratorsW(quill, MAKEINTRESOURCEW(1));
  ASSERT_NE(table, nullptr);
  std::vector<ACCEL> entries(CopyAcceleratorTableW(table, nullptr, 0));
  CopyAcceleratorTableW(table, entries.data(), static_cast<int>(entries.size()));
  auto has = [&](BYTE flags, WORD key, WORD command) {
    for (const ACCEL& entry : entries) {
      if ((entry.fVirt & ~FNOINVERT) == flags && entry.key == key && entry.cmd == command)
        return true;
    }
    return false;
  };
  const BYTE v = FVIRTKEY, c = FVIRTKEY | FCONTROL, cs = FVIRTKEY | FCONTROL | FSHIFT;
  // clang-format off
  struct Chord {
    BYTE flags;
    WORD key;
    WORD command;
  } chords[] = {
      {FVIRTKEY | FSHIFT, VK_F4, 87}, {FVIRTKEY | FSHIFT, VK_F5, 86}, {c, 'N', 79}, {c, 'S', 82},
      {c, VK_HOME, 92}, {c, VK_END, 93}, {cs, VK_HOME, 94}, {cs, VK_END, 95}, {c, VK_LEFT, 48},
      {c, VK_RIGHT, 49}, {c, VK_UP, 30}, {c, VK_DOWN, 31}, {c, VK_BACK, 35}, {c, 'X', 105},
      {c, 'C', 106}, {c, 'V', 107}, {c, 'A', 74}, {c, 'F', 108}, {v, VK_F1, 99}, {v, VK_F3, 109},
      {v, VK_F5, 111}, {c, VK_F5, 124}, {v, VK_F7, 125}, {c, VK_F7, 46}, {c, 'H', 110},
      {c, 'Z', 70}, {c, 'Y', 71}, {cs, 'U', 72}, {cs, 'I', 73}, {c, 'G', 76}, {c, 'O', 40},
      {c, 'Q', 41}, {c, 'K', 42}, {FVIRTKEY | FSHIFT | FALT, 'Q', 47}, {FALT, '[', 113},
      {FALT, ']', 113}, {cs, VK_OEM_5, 22}};
  // clang-format on
  for (const Chord& chord : chords)
    EXPECT_TRUE(has(chord.flags, chord.key, chord.command))
        << "flags " << int(chord.flags) << " key " << chord.key << " command " << chord.command;
  for (int i = 0; i < 9; ++i) {
    EXPECT_TRUE(has(cs, static_cast<WORD>('1' + i), static_cast<WORD>(50 + i)));
    EXPECT_TRUE(has(c, static_cast<WORD>('1' + i), static_cast<WORD>(60 + i)));
  }
  EXPECT_EQ(entries.size(), std::size(chords) + 18);  // nothing beside the key map
  DestroyAcceleratorTable(table);
  FreeLibrary(quill);
}

// The menu bar as the other parts rely on it, its state with and without a document, the status
// texts of a new document, and the message of a command whose subsystem is not built yet.
TEST(Frame, MenusStatusBarAndUnfinishedCommands) {
  // Menus live in their own process under Wine: the bar is read from the program's resources.
  HMODULE module =
      LoadLibraryExW((ProgramFolder() + L"Quill.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(module, nullptr);
  HMENU bar = LoadMenuW(module, MAKEINTRESOURCEW(1));
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(GetMenuItemCount(bar), 9);
  wchar_t text[64];
  GetMenuStringW(bar, 2, text, 64, MF_BYPOSITION);
  EXPECT_STREQ(text, L"프로젝트(&P)");
  GetMenuStringW(bar, 3, text, 64, MF_BYPOSITION);
  EXPECT_STREQ(text, L"창(&W)");
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(GetMenuItemID(bar, 6 + i), static_cast<UINT>(124 + i));
  GetMenuStringW(bar, 79, text, 64, MF_BYCOMMAND);
  EXPECT_STREQ(text, L"새로 작성(&N)\t^N");
  GetMenuStringW(bar, 86, text, 64, MF_BYCOMMAND);
  EXPECT_STREQ(text, L"가로 배열(&C)\t~F5");
  GetMenuStringW(bar, 34, text, 64, MF_BYCOMMAND);
  EXPECT_STREQ(text, L"모든 창 저장(&L)");
  DestroyMenu(bar);
  FreeLibrary(module);

  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareFreshCopy(L"menus")));
  PostMessageW(quill.Frame(), WM_COMMAND, 79, 0);
  Settle();
  std::vector<HWND> children = Children(quill);
  ASSERT_EQ(children.size(), 1u);
  // The title is the document's path: the current folder and the first new name.
  std::wstring title = WindowText(children[0]);
  ASSERT_GE(title.size(), 12u);
  EXPECT_EQ(title.substr(title.size() - 12), L"NoName01.cpp");
  EXPECT_EQ(quill.StatusText(0), L"\tCol 1, Ln 1");
  EXPECT_EQ(quill.StatusText(1), L"");

  PostMessageW(quill.Frame(), WM_COMMAND, 23, 0);
  HWND box = WaitForWindow(quill, L"Quill");
  ASSERT_NE(box, nullptr);
  EXPECT_NE(box, quill.Frame());
  SaveScreenshot(ScreenshotFolder() + L"unfinished.bmp");
  EXPECT_EQ(BoxMessage(box), L"I have not finished it yet.");
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  Settle();

  // Command 84 closes the active document.
  PostMessageW(quill.Frame(), WM_COMMAND, 84, 0);
  Settle();
  EXPECT_TRUE(Children(quill).empty());
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

TEST(Frame, OptionsSheetWritesTheFontSettings) {
  std::wstring exe = PrepareFreshCopy(L"options");
  std::wstring ini = FolderOf(exe) + L"QUILL.INI";
  WriteBytes(ini, "[Config]\r\nEngFontSize=20\r\nHanFontOfsY=3\r\nWheelScrollLines=4\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  PostMessageW(quill.Frame(), WM_COMMAND, 75, 0);
  HWND sheet = WaitForWindow(quill, L"옵션 설정");
  ASSERT_NE(sheet, nullptr);
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"options.bmp");
  HWND tabs = FindWindowExW(sheet, nullptr, L"SysTabControl32", nullptr);
  ASSERT_NE(tabs, nullptr);
  EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 3);
  EXPECT_EQ(SendMessageW(tabs, TCM_GETCURSEL, 0, 0), 0);
  // The font page shows the stored values.
  HWND page = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(GetDlgItemInt(page, 101, nullptr, FALSE), 20u);
  BOOL ok = FALSE;
  EXPECT_EQ(static_cast<int>(GetDlgItemInt(page, 104, &ok, TRUE)), 3);
  // Through the colour page to the third and confirm: the last becomes the next start page.
  SendMessageW(sheet, PSM_SETCURSEL, 1, 0);
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"options-colours.bmp");
  SendMessageW(sheet, PSM_SETCURSEL, 2, 0);
  Settle();
  SendMessageW(sheet, WM_COMMAND, IDOK, 0);
  Settle();
  EXPECT_EQ(Setting(ini, L"Config", L"EngFontSize"), "20");
  EXPECT_EQ(Setting(ini, L"Config", L"HanFontOfsY"), "3");
  EXPECT_EQ(Setting(ini, L"Config", L"UseSelfFontFg"), "0");
  EXPECT_EQ(Setting(ini, L"Config", L"EngFontName"), "Courier New");
  EXPECT_EQ(Setting(ini, L"Config", L"WheelScrollLines"), "4");
  EXPECT_NE(Setting(ini, L"Color", L"BkGround"), "<none>");

  PostMessageW(quill.Frame(), WM_COMMAND, 75, 0);
  sheet = WaitForWindow(quill, L"옵션 설정");
  ASSERT_NE(sheet, nullptr);
  tabs = FindWindowExW(sheet, nullptr, L"SysTabControl32", nullptr);
  EXPECT_EQ(SendMessageW(tabs, TCM_GETCURSEL, 0, 0), 2);
  SendMessageW(sheet, WM_COMMAND, IDCANCEL, 0);
  Settle();
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// The desk comes back: three documents, one maximised, in their places; an untitled document
// leaves no entry; the frame's place is kept.
TEST(Frame, SessionIsRestoredAfterARestart) {
  std::wstring exe = PrepareFreshCopy(L"session");
  std::wstring folder = FolderOf(exe);
  std::string base = ToSlashes(Utf8Text(folder));
  WriteBytes(folder + L"one.c", "int one;\r\n");
  WriteBytes(folder + L"two words.txt", "second file\r\n");
  WriteBytes(folder + L"three.h", "#define THREE 3\r\n");
  std::wstring ini = folder + L"QUILL.INI";
  WriteBytes(ini,
             "[DlgPos]\r\nFrameWnd=30 20 900 700\r\n[DocList]\r\n"
             "0=\"" +
                 base +
                 "two words.txt\" 40 30 320 220 3\r\n"
                 "1=\"" +
                 base +
                 "one.c\" 0 0 300 200 1\r\n"
                 "2=\"" +
                 base + "three.h\" 80 60 340 240 1\r\n3=\r\nProject=\r\n");
  {
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(exe));
    Settle();
    RECT frame;
    GetWindowRect(quill.Frame(), &frame);
    EXPECT_EQ(frame.left, 30);
    EXPECT_EQ(frame.top, 20);
    EXPECT_EQ(frame.right - frame.left, 900);
    std::vector<HWND> children = Children(quill);
    ASSERT_EQ(children.size(), 3u);
    // The maximised one is opened first and ends maximised and on top.
    EXPECT_TRUE(IsZoomed(children[0]));
    EXPECT_NE(WindowText(children[0]).find(L"two words.txt"), std::wstring::npos);
    HWND zoomed = children[0];
    PostMessageW(quill.Frame(), WM_COMMAND, 79, 0);  // an untitled one beside them
    Settle();
    // A new window may take the maximised state away; the user maximises the file again.
    SendMessageW(quill.Child(77), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(zoomed), 0);
    Settle();
    SaveScreenshot(ScreenshotFolder() + L"session-before.bmp");
    EXPECT_EQ(quill.CloseAndWait(10000), 0);
  }
  std::string frameAfter = Setting(ini, L"DlgPos", L"FrameWnd");
  EXPECT_EQ(frameAfter, "30 20 900 700");
  // Every document is there once, the maximised one with state 3 and its normal rectangle; the
  // untitled one takes no index, so the list ends after three.
  std::string list;
  for (int i = 0; i < 4; ++i)
    list += Setting(ini, L"DocList", std::to_wstring(i).c_str()) + "\n";
  EXPECT_NE(list.find("\"" + base + "one.c\" "), std::string::npos) << list;
  EXPECT_NE(list.find("\"" + base + "three.h\" 80 60 340 240 1\n"), std::string::npos) << list;
  EXPECT_NE(list.find("two words.txt\" 40 30 320 220 3\n"), std::string::npos) << list;
  EXPECT_EQ(list.find("NoName"), std::string::npos) << list;
  EXPECT_EQ(Setting(ini, L"DocList", L"3"), "");

  QuillProcess again;
  ASSERT_TRUE(again.Start(exe));
  Settle();
  std::vector<HWND> children = Children(again);
  ASSERT_EQ(children.size(), 3u);
  int maximised = 0;
  for (HWND child : children)
    maximised += IsZoomed(child) ? 1 : 0;
  EXPECT_EQ(maximised, 1);
  SaveScreenshot(ScreenshotFolder() + L"session-restored.bmp");
  EXPECT_EQ(again.CloseAndWait(10000), 0);
}

// A document on the command line opens alone, uses "CLFrameWnd", and leaves the list alone.
TEST(Frame, CommandLineDocumentKeepsTheListAsItWas) {
  std::wstring exe = PrepareFreshCopy(L"command-line");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"given.txt", "from the command line\r\n");
  std::wstring ini = folder + L"QUILL.INI";
  std::string before =
      "[DlgPos]\r\nFrameWnd=10 10 800 600\r\n[DocList]\r\n0=\"c:/x.c\" 0 0 1 1 1\r\n1=\r\n";
  WriteBytes(ini, before);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + folder + L"given.txt\""));
  Settle();
  std::vector<HWND> children = Children(quill);
  ASSERT_EQ(children.size(), 1u);
  EXPECT_NE(WindowText(children[0]).find(L"given.txt"), std::wstring::npos);
  EXPECT_TRUE(IsZoomed(children[0]));  // opened at the client's size, then maximised
  SaveScreenshot(ScreenshotFolder() + L"command-line.bmp");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
  EXPECT_EQ(Setting(ini, L"DocList", L"0"), "\"c:/x.c\" 0 0 1 1 1");
  EXPECT_EQ(Setting(ini, L"DlgPos", L"FrameWnd"), "10 10 800 600");
  EXPECT_NE(Setting(ini, L"DlgPos", L"CLFrameWnd"), "<none>");
}

// A document named on the command line that cannot be opened is reported while the frame is
// being made, and the start-up ends there.
// A file that does not exist fails to open quietly; the start-up is abandoned and the program
// ends without a word.
TEST(Frame, MissingCommandLineDocumentEndsTheStart) {
  std::wstring exe = PrepareFreshCopy(L"command-line-missing");
  QuillProcess quill;
  quill.Start(exe, L"nowhere\\missing.txt", 3000);
  for (int i = 0; i < 200 && quill.Running(); ++i)
    Sleep(50);
  EXPECT_FALSE(quill.Running());
  EXPECT_EQ(FindWindowW(L"#32770", L"Quill"), nullptr);
  SaveScreenshot(ScreenshotFolder() + L"command-line-missing.bmp");
}

// File > Open through its dialog: a file that is open already is only activated, and an empty
// new document is reused for the next file. A maximised desk stays maximised throughout, and the
// new document is the first untitled one, whatever was opened before it.
bool OpenThroughDialog(const QuillProcess& quill, const std::wstring& path) {
  PostMessageW(quill.Frame(), WM_COMMAND, 80, 0);
  HWND dialog = WaitForWindow(quill, L"");
  if (!dialog) return false;
  Sleep(200);
  // Nothing opens read-only, so the dialog's read-only box is not offered.
  HWND readOnly = GetDlgItem(dialog, 0x410);
  EXPECT_TRUE(!readOnly || !IsWindowVisible(readOnly));
  SetDlgItemTextW(dialog, 0x47C, path.c_str());  // the name box of the explorer-style dialog
  SetDlgItemTextW(dialog, 0x480, path.c_str());  // ... and of the older one
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  bool gone = WaitUntilGone(dialog);
  Settle();
  return gone;
}

TEST(Frame, OpenActivatesAnOpenFileAndReusesAnEmptyNewDocument) {
  std::wstring exe = PrepareFreshCopy(L"open-or-activate");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"first.c", "int first;\r\n");
  WriteBytes(folder + L"second.c", "int second;\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  ASSERT_TRUE(OpenThroughDialog(quill, folder + L"first.c"));
  ASSERT_EQ(Children(quill).size(), 1u);
  HWND first = Children(quill)[0];
  SendMessageW(quill.Child(77), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(first), 0);

  PostMessageW(quill.Frame(), WM_COMMAND, 79, 0);
  Settle();
  ASSERT_EQ(Children(quill).size(), 2u);
  HWND untitled = Children(quill)[0];
  EXPECT_TRUE(IsZoomed(untitled));
  std::wstring title = WindowText(untitled);
  ASSERT_GE(title.size(), 12u);
  EXPECT_EQ(title.substr(title.size() - 12), L"NoName01.cpp");
  ASSERT_TRUE(OpenThroughDialog(quill, folder + L"second.c"));
  std::vector<HWND> children = Children(quill);
  ASSERT_EQ(children.size(), 2u);  // the new document's window took the file
  EXPECT_EQ(children[0], untitled);
  EXPECT_NE(WindowText(untitled).find(L"second.c"), std::wstring::npos);
  EXPECT_TRUE(IsZoomed(untitled));

  ASSERT_TRUE(OpenThroughDialog(quill, folder + L"FIRST.C"));  // names compare without case
  children = Children(quill);
  ASSERT_EQ(children.size(), 2u);
  EXPECT_EQ(children[0], first);  // activated, on top
  EXPECT_TRUE(IsZoomed(first));
  // The window menu lists both documents by their paths (for a person to look at).
  SetForegroundWindow(quill.Frame());
  Settle();
  Chord({VK_MENU}, 'W');
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"open-or-activate.bmp");
  Press(VK_ESCAPE);
  Press(VK_ESCAPE);
  Settle();
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

// Help > Help opens the help window with the built-in text, or a language's own help file; it
// closes with Escape and opens again.
TEST(Frame, HelpWindowShowsTheHelpText) {
  auto helpText = [](HWND help) {
    HWND text = GetDlgItem(help, 100);
    std::wstring buffer(4096, L'\0');
    LRESULT length =
        SendMessageW(text, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data()));
    buffer.resize(length > 0 ? static_cast<size_t>(length) : 0);
    return buffer;
  };
  std::wstring exe = PrepareFreshCopy(L"frame-help");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  SetForegroundWindow(quill.Frame());
  Settle();
  Chord({VK_MENU}, 'H');
  Press('H');
  HWND help = WaitForWindow(quill, L"\xB3C4\xC6C0\xB9D0");  // 도움말
  ASSERT_NE(help, nullptr);
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"frame-help.bmp");
  std::wstring text = helpText(help);
  EXPECT_NE(text.find(L"Ctrl+K"), std::wstring::npos) << text.size();
  EXPECT_NE(text.find(L"\xCC3E\xAE30"), std::wstring::npos);  // 찾기
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(help));
  PostMessageW(quill.Frame(), WM_COMMAND, 43, 0);
  help = WaitForWindow(quill, L"\xB3C4\xC6C0\xB9D0");
  EXPECT_NE(help, nullptr);
  EXPECT_EQ(quill.CloseAndWait(10000), 0);

  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"QUILL.INI", "[Config]\r\nLanguage=English\r\n");
  CreateDirectoryW((folder + L"LANGUAGE").c_str(), nullptr);
  WriteBytes(folder + L"LANGUAGE\\English.lng", "; no texts\r\n");
  WriteBytes(folder + L"LANGUAGE\\English.Help.rtf", "{\\rtf1 Hello from the help file}");
  QuillProcess english;
  ASSERT_TRUE(english.Start(exe));
  PostMessageW(english.Frame(), WM_COMMAND, 43, 0);
  help = WaitForWindow(english, L"\xB3C4\xC6C0\xB9D0");
  ASSERT_NE(help, nullptr);
  EXPECT_EQ(helpText(help), L"Hello from the help file");
  EXPECT_EQ(english.CloseAndWait(10000), 0);
}

// Files dropped on the frame open; the window commands arrange the documents; close all closes
// every unmodified one; a second copy of the program starts beside the first.
TEST(Frame, DroppedFilesWindowCommandsAndASecondCopy) {
  std::wstring exe = PrepareFreshCopy(L"frame-drop");
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"one.c", "int one;\r\n");
  WriteBytes(folder + L"two.c", "int two;\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  ASSERT_TRUE(quill.DropFiles({folder + L"one.c", folder + L"two.c"}, POINT{200, 200}));
  Settle();
  std::vector<HWND> children = Children(quill);
  ASSERT_EQ(children.size(), 2u);
  EXPECT_NE(WindowText(children[0]).find(L"two.c"), std::wstring::npos);  // the last on top
  EXPECT_NE(WindowText(children[1]).find(L"one.c"), std::wstring::npos);
  SaveScreenshot(ScreenshotFolder() + L"frame-dropped.bmp");

  // Tile vertically (87): side by side, the same height; horizontally (88): one above the other.
  PostMessageW(quill.Frame(), WM_COMMAND, 87, 0);
  Settle();
  RECT a = Place(children[0]), b = Place(children[1]);
  EXPECT_EQ(a.top, b.top);
  EXPECT_NE(a.left, b.left);
  PostMessageW(quill.Frame(), WM_COMMAND, 88, 0);
  Settle();
  a = Place(children[0]), b = Place(children[1]);
  EXPECT_EQ(a.left, b.left);
  EXPECT_NE(a.top, b.top);
  // Cascade (86): each lower and to the right of the one behind it.
  PostMessageW(quill.Frame(), WM_COMMAND, 86, 0);
  Settle();
  a = Place(children[0]), b = Place(children[1]);
  EXPECT_GT(a.left, b.left);
  EXPECT_GT(a.top, b.top);
  SaveScreenshot(ScreenshotFolder() + L"frame-cascade.bmp");
  PostMessageW(quill.Frame(), WM_COMMAND, 89, 0);  // arrange icons: nothing is minimised
  PostMessageW(quill.Frame(), WM_COMMAND, 91, 0);
  Settle();
  EXPECT_TRUE(Children(quill).empty());

  // Command 32 starts another Quill.exe from the same file.
  DWORD first = 0;
  GetWindowThreadProcessId(quill.Frame(), &first);
  PostMessageW(quill.Frame(), WM_COMMAND, 32, 0);
  HWND other = nullptr;
  for (int i = 0; i < 200 && !other; ++i, Sleep(50)) {
    for (HWND window = FindWindowW(L"QuillMainWndClsName", nullptr); window && !other;
         window = FindWindowExW(nullptr, window, L"QuillMainWndClsName", nullptr)) {
      DWORD owner = 0;
      GetWindowThreadProcessId(window, &owner);
      if (owner != first && IsWindowVisible(window)) other = window;
    }
  }
  ASSERT_NE(other, nullptr);
  PostMessageW(other, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntilGone(other));
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

}  // namespace
