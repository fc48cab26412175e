#include "frame/status_bar.h"

#include <windows.h>

#include <commctrl.h>

#include "frame/frame_state.h"

namespace {

void SetPart(int part, const char* text) {
  if (!g_frame.statusBar) return;
  wchar_t wide[512];
  if (!MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, 512)) wide[0] = L'\0';
  SendMessageW(g_frame.statusBar, SB_SETTEXTW, static_cast<WPARAM>(part),
               reinterpret_cast<LPARAM>(wide));
}

}  // namespace

void SetStatusCursor(int column, int line, bool modified) {
  char text[64];
  FormatCursorStatus(column, line, text, sizeof text);
  SetPart(0, text);
  SetPart(1, ModifiedStatus(modified));
}

void ClearStatusCursor() {
  SetPart(0, "");
  SetPart(1, "");
}

void SetStatusMessage(const char* text) {
  if (!StatusMessageChanged(&g_frame.status, text)) return;
  SetPart(2, text ? text : "");
}

void SetStatusFormat(const char* text) {
  if (!StatusMessageChanged(&g_frame.formatStatus, text)) return;
  SetPart(3, text ? text : "");
}
