// Dialog and tool-window placement and the control bindings, on real windows: Windows build only.
#ifdef _WIN32
#include "foundation/placement.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "foundation/control_binding.h"
#include "foundation/settings.h"
#include "tests/support/klib_test.h"

namespace {

class PlacementTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    path_ = testing::TempDir() + "quill_placement_test.ini";
    std::replace(path_.begin(), path_.end(), '\\', '/');
    std::remove(path_.c_str());
    SetSettingsPath(path_.c_str());
  }
  void TearDown() override {
    if (window_) DestroyWindow(window_);
    std::remove(path_.c_str());
    KLibTest::TearDown();
  }
  // A window standing in for a dialog, with its placement key in control 996.
  HWND MakeDialog(const wchar_t* key) {
    window_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 240, 160, nullptr,
                              nullptr, nullptr, nullptr);
    Child(L"STATIC", 996, key, 0);
    return window_;
  }
  HWND Child(const wchar_t* cls, int id, const wchar_t* text, DWORD style) {
    return CreateWindowExW(0, cls, text, WS_CHILD | style, 0, 0, 50, 20, window_,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  }
  std::string Stored(const char* key) {
    char value[81];
    ReadStr(kDlgPosSection, key, value, sizeof value);
    return value;
  }
  std::string FileText() {
    std::ifstream file(path_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  void MoveTo(int left, int top) {
    SetWindowPos(window_, nullptr, left, top, 0, 0, SWP_NOZORDER | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  POINT Place() {
    RECT rect;
    GetWindowRect(window_, &rect);
    return {rect.left, rect.top};
  }
  std::string path_;
  HWND window_ = nullptr;
};

TEST_F(PlacementTest, PlacesOffEveryMonitorAreCentred) {
  int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
  int left = -5000, top = -5000;
  FitToScreen(&left, &top, 200, 100);
  EXPECT_EQ(left, (width - 200) / 2);
  EXPECT_EQ(top, (height - 100) / 2);
  left = 10, top = 20;
  FitToScreen(&left, &top, 200, 100);
  EXPECT_EQ(left, 10);
  EXPECT_EQ(top, 20);
}

TEST_F(PlacementTest, FixedDialogsKeepTwoNumbersAndWriteOnlyWhenMoved) {
  WriteStr(kDlgPosSection, "DlgPlace", "100 120");
  MakeDialog(L"DlgPlace");
  PlaceDialog(window_, WM_INITDIALOG, false, true);
  EXPECT_EQ(Place().x, 100);
  EXPECT_EQ(Place().y, 120);
  EXPECT_EQ(GetDlgItem(window_, kSizeGripControl), nullptr);
  MoveTo(150, 160);
  PlaceDialog(window_, WM_MOVE, false, true);
  EXPECT_EQ(Stored("DlgPlace"), "150 160");
  // The same place written otherwise is not rewritten.
  WriteStr(kDlgPosSection, "DlgPlace", " 150   160 ");
  std::string before = FileText();
  PlaceDialog(window_, WM_MOVE, false, true);
  EXPECT_EQ(FileText(), before);
  // Without the save flag nothing is stored.
  MoveTo(170, 180);
  PlaceDialog(window_, WM_MOVE, false, false);
  EXPECT_EQ(FileText(), before);
}

TEST_F(PlacementTest, ResizableDialogsGetAGripAndKeepFourNumbers) {
  WriteStr(kDlgPosSection, "DlgGrow", "40 50 300 200");
  MakeDialog(L"DlgGrow");
  PlaceDialog(window_, WM_INITDIALOG, true, true);
  RECT rect;
  GetWindowRect(window_, &rect);
  EXPECT_EQ(rect.left, 40);
  EXPECT_EQ(rect.right - rect.left, 300);
  EXPECT_EQ(rect.bottom - rect.top, 200);
  EXPECT_NE(GetDlgItem(window_, kSizeGripControl), nullptr);
  SetWindowPos(window_, nullptr, 60, 70, 320, 210, SWP_NOZORDER | SWP_NOACTIVATE);
  PlaceDialog(window_, WM_SIZE, true, true);
  EXPECT_EQ(Stored("DlgGrow"), "60 70 320 210");
}

TEST_F(PlacementTest, AnUnknownDialogIsCentred) {
  MakeDialog(L"DlgNew");
  PlaceDialog(window_, WM_INITDIALOG, false, true);
  EXPECT_EQ(Place().x, (GetSystemMetrics(SM_CXSCREEN) - 240) / 2);
}

TEST_F(PlacementTest, ToolWindowsReturnOnTheirFirstMoveAndStoreLaterOnes) {
  WriteStr(kDlgPosSection, "Tool", "300 310");
  window_ = CreateWindowExW(0, L"STATIC", L"Tool", WS_POPUP | WS_VISIBLE, 0, 0, 100, 80, nullptr,
                            nullptr, nullptr, nullptr);
  MarkFirstMove(window_);
  PlaceToolWindow(window_, WM_MOVE);
  EXPECT_EQ(Place().x, 300);
  EXPECT_EQ(Place().y, 310);
  EXPECT_EQ(Stored("Tool"), "300 310");
  MoveTo(50, 60);
  PlaceToolWindow(window_, WM_MOVE);
  EXPECT_EQ(Stored("Tool"), "50 60");
}

TEST_F(PlacementTest, ControlsLoadAndSaveTheirKeys) {
  MakeDialog(L"DlgOptions");
  HWND check = Child(L"BUTTON", 10, L"", BS_AUTOCHECKBOX);
  HWND edit = Child(L"EDIT", 11, L"", 0);
  Child(L"EDIT", 12, L"", 0);
  for (int id = 20; id <= 22; ++id)
    Child(L"BUTTON", id, L"", BS_AUTORADIOBUTTON);
  WriteStr(kConfigSection, "RadioFg", "2");
  WriteText(kConfigSection, "FontName", "\xea\xb5\xb4\xeb\xa6\xbc\xec\xb2\xb4");
  BindCheckBox(window_, 10, Bind::kLoad, "CheckFg", 1);
  BindEditText(window_, 11, Bind::kLoad, "FontName", "");
  BindNumber(window_, 12, Bind::kLoad, "Size", -16, true);
  BindRadioGroup(window_, 20, 22, Bind::kLoad, "RadioFg", 0);
  EXPECT_EQ(SendMessageW(check, BM_GETCHECK, 0, 0), BST_CHECKED);
  wchar_t text[32];
  GetWindowTextW(edit, text, 32);
  EXPECT_STREQ(text, L"굴림체");
  EXPECT_EQ(IsDlgButtonChecked(window_, 22), BST_CHECKED);
  EXPECT_EQ(GetDlgItemInt(window_, 12, nullptr, TRUE), static_cast<UINT>(-16));

  CheckDlgButton(window_, 10, BST_UNCHECKED);
  SetWindowTextW(edit, L"바탕체");
  SetDlgItemInt(window_, 12, 20, TRUE);
  CheckRadioButton(window_, 20, 22, 21);
  BindCheckBox(window_, 10, Bind::kSave, "CheckFg", 1);
  BindEditText(window_, 11, Bind::kSave, "FontName", "");
  BindEditRaw(window_, 11, Bind::kSave, "FontRaw", "");
  BindNumber(window_, 12, Bind::kSave, "Size", 0, true);
  BindRadioGroup(window_, 20, 22, Bind::kSave, "RadioFg", 0);
  EXPECT_EQ(ReadInt(kConfigSection, "CheckFg", 1), 0);
  EXPECT_EQ(ReadInt(kConfigSection, "Size", 0), 20);
  EXPECT_EQ(ReadInt(kConfigSection, "RadioFg", 0), 1);
  char value[32];
  ReadText(kConfigSection, "FontName", value, sizeof value, "");
  EXPECT_STREQ(value, "\xeb\xb0\x94\xed\x83\x95\xec\xb2\xb4");
  // The raw form is the control's text in the system code page.
  ReadStr(kConfigSection, "FontRaw", value, sizeof value);
  EXPECT_STREQ(value, "\xb9\xd9\xc5\xc1\xc3\xbc");
}

}  // namespace
#endif
