#include "frame/frame_window.h"

#include <commctrl.h>
#include <shellapi.h>

#include <cstring>

#include "editor/document.h"
#include "editor/key_commands.h"
#include "foundation/diagnostics.h"
#include "foundation/file_dialogs.h"
#include "foundation/fileutil.h"
#include "foundation/language.h"
#include "foundation/message_box.h"
#include "foundation/path.h"
#include "foundation/settings.h"
#include "foundation/translate.h"
#include "frame/command_line.h"
#include "frame/dialog_support.h"
#include "frame/display_objects.h"
#include "frame/editor_child.h"
#include "frame/editor_dialogs.h"
#include "frame/editor_window.h"
#include "frame/frame_commands.h"
#include "frame/frame_state.h"
#include "frame/help_window.h"
#include "frame/logo_window.h"
#include "frame/menu_state.h"
#include "frame/options_sheet.h"
#include "frame/parser_window.h"
#include "frame/project_window.h"
#include "frame/session_layout.h"
#include "frame/tool_windows.h"
#include "frame/update_check.h"
#include "resources/resource.h"

const wchar_t kFrameClassName[] = L"QuillMainWndClsName";

FrameState g_frame;

namespace {

const wchar_t kTitle[] = L"Quill";
constexpr int kFrameWidth = 1024;
constexpr int kFrameHeight = 768;
constexpr int kWindowMenuPosition = 3;   // "창(&W)"
constexpr int kFirstBitmapPosition = 6;  // menu-bar items 6-8: build and run, build, rebuild
constexpr UINT_PTR kLogoTimer = 1;

// Parts end at 120, 200 and before the encoding part, which reaches the right edge.
constexpr int kFormatPartWidth = 150;
void SetStatusParts(int clientWidth) {
  int messageEnd = clientWidth - kFormatPartWidth > 200 ? clientWidth - kFormatPartWidth : 200;
  int edges[4] = {120, 200, messageEnd, -1};
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

// The three build commands show their pictures on the menu bar, as items and as item bitmaps.
void PutBuildBitmaps(HWND frame) {
  static const int kBitmaps[3] = {IDB_BUILD_RUN, IDB_BUILD, IDB_REBUILD};
  static const int kCommands[3] = {IDM_BUILD_RUN, IDM_BUILD, IDM_REBUILD};
  HMENU bar = GetMenu(frame);
  for (int i = 0; i < 3; ++i) {
    // The pictures' corner colour becomes the window colour, so they sit on the bar.
    g_frame.buildBitmaps[i] = static_cast<HBITMAP>(LoadImageW(
        g_frame.instance, MAKEINTRESOURCEW(kBitmaps[i]), IMAGE_BITMAP, 0, 0, LR_LOADTRANSPARENT));
    if (!g_frame.buildBitmaps[i]) continue;
    ModifyMenuW(bar, static_cast<UINT>(kFirstBitmapPosition + i), MF_BYPOSITION | MF_BITMAP,
                static_cast<UINT_PTR>(kCommands[i]),
                reinterpret_cast<LPCWSTR>(g_frame.buildBitmaps[i]));
    SetMenuItemBitmaps(bar, static_cast<UINT>(kCommands[i]), MF_BYCOMMAND, g_frame.buildBitmaps[i],
                       g_frame.buildBitmaps[i]);
  }
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
  ComputeCellSize(frame);
  TranslateMenu(GetMenu(frame));
  PutBuildBitmaps(frame);
  UpdateMenuState(0, false);
  if (!RestoreSession()) PostMessageW(frame, WM_CLOSE, 0, 0);
  if (!g_frame.startedWithFile) SetTimer(frame, kLogoTimer, 200, nullptr);
}

void OnSize(int width, int height) {
  int clientHeight = height > kStatusBarHeight ? height - kStatusBarHeight : 0;
  MoveWindow(g_frame.mdiClient, 0, 0, width, clientHeight, TRUE);
  MoveWindow(g_frame.statusBar, 0, clientHeight, width, kStatusBarHeight, TRUE);
  SetStatusParts(width);
}

// Each editor is asked once to look at its file on disk; the flag waits for its answer. When the
// frame gets the focus back from one of the program's own windows (a dialog or a message box
// closing), the user has not been away: the look is skipped once.
void OnActivate(WPARAM wParam, HWND deactivated) {
  if (LOWORD(wParam) == WA_INACTIVE || !g_frame.mdiClient) return;
  bool byProgram =
      deactivated && GetWindowThreadProcessId(deactivated, nullptr) == GetCurrentThreadId();
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (SetCheckPending(child, byProgram)) PostMessageW(child, WM_COMMAND, kCmdActivated, 0);
  }
}

// Asks a child whether it may close; a zero answer keeps it.
bool CloseChild(HWND child) {
  if (!SendMessageW(child, WM_QUERYENDSESSION, 0, 0)) return false;
  SendMessageW(g_frame.mdiClient, WM_MDIDESTROY, reinterpret_cast<WPARAM>(child), 0);
  return true;
}

// Closes every child without an owner. Every modified document is asked about before any window
// closes, so that Cancel on one of them leaves all of them as they were.
void CloseAllChildren() {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (!GetWindow(child, GW_OWNER) && !SendMessageW(child, WM_QUERYENDSESSION, 0, 0)) return;
  }
  HWND child = GetWindow(g_frame.mdiClient, GW_CHILD);
  while (child) {
    HWND next = GetWindow(child, GW_HWNDNEXT);
    if (!GetWindow(child, GW_OWNER))
      SendMessageW(g_frame.mdiClient, WM_MDIDESTROY, reinterpret_cast<WPARAM>(child), 0);
    child = next;
  }
}

