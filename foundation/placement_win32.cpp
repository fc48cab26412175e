#include <windows.h>

#include <cstdio>

#include "foundation/placement.h"
#include "foundation/settings.h"
#include "foundation/translate.h"

namespace {

constexpr int kKeyUnits = 20;  // at most 19 characters
constexpr int kRecordSize = 81;

// The property that marks a window whose first move is still to come.
ATOM FirstMoveAtom() {
  return GlobalFindAtomW(L"UserPrm1");
}

using MonitorFromPointProc = HMONITOR(WINAPI*)(POINT, DWORD);

// The placement key of a window (control 996's text, or the title) in the internal form.
bool PlacementKey(HWND window, bool fromControl, char* key, int size) {
  wchar_t wide[kKeyUnits];
  int length = fromControl ? GetDlgItemTextW(window, kDialogNameControl, wide, kKeyUnits)
                           : GetWindowTextW(window, wide, kKeyUnits);
  if (length <= 0) return false;
  return WideCharToMultiByte(CP_UTF8, 0, wide, -1, key, size, nullptr, nullptr) > 0;
}

// A stored record "%d %d %d %d"; fields not read stay at kAbsentPlace.
void ReadPlace(const char* key, int place[4]) {
  char record[kRecordSize];
  place[0] = place[1] = place[2] = place[3] = kAbsentPlace;
  if (ReadStr(kDlgPosSection, key, record, sizeof record) > 0) {
    sscanf(record, "%d %d %d %d", &place[0], &place[1], &place[2], &place[3]);
  }
}

RECT WindowRect(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  return rect;
}

void AddSizeGrip(HWND dialog) {
  LONG units = GetDialogBaseUnits();
  int width = 8 * LOWORD(units) / 4;
  int height = 8 * HIWORD(units) / 4;
  RECT client;
  GetClientRect(dialog, &client);
  CreateWindowExW(
      0, L"scrollbar", nullptr,
      WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBS_SIZEBOX | SBS_SIZEBOXBOTTOMRIGHTALIGN,
      client.right - width, client.bottom - height, width, height, dialog,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(kSizeGripControl)),
      reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(dialog, GWLP_HINSTANCE)), nullptr);
}

void RestoreDialog(HWND dialog, bool resizable) {
  if (resizable) AddSizeGrip(dialog);
  TranslateDialog(dialog);
  char key[kKeyUnits * 3];
  if (!PlacementKey(dialog, true, key, sizeof key)) return;
  RECT rect = WindowRect(dialog);
  int place[4];
  ReadPlace(key, place);
  int left = place[0], top = place[1];
  int width = rect.right - rect.left, height = rect.bottom - rect.top;
  if (resizable && place[2] != kAbsentPlace && place[3] != kAbsentPlace) {
    width = place[2];
    height = place[3];
  }
  FitToScreen(&left, &top, width, height);
  SetWindowPos(dialog, nullptr, left, top, width, height,
               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW | (resizable ? 0 : SWP_NOSIZE));
}

void StoreDialog(HWND dialog, bool resizable) {
  if (IsIconic(dialog) || IsZoomed(dialog)) return;
  char key[kKeyUnits * 3];
  if (!PlacementKey(dialog, true, key, sizeof key)) return;
  RECT rect = WindowRect(dialog);
  int now[4] = {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
  int stored[4];
  ReadPlace(key, stored);
  bool changed = now[0] != stored[0] || now[1] != stored[1] ||
                 (resizable && (now[2] != stored[2] || now[3] != stored[3]));
  if (!changed) return;
  if (resizable) {
    WriteNums(kDlgPosSection, key, now[0], now[1], now[2], now[3]);
  } else {
    WriteNums(kDlgPosSection, key, now[0], now[1]);
  }
}

}  // namespace

void PlaceDialog(void* handle, unsigned message, bool resizable, bool saveOnMove) {
  HWND dialog = static_cast<HWND>(handle);
  if (message == WM_INITDIALOG) RestoreDialog(dialog, resizable);
  if ((message == WM_MOVE || message == WM_SIZE) && saveOnMove) StoreDialog(dialog, resizable);
}

void MarkFirstMove(void* window) {
  if (ATOM atom = FirstMoveAtom()) {
    SetPropW(static_cast<HWND>(window), reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(atom)),
             reinterpret_cast<HANDLE>(1));
  }
}

void PlaceToolWindow(void* handle, unsigned message) {
  HWND window = static_cast<HWND>(handle);
  if (message != WM_MOVE) return;
  char key[kKeyUnits * 3];
  if (!PlacementKey(window, false, key, sizeof key)) return;
  int stored[4];
  ReadPlace(key, stored);
  ATOM firstMove = FirstMoveAtom();
  if (firstMove && GetPropW(window, reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(firstMove)))) {
    RemovePropW(window, reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(firstMove)));
    if (stored[0] != kAbsentPlace && stored[1] != kAbsentPlace) {
      SetWindowPos(window, nullptr, stored[0], stored[1], 0, 0,
                   SWP_NOZORDER | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    return;
  }
  RECT rect = WindowRect(window);
  if (rect.left != stored[0] || rect.top != stored[1])
    WriteNums(kDlgPosSection, key, rect.left, rect.top);
}

void FitToScreen(int* left, int* top, int width, int height) {
  static MonitorFromPointProc monitorFromPoint = reinterpret_cast<MonitorFromPointProc>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"USER32"), "MonitorFromPoint")));
  if (monitorFromPoint && monitorFromPoint(POINT{*left, *top}, MONITOR_DEFAULTTONULL)) return;
  int screenWidth = GetSystemMetrics(SM_CXSCREEN);
  int screenHeight = GetSystemMetrics(SM_CYSCREEN);
  if (*left >= 0 && *top >= 0 && *left + GetSystemMetrics(SM_CXICON) <= screenWidth &&
      *top + GetSystemMetrics(SM_CYICON) <= screenHeight) {
    return;
  }
  *left = (screenWidth - width) / 2;
  *top = (screenHeight - height) / 2;
}
