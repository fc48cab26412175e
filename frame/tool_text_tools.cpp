// The string code view (command 29) and the linear equation calculator (command 25): modeless
// windows of an input and an output edit, each one window brought to the front when open.
#include <cstring>

#include "calc/linear_equations.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "foundation/memory.h"
#include "foundation/modeless.h"
#include "foundation/placement.h"
#include "frame/editor_child.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"
#include "tools/string_code.h"

namespace {

constexpr int kOwnerToolText = 7101;  // the windows' texts in and out
// The selection taken into the string code view is cut to this many units.
constexpr int kStringCodeInput = 16384;
constexpr int kEquationsInput = 65536;
constexpr UINT_PTR kFollowTimer = 1;
constexpr UINT kFollowMilliseconds = 300;

HWND g_stringCode = nullptr;
HWND g_equations = nullptr;

// What the string code view last took from an editor, so that only a change is taken again.
struct FollowedSelection {
  const EditDocument* document;
  uint32_t version;
  int startColumn, startLine, endColumn, endLine, blockMode;
};
FollowedSelection g_followed = {};

// The output edit's text from UTF-8 of any length.
void SetOutputText(HWND dialog, const char* text) {
  int units = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
  if (units <= 0) return;
  auto* wide =
      static_cast<wchar_t*>(AllocMem(static_cast<size_t>(units) * sizeof(wchar_t), kOwnerToolText));
  if (!wide) return;
  MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, units);
  SetDlgItemTextW(dialog, IDC_TOOL_OUTPUT, wide);
  FreeMem(wide);
}

// The input edit's text; the caller frees it.
wchar_t* InputText(HWND dialog, int* length) {
  HWND input = GetDlgItem(dialog, IDC_TOOL_INPUT);
  int count = GetWindowTextLengthW(input);
  auto* text = static_cast<wchar_t*>(
      AllocMem(static_cast<size_t>(count + 1) * sizeof(wchar_t), kOwnerToolText));
  if (!text) return nullptr;
  *length = GetWindowTextW(input, text, count + 1);
  return text;
}

void ShowStringCodes(HWND dialog) {
  int length = 0;
  wchar_t* input = InputText(dialog, &length);
  if (!input) return;
  char* text = StringCodeText(reinterpret_cast<char16_t*>(input), length);
  FreeMem(input);
  if (text) SetOutputText(dialog, text);
  FreeMem(text);
}

// The active editor's selection into the input, when it changed since it was last taken.
void FollowSelection(HWND dialog) {
  HWND child = ActiveChild();
  if (!child || !EditorWindowDocument(child)) return;
  EditorWindow* editor = EditorWindowOf(child);
  if (!editor || !HasSelection(&editor->view)) return;
  const EditorView* view = &editor->view;
  Selection s = NormalisedSelection(view);
  const UndoRecord* head = UndoHead(view->document);
  FollowedSelection now = {
      view->document, head ? head->version : 0, s.startColumn, s.startLine, s.endColumn,
      s.endLine,      view->blockMode};
  if (memcmp(&now, &g_followed, sizeof now) == 0) return;
  g_followed = now;
  TextPosition from = {s.startColumn, s.startLine};
  TextPosition to = {s.endColumn, s.endLine};
  bool column = view->blockMode == 1;
  int count = CollectRange(view->document, from, to, view->blockMode, column, true, nullptr);
  auto* units = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(count + 1) * sizeof(char16_t), kOwnerToolText));
  if (!units) return;
  CollectRange(view->document, from, to, view->blockMode, column, true, units);
  int kept = count < kStringCodeInput ? count : kStringCodeInput;
  units[kept] = 0;
  SetDlgItemTextW(dialog, IDC_TOOL_INPUT, reinterpret_cast<wchar_t*>(units));
  FreeMem(units);
}