void SaveAll() {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    const EditDocument* document = EditorWindowDocument(child);
    if (document && document->modified && !GetWindow(child, GW_OWNER))
      SendMessageW(child, WM_COMMAND, IDM_SAVE, 0);
  }
}

void StartSecondCopy() {
  wchar_t path[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  if (!length || length >= MAX_PATH) return;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(path, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &process)) {
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
}

void OpenWithDialog(HWND frame) {
  char path[kPathSize] = "";
  if (!AskOpenFileName(frame, path, sizeof path, nullptr, kSourceFileFilter, nullptr, 0)) return;
  OpenOrActivateDocument(path, nullptr, 0, 0);
}

// The file opens with the encoding and tab width chosen in the dialog instead of detected ones.
void ImportWithDialog(HWND frame) {
  ImportAnswer answer;
  if (AskImportDialog(frame, &answer))
    OpenOrActivateDocument(answer.path, nullptr, answer.encoding, answer.tabSize);
}

// Paste is offered only while the clipboard holds text and an editor is there to take it.
void OnInitMenuPopup(HMENU menu) {
  if (GetMenuState(menu, IDM_PASTE, MF_BYCOMMAND) == static_cast<UINT>(-1)) return;
  bool text = IsClipboardFormatAvailable(CF_TEXT) || IsClipboardFormatAvailable(CF_UNICODETEXT);
  bool editor = EditorWindowDocument(ActiveChild()) != nullptr;
  EnableMenuItem(menu, IDM_PASTE, MF_BYCOMMAND | (text && editor ? MF_ENABLED : MF_GRAYED));
}

// After a confirmed options sheet every editor is drawn with the new objects.
// The language stored by the options sheet replaces the loaded one: the menu at once, messages
// and status texts from now on, dialogs as they open.
void ApplyLanguage(HWND frame) {
  // A maximized child puts its system menu first on the bar; the texts go by position.
  BOOL maximized = FALSE;
  HWND active = reinterpret_cast<HWND>(
      SendMessageW(g_frame.mdiClient, WM_MDIGETACTIVE, 0, reinterpret_cast<LPARAM>(&maximized)));
  if (active && maximized)
    SendMessageW(g_frame.mdiClient, WM_MDIRESTORE, reinterpret_cast<WPARAM>(active), 0);
  char language[kLanguageNameSize];
  ReadText(kConfigSection, "Language", language, sizeof language, "");
  UnloadLanguage();
  LoadLanguage(language);
  HMENU bar = GetMenu(frame);
  if (HMENU resource = LoadMenuW(g_frame.instance, MAKEINTRESOURCEW(IDR_QUILL))) {
    RestoreMenu(bar, resource);
    DestroyMenu(resource);
  }
  TranslateMenu(bar);
  if (active && maximized)
    SendMessageW(g_frame.mdiClient, WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(active), 0);
  DrawMenuBar(frame);
  if (EditorWindow* editor = EditorWindowOf(ActiveChild())) ShowEditorStatus(editor);
}

void ApplyOptions(HWND frame) {
  DeleteDisplayObjects();
  CreateDisplayObjects();
  ComputeCellSize(frame);
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (GetWindow(child, GW_OWNER)) continue;
    if (EditorWindow* editor = EditorWindowOf(child)) EditorCellsChanged(editor);
    InvalidateRect(child, nullptr, TRUE);
  }
}

