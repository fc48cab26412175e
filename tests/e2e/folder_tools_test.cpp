// The folder tools in the real program: Compress Project from the menu's command with a Korean
// file name, and a source opened through the coding-style dialog in the next-line brace style.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/e2e/e2e_support.h"
#include "tests/e2e/quill_driver.h"

namespace {

constexpr int kCmdOpenStyle = 27;
constexpr int kCmdCompressProject = 118;
constexpr int kCmdSave = 82;

std::wstring MessageText(HWND box) {
  std::wstring found;
  EnumChildWindows(
      box,
      [](HWND child, LPARAM result) -> BOOL {
        wchar_t text[512];
        GetWindowTextW(child, text, 512);
        if (GetDlgCtrlID(child) == 0xFFFF || wcslen(text) > 10)
          *reinterpret_cast<std::wstring*>(result) += text;
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

bool WaitForFile(const std::wstring& path) {
  for (int waited = 0; waited < 150; ++waited, Sleep(100)) {
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
  }
  return false;
}

std::string Utf8(const std::wstring& text) {
  char bytes[2048];
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
  return bytes;
}

uint16_t Le16(const std::string& s, size_t at) {
  return static_cast<uint16_t>(static_cast<uint8_t>(s[at]) | static_cast<uint8_t>(s[at + 1]) << 8);
}

TEST(FolderTools, CompressesTheProjectWithAKoreanName) {
  std::wstring exe = PrepareFreshCopy(L"compress-project");
  std::wstring folder = FolderOf(exe);
  CreateDirectoryW((folder + L"src").c_str(), nullptr);
  WriteBytes(folder + L"src\\한글.c", "int main(void) { return 0; }\r\n");
  // Project files are in the system's code page (949 here).
  WriteBytes(folder + L"Zip.prj",
             "[Head]\r\nInfo=Quill Project File 1.00\r\n"
             "[Target00]\r\nInfo=\"app\" 0 0 1 0\r\nFile00=\"src\\\xC7\xD1\xB1\xDB.c\"\r\n"
             "File01=\"gone.c\"\r\nFile02=\r\n[Target01]\r\nInfo=\r\n");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + folder + L"Zip.prj\""));
  Settle();
  PostMessageW(quill.Frame(), WM_COMMAND, kCmdCompressProject, 0);
  ASSERT_TRUE(WaitForFile(folder + L"Zip.zip"));
  HWND box = WaitForWindow(quill, L"", 15000);
  ASSERT_NE(box, nullptr);
  std::wstring text = MessageText(box);
  SaveScreenshot(ScreenshotFolder() + L"compress-project.bmp");
  EXPECT_NE(text.find(L"2개 파일을 압축했습니다"), std::wstring::npos) << Utf8(text);
  EXPECT_NE(text.find(L"gone.c"), std::wstring::npos);
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(box));

  // Two members, the project file first, the source's name in UTF-8 with the flag set. The
  // archive's bytes are checked against unzip and Python by the quill-tool tests.
  std::string zip = ReadBytes(folder + L"Zip.zip");
  ASSERT_GT(zip.size(), 22u);
  size_t end = zip.size() - 22;
  EXPECT_EQ(zip.substr(end, 4), "PK\5\6");
  EXPECT_EQ(Le16(zip, end + 10), 2);
  EXPECT_EQ(zip.substr(0, 4), "PK\3\4");
  size_t korean = zip.find("src/\xED\x95\x9C\xEA\xB8\x80.c");
  ASSERT_NE(korean, std::string::npos);
  size_t local = zip.rfind("PK\3\4", korean);
  EXPECT_EQ(Le16(zip, local + 6) & 0x800, 0x800);
}

TEST(FolderTools, OpensASourceConvertedToTheNextLineBraceStyle) {
  std::wstring exe = PrepareFreshCopy(L"style-convert");
  std::wstring folder = FolderOf(exe);
  const std::string original = "int f(int a){\r\nif(a>0){return a*2;}\r\nreturn 0;\r\n}\r\n";
  WriteBytes(folder + L"style.c", original);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  Settle();
  PostMessageW(quill.Frame(), WM_COMMAND, kCmdOpenStyle, 0);
  HWND dialog = WaitForWindow(quill, L"코딩 스타일 변환하여 열기");
  ASSERT_NE(dialog, nullptr);
  SendMessageW(GetDlgItem(dialog, 100), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>((folder + L"style.c").c_str()));
  SendMessageW(GetDlgItem(dialog, 102), BM_SETCHECK, BST_UNCHECKED, 0);
  SendMessageW(GetDlgItem(dialog, 103), BM_SETCHECK, BST_CHECKED, 0);
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(dialog));
  Settle();
  HWND editor = OnlyChild(quill);
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(WindowText(editor), folder + L"style.c");
  SaveScreenshot(ScreenshotFolder() + L"style-next-line.bmp");
  EXPECT_EQ(ReadBytes(folder + L"style.c"), original);  // untouched until saved

  PostMessageW(quill.Frame(), WM_COMMAND, kCmdSave, 0);
  Settle();
  EXPECT_EQ(
      ReadBytes(folder + L"style.c"),
      "int f(int a)\r\n{\r\n    if (a > 0)\r\n    { return a * 2; }\r\n    return 0;\r\n}\r\n");
}

}  // namespace
