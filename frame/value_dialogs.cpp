// The small questions of the editor: a line number, a tab width, a fill character.
#include "editor/editor_host.h"
#include "frame/dialog_support.h"
#include "frame/editor_dialogs.h"
#include "resources/resource.h"

namespace {

constexpr int kMinTabSize = 2;
constexpr int kMaxTabSize = 16;

// Enter with a value that is not accepted keeps the dialog open on its field.
void Refuse(HWND dialog) {
  MessageBeep(MB_OK);
  HWND field = GetDlgItem(dialog, IDC_VALUE);
  SetFocus(field);
  SendMessageW(field, EM_SETSEL, 0, -1);
}

INT_PTR CALLBACK LineNumberProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  int* number = static_cast<int*>(DialogData(dialog, message, lParam));
  if (message != WM_COMMAND) return message == WM_INITDIALOG;
  if (LOWORD(wParam) == IDOK) {
    if (GetNumber(dialog, IDC_VALUE, number))
      EndDialog(dialog, 1);
    else
      Refuse(dialog);
    return TRUE;
  }
  if (LOWORD(wParam) == IDCANCEL) EndDialog(dialog, 0);
  return TRUE;
}

INT_PTR CALLBACK TabSizeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  TabSizeAnswer* answer = static_cast<TabSizeAnswer*>(DialogData(dialog, message, lParam));
  if (message == WM_INITDIALOG) {
    SetSpin(dialog, IDC_VALUE_SPIN, kMinTabSize, kMaxTabSize, answer->size);
    SetDlgItemInt(dialog, IDC_VALUE, static_cast<UINT>(answer->size), FALSE);
    CheckDlgButton(dialog, IDC_KEEP_TAB_SIZE, BST_CHECKED);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  if (LOWORD(wParam) == IDOK) {
    int size = 0;
    if (!GetNumber(dialog, IDC_VALUE, &size) || size < kMinTabSize || size > kMaxTabSize) {
      Refuse(dialog);
      return TRUE;
    }
    answer->size = size;
    answer->keep = IsDlgButtonChecked(dialog, IDC_KEEP_TAB_SIZE) == BST_CHECKED;
    answer->remember = true;
    EndDialog(dialog, 1);
  } else if (LOWORD(wParam) == IDCANCEL) {
    EndDialog(dialog, 0);
  }
  return TRUE;
}

INT_PTR CALLBACK FillCharacterProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  char16_t* character = static_cast<char16_t*>(DialogData(dialog, message, lParam));
  if (message == WM_INITDIALOG) {
    SendDlgItemMessageW(dialog, IDC_VALUE, EM_LIMITTEXT, 1, 0);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  if (LOWORD(wParam) == IDOK) {
    wchar_t text[4] = L"";
    GetDlgItemTextW(dialog, IDC_VALUE, text, 4);
    if (!text[0]) {
      Refuse(dialog);
      return TRUE;
    }
    *character = static_cast<char16_t>(text[0]);
    EndDialog(dialog, 1);
  } else if (LOWORD(wParam) == IDCANCEL) {
    EndDialog(dialog, 0);
  }
  return TRUE;
}

}  // namespace

bool AskLineNumberDialog(HWND owner, int* number) {
  return RunDialog(owner, IDD_GOTO_LINE, LineNumberProc, number) == 1;
}

bool AskTabSizeDialog(HWND owner, int proposed, TabSizeAnswer* answer) {
  if (proposed < kMinTabSize || proposed > kMaxTabSize) proposed = 8;
  answer->size = proposed;
  return RunDialog(owner, IDD_TAB_SIZE, TabSizeProc, answer) == 1;
}

char16_t AskFillCharacterDialog(HWND owner) {
  char16_t character = 0;
  return RunDialog(owner, IDD_FILL_CHAR, FillCharacterProc, &character) == 1 ? character : 0;
}