bool OnFrameCommand(HWND frame, int id) {
  switch (id) {
    case IDM_NEW:
      CreateEditorWindow(nullptr, nullptr, 0, 0, 0, 0, 0, 0, kShowDefault);
      return true;
    case IDM_SECOND_COPY:
      StartSecondCopy();
      return true;
    case IDM_OPEN:
      OpenWithDialog(frame);
      return true;
    case IDM_IMPORT:
      ImportWithDialog(frame);
      return true;
    case IDM_HELP:
      ShowHelpWindow(frame);
      return true;
    case IDM_TOOL_CALC:
      ShowIntCalculator(frame);
      return true;
    case IDM_TOOL_RCALC:
      ShowRealCalculator(frame);
      return true;
    case IDM_TOOL_BIN2SRC:
      ShowBinaryToSource(frame);
      return true;
    case IDM_TERMINAL:
      OpenTerminalWindow(frame);
      return true;
    case IDM_TOOL_ERRMSG:
      ShowErrorLookup(frame);
      return true;
    case IDM_TOOL_STRCODE:
      ShowStringCodeView(frame);
      return true;
    case IDM_TOOL_EQUATIONS:
      ShowLinearEquations(frame);
      return true;
    case IDM_OPEN_STYLE:
      ShowStyleConversion(frame);
      return true;
    case IDM_SAVE_ALL:
      SaveAll();
      return true;
    case IDM_OPTIONS:
      if (ShowOptionsSheet(frame)) {
        ApplyOptions(frame);
        if (OptionsChangedLanguage()) ApplyLanguage(frame);
      }
      return true;
    case IDM_EXIT:
      PostMessageW(frame, WM_CLOSE, 0, 0);
      return true;
    case IDM_CLOSE_CHILD:
      if (HWND child = ActiveChild()) CloseChild(child);
      return true;
    case IDM_CLOSE_ALL:
      CloseAllChildren();
      return true;
    case IDM_PRJ_NEW:
      NewProjectWithDialog(frame);
      return true;
    case IDM_PRJ_OPEN:
      OpenProjectWithDialog(frame);
      return true;
    case IDM_PRJ_CLOSE:
      // The project keeps its own desk: the list goes into its file before the windows close.
      if (g_frame.projectWindow) {
        if (const char* file = ProjectListFile()) SaveDocumentList(file);
        CloseAllChildren();
      }
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
  return false;
}

bool OnCommand(HWND frame, WPARAM wParam, LPARAM lParam) {
  int id = LOWORD(wParam);
  switch (FrameCommand(id)) {
    case kCommandWindowList:
      return false;  // the window list belongs to the default handling
    case kCommandFrame:
      // The start-up timer's logo differs from the about command's only when there is none.
      if (id == kCmdLogo) {
        ShowLogoWindow(frame, lParam == kLogoAtStartup);
        return true;
      }
      return OnFrameCommand(frame, id);
    case kCommandProjectWindow:
      if (g_frame.projectWindow) SendMessageW(g_frame.projectWindow, WM_COMMAND, wParam, lParam);
      return true;
    case kCommandUnfinished:
      ShowMessage(frame, kUnfinishedText, MB_OK | MB_ICONINFORMATION);
      return true;
    case kCommandForward:
      if (HWND child = ActiveChild()) SendMessageW(child, WM_COMMAND, wParam, lParam);
      return true;
  }
  return true;
}

// Whether a point of the frame's client area lies on the project window.
bool OnProjectWindow(POINT point) {
  if (!g_frame.projectWindow) return false;
  ClientToScreen(g_frame.frame, &point);
  RECT rect;
  GetWindowRect(g_frame.projectWindow, &rect);
  return PtInRect(&rect, point) != 0;
}

// The first dropped name decides: a project opens as the project; names dropped on the project
// window are added to it (command 33 with the name in the internal form); anything else opens
// each name in turn.
void OnDropFiles(HDROP drop) {
  UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
  POINT point;
  DragQueryPoint(drop, &point);
  bool toProject = OnProjectWindow(point);
  for (UINT i = 0; i < count; ++i) {
    wchar_t wide[MAX_PATH];
    if (!DragQueryFileW(drop, i, wide, MAX_PATH)) continue;
    char path[kPathSize];
    if (!WideCharToMultiByte(CP_UTF8, 0, wide, -1, path, sizeof path, nullptr, nullptr)) continue;
    for (char* p = path; *p; ++p) {
      if (*p == '\\') *p = '/';
    }
    if (i == 0 && IsProjectPath(path)) {
      OpenProjectWindow(path);
      break;
    }
    if (toProject) {
      SendMessageW(g_frame.projectWindow, WM_COMMAND, kCmdAddFileToProject,
                   reinterpret_cast<LPARAM>(path));
    } else {
      OpenOrActivateDocument(path, nullptr, 0, 0);
    }
  }
  DragFinish(drop);
}

void OnClose(HWND frame) {
  SaveSessionAtClose();
  SendMessageW(frame, WM_COMMAND, IDM_CLOSE_ALL, 0);
  if (GetWindow(g_frame.mdiClient, GW_CHILD)) return;  // a document refused to close
  DestroyWindow(frame);
}

void OnDestroy() {
  FreeParserTable();
  for (HBITMAP& bitmap : g_frame.buildBitmaps) {
    if (bitmap) DeleteObject(bitmap);
    bitmap = nullptr;
  }
  PostQuitMessage(0);
}

LRESULT CALLBACK FrameProc(HWND frame, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      OnCreate(frame);
      return 0;
    case WM_SIZE:
      OnSize(LOWORD(lParam), HIWORD(lParam));
      return 0;
    case WM_ACTIVATE:
      OnActivate(wParam, reinterpret_cast<HWND>(lParam));
      break;
    case WM_TIMER:
      if (wParam == kLogoTimer) {
        KillTimer(frame, kLogoTimer);
        PostMessageW(frame, WM_COMMAND, kCmdLogo, kLogoAtStartup);
        return 0;
      }
      break;
    case WM_COMMAND:
      if (OnCommand(frame, wParam, lParam)) return 0;
      break;
    case kMsgUpdateChecked:
      FinishUpdateCheck(frame);
      return 0;
    case WM_INITMENUPOPUP:
      OnInitMenuPopup(reinterpret_cast<HMENU>(wParam));
      break;
    case WM_DROPFILES:
      OnDropFiles(reinterpret_cast<HDROP>(wParam));
      return 0;
    case WM_CLOSE:
      OnClose(frame);
      return 0;
    case WM_DESTROY:
      OnDestroy();
      return 0;
  }
  return DefFrameProcW(frame, g_frame.mdiClient, message, wParam, lParam);
}