INT_PTR CALLBACK StringCodeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  PlaceDialog(dialog, message, true, true);
  switch (message) {
    case WM_INITDIALOG:
      LayOutToolEdits(dialog);
      SendDlgItemMessageW(dialog, IDC_TOOL_INPUT, EM_LIMITTEXT, kStringCodeInput, 0);
      g_followed = {};
      FollowSelection(dialog);
      ShowStringCodes(dialog);
      SetTimer(dialog, kFollowTimer, kFollowMilliseconds, nullptr);
      return TRUE;
    case WM_TIMER:
      if (wParam == kFollowTimer) FollowSelection(dialog);
      return TRUE;
    case WM_GETMINMAXINFO:
      LimitToolTracking(lParam, 220, 120);
      return TRUE;
    case WM_SIZE:
      LayOutToolEdits(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDC_TOOL_INPUT && HIWORD(wParam) == EN_CHANGE) {
        ShowStringCodes(dialog);
        return TRUE;
      }
      if (LOWORD(wParam) == IDCANCEL) {
        DestroyWindow(dialog);
        return TRUE;
      }
      break;
    case WM_DESTROY:
      KillTimer(dialog, kFollowTimer);
      RemoveModelessDialog(dialog);
      if (g_stringCode == dialog) g_stringCode = nullptr;
      return TRUE;
  }
  return FALSE;
}

void SolveEquations(HWND dialog) {
  int length = 0;
  wchar_t* input = InputText(dialog, &length);
  if (!input) return;
  int size = WideCharToMultiByte(CP_UTF8, 0, input, length + 1, nullptr, 0, nullptr, nullptr);
  auto* text =
      static_cast<char*>(AllocMem(static_cast<size_t>(size > 0 ? size : 1), kOwnerToolText));
  if (text) {
    text[0] = '\0';
    WideCharToMultiByte(CP_UTF8, 0, input, length + 1, text, size, nullptr, nullptr);
    int result = 0;
    char* answer = SolveLinearEquations(text, &result);
    if (answer) SetOutputText(dialog, answer);
    FreeMem(answer);
  }
  FreeMem(text);
  FreeMem(input);
}

INT_PTR CALLBACK EquationsProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  PlaceDialog(dialog, message, true, true);
  switch (message) {
    case WM_INITDIALOG:
      LayOutToolEdits(dialog);
      SendDlgItemMessageW(dialog, IDC_TOOL_INPUT, EM_LIMITTEXT, kEquationsInput, 0);
      SolveEquations(dialog);
      return TRUE;
    case WM_GETMINMAXINFO:
      LimitToolTracking(lParam, 220, 150);
      return TRUE;
    case WM_SIZE:
      LayOutToolEdits(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDC_TOOL_INPUT && HIWORD(wParam) == EN_CHANGE) {
        SolveEquations(dialog);
        return TRUE;
      }
      if (LOWORD(wParam) == IDCANCEL) {
        DestroyWindow(dialog);
        return TRUE;
      }
      break;
    case WM_DESTROY:
      RemoveModelessDialog(dialog);
      if (g_equations == dialog) g_equations = nullptr;
      return TRUE;
  }
  return FALSE;
}

void ShowOne(HWND frame, HWND* window, int id, DLGPROC procedure) {
  if (*window) {
    if (IsIconic(*window)) ShowWindow(*window, SW_RESTORE);
    SetForegroundWindow(*window);
    return;
  }
  HWND dialog = CreateDialogParamW(g_frame.instance, MAKEINTRESOURCEW(id), frame, procedure, 0);
  if (!dialog) return;
  if (!RegisterModelessDialog(dialog)) {
    DestroyWindow(dialog);
    return;
  }
  *window = dialog;
  ShowWindow(dialog, SW_SHOW);
}

}  // namespace

void ShowStringCodeView(HWND frame) {
  ShowOne(frame, &g_stringCode, IDD_STRING_CODE, StringCodeProc);
}

void ShowLinearEquations(HWND frame) {
  ShowOne(frame, &g_equations, IDD_EQUATIONS, EquationsProc);
}
