#include "foundation/host.h"

#include "foundation/diagnostics.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/path.h"

namespace {

// No window to ask: the question is logged and answered with the button that changes nothing.
int LogAndCancel(void*, const char* text, unsigned flags) {
  DebugLog("Message without a host: %s\r\n", text);
  unsigned buttons = flags & 0xF;
  if (buttons == kMbYesNo) return kIdNo;
  if (buttons == kMbOk) return kIdOk;
  return kIdCancel;
}

const UiHost kDefaultHost = {LogAndCancel, nullptr};
const UiHost* g_host = &kDefaultHost;

constexpr int kMessageSize = 1024;

}  // namespace

const UiHost* SetUiHost(const UiHost* host) {
  const UiHost* previous = g_host;
  g_host = host ? host : &kDefaultHost;
  return previous;
}

int HostMessage(const char* text, unsigned flags) {
  return g_host->message(g_host->context, text, flags);
}

int HostMessageId(int id, unsigned flags, const char* argument) {
  char text[kMessageSize];
  FormatStr(text, sizeof text, GetStr(id), argument ? argument : "");
  return HostMessage(text, flags);
}

int HostMessagePath(int id, unsigned flags, const char* path) {
  char shown[kMessageSize];
  ShownPath(path, shown, kMessageSize);
  return HostMessageId(id, flags, shown);
}

int HostMessageIdNumber(int id, unsigned flags, int number) {
  char text[kMessageSize];
  FormatStr(text, sizeof text, GetStr(id), number);
  return HostMessage(text, flags);
}
