#include "calc/int_calculator.h"
#include "calc/real_expression.h"
#include "calc/running_calc.h"
#include "foundation/modeless.h"
#include "foundation/placement.h"
#include "foundation/settings.h"
#include "frame/frame_state.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"

namespace {

constexpr char kStyleKey[] = "DecimalCalcStyle";  // index of the style radio: 0 running

int g_openRealCalcs = 0;
WNDPROC g_editProc = nullptr;  // every input edit has the same class procedure

// What each window remembers: whether it keeps its place (the first of a cascade) and the style
// it opened with, so that Cancel writes the setting only when it changed.
constexpr wchar_t kOpenedStyle[] = L"QuillRealCalcStyle";

int CheckedStyle(HWND dialog) {
  return IsDlgButtonChecked(dialog, IDC_CALC_RUNNING) == BST_CHECKED ? 0 : 1;
}

void Evaluate(HWND dialog) {
  wchar_t wide[kRealCalcInputSize];
  GetDlgItemTextW(dialog, IDC_TOOL_INPUT, wide, kRealCalcInputSize);
  char input[kRealCalcInputSize * 3];
  if (!WideCharToMultiByte(CP_UTF8, 0, wide, -1, input, sizeof input, nullptr, nullptr))
    input[0] = '\0';
  char output[2048];
  if (CheckedStyle(dialog) == 0) {
    EvaluateRunningCalc(input, output, sizeof output);
  } else {
    EvaluateRealExpression(input, output, sizeof output);
  }
  SetToolOutput(dialog, output);
}

// Ctrl+Backspace empties the input (command 104) instead of putting a character in it.
LRESULT CALLBACK InputProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  bool control = GetKeyState(VK_CONTROL) < 0;
  if (message == WM_KEYDOWN && wParam == VK_BACK && control) {
    PostMessageW(GetParent(edit), WM_COMMAND, IDC_CALC_CLEAR, 0);
    return 0;
  }
  if (message == WM_CHAR && wParam == 0x7F) return 0;  // the character Ctrl+Backspace types
  return CallWindowProcW(g_editProc, edit, message, wParam, lParam);
}

INT_PTR CALLBACK RealCalcProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  PlaceCascaded(dialog, message, &g_openRealCalcs);
  if (CalcFrameMessage(dialog, message, wParam, lParam)) return TRUE;
  switch (message) {
    case WM_INITDIALOG: {
      int style = ReadInt(kConfigSection, kStyleKey, 0) == 0 ? 0 : 1;
      SetPropW(dialog, kOpenedStyle, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(style + 1)));
      CheckRadioButton(dialog, IDC_CALC_RUNNING, IDC_CALC_EXPRESSION,
                       style == 0 ? IDC_CALC_RUNNING : IDC_CALC_EXPRESSION);
      HWND input = GetDlgItem(dialog, IDC_TOOL_INPUT);
      SendMessageW(input, EM_LIMITTEXT, kRealCalcInputSize - 1, 0);
      WNDPROC old = reinterpret_cast<WNDPROC>(
          SetWindowLongPtrW(input, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(InputProc)));
      if (!g_editProc) g_editProc = old;
      LayOutToolEdits(dialog);
      PostMessageW(dialog, WM_COMMAND, IDOK, 0);
      return TRUE;
    }
    case WM_CTLCOLORSTATIC: {
      // The radio buttons' labels stand on the gradient.
      HWND control = reinterpret_cast<HWND>(lParam);
      int id = GetDlgCtrlID(control);
      if (id != IDC_CALC_RUNNING && id != IDC_CALC_EXPRESSION) break;
      SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
      return reinterpret_cast<INT_PTR>(GetStockObject(NULL_BRUSH));
    }
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDOK:
        case IDC_CALC_RUNNING:
        case IDC_CALC_EXPRESSION:
          Evaluate(dialog);
          return TRUE;
        case IDC_CALC_CLEAR:
          SetDlgItemTextW(dialog, IDC_TOOL_INPUT, L"");
          return TRUE;
        case IDC_TOOL_INPUT:
          if (HIWORD(wParam) == EN_CHANGE) Evaluate(dialog);
          return TRUE;
        case IDCANCEL: {
          int opened =
              static_cast<int>(reinterpret_cast<INT_PTR>(GetPropW(dialog, kOpenedStyle))) - 1;
          int style = CheckedStyle(dialog);
          if (style != opened) WriteNums(kConfigSection, kStyleKey, style);
          DestroyWindow(dialog);
          return TRUE;
        }
      }
      break;
    case WM_DESTROY:
      RemovePropW(dialog, kOpenedStyle);
      RemoveModelessDialog(dialog);
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void ShowRealCalculator(HWND frame) {
  HWND dialog =
      CreateDialogParamW(g_frame.instance, MAKEINTRESOURCEW(IDD_REAL_CALC), frame, RealCalcProc, 0);
  if (!dialog) return;
  if (!RegisterModelessDialog(dialog)) {
    DestroyWindow(dialog);
    return;
  }
  ShowWindow(dialog, SW_SHOW);
}
