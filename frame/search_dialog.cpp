// The find and replace dialogs. Their fields drop down the histories of earlier searches; the
// options come from the shared search record, which the editor loads from "FindText" before and
// saves after the dialog.
#include <cstring>

#include "editor/search_request.h"
#include "frame/dialog_support.h"
#include "frame/editor_dialogs.h"
#include "resources/resource.h"

namespace {

constexpr int kEntryBytes = 1040;  // 259 units in UTF-8, with room to spare

void FillHistory(HWND dialog, int id, const char* history) {
  HWND combo = GetDlgItem(dialog, id);
  if (!combo) return;
  char entry[kEntryBytes];
  wchar_t wide[kSearchTextUnits];
  for (int i = 0; i < kHistoryEntries && ReadHistory(history, i, entry, sizeof entry); ++i) {
    if (MultiByteToWideChar(CP_UTF8, 0, entry, -1, wide, kSearchTextUnits) > 0)
      SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide));
  }
  SendMessageW(combo, CB_LIMITTEXT, kSearchTextUnits - 1, 0);
}

void SetField(HWND dialog, int id, const char16_t* text) {
  SetDlgItemTextW(dialog, id, reinterpret_cast<const wchar_t*>(text));
}

void GetField(HWND dialog, int id, char16_t* field) {
  wchar_t wide[kSearchTextUnits];
  int length = GetDlgItemTextW(dialog, id, wide, kSearchTextUnits);
  SetSearchText(field, reinterpret_cast<const char16_t*>(wide), length);
}

void Fill(HWND dialog, const SearchRequest* request) {
  FillHistory(dialog, IDC_FIND_TEXT, kFindHistory);
  FillHistory(dialog, IDC_REPLACE_TEXT, kReplaceHistory);
  SetField(dialog, IDC_FIND_TEXT, request->findText);
  if (request->mode == 1) SetField(dialog, IDC_REPLACE_TEXT, request->replaceText);
  CheckDlgButton(dialog, IDC_MATCH_CASE, request->caseSensitive ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(dialog, IDC_WHOLE_WORD, request->wholeWord ? BST_CHECKED : BST_UNCHECKED);
  CheckRadio(dialog, IDC_DIR_UP, IDC_DIR_DOWN, request->direction);
  CheckRadio(dialog, IDC_SCOPE_ALL, IDC_SCOPE_SELECTION, request->scope);
  CheckRadio(dialog, IDC_ORIGIN_CARET, IDC_ORIGIN_TOP, request->origin);
  SendDlgItemMessageW(dialog, IDC_FIND_TEXT, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
}

// False when the find field is empty: the dialog then stays open.
bool ReadBack(HWND dialog, SearchRequest* request, bool replaceAll) {
  if (GetWindowTextLengthW(GetDlgItem(dialog, IDC_FIND_TEXT)) == 0) return false;
  GetField(dialog, IDC_FIND_TEXT, request->findText);
  if (request->mode == 1) GetField(dialog, IDC_REPLACE_TEXT, request->replaceText);
  request->caseSensitive = IsDlgButtonChecked(dialog, IDC_MATCH_CASE) == BST_CHECKED;
  request->wholeWord = IsDlgButtonChecked(dialog, IDC_WHOLE_WORD) == BST_CHECKED;
  request->direction = CheckedRadio(dialog, IDC_DIR_UP, IDC_DIR_DOWN);
  if (request->mode == 1) request->scope = CheckedRadio(dialog, IDC_SCOPE_ALL, IDC_SCOPE_SELECTION);
  request->origin = CheckedRadio(dialog, IDC_ORIGIN_CARET, IDC_ORIGIN_TOP);
  request->replaceAll = replaceAll ? 1 : 0;
  return true;
}

void SwapFields(HWND dialog) {
  wchar_t find[kSearchTextUnits], replace[kSearchTextUnits];
  GetDlgItemTextW(dialog, IDC_FIND_TEXT, find, kSearchTextUnits);
  GetDlgItemTextW(dialog, IDC_REPLACE_TEXT, replace, kSearchTextUnits);
  SetDlgItemTextW(dialog, IDC_FIND_TEXT, replace);
  SetDlgItemTextW(dialog, IDC_REPLACE_TEXT, find);
}

INT_PTR CALLBACK SearchDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  SearchRequest* request = static_cast<SearchRequest*>(DialogData(dialog, message, lParam));
  switch (message) {
    case WM_INITDIALOG:
      Fill(dialog, request);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDOK:
        case IDC_REPLACE_ALL:
          if (ReadBack(dialog, request, LOWORD(wParam) == IDC_REPLACE_ALL))
            EndDialog(dialog, 1);
          else
            SetFocus(GetDlgItem(dialog, IDC_FIND_TEXT));
          return TRUE;
        case IDCANCEL:
          EndDialog(dialog, 0);
          return TRUE;
        case IDC_CLEAR_FIND:
          SetDlgItemTextW(dialog, IDC_FIND_TEXT, L"");
          SetFocus(GetDlgItem(dialog, IDC_FIND_TEXT));
          return TRUE;
        case IDC_SWAP_TEXTS:
          SwapFields(dialog);
          return TRUE;
      }
      break;
  }
  return FALSE;
}

}  // namespace

bool RunSearchDialog(HWND owner, SearchRequest* request) {
  int id = request->mode == 1 ? IDD_REPLACE : IDD_FIND;
  return RunDialog(owner, id, SearchDialogProc, request) == 1;
}
