#include "frame/editor_child.h"

#include <cstring>

#include "editor/document.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/memory.h"
#include "frame/display_objects.h"
#include "frame/frame_commands.h"
#include "frame/frame_owners.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/status_bar.h"
#include "resources/resource.h"

const wchar_t kEditorClassName[] = L"QuillEditorChild";

namespace {

// Until the editor view arrives the window keeps the document record for its name and flags and
// the file's bytes to show them; it does not edit.
struct EditorChild {
  EditDocument document;
  char* text;  // the file as read, terminated
  size_t length;
  int caretColumn;
  int caretLine;
  bool checkPending;  // command 112 is posted and not answered yet
};

int g_untitledCounter;

bool LoadText(EditorChild* child) {
  FreeMem(child->text);
  child->text = ReadWholeFile(child->document.path, &child->length, kOwnerEditorChild);
  if (child->text) return true;
  HostMessageId(2, kMbOk | kMbIconExclamation, child->document.path);
  return false;
}

EditorChild* ChildOf(HWND window) {
  wchar_t name[32];
  if (!window || !GetClassNameW(window, name, 32) || wcscmp(name, kEditorClassName) != 0)
    return nullptr;
  return reinterpret_cast<EditorChild*>(GetWindowLongPtrW(window, 0));
}

void SetTitle(HWND window, const EditDocument* document) {
  wchar_t title[kPathSize];
  if (!MultiByteToWideChar(CP_UTF8, 0, document->path, -1, title, kPathSize)) title[0] = L'\0';
  for (wchar_t* p = title; *p; ++p) {
    if (*p == L'/') *p = L'\\';
  }
  SetWindowTextW(window, title);
}

void Paint(HWND window, EditorChild* child) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  HGDIOBJ old = SelectObject(dc, g_display.latinFont);
  SetBkMode(dc, TRANSPARENT);
  RECT client;
  GetClientRect(window, &client);
  int lineHeight = g_display.cellHeight > 0 ? g_display.cellHeight : 16;
  const char* p = child->text;
  for (int y = 0; p && *p && y < client.bottom; y += lineHeight) {
    const char* end = p;
    while (*end && *end != '\n' && *end != '\r') ++end;
    wchar_t line[512];
    int count = MultiByteToWideChar(CP_UTF8, 0, p, static_cast<int>(end - p), line, 512);
    TextOutW(dc, 2, y, line, count);
    p = end;
    if (*p == '\r') ++p;
    if (*p == '\n') ++p;
  }
  SelectObject(dc, old);
  EndPaint(window, &paint);
}

void OnCommand(HWND window, EditorChild* child, int id) {
  switch (id) {
    case kCmdLoadFile:
      if (LoadText(child)) {
        SetTitle(window, &child->document);
        InvalidateRect(window, nullptr, TRUE);
      }
      return;
    case kCmdActivated:
      child->checkPending = false;
      return;
  }
}

LRESULT CALLBACK EditorChildProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  EditorChild* child = reinterpret_cast<EditorChild*>(GetWindowLongPtrW(window, 0));
  switch (message) {
    case WM_CREATE: {
      const CREATESTRUCTW* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      const MDICREATESTRUCTW* mdi = static_cast<const MDICREATESTRUCTW*>(create->lpCreateParams);
      SetWindowLongPtrW(window, 0, mdi->lParam);
      child = reinterpret_cast<EditorChild*>(mdi->lParam);
      SetTitle(window, &child->document);
      return 0;
    }
    case WM_PAINT:
      if (child) {
        Paint(window, child);
        return 0;
      }
      break;
    case WM_COMMAND:
      if (child) OnCommand(window, child, LOWORD(wParam));
      return 0;
    case WM_QUERYENDSESSION:
      return 1;  // nothing is edited here, so nothing can be lost
    case WM_MDIACTIVATE:
      if (child && reinterpret_cast<HWND>(lParam) == window) {
        SetStatusCursor(child->caretColumn, child->caretLine, child->document.modified != 0);
        UpdateMenuState(1, true);
      }
      break;
    case WM_DESTROY:
      // The last document going leaves nothing for the document commands to work on.
      if (!GetWindow(window, GW_HWNDNEXT) && !GetWindow(window, GW_HWNDPREV)) {
        UpdateMenuState(0, false);
        SetStatusMessage(nullptr);
      }
      break;
    case WM_NCDESTROY:
      if (child) {
        FreeMem(child->text);
        FreeMem(child);
        SetWindowLongPtrW(window, 0, 0);
      }
      break;
  }
  return DefMDIChildProcW(window, message, wParam, lParam);
}

}  // namespace

