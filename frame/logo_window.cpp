#include "frame/logo_window.h"

#include <commctrl.h>
#include <shlobj.h>

#include <cstring>

#include "comm/http_client.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/os_socket.h"
#include "foundation/os_time.h"
#include "foundation/version.h"
#include "frame/logo_rules.h"
#include "images/png.h"
#include "resources/resource.h"

namespace {

const wchar_t kLogoClass[] = L"LogoWindow";
constexpr int kStringDownloading = 93;
constexpr int kStringLogoAddress = 94;
constexpr int kOwnerLogoFile = 8020;  // the picture's file, read whole
constexpr UINT_PTR kCloseTimer = 1;
constexpr UINT kFirstShowingMs = 1000;
// The longest the interface waits to learn whether the server is there, name lookup included.
constexpr unsigned kProbeTimeoutMs = 1500;
constexpr size_t kMaxLogoBytes = 8u << 20;
// A server that answers keeps the interface at most this long, progress window shown.
constexpr unsigned kDownloadLimitMs = 10000;
const char kVersionText[] = "Ver " QUILL_VERSION_TEXT;

enum Reachable : int { kReachUnknown, kReachNo, kReachYes };

// Process-wide, as the window comes and goes.
Reachable g_reachable = kReachUnknown;
bool g_shownOnce = false;
HWND g_logo = nullptr;
HBITMAP g_bitmap = nullptr;
int g_width = 0, g_height = 0;

// The probe's thread reads these, written once before it starts; it answers in g_probeAnswer.
char g_probeHost[256];
unsigned g_probePort;
volatile LONG g_probeAnswer;

DWORD WINAPI ProbeThread(void*) {
  bool timedOut;
  OsSocket socket = OsConnect(g_probeHost, g_probePort, kProbeTimeoutMs, &timedOut);
  if (socket != kNoSocket) OsCloseSocket(socket);
  InterlockedExchange(&g_probeAnswer, socket != kNoSocket ? kReachYes : kReachNo);
  return 0;
}

// Once per process: a plain connection to the server, closed at once. A name lookup can take
// the system's own time, so the connection is tried on a thread of its own and the answer is
// awaited only for the probe's time-out; a late answer is ignored.
bool ServerReachable(const char* url) {
  if (g_reachable != kReachUnknown) return g_reachable == kReachYes;
  g_reachable = kReachNo;
  const char* path;
  if (!SplitHttpUrl(url, g_probeHost, sizeof g_probeHost, &g_probePort, &path)) return false;
  HANDLE thread = CreateThread(nullptr, 0, ProbeThread, nullptr, 0, nullptr);
  if (!thread) return false;
  WaitForSingleObject(thread, kProbeTimeoutMs);
  CloseHandle(thread);
  if (InterlockedCompareExchange(&g_probeAnswer, 0, 0) == kReachYes) g_reachable = kReachYes;
  return g_reachable == kReachYes;
}

bool Widen(const char* text, wchar_t* wide, int size) {
  return MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, size) > 0;
}

// The program's folder of the user's local application data, created when missing.
bool CacheFolder(wchar_t* folder) {
  if (SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, 0, folder) !=
      S_OK)
    return false;
  size_t length = wcslen(folder);
  if (length + 7 >= MAX_PATH) return false;
  wcscpy(folder + length, L"\\Quill");
  CreateDirectoryW(folder, nullptr);
  DWORD attributes = GetFileAttributesW(folder);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

constexpr int64_t kUnixEpochInFileTime = 116444736000000000LL;

// A plain file's last write in seconds since 1970; false when it is not a plain file.
bool PlainFileTime(const wchar_t* path, int64_t* seconds) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(path, GetFileExInfoStandard, &data)) return false;
  if (data.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT))
    return false;
  int64_t time = (static_cast<int64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) |
                 data.ftLastWriteTime.dwLowDateTime;
  *seconds = (time - kUnixEpochInFileTime) / 10000000;
  return true;
}

