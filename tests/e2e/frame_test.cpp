// The frame as a user meets it: it opens, shows its parts, and closes cleanly.
#include <gtest/gtest.h>

#include "tests/e2e/quill_driver.h"

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
  EXPECT_EQ(edges[2], frameClient.right);
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

}  // namespace

namespace {

void WriteText(const std::wstring& path, const std::string& text) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  CloseHandle(file);
}

// A language named in QUILL.INI beside the program is loaded at start; its screenshot shows the
// translated menu bar.
TEST(Frame, StartsInTheConfiguredLanguage) {
  std::wstring exe = PrepareFreshCopy(L"language");
  std::wstring folder = exe.substr(0, exe.find_last_of(L'\\') + 1);
  WriteText(folder + L"QUILL.INI", "[Config]\r\nLanguage=English\r\n");
  CreateDirectoryW((folder + L"LANGUAGE").c_str(), nullptr);
  WriteText(
      folder + L"LANGUAGE\\English.lng",
      "; Quill in English\r\n1=&File\r\n2=&Edit\r\n3=&Tools\r\n4=\"&Window\"\r\n85=E&xit\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  SaveScreenshot(ScreenshotFolder() + L"language.bmp");
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

}  // namespace

namespace {

// A settings file left read-only (copied from a CD, say) is made writable again at start.
TEST(Frame, ClearsTheReadOnlyAttributeOfItsSettingsFile) {
  std::wstring exe = PrepareFreshCopy(L"read-only-settings");
  std::wstring ini = exe.substr(0, exe.find_last_of(L'\\') + 1) + L"QUILL.INI";
  WriteText(ini, "[Config]\r\n");
  SetFileAttributesW(ini.c_str(), FILE_ATTRIBUTE_READONLY);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  EXPECT_FALSE(GetFileAttributesW(ini.c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(quill.CloseAndWait(10000), 0);
}

}  // namespace