bool RegisterEditorChildClass(HINSTANCE instance) {
  WNDCLASSEXW cls = {};
  cls.cbSize = sizeof cls;
  cls.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
  cls.lpfnWndProc = EditorChildProc;
  cls.cbWndExtra = sizeof(void*);
  cls.hInstance = instance;
  cls.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_DOCUMENT));
  cls.hIconSm = cls.hIcon;
  cls.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32513));  // IDC_IBEAM
  cls.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  cls.lpszClassName = kEditorClassName;
  return RegisterClassExW(&cls) != 0;
}

HWND CreateEditorWindow(const char* path, const char* sourcePath, int encoding, int tabSize, int x,
                        int y, int width, int height, int show) {
  EditorChild* child = static_cast<EditorChild*>(AllocMem(sizeof(EditorChild), kOwnerEditorChild));
  if (!child) return nullptr;
  memset(child, 0, sizeof *child);
  EditDocument* document = &child->document;
  if (path) {
    strncpy(document->path, path, kPathSize - 1);
  } else {
    FormatStr(document->path, kPathSize, "NoName%02d.cpp", ++g_untitledCounter);
    document->untitled = 1;
  }
  if (sourcePath) strncpy(document->sourcePath, sourcePath, kPathSize - 1);
  document->encoding = static_cast<uint8_t>(encoding);
  document->tabSize = static_cast<uint8_t>(tabSize);

  MDICREATESTRUCTW create = {};
  create.szClass = kEditorClassName;
  create.szTitle = L"";
  create.hOwner = g_frame.instance;
  bool given = show != kShowDefault;
  create.x = given ? x : CW_USEDEFAULT;
  create.y = given ? y : CW_USEDEFAULT;
  create.cx = given ? width : CW_USEDEFAULT;
  create.cy = given ? height : CW_USEDEFAULT;
  if (show == SW_SHOWMAXIMIZED) create.style = WS_MAXIMIZE;
  if (show == SW_SHOWMINIMIZED) create.style = WS_MINIMIZE;
  create.lParam = reinterpret_cast<LPARAM>(child);
  HWND window = reinterpret_cast<HWND>(
      SendMessageW(g_frame.mdiClient, WM_MDICREATE, 0, reinterpret_cast<LPARAM>(&create)));
  if (!window) {
    FreeMem(child);
    return nullptr;
  }
  if (path && !LoadText(child)) {
    SendMessageW(g_frame.mdiClient, WM_MDIDESTROY, reinterpret_cast<WPARAM>(window), 0);
    return nullptr;
  }
  SetTitle(window, document);
  return window;
}

EditDocument* EditorWindowDocument(HWND window) {
  EditorChild* child = ChildOf(window);
  return child ? &child->document : nullptr;
}

bool EditorShowsPath(HWND window, const char* path) {
  const EditDocument* document = EditorWindowDocument(window);
  if (!document) return false;
  const char* a = document->path;
  const char* b = path;
  for (;; ++a, ++b) {
    char x = *a == '\\' ? '/' : *a;
    char y = *b == '\\' ? '/' : *b;
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x + 32);
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y + 32);
    if (x != y) return false;
    if (!x) return true;
  }
}

bool SetCheckPending(HWND window) {
  EditorChild* child = ChildOf(window);
  if (!child || child->checkPending) return false;
  child->checkPending = true;
  return true;
}

bool IsEmptyNewDocument(HWND window) {
  EditorChild* child = ChildOf(window);
  return child && child->document.untitled && !child->document.modified &&
         (!child->text || !child->text[0]);
}
