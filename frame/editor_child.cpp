#include "frame/editor_child.h"

#include <cstring>

#include "comm/terminal_session.h"
#include "editor/colour_runs.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/key_commands.h"
#include "foundation/diagnostics.h"
#include "foundation/host.h"
#include "foundation/memory.h"
#include "frame/editor_window.h"
#include "frame/frame_owners.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/parser_window.h"
#include "frame/status_bar.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"

const wchar_t kEditorClassName[] = L"Quill";

namespace {

// Room at the left of every line for the bookmark marks.
constexpr int kLeftMargin = 6;
// Commands from here on are the frame's window list, not the editor's.
constexpr int kWindowListIds = 10000;
// The parts of a composition message (GCS_COMPSTR, GCS_RESULTSTR).
constexpr LPARAM kCompositionString = 0x0008;
constexpr LPARAM kCompositionResult = 0x0800;

EditorWindow* ChildOf(HWND window) {
  wchar_t name[32];
  if (!window || !GetClassNameW(window, name, 32) || wcscmp(name, kEditorClassName) != 0)
    return nullptr;
  return reinterpret_cast<EditorWindow*>(GetWindowLongPtrW(window, 0));
}

void FreeEditor(EditorWindow* editor) {
  if (!editor) return;
  FreeColourRuns(editor->runs);
  FreeDocument(editor->document);
  FreeMem(editor);
}

// Yes saves first (a failed save keeps the window), No closes, Cancel keeps the window.
bool MayClose(EditorWindow* editor) {
  if (IsParserWindow(static_cast<HWND>(editor->view.window))) return true;  // nothing of the user's
  switch (ConfirmSaveIfModified(&editor->view)) {
    case kIdCancel:
      return false;
    case kIdYes:
      return SaveDocument(&editor->view, false);
  }
  return true;
}

void OnCommand(EditorWindow* editor, int id) {
  if (id == kCmdActivated) editor->checkPending = false;
  RunEditorCommand(&editor->view, id);
  ShowEditorStatus(editor);
}

LRESULT CALLBACK EditorChildProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  EditorWindow* editor = reinterpret_cast<EditorWindow*>(GetWindowLongPtrW(window, 0));
  switch (message) {
    case WM_CREATE: {
      const CREATESTRUCTW* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      const MDICREATESTRUCTW* mdi = static_cast<const MDICREATESTRUCTW*>(create->lpCreateParams);
      editor = reinterpret_cast<EditorWindow*>(mdi->lParam);
      SetWindowLongPtrW(window, 0, mdi->lParam);
      editor->view.window = window;
      SizeTextArea(editor);
      UpdateScrollBar(editor);
      return 0;
    }
    case WM_SIZE:
      // A minimised window keeps its place: no caret has to be kept in a view of no size.
      if (editor && wParam != SIZE_MINIMIZED) {
        SizeTextArea(editor);
        FitEditorView(editor);
      }
      break;  // the MDI default keeps the frame's menu in step with a maximised child
    case WM_PAINT:
      if (!editor) break;
      PaintEditor(window, editor);
      return 0;
    case WM_ERASEBKGND:
      return 1;  // painting covers the whole client area
    case WM_SETFOCUS:
      if (!editor) break;
      editor->hasFocus = true;
      MakeCaret(editor);
      return 0;
    case WM_KILLFOCUS:
      if (!editor) break;
      editor->hasFocus = false;
      DestroyCaret();
      return 0;
    case WM_KEYDOWN:
      if (editor && EditorKeyDown(editor, static_cast<int>(wParam))) return 0;
      break;
    case WM_CHAR:
      if (editor) EditorCharacter(editor, static_cast<char16_t>(wParam));
      return 0;
    case kTerminalNotice:
      TerminalWindowNotice(window, wParam);
      return 0;
    case WM_IME_STARTCOMPOSITION:
      return 0;  // no composition window: the character is shown in place
    case WM_IME_COMPOSITION:
      if (!editor) break;
      if (lParam & kCompositionResult) {
        DropComposition(editor);
        break;  // the default turns the result into character messages
      }
      EditorComposition(editor, (lParam & kCompositionString) ? static_cast<char16_t>(wParam) : 0);
      return 0;
    case WM_LBUTTONDOWN:
      if (editor) {
        SetFocus(window);
        EditorMouseDown(editor, static_cast<short>(LOWORD(lParam)),
                        static_cast<short>(HIWORD(lParam)), (wParam & MK_SHIFT) != 0);
      }
      return 0;
    case WM_MOUSEMOVE:
      if (editor)
        EditorMouseMove(editor, static_cast<short>(LOWORD(lParam)),
                        static_cast<short>(HIWORD(lParam)));
      return 0;
    case WM_LBUTTONUP:
      if (editor) EditorMouseUp(editor);
      return 0;
    case WM_CAPTURECHANGED:
      if (editor && reinterpret_cast<HWND>(lParam) != window) EditorMouseUp(editor);
      return 0;
    case WM_TIMER:
      if (editor && wParam == kDragScrollTimer) EditorDragTimer(editor);
      return 0;
    case WM_LBUTTONDBLCLK:
      if (editor) EditorDoubleClick(editor);
      return 0;
    case WM_MOUSEWHEEL:
      if (editor) EditorWheel(editor, static_cast<short>(HIWORD(wParam)));
      return 0;
    case WM_VSCROLL:
      if (editor) EditorVerticalScroll(editor, static_cast<int>(wParam));
      return 0;
    case WM_HSCROLL:
      if (editor) EditorHorizontalScroll(editor, static_cast<int>(wParam));
      return 0;
    case WM_COMMAND:
      if (editor && LOWORD(wParam) < kWindowListIds) OnCommand(editor, LOWORD(wParam));
      return 0;
    case WM_QUERYENDSESSION:
      return editor ? MayClose(editor) : 1;
    case WM_CLOSE:
      if (editor && !MayClose(editor)) return 0;
      SendMessageW(g_frame.mdiClient, WM_MDIDESTROY, reinterpret_cast<WPARAM>(window), 0);
      return 0;
    case WM_MDIACTIVATE:
      if (editor && reinterpret_cast<HWND>(lParam) == window) {
        ShowEditorStatus(editor);
        UpdateMenuState(1, true);
      }
      break;
    case WM_DESTROY:
      if (editor && !editor->document->untitled) SaveFileState(&editor->view);
      ParserWindowClosing(window);
      // The last document going leaves nothing for the document commands to work on.
      if (!GetWindow(window, GW_HWNDNEXT) && !GetWindow(window, GW_HWNDPREV)) {
        UpdateMenuState(0, false);
        ClearStatusCursor();
        SetStatusMessage(nullptr);
        SetStatusFormat(nullptr);
      }
      break;
    case WM_NCDESTROY:
      if (editor) {
        FreeEditor(editor);
        SetWindowLongPtrW(window, 0, 0);
        ReleaseEditorClipboardCopy();
      }
      break;
  }
  return DefMDIChildProcW(window, message, wParam, lParam);
}

}  // namespace

