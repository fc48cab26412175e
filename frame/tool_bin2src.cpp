#include <cstring>

#include "foundation/file_dialogs.h"
#include "foundation/message_box.h"
#include "frame/dialog_support.h"
#include "frame/frame_window.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"
#include "tools/bin2src_options.h"

namespace {

struct Bin2SrcDialog {
  Bin2SrcOptions options;
  int minimumHeight;  // the template's height: only the width changes
};

// The endian pair matters only for elements of more than one byte; Java has no unsigned numbers.
void UpdateEnabling(HWND dialog) {
  bool wide = CheckedRadio(dialog, IDC_BIN_SIZE0, IDC_BIN_SIZE0 + 2) != 0;
  EnableWindow(GetDlgItem(dialog, IDC_BIN_ENDIAN0), wide);
  EnableWindow(GetDlgItem(dialog, IDC_BIN_ENDIAN0 + 1), wide);
  bool java = CheckedRadio(dialog, IDC_BIN_TYPE0, IDC_BIN_TYPE0 + 2) == kBin2SrcJava;
  EnableWindow(GetDlgItem(dialog, IDC_BIN_EXP0 + kBin2SrcUnsigned), !java);
}

void ProposeFormat(HWND dialog) {
  int type = CheckedRadio(dialog, IDC_BIN_TYPE0, IDC_BIN_TYPE0 + 2);
  int exp = CheckedRadio(dialog, IDC_BIN_EXP0, IDC_BIN_EXP0 + 2);
  int size = CheckedRadio(dialog, IDC_BIN_SIZE0, IDC_BIN_SIZE0 + 2);
  SetControlText(dialog, IDC_BIN_FORMAT, DefaultBin2SrcFormat(type, exp, size), false);
}

void ShowOptions(HWND dialog, const Bin2SrcOptions& options) {
  SetControlText(dialog, IDC_BIN_FILE, options.binFile, true);
  SetControlText(dialog, IDC_SRC_FILE, options.saveFile, true);
  CheckRadio(dialog, IDC_BIN_TYPE0, IDC_BIN_TYPE0 + 2, options.type);
  CheckRadio(dialog, IDC_BIN_EXP0, IDC_BIN_EXP0 + 2, options.dataExp);
  CheckRadio(dialog, IDC_BIN_SIZE0, IDC_BIN_SIZE0 + 2, options.dataSize);
  CheckRadio(dialog, IDC_BIN_ENDIAN0, IDC_BIN_ENDIAN0 + 1, options.endian);
  SetControlText(dialog, IDC_BIN_FORMAT, options.dataForm, false);
  SetControlText(dialog, IDC_BIN_SKIP, options.skipBytes, false);
  SetDlgItemInt(dialog, IDC_BIN_LINE_LEN, options.lineLen, FALSE);
  CheckDlgButton(dialog, IDC_BIN_OPEN_EDITOR, options.openEditor ? BST_CHECKED : BST_UNCHECKED);
  UpdateEnabling(dialog);
}

void ReadOptions(HWND dialog, Bin2SrcOptions* options) {
  GetControlText(dialog, IDC_BIN_FILE, options->binFile, kPathSize, true);
  GetControlText(dialog, IDC_SRC_FILE, options->saveFile, kPathSize, true);
  options->type = CheckedRadio(dialog, IDC_BIN_TYPE0, IDC_BIN_TYPE0 + 2);
  options->dataExp = CheckedRadio(dialog, IDC_BIN_EXP0, IDC_BIN_EXP0 + 2);
  options->dataSize = CheckedRadio(dialog, IDC_BIN_SIZE0, IDC_BIN_SIZE0 + 2);
  options->endian = CheckedRadio(dialog, IDC_BIN_ENDIAN0, IDC_BIN_ENDIAN0 + 1);
  GetControlText(dialog, IDC_BIN_FORMAT, options->dataForm, kBin2SrcFormatSize, false);
  GetControlText(dialog, IDC_BIN_SKIP, options->skipBytes, kBin2SrcSkipSize, false);
  BOOL read = FALSE;
  UINT length = GetDlgItemInt(dialog, IDC_BIN_LINE_LEN, &read, FALSE);
  if (read) options->lineLen = length;
  options->openEditor = IsDlgButtonChecked(dialog, IDC_BIN_OPEN_EDITOR) == BST_CHECKED;
}

void ShowBin2SrcError(void* context, int, const char* text) {
  ShowMessage(context, text, MB_OK | MB_ICONEXCLAMATION);
}

bool AskBin2SrcYesNo(void* context, int, const char* text) {
  return ShowMessage(context, text, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void Browse(HWND dialog, bool forBinary) {
  char path[kPathSize];
  GetControlText(dialog, forBinary ? IDC_BIN_FILE : IDC_SRC_FILE, path, sizeof path, true);
  static const char kAllFiles[] = "All Files (*.*)\0*.*\0";
  if (forBinary) {
    if (!AskOpenFileName(dialog, path, sizeof path, nullptr, kAllFiles, nullptr, 0)) return;
  } else {
    int type = CheckedRadio(dialog, IDC_BIN_TYPE0, IDC_BIN_TYPE0 + 2);
    if (!AskSaveFileName(dialog, path, sizeof path, nullptr, kAllFiles, nullptr, 0,
                         Bin2SrcExtension(type))) {
      return;
    }
  }
  SetControlText(dialog, forBinary ? IDC_BIN_FILE : IDC_SRC_FILE, path, true);
}

// Only the width follows the frame: the paths widen and their buttons keep to the right edge.
void FollowWidth(HWND dialog) {
  RECT client;
  GetClientRect(dialog, &client);
  RECT margin = {4, 0, 28, 0};
  MapDialogRect(dialog, &margin);
  for (int row = 0; row < 2; ++row) {
    HWND edit = GetDlgItem(dialog, row ? IDC_SRC_FILE : IDC_BIN_FILE);
    HWND button = GetDlgItem(dialog, row ? IDC_SRC_BROWSE : IDC_BIN_BROWSE);
    RECT e, b;
    GetWindowRect(edit, &e);
    GetWindowRect(button, &b);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&e), 2);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&b), 2);
    int buttonLeft = client.right - margin.left - margin.right;
    MoveWindow(button, buttonLeft, b.top, margin.right, b.bottom - b.top, TRUE);
    int width = buttonLeft - margin.left - e.left;
    MoveWindow(edit, e.left, e.top, width > 1 ? width : 1, e.bottom - e.top, TRUE);
  }
}