// The cached copy takes the server's date, so the next comparison is between the server's own
// clock readings.
void SetFileSeconds(const wchar_t* path, int64_t seconds) {
  HANDLE file = CreateFileW(path, FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  int64_t time = seconds * 10000000 + kUnixEpochInFileTime;
  FILETIME written = {static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
  SetFileTime(file, nullptr, nullptr, &written);
  CloseHandle(file);
}

struct Download {
  HANDLE file;
  HWND owner;
  HWND window;  // the progress window, made when the first bytes come
  HWND bar;
  uint64_t received;
  unsigned started;
  unsigned char head[8];  // the first bytes: a PNG's signature, or an error page's text
};

const unsigned char kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

void ShowProgress(Download* d, int64_t total) {
  if (!d->window) {
    wchar_t title[256];
    if (!Widen(GetStr(kStringDownloading), title, 256)) title[0] = L'\0';
    RECT frame;
    GetWindowRect(d->owner, &frame);
    // Centred like the logo itself: 340 by 90 pixels.
    LogoRect place = PlaceLogo(frame.left, frame.top, frame.right, frame.bottom, 336, 86);
    d->window = CreateWindowExW(WS_EX_DLGMODALFRAME, L"STATIC", title,
                                WS_POPUP | WS_CAPTION | WS_VISIBLE, place.x, place.y, place.width,
                                place.height, d->owner, nullptr, nullptr, nullptr);
    if (!d->window) return;
    RECT client;
    GetClientRect(d->window, &client);
    d->bar = CreateWindowExW(0, PROGRESS_CLASSW, nullptr, WS_CHILD | WS_VISIBLE, 12, 14,
                             client.right - 24, 20, d->window, nullptr, nullptr, nullptr);
    SendMessageW(d->bar, PBM_SETRANGE32, 0, 1000);
  }
  int position = total > 0 ? static_cast<int>(d->received * 1000 / static_cast<uint64_t>(total))
                           : static_cast<int>(d->received / 1024 % 1000);
  SendMessageW(d->bar, PBM_SETPOS, position > 1000 ? 1000 : position, 0);
  UpdateWindow(d->window);
  UpdateWindow(d->bar);
}

bool ReceiveLogo(void* context, const char* data, size_t size, int64_t total) {
  Download* d = static_cast<Download*>(context);
  if (OsTickCount() - d->started > kDownloadLimitMs) return false;
  DWORD written = 0;
  if (!WriteFile(d->file, data, static_cast<DWORD>(size), &written, nullptr) || written != size)
    return false;
  for (size_t i = 0; i < size && d->received + i < sizeof d->head; ++i)
    d->head[d->received + i] = static_cast<unsigned char>(data[i]);
  d->received += size;
  ShowProgress(d, total);
  return true;
}

// Brings the cached copy up to date from the server when it is there; true when the local file
// is there afterwards. The server answers "not modified" when its copy is not newer; a server
// that sends it anyway is judged by its Last-Modified.
bool RefreshCachedLogo(HWND frame, const char* url, const wchar_t* local) {
  int64_t localSeconds = 0;
  bool cached = PlainFileTime(local, &localSeconds);
  if (!ServerReachable(url)) return cached;
  wchar_t part[MAX_PATH + 8];
  wcscpy(part, local);
  wcscat(part, L".part");
  Download d = {};
  d.owner = frame;
  d.started = OsTickCount();
  d.file = CreateFileW(part, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (d.file == INVALID_HANDLE_VALUE) return cached;
  HttpRequest request;
  StartHttpRequest(&request, url);
  request.connectTimeoutMs = kProbeTimeoutMs;
  request.readTimeoutMs = kProbeTimeoutMs;
  request.maxBody = kMaxLogoBytes;
  request.receive = ReceiveLogo;
  request.context = &d;
  char since[32];
  if (cached) {
    FormatHttpDate(localSeconds, since);
    request.ifModifiedSince = since;
  }
  HttpResponse response;
  int error = HttpFetch(request, &response);
  CloseHandle(d.file);
  if (d.window) DestroyWindow(d.window);
  // Whatever is not a picture (a page saying the file is missing) leaves the cached copy alone.
  bool fresh = error == kHttpOk && response.status == 200 &&
               memcmp(d.head, kPngSignature, sizeof d.head) == 0 &&
               (!cached || ServerCopyIsNewer(response.lastModified, localSeconds));
  if (fresh && MoveFileExW(part, local, MOVEFILE_REPLACE_EXISTING)) {
    int64_t serverSeconds;
    if (ParseHttpDate(response.lastModified, &serverSeconds)) SetFileSeconds(local, serverSeconds);
    return true;
  }
  DeleteFileW(part);
  return cached;
}

bool MakeBitmap(const uint8_t* data, size_t size) {
  PngImage image;
  if (DecodePng(data, size, kPngBgraPremultiplied, &image) != kPngOk) return false;
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = image.width;
  info.bmiHeader.biHeight = -image.height;  // top-down, as the reader gives the rows
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (bitmap) {
    memcpy(bits, image.pixels, static_cast<size_t>(image.width) * image.height * 4);
    g_bitmap = bitmap;
    g_width = image.width;
    g_height = image.height;
  }
  FreePngImage(&image);
  return bitmap != nullptr;
}

bool LoadLogoFile(const wchar_t* path) {
  char name[MAX_PATH * 3];
  if (!WideCharToMultiByte(CP_UTF8, 0, path, -1, name, sizeof name, nullptr, nullptr)) return false;
  for (char* p = name; *p; ++p) {
    if (*p == '\\') *p = '/';
  }
  size_t size = 0;
  char* data = ReadWholeFile(name, &size, kOwnerLogoFile);
  if (!data) return false;
  bool made = MakeBitmap(reinterpret_cast<const uint8_t*>(data), size);
  FreeMem(data);
  return made;
}

bool LoadBuiltInLogo(HINSTANCE instance) {
  HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(IDR_LOGO_PNG), MAKEINTRESOURCEW(10));
  HGLOBAL loaded = found ? LoadResource(instance, found) : nullptr;
  const void* data = loaded ? LockResource(loaded) : nullptr;
  return data && MakeBitmap(static_cast<const uint8_t*>(data), SizeofResource(instance, found));
}

void PaintLogo(HWND window) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  DrawEdge(dc, &client, EDGE_RAISED, BF_RECT);
  HDC memory = CreateCompatibleDC(dc);
  HGDIOBJ old = SelectObject(memory, g_bitmap);
  BitBlt(dc, 2, 2, g_width, g_height, memory, 0, 0, SRCCOPY);
  SelectObject(memory, old);
  DeleteDC(memory);
  // The dialog font: the version fits in the 60 pixels left of the edge.
  HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, RGB(0xFF, 0xFF, 0x00));
  TextOutA(dc, client.right - 60, client.bottom - 22, kVersionText, sizeof kVersionText - 1);
  SelectObject(dc, oldFont);
  EndPaint(window, &paint);
}