EditorWindow* EditorWindowOf(HWND window) {
  return ChildOf(window);
}

bool RegisterEditorChildClass(HINSTANCE instance) {
  InstallEditorHosts();
  WNDCLASSEXW cls = {};
  cls.cbSize = sizeof cls;
  cls.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
  cls.lpfnWndProc = EditorChildProc;
  cls.cbWndExtra = sizeof(void*);
  cls.hInstance = instance;
  cls.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_DOCUMENT));
  cls.hIconSm = cls.hIcon;
  cls.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32513));  // IDC_IBEAM
  cls.hbrBackground = nullptr;  // painting fills the background itself
  cls.lpszClassName = kEditorClassName;
  if (RegisterClassExW(&cls)) return true;
  DebugLog("QE_RegistMdiChild() Error");
  return false;
}

HWND CreateEditorWindow(const char* path, const char* sourcePath, int encoding, int tabSize, int x,
                        int y, int width, int height, int show) {
  EditorWindow* editor =
      static_cast<EditorWindow*>(AllocMem(sizeof(EditorWindow), kOwnerEditorChild));
  if (!editor) return nullptr;
  memset(editor, 0, sizeof *editor);
  editor->document = path ? NewDocumentFor(path) : NewDocument();
  editor->runs = NewColourRuns();
  if (!editor->document || !editor->runs) {
    FreeEditor(editor);
    return nullptr;
  }
  EditDocument* document = editor->document;
  if (sourcePath) strncpy(document->sourcePath, sourcePath, kPathSize - 1);
  document->encoding = static_cast<uint8_t>(encoding);
  document->tabSize = static_cast<uint8_t>(tabSize);
  if (tabSize) document->keepTabSize = 1;
  editor->view.document = document;
  editor->view.leftMargin = kLeftMargin;
  editor->view.colourRuns = editor->runs;

  MDICREATESTRUCTW create = {};
  create.szClass = kEditorClassName;
  create.szTitle = L"Quill";
  create.hOwner = g_frame.instance;
  bool given = show != kShowDefault;
  create.x = given ? x : CW_USEDEFAULT;
  create.y = given ? y : CW_USEDEFAULT;
  create.cx = given ? width : CW_USEDEFAULT;
  create.cy = given ? height : CW_USEDEFAULT;
  create.style = WS_VSCROLL | WS_HSCROLL;
  // A new document on a maximised desk is maximised too, as the one it covers stays.
  HWND active = ActiveChild();
  if (show == SW_SHOWMAXIMIZED || (show == kShowDefault && active && IsZoomed(active)))
    create.style |= WS_MAXIMIZE;
  if (show == SW_SHOWMINIMIZED) create.style |= WS_MINIMIZE;
  create.lParam = reinterpret_cast<LPARAM>(editor);
  HWND window = reinterpret_cast<HWND>(
      SendMessageW(g_frame.mdiClient, WM_MDICREATE, 0, reinterpret_cast<LPARAM>(&create)));
  if (!window) {
    DebugLog("QE_CreateMdiChild() Errror");
    FreeEditor(editor);
    return nullptr;
  }
  // Show -2 keeps the window only for a file that was read; otherwise a failed load (a missing
  // file quietly, any other failure after its message) leaves an empty document under the name.
  if (path && !LoadDocument(&editor->view) && show == kShowGiven) {
    SendMessageW(g_frame.mdiClient, WM_MDIDESTROY, reinterpret_cast<WPARAM>(window), 0);
    return nullptr;
  }
  ShowDocumentTitle(window, document->path);
  UpdateScrollBar(editor);
  ShowEditorStatus(editor);
  if (show == kShowGiven)
    SendMessageW(g_frame.mdiClient, WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(window), 0);
  return window;
}

