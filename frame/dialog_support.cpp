#include "frame/dialog_support.h"

#include <commctrl.h>

#include "foundation/placement.h"

namespace {

constexpr int kTextUnits = 800;

}  // namespace

const char kSourceFileFilter[] = "Source Files\0*.cpp;*.c;*.h;*.hpp;*.txt\0All Files\0*.*\0";

INT_PTR RunDialog(HWND owner, int id, DLGPROC procedure, void* data) {
  INT_PTR result = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), owner,
                                   procedure, reinterpret_cast<LPARAM>(data));
  return result < 0 ? 0 : result;
}

void* DialogData(HWND dialog, UINT message, LPARAM lParam) {
  if (message == WM_INITDIALOG) SetWindowLongPtrW(dialog, DWLP_USER, lParam);
  // Fixed-size dialogs: "%d %d" stored whenever the dialog is moved.
  PlaceDialog(dialog, message, false, true);
  return reinterpret_cast<void*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

void SetControlText(HWND dialog, int id, const char* text, bool isPath) {
  wchar_t wide[kTextUnits];
  if (!MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, kTextUnits)) wide[0] = L'\0';
  for (wchar_t* p = wide; isPath && *p; ++p) {
    if (*p == L'/') *p = L'\\';
  }
  SetDlgItemTextW(dialog, id, wide);
}

void GetControlText(HWND dialog, int id, char* text, int size, bool isPath) {
  wchar_t wide[kTextUnits];
  GetDlgItemTextW(dialog, id, wide, kTextUnits);
  if (!WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, size, nullptr, nullptr)) text[0] = '\0';
  for (char* p = text; isPath && *p; ++p) {
    if (*p == '\\') *p = '/';
  }
}

void SetSpin(HWND dialog, int spinId, int low, int high, int value) {
  SendDlgItemMessageW(dialog, spinId, UDM_SETRANGE32, static_cast<WPARAM>(low), high);
  SendDlgItemMessageW(dialog, spinId, UDM_SETPOS32, 0, value);
}

int GetSpin(HWND dialog, int spinId) {
  return static_cast<int>(SendDlgItemMessageW(dialog, spinId, UDM_GETPOS32, 0, 0));
}

bool GetNumber(HWND dialog, int id, int* value) {
  BOOL translated = FALSE;
  int number = static_cast<int>(GetDlgItemInt(dialog, id, &translated, TRUE));
  if (!translated) return false;
  *value = number;
  return true;
}

int CheckedRadio(HWND dialog, int first, int last) {
  for (int id = first; id <= last; ++id) {
    if (IsDlgButtonChecked(dialog, id) == BST_CHECKED) return id - first;
  }
  return 0;
}

void CheckRadio(HWND dialog, int first, int last, int index) {
  if (index < 0 || index > last - first) index = 0;
  CheckRadioButton(dialog, first, last, first + index);
}