// Brings a child to the front; an icon is restored, a maximised desk stays maximised.
void ActivateChild(HWND child) {
  SendMessageW(g_frame.mdiClient, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(child), 0);
  if (IsIconic(child))
    SendMessageW(g_frame.mdiClient, WM_MDIRESTORE, reinterpret_cast<WPARAM>(child), 0);
}

}  // namespace

HWND ActiveChild() {
  return g_frame.mdiClient
             ? reinterpret_cast<HWND>(SendMessageW(g_frame.mdiClient, WM_MDIGETACTIVE, 0, 0))
             : nullptr;
}

HWND OpenOrActivateDocument(const char* path, const char* style, int importCode, int importOption) {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (EditorShowsPath(child, path)) {
      ActivateChild(child);
      return child;
    }
  }
  HWND active = ActiveChild();
  if (IsEmptyNewDocument(active)) {
    EditDocument* document = EditorWindowDocument(active);
    strncpy(document->path, path, kPathSize - 1);
    document->path[kPathSize - 1] = '\0';
    // The conversion style travels in the second name field until the converter reads it.
    if (style) {
      strncpy(document->sourcePath, style, kPathSize - 1);
      document->sourcePath[kPathSize - 1] = '\0';
    }
    document->untitled = 0;
    document->encoding = static_cast<uint8_t>(importCode);
    document->tabSize = static_cast<uint8_t>(importOption);
    document->keepTabSize = importOption ? 1 : 0;
    ActivateChild(active);
    SendMessageW(active, WM_COMMAND, kCmdLoad, 0);
    return active;
  }
  return CreateEditorWindow(path, nullptr, importCode, importOption, 0, 0, 0, 0, kShowDefault);
}

void UpdateMenuState(int mode, bool quick) {
  MenuStatePlan plan;
  PlanMenuState(mode, quick, g_frame.projectWindow != nullptr, &plan);
  HMENU bar = GetMenu(g_frame.frame);
  for (int i = 0; i < plan.count; ++i) {
    const MenuItemState& item = plan.items[i];
    UINT flags =
        (item.byPosition ? MF_BYPOSITION : MF_BYCOMMAND) | (item.enabled ? MF_ENABLED : MF_GRAYED);
    EnableMenuItem(bar, static_cast<UINT>(item.id), flags);
  }
  if (plan.redrawBar) DrawMenuBar(g_frame.frame);
}

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
