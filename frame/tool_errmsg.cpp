#include "foundation/modeless.h"
#include "foundation/placement.h"
#include "frame/dialog_support.h"
#include "frame/frame_state.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"
#include "tools/error_lookup.h"

namespace {

HWND g_errorLookup = nullptr;  // the one window, while it is open

void LookUp(HWND dialog) {
  char input[kErrorLookupInputSize * 3 + 1];
  GetControlText(dialog, IDC_TOOL_INPUT, input, sizeof input, false);
  char output[4096];
  unsigned code = 0;
  LookUpErrorText(input, output, sizeof output, &code);
  SetToolOutput(dialog, output);
}

INT_PTR CALLBACK ErrorLookupProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  PlaceDialog(dialog, message, true, true);
  switch (message) {
    case WM_INITDIALOG:
      LayOutToolEdits(dialog);
      SendDlgItemMessageW(dialog, IDC_TOOL_INPUT, EM_LIMITTEXT, kErrorLookupInputSize, 0);
      return TRUE;
    case WM_GETMINMAXINFO:
      LimitToolTracking(lParam, 200, 70);
      return TRUE;
    case WM_SIZE:
      LayOutToolEdits(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK) {
        LookUp(dialog);
        return TRUE;
      }
      if (LOWORD(wParam) == IDCANCEL) {
        DestroyWindow(dialog);
        return TRUE;
      }
      break;
    case WM_DESTROY:
      RemoveModelessDialog(dialog);
      if (g_errorLookup == dialog) g_errorLookup = nullptr;
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void ShowErrorLookup(HWND frame) {
  if (g_errorLookup) {
    if (IsIconic(g_errorLookup)) ShowWindow(g_errorLookup, SW_RESTORE);
    SetForegroundWindow(g_errorLookup);
    return;
  }
  HWND dialog = CreateDialogParamW(g_frame.instance, MAKEINTRESOURCEW(IDD_ERROR_LOOKUP), frame,
                                   ErrorLookupProc, 0);
  if (!dialog) return;
  if (!RegisterModelessDialog(dialog)) {
    DestroyWindow(dialog);
    return;
  }
  g_errorLookup = dialog;
  ShowWindow(dialog, SW_SHOW);
}
