#include "frame/frame_window.h"

#include <commctrl.h>

#include "foundation/diagnostics.h"
#include "foundation/translate.h"
#include "frame/frame_state.h"
#include "resources/resource.h"

const wchar_t kFrameClassName[] = L"QuillMainWndClsName";

FrameState g_frame;

namespace {

const wchar_t kTitle[] = L"Quill";
constexpr int kFrameWidth = 1024;
constexpr int kFrameHeight = 768;
constexpr int kWindowMenuPosition = 3;  // "창(&W)"

// Parts end at 120, 200 and the client width; the fourth reaches the right edge.
void SetStatusParts(int clientWidth) {
  int edges[4] = {120, 200, clientWidth, -1};
  SendMessageW(g_frame.statusBar, SB_SETPARTS, 4, reinterpret_cast<LPARAM>(edges));
}

HWND CreateMdiClient(HWND frame) {
  CLIENTCREATESTRUCT client = {};
  client.hWindowMenu = GetSubMenu(GetMenu(frame), kWindowMenuPosition);
  client.idFirstChild = IDM_FIRST_CHILD;
  return CreateWindowExW(
      0, L"MDICLIENT", nullptr, WS_CHILD | WS_CLIPCHILDREN | WS_VSCROLL | WS_HSCROLL | WS_VISIBLE,
      0, 0, 0, 0, frame, reinterpret_cast<HMENU>(IDC_MDI_CLIENT), g_frame.instance, &client);
}

HWND CreateStatusBar(HWND frame) {
  return CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | CCS_NORESIZE, 0, 0,
                         0, 0, frame, reinterpret_cast<HMENU>(IDC_STATUS_BAR), g_frame.instance,
                         nullptr);
}

void OnCreate(HWND frame) {
  g_frame.frame = frame;
  g_frame.mdiClient = CreateMdiClient(frame);
  if (!g_frame.mdiClient) ScreenNote("Failed To Create The MDI Client Window");
  g_frame.statusBar = CreateStatusBar(frame);
  RECT client;
  GetClientRect(frame, &client);
  SetStatusParts(client.right);
  DragAcceptFiles(frame, TRUE);
  TranslateMenu(GetMenu(frame));
  DrawMenuBar(frame);
}

void OnSize(int width, int height) {
  int clientHeight = height > kStatusBarHeight ? height - kStatusBarHeight : 0;
  MoveWindow(g_frame.mdiClient, 0, 0, width, clientHeight, TRUE);
  MoveWindow(g_frame.statusBar, 0, clientHeight, width, kStatusBarHeight, TRUE);
  SetStatusParts(width);
}

HWND ActiveChild() {
  return g_frame.mdiClient
             ? reinterpret_cast<HWND>(SendMessageW(g_frame.mdiClient, WM_MDIGETACTIVE, 0, 0))
             : nullptr;
}

// Asks a child whether it may close; a zero answer keeps it.
bool CloseChild(HWND child) {
  if (!SendMessageW(child, WM_QUERYENDSESSION, 0, 0)) return false;
  SendMessageW(g_frame.mdiClient, WM_MDIDESTROY, reinterpret_cast<WPARAM>(child), 0);
  return true;
}

// Closes every child without an owner, stopping at the first that refuses.
void CloseAllChildren() {
  HWND child = GetWindow(g_frame.mdiClient, GW_CHILD);
  while (child) {
    HWND next = GetWindow(child, GW_HWNDNEXT);
    if (!GetWindow(child, GW_OWNER) && !CloseChild(child)) return;
    child = next;
  }
}

bool OnCommand(HWND frame, WPARAM wParam, LPARAM lParam) {
  int id = LOWORD(wParam);
  switch (id) {
    case IDM_EXIT:
      PostMessageW(frame, WM_CLOSE, 0, 0);
      return true;
    case IDM_CLOSE_CHILD:
      if (HWND child = ActiveChild()) CloseChild(child);
      return true;
    case IDM_CLOSE_ALL:
      CloseAllChildren();
      return true;
    case IDM_CASCADE:
      SendMessageW(g_frame.mdiClient, WM_MDICASCADE, 0, 0);
      return true;
    case IDM_TILE_VERTICAL:
      SendMessageW(g_frame.mdiClient, WM_MDITILE, MDITILE_VERTICAL, 0);
      return true;
    case IDM_TILE_HORIZONTAL:
      SendMessageW(g_frame.mdiClient, WM_MDITILE, MDITILE_HORIZONTAL, 0);
      return true;
    case IDM_ARRANGE_ICONS:
      SendMessageW(g_frame.mdiClient, WM_MDIICONARRANGE, 0, 0);
      return true;
  }
  if (id >= IDM_FIRST_CHILD) return false;  // the window list belongs to the default handling
  if (HWND child = ActiveChild()) SendMessageW(child, WM_COMMAND, wParam, lParam);
  return true;
}

void OnClose(HWND frame) {
  SendMessageW(frame, WM_COMMAND, IDM_CLOSE_ALL, 0);
  if (GetWindow(g_frame.mdiClient, GW_CHILD)) return;  // a document refused to close
  DestroyWindow(frame);
}

LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      OnCreate(frame);
      return 0;
    case WM_SIZE:
      OnSize(LOWORD(lParam), HIWORD(lParam));
      return 0;
    case WM_COMMAND:
      if (OnCommand(frame, wParam, lParam)) return 0;
      break;
    case WM_DROPFILES:
      DragFinish(reinterpret_cast<HDROP>(wParam));
      return 0;
    case WM_CLOSE:
      OnClose(frame);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefFrameProcW(frame, g_frame.mdiClient, message, wParam, lParam);
}

}  // namespace

bool RegisterFrameClass(HINSTANCE instance) {
  WNDCLASSEXW cls = {};
  cls.cbSize = sizeof cls;
  cls.style = CS_HREDRAW | CS_VREDRAW;
  cls.lpfnWndProc = FrameProc;
  cls.hInstance = instance;
  cls.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDR_QUILL));
  cls.hIconSm = cls.hIcon;
  cls.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // IDC_ARROW
  cls.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  cls.lpszMenuName = MAKEINTRESOURCEW(IDR_QUILL);
  cls.lpszClassName = kFrameClassName;
  return RegisterClassExW(&cls) != 0;
}

HWND CreateFrameWindow(HINSTANCE instance) {
  g_frame.instance = instance;
  return CreateWindowExW(0, kFrameClassName, kTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                         CW_USEDEFAULT, kFrameWidth, kFrameHeight, nullptr, nullptr, instance,
                         nullptr);
}
