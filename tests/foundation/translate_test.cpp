// Menus, dialogs and message boxes with a language loaded: only the Windows build has them.
#ifdef _WIN32
#include "foundation/translate.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <thread>

#include "foundation/language.h"
#include "foundation/message_box.h"
#include "tests/support/klib_test.h"

namespace {

class TranslateTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    std::string path = testing::TempDir() + "quill_translate_test.lng";
    std::ofstream(path, std::ios::binary) << "1=File\r\n85=Exit\r\n3=More\r\n86=Cascade\r\n"
                                             "DlgTest=300\r\n300=Find\r\n310=Next\r\n"
                                             "50080=Quill EN\r\n";
    for (char& c : path) {
      if (c == '\\') c = '/';
    }
    LoadLanguageFile(path.c_str());
  }
  void TearDown() override {
    UnloadLanguage();
    FreeStringCache();
    KLibTest::TearDown();
  }
};

std::wstring MenuText(HMENU menu, int position) {
  wchar_t text[64] = {};
  GetMenuStringW(menu, static_cast<UINT>(position), text, 64, MF_BYPOSITION);
  return text;
}

std::wstring Text(HWND window) {
  wchar_t text[64] = {};
  GetWindowTextW(window, text, 64);
  return text;
}

TEST_F(TranslateTest, MenusTakeSubmenuPositionsAndCommandIds) {
  HMENU bar = CreateMenu();
  HMENU file = CreatePopupMenu();
  HMENU more = CreatePopupMenu();
  AppendMenuW(more, MF_STRING, 86, L"가로 배열");
  AppendMenuW(more, MF_STRING, 87, L"타일");
  AppendMenuW(file, MF_STRING, 85, L"끝내기");
  AppendMenuW(file, MF_SEPARATOR, 0, nullptr);
  AppendMenuW(file, MF_POPUP, reinterpret_cast<UINT_PTR>(more), L"더 보기");
  AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"파일(&F)");
  AppendMenuW(bar, MF_STRING, 91, L"모두");
  TranslateMenu(bar);
  EXPECT_EQ(MenuText(bar, 0), L"File");
  EXPECT_EQ(MenuText(bar, 1), L"모두");  // no entry: the resource text stays
  EXPECT_EQ(MenuText(file, 0), L"Exit");
  EXPECT_EQ(MenuText(file, 2), L"More");
  EXPECT_EQ(GetSubMenu(file, 2), more);  // the submenu is kept
  EXPECT_EQ(MenuText(more, 0), L"Cascade");
  EXPECT_EQ(MenuText(more, 1), L"타일");
  EXPECT_EQ(GetMenuItemID(file, 0), 85u);

  // A fresh copy of the resource menu brings the Korean back, down into the submenus; a picture
  // and the items a window list appends stay.
  HMENU fresh = CreateMenu();
  HMENU freshFile = CreatePopupMenu();
  HMENU freshMore = CreatePopupMenu();
  AppendMenuW(freshMore, MF_STRING, 86, L"가로 배열");
  AppendMenuW(freshMore, MF_STRING, 87, L"타일");
  AppendMenuW(freshFile, MF_STRING, 85, L"끝내기");
  AppendMenuW(freshFile, MF_SEPARATOR, 0, nullptr);
  AppendMenuW(freshFile, MF_POPUP, reinterpret_cast<UINT_PTR>(freshMore), L"더 보기");
  AppendMenuW(fresh, MF_POPUP, reinterpret_cast<UINT_PTR>(freshFile), L"파일(&F)");
  AppendMenuW(fresh, MF_STRING, 91, L"모두");
  HBITMAP picture = CreateBitmap(8, 8, 1, 1, nullptr);
  ModifyMenuW(bar, 1, MF_BYPOSITION | MF_BITMAP, 91, reinterpret_cast<LPCWSTR>(picture));
  AppendMenuW(more, MF_STRING, 10000, L"1 NoName01.cpp");
  RestoreMenu(bar, fresh);
  EXPECT_EQ(MenuText(bar, 0), L"파일(&F)");
  EXPECT_EQ(MenuText(file, 0), L"끝내기");
  EXPECT_EQ(MenuText(file, 2), L"더 보기");
  EXPECT_EQ(MenuText(more, 0), L"가로 배열");
  EXPECT_EQ(MenuText(more, 2), L"1 NoName01.cpp");
  MENUITEMINFOW item = {};
  item.cbSize = sizeof item;
  item.fMask = MIIM_FTYPE;
  GetMenuItemInfoW(bar, 1, TRUE, &item);
  EXPECT_TRUE(item.fType & MFT_BITMAP);
  // Translating again skips the picture too.
  TranslateMenu(bar);
  EXPECT_EQ(MenuText(bar, 0), L"File");
  GetMenuItemInfoW(bar, 1, TRUE, &item);
  EXPECT_TRUE(item.fType & MFT_BITMAP);
  DestroyMenu(fresh);
  DestroyMenu(bar);
  DeleteObject(picture);
}

TEST_F(TranslateTest, DialogsNamedByControl996) {
  HWND dialog = CreateWindowExW(0, L"STATIC", L"찾기", WS_POPUP, 0, 0, 200, 100, nullptr, nullptr,
                                nullptr, nullptr);
  auto child = [&](int id, const wchar_t* text) {
    return CreateWindowExW(0, L"BUTTON", text, WS_CHILD, 0, 0, 50, 20, dialog,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  };
  child(996, L"DlgTest");
  HWND next = child(10, L"다음");
  HWND other = child(11, L"취소");
  HWND high = child(950, L"높은 번호");
  TranslateDialog(dialog);
  EXPECT_EQ(Text(dialog), L"Find");
  EXPECT_EQ(Text(next), L"Next");
  EXPECT_EQ(Text(other), L"취소");
  EXPECT_EQ(Text(high), L"높은 번호");
  DestroyWindow(dialog);
}

// Answers the first message box of this process with OK, after reading its caption.
std::wstring AnswerMessageBox() {
  for (int i = 0; i < 400; ++i) {
    HWND box = FindWindowW(L"#32770", nullptr);
    DWORD process = 0;
    if (box) GetWindowThreadProcessId(box, &process);
    if (box && process == GetCurrentProcessId()) {
      std::wstring caption = Text(box);
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      return caption;
    }
    Sleep(25);
  }
  return L"<none>";
}

TEST_F(TranslateTest, MessageBoxCaptionFromTheOwnerOrString80) {
  std::wstring caption;
  std::thread answer([&] { caption = AnswerMessageBox(); });
  EXPECT_EQ(ShowMessage(nullptr, "본문", MB_OK), IDOK);
  answer.join();
  EXPECT_EQ(caption, L"Quill EN");

  HWND owner = CreateWindowExW(0, L"STATIC", L"편집기", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                               nullptr, nullptr);
  std::thread again([&] { caption = AnswerMessageBox(); });
  EXPECT_EQ(ShowMessageId(owner, 27, MB_OK), IDOK);
  again.join();
  EXPECT_EQ(caption, L"편집기");
  DestroyWindow(owner);
}

}  // namespace
#endif
