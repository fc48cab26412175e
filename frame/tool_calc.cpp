#include <cstring>
#include <initializer_list>

#include "calc/int_calculator.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "foundation/memory.h"
#include "foundation/modeless.h"
#include "foundation/placement.h"
#include "frame/editor_child.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"

namespace {

constexpr int kOwnerCalcSelection = 1012;  // the active editor's selection, collected whole

// Open integer calculators; each new one is cascaded by this count.
int g_openIntCalcs = 0;

// The first calculator of a cascade keeps its place in the settings; the others are offsets.

// The active editor's selection, cut to what the input takes.
void TakeSelection(HWND dialog) {
  HWND child = ActiveChild();
  if (!child || !EditorWindowDocument(child)) return;
  EditorWindow* editor = EditorWindowOf(child);
  if (!editor || !HasSelection(&editor->view)) return;
  const EditorView* view = &editor->view;
  Selection s = NormalisedSelection(view);
  TextPosition from = {s.startColumn, s.startLine};
  TextPosition to = {s.endColumn, s.endLine};
  bool column = view->blockMode == 1;
  int count = CollectRange(view->document, from, to, view->blockMode, column, true, nullptr);
  auto* units = static_cast<char16_t*>(
      AllocMem(static_cast<size_t>(count + 1) * sizeof(char16_t), kOwnerCalcSelection));
  if (!units) return;
  CollectRange(view->document, from, to, view->blockMode, column, true, units);
  int kept = count < kIntCalcInputSize ? count : kIntCalcInputSize;
  units[kept] = 0;
  SetDlgItemTextW(dialog, IDC_TOOL_INPUT, reinterpret_cast<wchar_t*>(units));
  FreeMem(units);
}

void Evaluate(HWND dialog) {
  wchar_t wide[kIntCalcInputSize + 1];
  GetDlgItemTextW(dialog, IDC_TOOL_INPUT, wide, kIntCalcInputSize + 1);
  // Every unit as at most three bytes; the evaluator then reads the first 2047 of them.
  char input[kIntCalcInputSize * 3 + 1];
  if (!WideCharToMultiByte(CP_UTF8, 0, wide, -1, input, sizeof input, nullptr, nullptr))
    input[0] = '\0';
  char output[512];
  FormatIntCalcOutput(input, output, sizeof output);
  SetToolOutput(dialog, output);
}

INT_PTR CALLBACK IntCalcProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  PlaceCascaded(dialog, message, &g_openIntCalcs);
  if (CalcFrameMessage(dialog, message, wParam, lParam)) return TRUE;
  switch (message) {
    case WM_INITDIALOG: {
      LayOutToolEdits(dialog);
      SendDlgItemMessageW(dialog, IDC_TOOL_INPUT, EM_LIMITTEXT, kIntCalcInputSize - 1, 0);
      TakeSelection(dialog);
      PostMessageW(dialog, WM_COMMAND, IDOK, 0);
      return TRUE;
    }
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDOK:
          Evaluate(dialog);
          return TRUE;
        case IDCANCEL:
          DestroyWindow(dialog);
          return TRUE;
        case IDC_TOOL_INPUT:
          if (HIWORD(wParam) == EN_CHANGE) Evaluate(dialog);
          return TRUE;
      }
      break;
    case WM_DESTROY:
      RemoveModelessDialog(dialog);
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void LayOutToolEdits(HWND dialog) {
  RECT client;
  GetClientRect(dialog, &client);
  // Each edit keeps its place from the template; the input widens, the output takes the rest.
  for (int id : {IDC_TOOL_INPUT, IDC_TOOL_OUTPUT}) {
    HWND edit = GetDlgItem(dialog, id);
    RECT rect;
    GetWindowRect(edit, &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    int width = client.right - 2 * rect.left;
    int height =
        id == IDC_TOOL_INPUT ? rect.bottom - rect.top : client.bottom - rect.top - rect.left;
    MoveWindow(edit, rect.left, rect.top, width > 1 ? width : 1, height > 1 ? height : 1, TRUE);
  }
}

// Horizontal bands of the gradient, a few rows each, so that a large window paints quickly.
void PlaceCascaded(HWND dialog, UINT message, int* open) {
  static constexpr wchar_t kKeepsPlace[] = L"QuillCascadeKeepsPlace";
  bool keepsPlace = GetPropW(dialog, kKeepsPlace) != nullptr;
  if (message == WM_INITDIALOG) {
    keepsPlace = *open == 0;
    if (keepsPlace) SetPropW(dialog, kKeepsPlace, reinterpret_cast<HANDLE>(1));
  }
  PlaceDialog(dialog, message, true, keepsPlace);
  if (message == WM_INITDIALOG) {
    int offset = CalcCascadeOffset((*open)++);
    if (offset) {
      RECT rect;
      GetWindowRect(dialog, &rect);
      SetWindowPos(dialog, nullptr, rect.left + offset, rect.top + offset, 0, 0,
                   SWP_NOZORDER | SWP_NOSIZE | SWP_NOACTIVATE);
    }
  } else if (message == WM_DESTROY) {
    RemovePropW(dialog, kKeepsPlace);
    if (*open > 0) --*open;
  }
}

void PaintCalcBackground(HWND dialog, HDC dc) {
  RECT client;
  GetClientRect(dialog, &client);
  int height = client.bottom;
  for (int row = 0; row < height; row += 2) {
    HBRUSH brush = CreateSolidBrush(CalcBackColour(row, height));
    RECT band = {0, row, client.right, row + 2};
    FillRect(dc, &band, brush);
    DeleteObject(brush);
  }
}

bool CalcFrameMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_GETMINMAXINFO:
      LimitToolTracking(lParam, 150, 70);
      return true;
    case WM_SIZE:
      LayOutToolEdits(dialog);
      InvalidateRect(dialog, nullptr, TRUE);
      return true;
    case WM_ERASEBKGND:
      PaintCalcBackground(dialog, reinterpret_cast<HDC>(wParam));
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
      return true;
  }
  return false;
}

void LimitToolTracking(LPARAM minMaxInfo, int width, int height) {
  MINMAXINFO* info = reinterpret_cast<MINMAXINFO*>(minMaxInfo);
  info->ptMinTrackSize.x = width;
  info->ptMinTrackSize.y = height;
}

void SetToolOutput(HWND dialog, const char* text) {
  wchar_t wide[4096];
  if (!MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, 4096)) wide[0] = L'\0';
  SetDlgItemTextW(dialog, IDC_TOOL_OUTPUT, wide);
}

void ShowIntCalculator(HWND frame) {
  HWND dialog =
      CreateDialogParamW(g_frame.instance, MAKEINTRESOURCEW(IDD_INT_CALC), frame, IntCalcProc, 0);
  if (!dialog) return;
  if (!RegisterModelessDialog(dialog)) {
    DestroyWindow(dialog);
    return;
  }
  ShowWindow(dialog, SW_SHOW);
}
