// The file dialogs, answered by a second thread as a user would: Windows build only.
#ifdef _WIN32
#include "foundation/file_dialogs.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>

#include "tests/support/klib_test.h"

namespace {

// Finds this process's dialog titled `title`, types `name` into its file name box and presses OK.
std::wstring AnswerFileDialog(const wchar_t* title, const wchar_t* name) {
  for (int i = 0; i < 400; ++i) {
    HWND dialog = FindWindowW(L"#32770", title);
    if (dialog) {
      Sleep(200);
      // The file name box: the combo box of the explorer-style dialog, or its edit box.
      if (!SetDlgItemTextW(dialog, 0x47C, name)) SetDlgItemTextW(dialog, 0x480, name);
      PostMessageW(dialog, WM_COMMAND, IDOK, 0);
      return title;
    }
    Sleep(25);
  }
  return L"<none>";
}

using FileDialogTest = KLibTest;

TEST_F(FileDialogTest, OpenDialogGivesTheChosenFileInTheInternalForm) {
  std::string folder = testing::TempDir();
  std::string file = folder + "quill_dialog_pick.txt";
  std::ofstream(file) << "x";
  std::wstring wideFile(file.begin(), file.end());
  std::thread answer([&] { AnswerFileDialog(L"Pick one", wideFile.c_str()); });
  char name[512] = "";
  bool chosen = AskOpenFileName(nullptr, name, sizeof name, "Pick one", "Text\0*.txt\0\0", nullptr,
                                OFN_FILEMUSTEXIST);
  answer.join();
  ASSERT_TRUE(chosen);
  std::string expected = file;
  std::replace(expected.begin(), expected.end(), '\\', '/');
  EXPECT_STREQ(name, expected.c_str());
  std::remove(file.c_str());
}

TEST_F(FileDialogTest, SaveDialogTakesString9AsItsTitle) {
  std::string file = testing::TempDir() + "quill_dialog_save.txt";
  std::wstring wideFile(file.begin(), file.end());
  std::thread answer([&] { AnswerFileDialog(L"저장할 파일명을 입력하세요.", wideFile.c_str()); });
  char name[512] = "";
  bool chosen = AskSaveFileName(nullptr, name, sizeof name, nullptr, nullptr, nullptr, 0);
  answer.join();
  ASSERT_TRUE(chosen);
  EXPECT_NE(std::string(name).find("quill_dialog_save.txt"), std::string::npos);
  EXPECT_EQ(std::string(name).find('\\'), std::string::npos);
}

}  // namespace
#endif
