#include "frame/update_check.h"

#include <cstring>

#include "comm/http_client.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/message_box.h"
#include "foundation/os_socket.h"
#include "foundation/os_time.h"
#include "foundation/settings.h"
#include "foundation/version.h"
#include "frame/logo_rules.h"

namespace {

constexpr int kStringLogoAddress = 94;
constexpr int kStringNewVersion = 540;
const char kCheckKey[] = "ChkNewVersionFg";
const char kAskedKey[] = "NewVersionAsked";  // the last version offered, asked only once
const char kVersionFile[] = "Version.txt";
constexpr unsigned kConnectMs = 2000;
constexpr unsigned kReadMs = 3000;
constexpr unsigned kWholeFetchMs = 6000;
constexpr size_t kMaxVersionText = 1024;

// Shared with the fetching thread: written before it starts, or by it before it posts.
HANDLE g_thread = nullptr;
HWND g_frameWindow = nullptr;
char g_versionUrl[kHttpMaxUrl];
char g_text[kMaxVersionText];
size_t g_textSize = 0;
unsigned g_started = 0;
volatile LONG g_stop = 0;
volatile LONG g_fetching = 0;  // inside HttpFetch, which holds a buffer until it returns
VersionOffer g_offer;
volatile LONG g_offerReady = 0;

bool Stopping() {
  return InterlockedCompareExchange(&g_stop, 0, 0) != 0;
}

bool Collect(void*, const char* data, size_t size, int64_t) {
  if (Stopping() || OsTickCount() - g_started > kWholeFetchMs) return false;
  if (size > sizeof g_text - g_textSize) return false;
  memcpy(g_text + g_textSize, data, size);
  g_textSize += size;
  return true;
}

DWORD WINAPI CheckThread(void*) {
  g_started = OsTickCount();
  // A connection first: a server that is not there costs no buffer, and a name lookup that
  // hangs is left behind at shutdown holding nothing.
  char host[256];
  unsigned port;
  const char* path;
  bool timedOut;
  OsSocket probe = kNoSocket;
  if (SplitHttpUrl(g_versionUrl, host, sizeof host, &port, &path))
    probe = OsConnect(host, port, kConnectMs, &timedOut);
  if (probe != kNoSocket) {
    OsCloseSocket(probe);
    HttpRequest request;
    StartHttpRequest(&request, g_versionUrl);
    request.connectTimeoutMs = kConnectMs;
    request.readTimeoutMs = kReadMs;
    request.maxBody = kMaxVersionText;
    request.maxRedirects = 2;
    request.receive = Collect;
    HttpResponse response;
    InterlockedExchange(&g_fetching, 1);
    if (!Stopping() && HttpFetch(request, &response) == kHttpOk && response.status == 200 &&
        ParseVersionOffer(g_text, g_textSize, g_versionUrl, &g_offer))
      InterlockedExchange(&g_offerReady, 1);
    InterlockedExchange(&g_fetching, 0);
  }
  if (!Stopping()) PostMessageW(g_frameWindow, kMsgUpdateChecked, 0, 0);
  return 0;
}

}  // namespace

void StartUpdateCheck(HWND frame) {
  if (g_thread || !ReadInt(kConfigSection, kCheckKey, 1)) return;
  if (!AddressBeside(GetStr(kStringLogoAddress), kVersionFile, g_versionUrl, sizeof g_versionUrl))
    return;
  g_frameWindow = frame;
  g_thread = CreateThread(nullptr, 0, CheckThread, nullptr, 0, nullptr);
}

void FinishUpdateCheck(HWND frame) {
  if (!InterlockedExchange(&g_offerReady, 0)) return;
  char asked[sizeof g_offer.version];
  ReadText(kConfigSection, kAskedKey, asked, sizeof asked, "");
  if (!ShouldOfferVersion(g_offer.version, QUILL_VERSION_TEXT, asked)) return;
  // Remembered before asking: whatever the answer, this version is not offered again.
  WriteText(kConfigSection, kAskedKey, g_offer.version);
  char question[512];
  FormatStr(question, sizeof question, GetStr(kStringNewVersion), g_offer.version);
  if (ShowMessage(frame, question, MB_YESNO | MB_ICONQUESTION) == IDYES)
    ShellOpen(frame, "open", g_offer.page, nullptr, nullptr, SW_SHOWNORMAL);
}

void StopUpdateCheck() {
  if (!g_thread) return;
  InterlockedExchange(&g_stop, 1);
  // Only a fetch holds anything, and its waits are bounded; a thread still looking up the
  // server's name or connecting is left to the end of the process (it sees the stop before any
  // fetch).
  if (InterlockedCompareExchange(&g_fetching, 0, 0))
    WaitForSingleObject(g_thread, kConnectMs + kReadMs + 1000);
  CloseHandle(g_thread);
  g_thread = nullptr;
}
