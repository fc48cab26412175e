// The logo window and the update check against a local HTTP server (Python's http.server, started
// by with_logo_server.sh, which passes its port and folder in QUILL_LOGO_PORT and
// QUILL_LOGO_ROOT). Quill is pointed at it by a language file that sets the logo's address.
#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

std::string Env(const char* name) {
  const char* value = getenv(name);
  return value ? value : "";
}

// The server's folder as this program names it (Wine shows the Unix root as drive Z:).
std::wstring ServerFolder() {
  std::string root = Env("QUILL_LOGO_ROOT");
  std::wstring folder = L"Z:" + std::wstring(root.begin(), root.end()) + L"\\";
  for (wchar_t& c : folder) {
    if (c == L'/') c = L'\\';
  }
  return folder;
}

std::wstring CachedLogo() {
  wchar_t folder[MAX_PATH];
  SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder);
  return std::wstring(folder) + L"\\Quill\\Logo.png";
}

// Where nothing listens: connections are refused at once.
const char kDeadPort[] = "1";

// A fresh copy of Quill whose logo address is the server's (or a dead port's) Logo.png.
std::wstring PrepareLogoCopy(const std::wstring& scenario, const std::string& port,
                             bool checkVersion = false) {
  std::wstring exe = PrepareFreshCopy(scenario);
  std::wstring folder = FolderOf(exe);
  WriteBytes(folder + L"QUILL.INI", std::string("[Config]\r\nLanguage=Logo\r\nChkNewVersionFg=") +
                                        (checkVersion ? "1" : "0") + "\r\n");
  CreateDirectoryW((folder + L"LANGUAGE").c_str(), nullptr);
  WriteBytes(folder + L"LANGUAGE\\Logo.lng", "50094=http://127.0.0.1:" + port + "/Logo.png\r\n");
  return exe;
}

void SetWriteTime(const std::wstring& path, int year, int month) {
  SYSTEMTIME when = {};
  when.wYear = static_cast<WORD>(year);
  when.wMonth = static_cast<WORD>(month);
  when.wDay = 1;
  FILETIME time;
  SystemTimeToFileTime(&when, &time);
  HANDLE file =
      CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  SetFileTime(file, nullptr, nullptr, &time);
  CloseHandle(file);
}

// Puts one of the wrapper's pictures on the server as Logo.png, written in `year`.
void ServePicture(const wchar_t* picture, int year) {
  std::wstring logo = ServerFolder() + L"files\\Logo.png";
  CopyFileW((ServerFolder() + picture).c_str(), logo.c_str(), FALSE);
  SetWriteTime(logo, year, 1);
}

HWND FindLogo(const QuillProcess& quill, DWORD timeoutMs) {
  DWORD process = 0;
  GetWindowThreadProcessId(quill.Frame(), &process);
  for (DWORD waited = 0;; waited += 50) {
    for (HWND w = FindWindowExW(nullptr, nullptr, L"LogoWindow", nullptr); w;
         w = FindWindowExW(nullptr, w, L"LogoWindow", nullptr)) {
      DWORD owner = 0;
      GetWindowThreadProcessId(w, &owner);
      if (owner == process && IsWindowVisible(w)) return w;
    }
    if (waited >= timeoutMs) return nullptr;
    Sleep(50);
  }
}

SIZE WindowSize(HWND window) {
  RECT r;
  GetWindowRect(window, &r);
  return {r.right - r.left, r.bottom - r.top};
}

// The colour on the screen at a point of the window.
COLORREF ScreenPixel(HWND window, int x, int y) {
  RECT r;
  GetWindowRect(window, &r);
  HDC screen = GetDC(nullptr);
  COLORREF colour = GetPixel(screen, r.left + x, r.top + y);
  ReleaseDC(nullptr, screen);
  return colour;
}

// The pixel once the window has painted it (or what is there after the time-out).
COLORREF PaintedPixel(HWND window, int x, int y, COLORREF expected) {
  COLORREF colour = ScreenPixel(window, x, y);
  for (int waited = 0; colour != expected && waited < 1000; waited += 50) {
    Sleep(50);
    colour = ScreenPixel(window, x, y);
  }
  return colour;
}

// Centred on the frame, halves rounded down.
void ExpectCentredOnFrame(const QuillProcess& quill, HWND logo) {
  RECT frame, r;
  GetWindowRect(quill.Frame(), &frame);
  GetWindowRect(logo, &r);
  EXPECT_EQ(r.left - frame.left, (frame.right - frame.left - (r.right - r.left)) / 2);
  EXPECT_EQ(r.top - frame.top, (frame.bottom - frame.top - (r.bottom - r.top)) / 2);
}

std::string Requests() {
  return ReadBytes(ServerFolder() + L"requests.log");
}

size_t Count(const std::string& text, const std::string& part) {
  size_t n = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++n;
  return n;
}