LRESULT CALLBACK LogoProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_TIMER:
      if (wParam == kCloseTimer) DestroyWindow(window);
      return 0;
    case WM_LBUTTONDOWN:
      // The start-up logo stays while the button is held.
      KillTimer(window, kCloseTimer);
      return 0;
    case WM_LBUTTONUP:
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      DestroyWindow(window);
      return 0;
    case WM_PAINT:
      PaintLogo(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_DESTROY:
      if (g_bitmap) DeleteObject(g_bitmap);
      g_bitmap = nullptr;
      if (g_logo == window) g_logo = nullptr;
      return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

bool RegisterLogoClass(HINSTANCE instance) {
  WNDCLASSEXW cls = {};
  cls.cbSize = sizeof cls;
  cls.lpfnWndProc = LogoProc;
  cls.hInstance = instance;
  cls.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
  cls.lpszClassName = kLogoClass;
  return RegisterClassExW(&cls) != 0;
}

void ShowLogoWindow(HWND frame, bool atStartup) {
  if (g_logo) DestroyWindow(g_logo);
  char url[kHttpMaxUrl];
  FormatStr(url, sizeof url, "%s", GetStr(kStringLogoAddress));
  char name[MAX_PATH];
  wchar_t folder[MAX_PATH], wideName[MAX_PATH], local[MAX_PATH + 8];
  bool loaded = false;
  if (AddressLastComponent(url, name, sizeof name) && Widen(name, wideName, MAX_PATH) &&
      CacheFolder(folder) && wcslen(folder) + wcslen(wideName) + 2 < MAX_PATH) {
    wcscpy(local, folder);
    wcscat(local, L"\\");
    wcscat(local, wideName);
    loaded = RefreshCachedLogo(frame, url, local) && LoadLogoFile(local);
  }
  // A newcomer has neither server nor cache: the about command still shows the program's own
  // picture, while start-up stays quiet.
  HINSTANCE instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(frame, GWLP_HINSTANCE));
  if (!loaded && (atStartup || !LoadBuiltInLogo(instance))) return;

  // Made hidden and shown where it belongs, so it never flashes at the corner.
  g_logo = CreateWindowExW(0, kLogoClass, nullptr, WS_POPUP, 0, 0, 100, 50, frame, nullptr,
                           instance, nullptr);
  if (!g_logo) {
    DeleteObject(g_bitmap);
    g_bitmap = nullptr;
    return;
  }
  RECT outer;
  GetWindowRect(frame, &outer);
  LogoRect place = PlaceLogo(outer.left, outer.top, outer.right, outer.bottom, g_width, g_height);
  SetWindowPos(g_logo, HWND_TOP, place.x, place.y, place.width, place.height, SWP_SHOWWINDOW);
  SetFocus(g_logo);
  // Only the start-up's showing goes by itself; when start-up had nothing to show (or the
  // program started with a document), the about command's picture still waits for the user.
  if (atStartup && !g_shownOnce) SetTimer(g_logo, kCloseTimer, kFirstShowingMs, nullptr);
  g_shownOnce = true;
}
