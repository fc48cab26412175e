// The line sort dialog (command 26, asked by the editor's command): order, case, numbers and
// duplicates; the editor keeps the choices.
#include "editor/line_sort.h"
#include "frame/dialog_support.h"
#include "frame/editor_dialogs.h"
#include "resources/resource.h"

namespace {

INT_PTR CALLBACK LineSortProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* options = static_cast<LineSortOptions*>(DialogData(dialog, message, lParam));
  if (message == WM_INITDIALOG) {
    CheckRadio(dialog, IDC_SORT_ASCENDING, IDC_SORT_DESCENDING, options->descending ? 1 : 0);
    CheckDlgButton(dialog, IDC_SORT_IGNORE_CASE, options->ignoreCase ? BST_CHECKED : 0);
    CheckDlgButton(dialog, IDC_SORT_NUMBERS, options->numbers ? BST_CHECKED : 0);
    CheckDlgButton(dialog, IDC_SORT_UNIQUE, options->unique ? BST_CHECKED : 0);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  if (LOWORD(wParam) == IDOK) {
    options->descending = CheckedRadio(dialog, IDC_SORT_ASCENDING, IDC_SORT_DESCENDING);
    options->ignoreCase = IsDlgButtonChecked(dialog, IDC_SORT_IGNORE_CASE) == BST_CHECKED;
    options->numbers = IsDlgButtonChecked(dialog, IDC_SORT_NUMBERS) == BST_CHECKED;
    options->unique = IsDlgButtonChecked(dialog, IDC_SORT_UNIQUE) == BST_CHECKED;
    EndDialog(dialog, 1);
  } else if (LOWORD(wParam) == IDCANCEL) {
    EndDialog(dialog, 0);
  }
  return TRUE;
}

}  // namespace

bool AskLineSortDialog(HWND owner, LineSortOptions* options) {
  return RunDialog(owner, IDD_LINE_SORT, LineSortProc, options) == 1;
}