void OnOk(HWND dialog, Bin2SrcDialog* data) {
  Bin2SrcOptions* options = &data->options;
  ReadOptions(dialog, options);
  if (!options->binFile[0]) {
    HWND field = GetDlgItem(dialog, IDC_BIN_FILE);
    SetFocus(field);
    MessageBeep(MB_ICONEXCLAMATION);
    return;
  }
  SaveBin2SrcOptions(*options);
  Bin2SrcHost host = {dialog, ShowBin2SrcError, AskBin2SrcYesNo};
  Bin2SrcResult result = RunBin2Src(options, host);
  SetControlText(dialog, IDC_SRC_FILE, options->saveFile, true);
  if (result != Bin2SrcResult::kDone) return;
  EndDialog(dialog, options->openEditor ? IDOK : IDCANCEL);
}

INT_PTR CALLBACK Bin2SrcProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* data = static_cast<Bin2SrcDialog*>(DialogData(dialog, message, lParam));
  switch (message) {
    case WM_INITDIALOG: {
      RECT rect;
      GetWindowRect(dialog, &rect);
      data->minimumHeight = rect.bottom - rect.top;
      ShowOptions(dialog, data->options);
      FollowWidth(dialog);
      return TRUE;
    }
    case WM_GETMINMAXINFO:
      if (data && data->minimumHeight) {
        auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
        info->ptMinTrackSize.x = 335;
        info->ptMinTrackSize.y = data->minimumHeight;
        info->ptMaxTrackSize.y = data->minimumHeight;
      }
      return TRUE;
    case WM_SIZE:
      FollowWidth(dialog);
      return TRUE;
    case WM_COMMAND: {
      int id = LOWORD(wParam);
      if (id == IDOK) {
        OnOk(dialog, data);
        return TRUE;
      }
      if (id == IDCANCEL) {
        EndDialog(dialog, 0);
        return TRUE;
      }
      if (id == IDC_BIN_BROWSE || id == IDC_SRC_BROWSE) {
        Browse(dialog, id == IDC_BIN_BROWSE);
        return TRUE;
      }
      if (HIWORD(wParam) == BN_CLICKED && id >= IDC_BIN_TYPE0 && id <= IDC_BIN_ENDIAN0 + 1) {
        // A language makes unsigned numbers signed (Java has none, the others follow alike).
        if (id <= IDC_BIN_TYPE0 + 2 &&
            CheckedRadio(dialog, IDC_BIN_EXP0, IDC_BIN_EXP0 + 2) == kBin2SrcUnsigned) {
          CheckRadio(dialog, IDC_BIN_EXP0, IDC_BIN_EXP0 + 2, kBin2SrcSigned);
        }
        UpdateEnabling(dialog);
        ProposeFormat(dialog);
        return TRUE;
      }
      break;
    }
  }
  return FALSE;
}

}  // namespace

void ShowBinaryToSource(HWND frame) {
  Bin2SrcDialog data = {};
  LoadBin2SrcOptions(&data.options);
  INT_PTR result = RunDialog(frame, IDD_BIN2SRC, Bin2SrcProc, &data);
  if (result == IDOK) OpenOrActivateDocument(data.options.saveFile, nullptr, 0, 0);
}