class Logo : public ::testing::Test {
 protected:
  void SetUp() override {
    port_ = Env("QUILL_LOGO_PORT");
    if (port_.empty()) GTEST_SKIP() << "run through with_logo_server.sh";
    DeleteFileW(CachedLogo().c_str());
    DeleteFileW((ServerFolder() + L"files\\Logo.png").c_str());
    DeleteFileW((ServerFolder() + L"files\\Version.txt").c_str());
    logStart_ = DebugLogSize();
  }
  void TearDown() override {
    if (port_.empty()) return;
    DeleteFileW(CachedLogo().c_str());
    EXPECT_EQ(DebugLogSince(logStart_).find(">>>Leaked Memory"), std::string::npos);
  }
  std::string port_;
  long long logStart_ = 0;
};

TEST_F(Logo, DownloadedPictureShowsForASecondAndIsThenCachedForADeadServer) {
  ServePicture(L"red.png", 2026);
  {
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(PrepareLogoCopy(L"logo-download", port_)));
    HWND logo = FindLogo(quill, 5000);
    ASSERT_NE(logo, nullptr);
    Sleep(150);
    SaveScreenshot(ScreenshotFolder() + L"logo-downloaded.bmp");
    // The 200 by 80 red picture inside its 2-pixel frame.
    EXPECT_EQ(WindowSize(logo).cx, 204);
    EXPECT_EQ(WindowSize(logo).cy, 84);
    EXPECT_EQ(PaintedPixel(logo, 10, 10, RGB(255, 0, 0)), RGB(255, 0, 0));
    ExpectCentredOnFrame(quill, logo);
    // The version in yellow near the lower right corner.
    bool yellow = false;
    for (int y = 84 - 22; y < 84 - 4 && !yellow; ++y) {
      for (int x = 204 - 60; x < 204 - 4 && !yellow; ++x)
        yellow = ScreenPixel(logo, x, y) == RGB(255, 255, 0);
    }
    EXPECT_TRUE(yellow);
    EXPECT_TRUE(WaitUntilGone(logo, 3000));
    EXPECT_EQ(quill.CloseAndWait(), 0);
  }
  EXPECT_EQ(ReadBytes(CachedLogo()), ReadBytes(ServerFolder() + L"red.png"));
  EXPECT_EQ(Count(Requests(), "\"GET /Logo.png HTTP/1.1\" 200"), 1u) << Requests();

  // The server is gone: the cached copy shows without any request.
  std::string before = Requests();
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareLogoCopy(L"logo-cached", kDeadPort)));
  HWND logo = FindLogo(quill, 5000);
  ASSERT_NE(logo, nullptr);
  EXPECT_EQ(WindowSize(logo).cx, 204);
  EXPECT_EQ(PaintedPixel(logo, 10, 10, RGB(255, 0, 0)), RGB(255, 0, 0));
  EXPECT_EQ(quill.CloseAndWait(), 0);
  EXPECT_EQ(Requests(), before);
}

TEST_F(Logo, CachedCopyIsReplacedOnlyByANewerOne) {
  std::wstring cache = CachedLogo();
  CreateDirectoryW(cache.substr(0, cache.size() - 9).c_str(), nullptr);
  ASSERT_TRUE(CopyFileW((ServerFolder() + L"red.png").c_str(), cache.c_str(), FALSE));
  SetWriteTime(cache, 2025, 6);
  struct Step {
    int serverYear;
    LONG width;
    COLORREF colour;
    const char* reply;
  } steps[] = {
      {2024, 204, RGB(255, 0, 0), "\"GET /Logo.png HTTP/1.1\" 304"},
      {2026, 224, RGB(0, 160, 0), "\"GET /Logo.png HTTP/1.1\" 200"},
  };
  for (const Step& step : steps) {
    ServePicture(L"green.png", step.serverYear);
    size_t replies = Count(Requests(), step.reply);
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(PrepareLogoCopy(L"logo-refresh", port_)));
    HWND logo = FindLogo(quill, 5000);
    ASSERT_NE(logo, nullptr);
    EXPECT_EQ(WindowSize(logo).cx, step.width);
    EXPECT_EQ(PaintedPixel(logo, 10, 10, step.colour), step.colour);
    EXPECT_EQ(quill.CloseAndWait(), 0);
    EXPECT_EQ(Count(Requests(), step.reply), replies + 1) << Requests();
  }
  EXPECT_EQ(ReadBytes(cache), ReadBytes(ServerFolder() + L"green.png"));
}

