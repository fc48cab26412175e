// Opening a file in an encoding and tab width of the user's choosing, and saving a copy of a
// document in another encoding, tab width and line end.
#include <cstring>

#include "editor/command_host.h"
#include "encoding/encoding_settings.h"
#include "encoding/text_encoding.h"
#include "foundation/file_dialogs.h"
#include "foundation/language.h"
#include "frame/dialog_support.h"
#include "frame/editor_dialogs.h"
#include "resources/resource.h"

namespace {

constexpr int kMaxTabWidth = 16;
constexpr int kStringDetect = 171;  // "자동 판별", the import list's first entry

void Browse(HWND dialog, bool save) {
  char path[kPathSize];
  GetControlText(dialog, IDC_FORMAT_PATH, path, sizeof path, true);
  bool chosen =
      save ? AskSaveFileName(dialog, path, sizeof path, nullptr, kSourceFileFilter, nullptr, 0,
                             "cpp")
           : AskOpenFileName(dialog, path, sizeof path, nullptr, kSourceFileFilter, nullptr, 0);
  if (chosen) SetControlText(dialog, IDC_FORMAT_PATH, path, true);
}

// The mark is written only by the Unicode encodings.
bool TakesByteOrderMark(int encoding) {
  return encoding == UTF8 || encoding == UTF16;
}

void AddListEntry(HWND list, const char* text) {
  wchar_t wide[64];
  if (!MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, 64)) return;
  SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide));
}

// The encoding list shows the encodings' names in their order, after "detect" when it is
// offered, so that an entry's index is its encoding's number (less one without "detect").
void FillEncodingList(HWND dialog, bool withDetect, int encoding) {
  HWND list = GetDlgItem(dialog, IDC_FORMAT_ENCODING);
  if (withDetect) AddListEntry(list, GetStr(kStringDetect));
  for (int code = JOHAP; code <= UTF16; ++code)
    AddListEntry(list, EncodingName(code));
  int index = withDetect ? encoding : encoding - JOHAP;
  int count = withDetect ? UTF16 + 1 : UTF16;
  SendMessageW(list, CB_SETCURSEL, index >= 0 && index < count ? index : 0, 0);
}

int ChosenEncoding(HWND dialog, bool withDetect) {
  LRESULT index = SendDlgItemMessageW(dialog, IDC_FORMAT_ENCODING, CB_GETCURSEL, 0, 0);
  if (index < 0) index = 0;
  return static_cast<int>(withDetect ? index : index + JOHAP);
}

void EnableByteOrderMark(HWND dialog) {
  EnableWindow(GetDlgItem(dialog, IDC_BYTE_ORDER_MARK),
               TakesByteOrderMark(ChosenEncoding(dialog, false)));
}

// The path field's text; false, with the focus put there, when it is empty.
bool ReadPath(HWND dialog, char* path, int size) {
  GetControlText(dialog, IDC_FORMAT_PATH, path, size, true);
  if (path[0]) return true;
  SetFocus(GetDlgItem(dialog, IDC_FORMAT_PATH));
  return false;
}

INT_PTR CALLBACK ImportProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  ImportAnswer* answer = static_cast<ImportAnswer*>(DialogData(dialog, message, lParam));
  if (message == WM_INITDIALOG) {
    SetControlText(dialog, IDC_FORMAT_PATH, answer->path, true);
    FillEncodingList(dialog, true, answer->encoding);
    SetSpin(dialog, IDC_FORMAT_TAB_SPIN, 0, kMaxTabWidth, answer->tabSize);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  switch (LOWORD(wParam)) {
    case IDC_FORMAT_BROWSE:
      Browse(dialog, false);
      return TRUE;
    case IDOK:
      if (!ReadPath(dialog, answer->path, sizeof answer->path)) return TRUE;
      answer->encoding = ChosenEncoding(dialog, true);
      answer->tabSize = GetSpin(dialog, IDC_FORMAT_TAB_SPIN);
      EndDialog(dialog, 1);
      return TRUE;
    case IDCANCEL:
      EndDialog(dialog, 0);
      return TRUE;
  }
  return FALSE;
}

INT_PTR CALLBACK SaveOtherProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  OtherFormatAnswer* answer = static_cast<OtherFormatAnswer*>(DialogData(dialog, message, lParam));
  if (message == WM_INITDIALOG) {
    SetControlText(dialog, IDC_FORMAT_PATH, answer->path, true);
    FillEncodingList(dialog, false, answer->encoding);
    SetSpin(dialog, IDC_FORMAT_TAB_SPIN, 0, kMaxTabWidth, answer->tabSize);
    CheckRadio(dialog, IDC_LINE_END_CRLF, IDC_LINE_END_LF, answer->lfOnly ? 1 : 0);
    CheckDlgButton(dialog, IDC_BYTE_ORDER_MARK, answer->hasBom ? BST_CHECKED : BST_UNCHECKED);
    EnableByteOrderMark(dialog);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  int id = LOWORD(wParam);
  if (id == IDC_FORMAT_ENCODING && HIWORD(wParam) == CBN_SELCHANGE) {
    EnableByteOrderMark(dialog);
    return TRUE;
  }
  switch (id) {
    case IDC_FORMAT_BROWSE:
      Browse(dialog, true);
      return TRUE;
    case IDOK:
      if (!ReadPath(dialog, answer->path, sizeof answer->path)) return TRUE;
      answer->encoding = ChosenEncoding(dialog, false);
      answer->tabSize = GetSpin(dialog, IDC_FORMAT_TAB_SPIN);
      answer->lfOnly = CheckedRadio(dialog, IDC_LINE_END_CRLF, IDC_LINE_END_LF);
      answer->hasBom = TakesByteOrderMark(answer->encoding) &&
                       IsDlgButtonChecked(dialog, IDC_BYTE_ORDER_MARK) == BST_CHECKED;
      EndDialog(dialog, 1);
      return TRUE;
    case IDCANCEL:
      EndDialog(dialog, 0);
      return TRUE;
  }
  return FALSE;
}

}  // namespace

bool AskImportDialog(HWND owner, ImportAnswer* answer) {
  ImportChoice choice = ReadImportChoice();
  answer->path[0] = '\0';
  answer->encoding = choice.encoding;
  answer->tabSize = choice.tabSize;
  if (RunDialog(owner, IDD_IMPORT, ImportProc, answer) != 1) return false;
  choice.encoding = answer->encoding;
  choice.tabSize = answer->tabSize;
  WriteImportChoice(choice);
  return true;
}

bool AskOtherFormatDialog(HWND owner, OtherFormatAnswer* answer) {
  return RunDialog(owner, IDD_SAVE_OTHER, SaveOtherProc, answer) == 1;
}