EditDocument* EditorWindowDocument(HWND window) {
  EditorWindow* editor = ChildOf(window);
  return editor ? editor->document : nullptr;
}

bool EditorShowsPath(HWND window, const char* path) {
  const EditDocument* document = EditorWindowDocument(window);
  if (!document) return false;
  return SamePath(document->path, path);
}

bool SetCheckPending(HWND window, bool byProgram) {
  EditorWindow* editor = ChildOf(window);
  if (!editor || editor->checkPending) return false;
  editor->checkPending = true;
  editor->document->skipReloadCheck = byProgram ? 1 : 0;
  return true;
}

void ShowDocumentTitle(HWND window, const char* path) {
  wchar_t title[kPathSize];
  if (!MultiByteToWideChar(CP_UTF8, 0, path, -1, title, kPathSize)) title[0] = L'\0';
  for (wchar_t* p = title; *p; ++p) {
    if (*p == L'/') *p = L'\\';
  }
  SetWindowTextW(window, title);
  // The MDI client builds the window menu from the titles only when asked; a new title is not
  // enough.
  SendMessageW(g_frame.mdiClient, WM_MDIREFRESHMENU, 0, 0);
  DrawMenuBar(g_frame.frame);
}

bool IsEmptyNewDocument(HWND window) {
  EditorWindow* editor = ChildOf(window);
  if (!editor) return false;
  const EditDocument* document = editor->document;
  return document->untitled && !document->modified &&
         (document->lineCount == 0 ||
          (document->lineCount == 1 && LineLength(DocumentLine(document, 0)) == 0));
}