TEST_F(Logo, AboutCommandShowsThePictureUntilAKeyOrAClick) {
  std::wstring cache = CachedLogo();
  CreateDirectoryW(cache.substr(0, cache.size() - 9).c_str(), nullptr);
  ASSERT_TRUE(CopyFileW((ServerFolder() + L"red.png").c_str(), cache.c_str(), FALSE));
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareLogoCopy(L"logo-about", kDeadPort)));
  HWND first = FindLogo(quill, 5000);
  ASSERT_NE(first, nullptr);
  ASSERT_TRUE(WaitUntilGone(first, 3000));

  PostMessageW(quill.Frame(), WM_COMMAND, 44, 0);
  HWND logo = FindLogo(quill, 3000);
  ASSERT_NE(logo, nullptr);
  Sleep(1600);
  EXPECT_TRUE(IsWindow(logo)) << "the about command's logo has no timer";
  Press(VK_SPACE);
  EXPECT_TRUE(WaitUntilGone(logo, 2000));

  PostMessageW(quill.Frame(), WM_COMMAND, 44, 0);
  logo = FindLogo(quill, 3000);
  ASSERT_NE(logo, nullptr);
  PostMessageW(logo, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
  Sleep(300);
  EXPECT_TRUE(IsWindow(logo)) << "it stays while the button is held";
  PostMessageW(logo, WM_LBUTTONUP, 0, MAKELPARAM(20, 20));
  EXPECT_TRUE(WaitUntilGone(logo, 2000));
  EXPECT_EQ(quill.CloseAndWait(), 0);
}

TEST_F(Logo, WithNeitherServerNorCacheStartUpIsQuietAndAboutShowsTheBuiltInPicture) {
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareLogoCopy(L"logo-none", kDeadPort)));
  EXPECT_EQ(FindLogo(quill, 2000), nullptr);
  DWORD start = GetTickCount();
  SendMessageW(quill.Frame(), WM_COMMAND, 44, 0);
  EXPECT_LT(GetTickCount() - start, 1500u);
  HWND logo = FindLogo(quill, 2000);
  ASSERT_NE(logo, nullptr);
  Sleep(150);
  SaveScreenshot(ScreenshotFolder() + L"logo-built-in.bmp");
  EXPECT_EQ(WindowSize(logo).cx, 364);
  EXPECT_EQ(WindowSize(logo).cy, 144);
  ExpectCentredOnFrame(quill, logo);
  // The first picture of this run, yet no start-up one: it waits for the user.
  Sleep(1500);
  EXPECT_TRUE(IsWindow(logo));
  Press(VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(logo, 2000));
  EXPECT_EQ(quill.CloseAndWait(), 0);
  // Nothing was cached from nowhere.
  EXPECT_EQ(GetFileAttributesW(CachedLogo().c_str()), INVALID_FILE_ATTRIBUTES);
}

// A server that takes the connection and never answers costs the interface one silence.
TEST_F(Logo, ASilentServerDelaysTheAboutCommandOnlyBrieflyAndTheBuiltInPictureShows) {
  std::string silent = Env("QUILL_SILENT_PORT");
  ASSERT_FALSE(silent.empty());
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(PrepareLogoCopy(L"logo-silent", silent)));
  EXPECT_EQ(FindLogo(quill, 2500), nullptr);
  DWORD start = GetTickCount();
  SendMessageW(quill.Frame(), WM_COMMAND, 44, 0);
  DWORD spent = GetTickCount() - start;
  EXPECT_GE(spent, 1000u);
  EXPECT_LT(spent, 3000u);
  HWND logo = FindLogo(quill, 1000);
  ASSERT_NE(logo, nullptr);
  EXPECT_EQ(WindowSize(logo).cx, 364);
  EXPECT_EQ(quill.CloseAndWait(), 0);
}

std::wstring ControlText(HWND control) {
  wchar_t text[512] = {};
  SendMessageW(control, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
  return text;
}

TEST_F(Logo, ANewerVersionIsOfferedOnce) {
  WriteBytes(ServerFolder() + L"files\\Version.txt",
             "9.99\r\nhttp://127.0.0.1:" + port_ + "/download.html\r\n");
  std::wstring exe = PrepareLogoCopy(L"logo-update", port_, true);
  {
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(exe));
    HWND question = WaitForWindow(quill, L"", 8000);
    ASSERT_NE(question, nullptr);
    std::wstring text = ControlText(GetDlgItem(question, 0xFFFF));
    EXPECT_NE(text.find(L"9.99"), std::wstring::npos);
    EXPECT_NE(text.find(L"\xB0B4\xB824\xBC1B\xAE30"), std::wstring::npos);  // 내려받기
    SaveScreenshot(ScreenshotFolder() + L"logo-update.bmp");
    PostMessageW(question, WM_COMMAND, IDNO, 0);
    EXPECT_TRUE(WaitUntilGone(question, 3000));
    EXPECT_EQ(quill.CloseAndWait(), 0);
  }
  EXPECT_EQ(Setting(FolderOf(exe) + L"QUILL.INI", L"Config", L"NewVersionAsked"), "9.99");
  // The same version is not asked about again; the server was asked.
  size_t asked = Count(Requests(), "GET /Version.txt");
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  EXPECT_EQ(WaitForWindow(quill, L"", 4000), nullptr);
  EXPECT_EQ(quill.CloseAndWait(), 0);
  EXPECT_EQ(Count(Requests(), "GET /Version.txt"), asked + 1);
}

}  // namespace
