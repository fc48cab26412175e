// Opening a file in an encoding and tab width of the user's choosing, and saving a copy of a
// document in another encoding, tab width and line end.
#include <cstring>

#include "editor/command_host.h"
#include "encoding/encoding_settings.h"
#include "encoding/text_encoding.h"
#include "foundation/file_dialogs.h"
#include "frame/dialog_support.h"
#include "frame/editor_dialogs.h"
#include "resources/resource.h"

namespace {

constexpr int kMaxTabWidth = 16;
constexpr int kEncodings = 4;  // Johab, EUC-KR, UTF-8, UTF-16

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

void EnableByteOrderMark(HWND dialog) {
  int encoding = JOHAP + CheckedRadio(dialog, IDC_ENCODING_JOHAB, IDC_ENCODING_UTF16);
  EnableWindow(GetDlgItem(dialog, IDC_BYTE_ORDER_MARK), TakesByteOrderMark(encoding));
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
    CheckRadio(dialog, IDC_ENCODING_DETECT, IDC_ENCODING_UTF16, answer->encoding);
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
      answer->encoding = CheckedRadio(dialog, IDC_ENCODING_DETECT, IDC_ENCODING_UTF16);
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
    CheckRadio(dialog, IDC_ENCODING_JOHAB, IDC_ENCODING_UTF16, answer->encoding - JOHAP);
    SetSpin(dialog, IDC_FORMAT_TAB_SPIN, 0, kMaxTabWidth, answer->tabSize);
    CheckRadio(dialog, IDC_LINE_END_CRLF, IDC_LINE_END_LF, answer->lfOnly ? 1 : 0);
    CheckDlgButton(dialog, IDC_BYTE_ORDER_MARK, answer->hasBom ? BST_CHECKED : BST_UNCHECKED);
    EnableByteOrderMark(dialog);
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  int id = LOWORD(wParam);
  if (id >= IDC_ENCODING_JOHAB && id < IDC_ENCODING_JOHAB + kEncodings) {
    EnableByteOrderMark(dialog);
    return TRUE;
  }
  switch (id) {
    case IDC_FORMAT_BROWSE:
      Browse(dialog, true);
      return TRUE;
    case IDOK:
      if (!ReadPath(dialog, answer->path, sizeof answer->path)) return TRUE;
      answer->encoding = JOHAP + CheckedRadio(dialog, IDC_ENCODING_JOHAB, IDC_ENCODING_UTF16);
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
